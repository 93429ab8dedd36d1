// The tool scan of a program's head, on any bytes with any limit strings: the same result
// whatever size the reads come in; nothing looked at behind the first line with "%"; names in
// lower case, one line each; and a line longer than the bound stops the scan exactly there.

#include "fuzz_check.h"
#include "tool_scan.h"

#include <QIODevice>

namespace {

// A device that hands out at most `step` bytes a read, so that a CR LF falls across reads.
class Trickle : public QIODevice {
public:
    Trickle(const QByteArray &data, qint64 step) : m_data(data), m_step(step) {
        open(QIODevice::ReadOnly);
    }
    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override {
        return m_data.size() - m_pos + QIODevice::bytesAvailable();
    }

protected:
    qint64 readData(char *to, qint64 most) override {
        const qint64 n = qMin(qMin(most, m_step), qint64(m_data.size() - m_pos));
        memcpy(to, m_data.constData() + m_pos, size_t(n));
        m_pos += n;
        return n;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_data;
    qint64 m_step;
    qint64 m_pos = 0;
};

// The raw lines as the scan must see them: ended by CR or CR LF, a lone LF inside.
QList<QByteArray> rawLines(const QByteArray &data) {
    QList<QByteArray> lines;
    QByteArray line;
    for (qsizetype i = 0; i < data.size(); ++i) {
        if (data[i] != '\r') {
            line += data[i];
            continue;
        }
        lines << line;
        line.clear();
        if (i + 1 < data.size() && data[i + 1] == '\n')
            ++i;
    }
    if (!line.isEmpty())
        lines << line;
    return lines;
}

bool same(const ToolScan &a, const ToolScan &b) {
    return a.names == b.names && a.failure == b.failure;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    FuzzedDataProvider in(data, size);
    std::array<QString, 11> limits;
    const auto count = in.ConsumeIntegralInRange<qint16>(0, 10);
    for (int i = 1; i <= count; ++i)
        limits[size_t(i)] = QString::fromLatin1(takeBytes(in, 4));
    const qint64 step = in.ConsumeIntegralInRange<qint64>(1, 9);
    const qint64 bound = in.ConsumeIntegralInRange<qint64>(1, 64);
    const QByteArray content = restBytes(in);

    const ToolScan scan = scanToolLines(content, limits, count);
    Trickle trickle(content, step);
    FUZZ_CHECK(same(scanToolLines(trickle, limits, count), scan));

    // Nothing behind a line that holds "%" counts.
    FUZZ_CHECK(same(scanToolLines(content + "\r%" + content, limits, count), scan));

    const QList<QByteArray> lines = rawLines(content);
    FUZZ_CHECK(scan.names.size() <= lines.size());
    for (const QString &name : scan.names) {
        FUZZ_CHECK(name == name.toLower());
        FUZZ_CHECK(!name.contains(u'%') && !name.contains(u'\r'));
    }

    // A bound on the line: the scan is the same up to the first longer line, and fails there.
    const ToolScan bounded = scanToolLines(content, limits, count, bound);
    if (!bounded.failure.startsWith(QLatin1String("The head of the program was not read"))) {
        FUZZ_CHECK(same(bounded, scan));
    } else {
        const qsizetype at = bounded.failure.indexOf(QLatin1String("line ")) + 5;
        const int number = bounded.failure.mid(at).section(u' ', 0, 0).toInt();
        FUZZ_CHECK(number >= 1 && number <= lines.size());
        FUZZ_CHECK(lines[number - 1].size() > bound);
        for (int i = 0; i < number - 1; ++i)
            FUZZ_CHECK(lines[i].size() <= bound);
        FUZZ_CHECK(bounded.names == scan.names.mid(0, bounded.names.size()));
    }
    return 0;
}
