#include "wire_trace.h"

namespace {

QByteArray Stamp(const QDateTime &when) {
    return when.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")).toLatin1();
}

} // namespace

std::unique_ptr<WireTrace> WireTrace::fromEnvironment() {
    const QString path = qEnvironmentVariable("DNC_TRACE");
    if (path.isEmpty())
        return nullptr;
    auto trace = std::make_unique<WireTrace>(path);
    if (!trace->isOpen())
        return nullptr;
    return trace;
}

WireTrace::WireTrace(const QString &path) : m_file(path) {
    // A trace that cannot be written must never stop the program: it is simply off.
    (void)m_file.open(QIODevice::WriteOnly | QIODevice::Append);
}

QByteArray WireTrace::formatBytes(const QDateTime &when, Direction d, const QByteArray &chunk) {
    QByteArray line = Stamp(when);
    line += d == Direction::Sent ? " TX " : " RX ";
    line += chunk.toHex(' ');
    line += "  |";
    for (const char c : chunk) {
        const auto u = static_cast<unsigned char>(c);
        line += (u >= 0x20 && u < 0x7f) ? c : '.';
    }
    line += "|\n";
    return line;
}

void WireTrace::bytes(Direction d, const QByteArray &chunk) {
    if (!chunk.isEmpty())
        append(formatBytes(QDateTime::currentDateTime(), d, chunk));
}

void WireTrace::note(const QString &event) {
    append(Stamp(QDateTime::currentDateTime()) + ' ' + event.toUtf8() + '\n');
}

void WireTrace::append(const QByteArray &line) {
    if (!m_file.isOpen())
        return;
    m_file.write(line);
    // Flushed line by line so that the record survives a crash of the program.
    m_file.flush();
}
