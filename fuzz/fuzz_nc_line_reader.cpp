// The NC line reader on any bytes, in any block size: the lines joined again with CR give back
// the file with each CR LF read as CR (the only change it may make), and a bound on the line
// stops the reading at the first longer line, the lines before it intact.

#include "fuzz_check.h"
#include "nc_line_reader.h"

#include <QFile>
#include <QTemporaryDir>

namespace {

const QTemporaryDir &folder() {
    static const QTemporaryDir dir;
    return dir;
}

struct Read {
    QList<QByteArray> lines;
    bool failed = false;
};

Read readAll(const QString &path, qint64 block, qint64 bound) {
    NcLineReader reader(path, block, bound);
    FUZZ_CHECK(reader.open());
    Read r;
    while (!reader.atEnd()) {
        const QByteArray line = reader.readLine();
        if (reader.failed())
            break;
        r.lines << line;
    }
    r.failed = reader.failed();
    // Once failed, nothing more comes.
    FUZZ_CHECK(!r.failed || (reader.atEnd() && reader.readLine().isEmpty()));
    return r;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    FuzzedDataProvider in(data, size);
    const qint64 block = in.ConsumeBool() ? 65536 : in.ConsumeIntegralInRange<qint64>(1, 16);
    const qint64 bound = in.ConsumeIntegralInRange<qint64>(1, 80);
    const QByteArray content = restBytes(in);
    const QString path = folder().filePath(QStringLiteral("P.tap"));
    {
        QFile f(path);
        FUZZ_CHECK(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        FUZZ_CHECK(f.write(content) == content.size());
    }

    const Read whole = readAll(path, block, MaxLineBytes);
    FUZZ_CHECK(!whole.failed);
    QByteArray expected = content;
    expected.replace("\r\n", "\r");
    QByteArray joined = whole.lines.join('\r');
    if (expected.endsWith('\r'))
        joined += '\r';
    FUZZ_CHECK(joined == expected);
    for (const QByteArray &line : whole.lines)
        FUZZ_CHECK(!line.contains('\r'));

    const Read bounded = readAll(path, block, bound);
    qsizetype firstLong = -1;
    for (qsizetype i = 0; i < whole.lines.size() && firstLong < 0; ++i)
        if (whole.lines[i].size() > bound)
            firstLong = i;
    FUZZ_CHECK(bounded.failed == (firstLong >= 0));
    FUZZ_CHECK(bounded.lines == (firstLong < 0 ? whole.lines : whole.lines.mid(0, firstLong)));
    return 0;
}
