#pragma once
// Programs and the exact bytes they put on the wire, per control type: the same cases run
// against the scripted port and against the virtual control.

#include <QByteArray>
#include <QList>

inline QByteArray Lines(int n, const char *end = "\r\n") {
    QByteArray file;
    for (int i = 1; i <= n; ++i)
        file += "L" + QByteArray::number(i) + end;
    return file;
}

inline QByteArray AllBytesButCr() {
    QByteArray all;
    for (int c = 1; c <= 255; ++c)
        if (c != '\r')
            all += char(c);
    return all;
}

struct WireCase {
    QByteArray name;
    qint16 type;
    qint16 noSpace;
    QByteArray file;
    QByteArray wire;
};

inline QList<WireCase> WireCases() {
    const QByteArray eot("\x04\r"), xon("\x11"), all = AllBytesButCr();
    const QByteArray blank("A\r\n\r\nB\r\n"), spaces(" G1 X 10\tY2 \r\n   \r\nZ\r\n");
    QList<WireCase> c;
    for (qint16 t : {1, 2}) {
        const QByteArray n = QByteArray::number(t);
        c.append({"lines " + n, t, 0, Lines(3), "R\r" + Lines(3, "\r") + eot});
        c.append({"blank line ends " + n, t, 0, blank, "R\rA\r" + eot});
    }
    c.append({"lines 3", 3, 0, Lines(3), xon + Lines(3, "\r")});
    c.append({"no last line end", 1, 0, "N10 G0", "R\rN10 G0\r" + eot});
    c.append({"CR alone ends lines", 1, 0, Lines(2, "\r"), "R\r" + Lines(2, "\r") + eot});
    c.append({"blank first line", 2, 0, "\r\nA\r\n", "R\r" + eot});
    c.append({"blank line goes as CR 3", 3, 0, blank, xon + "A\r\rB\r"});
    c.append({"NoSpace, spaces line ends 1", 1, 1, spaces, "R\rG1X10\tY2\r" + eot});
    c.append({"spaces kept 1", 1, 0, spaces, "R\r G1 X 10\tY2 \r   \rZ\r" + eot});
    c.append({"NoSpace 3", 3, 1, spaces, xon + "G1X10\tY2\r\rZ\r"});
    c.append(
        {"lone LF stays in the line", 2, 0, Lines(3, "\n"), "R\r" + Lines(3, "\n") + "\r" + eot});
    c.append({"all bytes 1", 1, 0, all, "R\r" + all + "\r" + eot});
    c.append({"all bytes 3", 3, 0, all, xon + all + "\r"});
    return c;
}
