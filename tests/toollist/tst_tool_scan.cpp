// The scan of a program's head, on bytes alone.

#include "tool_scan.h"

#include <QBuffer>
#include <QtTest>

namespace {

std::array<QString, 11> Limits(const QStringList &strings) {
    std::array<QString, 11> table;
    for (int i = 0; i < strings.size(); ++i)
        table[i + 1] = strings[i];
    return table;
}

// Counts what the scan actually pulls from the file.
class CountingBuffer : public QBuffer {
public:
    using QBuffer::QBuffer;
    qint64 pulled = 0;

protected:
    qint64 readData(char *data, qint64 maxSize) override {
        const qint64 n = QBuffer::readData(data, maxSize);
        pulled += std::max<qint64>(n, 0);
        return n;
    }
};

} // namespace

class TstToolScan : public QObject {
    Q_OBJECT
private slots:
    void lines_data();
    void lines();
    void lineEnds_data();
    void lineEnds();
    void longFileReadOnlyToItsHead();
};

void TstToolScan::lines_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("limits");
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<bool>("fails");
    const QStringList none;

    // The sample lines, one file each
    QTest::newRow("blanks around, upper case")
        << QByteArray("   /T12 Drill   \r") << none << QStringList{"drill"} << false;
    QTest::newRow("blank after slash")
        << QByteArray("/ t12 drill\r") << none << QStringList{"drill"} << false;
    QTest::newRow("blank before number")
        << QByteArray("/t 12 drill\r") << none << QStringList{"12 drill"} << false;
    QTest::newRow("inner blanks kept")
        << QByteArray("/t12 big  drill\r") << none << QStringList{"big  drill"} << false;
    QTest::newRow("number 0") << QByteArray("/t0 drill\r") << none << QStringList{} << false;
    QTest::newRow("negative") << QByteArray("/t-3 drill\r") << none << QStringList{} << false;
    QTest::newRow("no number") << QByteArray("/tool drill\r") << none << QStringList{} << false;
    QTest::newRow("no slash") << QByteArray("t12 drill\r") << none << QStringList{} << false;
    QTest::newRow("no name") << QByteArray("/t12\r") << none << QStringList{} << true;
    QTest::newRow("limit leaves trailing blank")
        << QByteArray("/t12 drill (new)\r") << QStringList{"("} << QStringList{"drill "} << false;
    QTest::newRow("limits in listed order")
        << QByteArray("/t1 a(b-c\r") << QStringList{"-", "("} << QStringList{"a(b"} << false;

    // The head and its end
    QTest::newRow("percent on first line")
        << QByteArray("%\r/t1 a\r/t2 b\r") << none << QStringList{} << false;
    QTest::newRow("percent inside a line ends the head")
        << QByteArray("/t1 a\r/t2 b%c\r/t3 c\r") << none << QStringList{"a"} << false;
    QTest::newRow("empty file") << QByteArray() << none << QStringList{} << false;
    QTest::newRow("one count per line") << QByteArray("/t1 drill\rG0 X1\r/t7 drill\r") << none
                                        << QStringList{"drill", "drill"} << false;

    // Rounding half to even, and the 16-bit range
    QTest::newRow("0.5 rounds to 0") << QByteArray("/t0.5 a\r") << none << QStringList{} << false;
    QTest::newRow("0.6 rounds to 1")
        << QByteArray("/t0.6 a\r") << none << QStringList{"a"} << false;
    QTest::newRow("1.5 and 2.5 count")
        << QByteArray("/t1.5 a\r/t2.5 b\r") << none << QStringList{"a", "b"} << false;
    QTest::newRow("32767 fits") << QByteArray("/t32767 a\r") << none << QStringList{"a"} << false;
    QTest::newRow("32768 does not fit")
        << QByteArray("/t1 a\r/t32768 b\r/t2 c\r") << none << QStringList{"a"} << true;
    QTest::newRow("-40000 does not fit")
        << QByteArray("/t-40000 b\r") << none << QStringList{} << true;

    // Limit strings
    QTest::newRow("capital limit never matches")
        << QByteArray("/t1 Drill\r") << QStringList{"D"} << QStringList{"drill"} << false;
    QTest::newRow("limit at start leaves empty name")
        << QByteArray("/t1 drill\r") << QStringList{"dr"} << QStringList{""} << false;
    QTest::newRow("first listed wins over first in name")
        << QByteArray("/t1 x-y_z\r") << QStringList{"_", "-"} << QStringList{"x-y"} << false;

    // Only the blank is a blank
    QTest::newRow("tab between slash and t")
        << QByteArray("/\tt1 drill\r") << none << QStringList{} << false;
    QTest::newRow("tab ahead of the line")
        << QByteArray("\t/t1 drill\r") << none << QStringList{} << false;
    QTest::newRow("tab before name is no blank")
        << QByteArray("/t1\tdrill\r") << none << QStringList{} << true;
    QTest::newRow("tab after name stays")
        << QByteArray("/t1 drill\t\r") << none << QStringList{"drill\t"} << false;

    QTest::newRow("names before a failure are kept")
        << QByteArray("/t1 a\r/t2\r/t3 c\r") << none << QStringList{"a"} << true;
    QTest::newRow("latin-1 byte lowered") << QByteArray("/T1 \xC9"
                                                        "CROU\r")
                                          << none
                                          << QStringList{QString::fromLatin1("\xE9"
                                                                             "crou")}
                                          << false;
}

void TstToolScan::lines() {
    QFETCH(QByteArray, file);
    QFETCH(QStringList, limits);
    QFETCH(QStringList, names);
    QFETCH(bool, fails);
    const ToolScan scan = ScanToolLines(file, Limits(limits), qint16(limits.size()));
    QCOMPARE(scan.names, names);
    QCOMPARE(scan.failed(), fails);
}

void TstToolScan::lineEnds_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("names");

    QTest::newRow("CR only") << QByteArray("/t1 a\r/t2 b\r") << QStringList{"a", "b"};
    QTest::newRow("CR LF") << QByteArray("/t1 a\r\n/t2 b\r\n") << QStringList{"a", "b"};
    QTest::newRow("last line without end") << QByteArray("/t1 a\r/t2 b") << QStringList{"a", "b"};
    QTest::newRow("lone LF stays inside")
        << QByteArray("/t1 a\n/t2 b\r") << QStringList{"a\n/t2 b"};
    QTest::newRow("LF only is one line")
        << QByteArray("/t1 a\n/t2 b\n") << QStringList{"a\n/t2 b\n"};
    QTest::newRow("LF after CR LF opens the next line")
        << QByteArray("/t1 a\r\n\n/t2 b\r") << QStringList{"a"};
    QTest::newRow("CR CR LF is an empty line between")
        << QByteArray("/t1 a\r\r\n/t2 b\r") << QStringList{"a", "b"};
}

void TstToolScan::lineEnds() {
    QFETCH(QByteArray, file);
    QFETCH(QStringList, names);
    const ToolScan scan = ScanToolLines(file, {}, 0);
    QCOMPARE(scan.names, names);
    QVERIFY(!scan.failed());
}

void TstToolScan::longFileReadOnlyToItsHead() {
    QByteArray content("/t1 head\r%\r");
    const QByteArray body("N10 G01 X100.000 Y200.000 F500\r\n");
    while (content.size() < 8 * 1024 * 1024)
        content += body;
    content += "/t2 tail\r";
    CountingBuffer file(&content);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const ToolScan scan = ScanToolLines(file, {}, 0);
    QCOMPARE(scan.names, QStringList{"head"});
    QVERIFY2(file.pulled < 256 * 1024, qPrintable(QString::number(file.pulled)));
}

QTEST_GUILESS_MAIN(TstToolScan)
#include "tst_tool_scan.moc"
