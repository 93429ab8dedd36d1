// The virtual control's own input: any bytes the program might put on the line, played to a
// control of type 303 or 504 over a socket. The control must end (at its idle limit, never
// stuck), log every byte it read, say nothing but go-aheads, EOTs, its listing and its stored
// program's lines, store only what came between an "R" CR and an EOT CR line, and never write
// outside its folder.

#include "fuzz_check.h"
#include "handshake_control.h"
#include "program_store.h"
#include "wire.h"
#include "wire_log.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <sys/socket.h>
#include <unistd.h>

namespace {

const QByteArray Program = "N1 G0\rN2 M30\r";

QByteArray fileBytes(const QString &path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// The bytes of one direction in the wire log ("<us> RX|TX <hex>").
QByteArray logged(const QByteArray &log, const QByteArray &dir) {
    QByteArray out;
    for (const QByteArray &line : log.split('\n')) {
        const QList<QByteArray> f = line.split(' ');
        if (f.size() >= 2 && f[1] == dir)
            out += QByteArray::fromHex(line.mid(line.indexOf(dir) + 3));
    }
    return out;
}

// Whether `tx` is made only of what the control may say: go-aheads, EOTs, and lines it knows
// (its own program's, the names it lists, the lines it was sent and stored).
bool onlyKnownPieces(QByteArrayView tx, const QByteArray &input) {
    static const QList<QByteArray> own{"A.NC\r", "N1 G0\r", "N2 M30\r"};
    static const QRegularExpression stored(QStringLiteral("^PROG[0-9]+\\.NC\r$"));
    while (!tx.isEmpty()) {
        if (tx.startsWith("\x10"
                          "7")) {
            tx = tx.sliced(2);
        } else if (tx.startsWith('\x04')) {
            tx = tx.sliced(1);
        } else {
            const qsizetype cr = tx.indexOf('\r');
            if (cr < 0)
                return false;
            const QByteArray line = tx.first(cr + 1).toByteArray();
            if (!own.contains(line) && !stored.match(QString::fromLatin1(line)).hasMatch() &&
                !input.contains(line))
                return false;
            tx = tx.sliced(cr + 1);
        }
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size == 0 || size > 16384)
        return 0;
    const bool is504 = data[0] & 1;
    const QByteArray input(reinterpret_cast<const char *>(data + 1), qsizetype(size - 1));

    QTemporaryDir root;
    FUZZ_CHECK(root.isValid() && QDir(root.path()).mkdir(QStringLiteral("store")));
    const QString store = root.filePath(QStringLiteral("store"));
    {
        QFile f(store + QStringLiteral("/A.NC"));
        FUZZ_CHECK(f.open(QIODevice::WriteOnly) && f.write(Program) == Program.size());
    }
    int sv[2];
    FUZZ_CHECK(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, sv) == 0);
    FUZZ_CHECK(::write(sv[1], input.constData(), size_t(input.size())) == input.size());

    Options o;
    o.type = is504 ? ControlType::T504 : ControlType::T303;
    o.dir = QFile::encodeName(store).toStdString();
    o.giveUpMs = 2;
    const QString logPath = root.filePath(QStringLiteral("wire.log"));
    {
        WireLog log;
        FUZZ_CHECK(log.open(QFile::encodeName(logPath).toStdString()));
        // Idle for a few milliseconds once the input is spent: the control ends there.
        Wire wire(sv[0], log, 1);
        ProgramStore programs(o.dir, ".NC");
        HandshakeControl control(o, wire, programs, [] {});
        try {
            control.run();
        } catch (const Stopped &) {
        }
    }
    QByteArray tx;
    char buf[65536];
    for (ssize_t n; (n = ::read(sv[1], buf, sizeof buf)) > 0;)
        tx += QByteArray(buf, n);
    ::close(sv[0]);
    ::close(sv[1]);

    const QByteArray log = fileBytes(logPath);
    FUZZ_CHECK(logged(log, "RX") == input);
    FUZZ_CHECK(logged(log, "TX") == tx);
    FUZZ_CHECK(onlyKnownPieces(tx, input));

    // Nothing outside the store; each stored program came whole between "R" CR and EOT CR.
    FUZZ_CHECK(
        QDir(root.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden) ==
        (QStringList{"store", "wire.log"}));
    for (const QString &name : QDir(store).entryList(QDir::Files | QDir::Hidden)) {
        if (name == u"A.NC")
            continue;
        const QByteArray program = fileBytes(store + u'/' + name);
        FUZZ_CHECK(name.startsWith(u"PROG") && name.endsWith(u".NC"));
        FUZZ_CHECK(program.isEmpty() || program.endsWith('\r'));
        FUZZ_CHECK(input.contains("R\r" + program + "\x04\r"));
    }
    return 0;
}
