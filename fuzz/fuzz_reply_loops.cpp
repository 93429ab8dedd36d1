// The reply loops of receive, map and the choice from the control's list, fed any bytes in any
// chunking by the scripted port, with the clock's tick, a failing port or the window closing at
// any pass. Each run must end (no hang: the script's idle passes are bounded), in its end state
// (port closed, clock stopped, pointer back, counter hidden), and what was kept, shown, saved
// and answered must be exactly what the documented rules make of the chunks that were read.

#include "directory.h"
#include "fake_link.h"
#include "fuzz_check.h"
#include "transfer.h"
#include "wire_chars.h"

#include <QFile>
#include <QTemporaryDir>
#include <stdexcept>

namespace {

const QTemporaryDir &folder() {
    static const QTemporaryDir dir;
    return dir;
}

// The scripted port, noting every read and write in order.
class WatchedComm : public FakeComm {
public:
    struct Event {
        bool read;
        QByteArray bytes;
    };
    QList<Event> events;
    QByteArray input() override {
        const QByteArray got = FakeComm::input();
        events.append({true, got});
        return got;
    }
    void output(const QByteArray &bytes) override {
        FakeComm::output(bytes);
        events.append({false, bytes});
    }
};

struct Rig {
    Globals g;
    WatchedComm comm;
    FakeTimer timer{g};
    ScriptedYield yield;
    RecordingScreen screen;
    CmDialog dialog;
    OperationState state;
    OperationState::Run run{state};
    Link link{g, comm, timer, yield, screen, dialog, state};
};

enum class Op { Receive303, Receive504, Map303, Map504, Delete504 };

// One wait for a reply, by the rules: a chunk with a CR keeps up to that CR and an added LF and
// is answered with the go-ahead; a reception ends at any chunk holding EOT, a listing at a chunk
// holding EOT and no CR. Takes the reads from `at` on, checking the go-aheads in between.
QByteArray replyOf(const QList<WatchedComm::Event> &ev, qsizetype &at, bool reception) {
    QByteArray reply;
    while (at < ev.size() && ev[at].read) {
        const QByteArray &chunk = ev[at++].bytes;
        const bool eot = chunk.contains(WireChar::EOT);
        if (reception && eot)
            break;
        const qsizetype cr = chunk.indexOf(WireChar::CR);
        if (cr >= 0) {
            reply += chunk.left(cr + 1) + '\n';
            if (at < ev.size()) // the go-ahead follows unless the port failed on it
                FUZZ_CHECK(!ev[at].read && ev[at++].bytes == PromptSeq);
        } else if (eot) {
            break;
        } else {
            reply += chunk;
        }
    }
    // Nothing is read once the wait has ended.
    FUZZ_CHECK(at == ev.size() || !ev[at].read);
    return reply;
}

QList<QByteArray> entriesOf(const QByteArray &reply) {
    QList<QByteArray> entries;
    qsizetype from = 0;
    for (qsizetype end; (end = reply.indexOf("\r\n", from)) >= 0; from = end + 2)
        entries << reply.mid(from, end - from);
    return entries;
}

QByteArray fileBytes(const QString &path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    FuzzedDataProvider in(data, size);
    const Op op = in.PickValueInArray(
        {Op::Receive303, Op::Receive504, Op::Map303, Op::Map504, Op::Delete504});
    const bool is303 = op == Op::Receive303 || op == Op::Map303;
    const int pick = in.ConsumeIntegralInRange(0, 7);

    Rig r;
    r.g.ComSettings = QStringLiteral("COM1:9600,E,7,2");
    r.g.CncType = is303 ? Cnc303 : Cnc504;
    r.g.iniPath = folder().filePath(QStringLiteral("dnc.ini"));
    const QString saved = folder().filePath(QStringLiteral("got.tap"));
    QFile::remove(saved);
    r.screen.saveAnswers.push_back(saved);
    r.yield.limit = 1000;

    // The far end: one step a pass.
    QByteArray delivered;
    bool failed = false;
    while (in.remaining_bytes() > 0) {
        const int kind = in.ConsumeIntegralInRange(0, 15);
        if (kind == 0) {
            r.yield.then([&r, &failed] {
                failed = true;
                r.comm.deviceError =
                    CommError{QStringLiteral("COM1: (fake)"), QStringLiteral("the device is gone")};
            });
        } else if (kind == 1) {
            r.yield.then([&r] { r.state.requestEnd(); });
        } else {
            const QByteArray chunk = takeBytes(in, 64);
            const bool tick = kind == 2;
            delivered += chunk;
            r.yield.then([&r, chunk, tick] {
                r.comm.inbox += chunk;
                if (tick)
                    r.timer.fire();
            });
        }
    }
    // Then silence, and an operator who picks from the list once it shows entries.
    r.yield.idle = [&r, pick] {
        if (r.screen.list1Visible && r.screen.list1Count() > 0 && r.screen.listIndex < 0)
            r.screen.listIndex = pick % r.screen.list1Count();
        else
            r.timer.fire();
    };

    try {
        switch (op) {
        case Op::Receive303:
        case Op::Receive504:
            ReceiveFile(r.link);
            break;
        case Op::Map303:
        case Op::Map504:
            MapContext(r.link);
            break;
        case Op::Delete504:
            DeleteContext(r.link);
            break;
        }
    } catch (const std::runtime_error &) {
        FUZZ_CHECK(!"an operation did not end: it waited past the script and the clock");
    }

    // The end state, however it ended.
    FUZZ_CHECK(!r.comm.open && r.comm.opens == 1 && r.comm.closes == 1);
    FUZZ_CHECK(!r.timer.on && r.screen.pointer == 0 && !r.screen.label1Visible);
    // A failed port is told once, and only a failed port is told.
    const bool told = !r.screen.boxes.isEmpty();
    FUZZ_CHECK(r.screen.boxes.size() <= (failed ? 1 : 0));
    for (const auto &box : r.screen.boxes)
        FUZZ_CHECK(box.icon == BoxIcon::Critical && box.text.contains(u"the device is gone"));

    // Nothing read that was not sent, nothing out of order.
    QByteArray read;
    for (const auto &e : r.comm.events)
        if (e.read)
            read += e.bytes;
    FUZZ_CHECK(delivered.startsWith(read));

    const auto &ev = r.comm.events;
    const QByteArray request = op == Op::Receive303 ? "PC\r" + PromptSeq
                               : op == Op::Map303   ? "MC\r" + PromptSeq
                                                    : "MC,/ISO\r" + PromptSeq;
    FUZZ_CHECK(!ev.isEmpty() && !ev[0].read && ev[0].bytes == request);
    qsizetype at = 1;
    QByteArray reply = replyOf(ev, at, op == Op::Receive303);

    if (op == Op::Map303 || op == Op::Map504) {
        // What came is shown unless the port failed: then only the message is.
        QList<QByteArray> shown;
        for (const QString &entry : r.screen.list1)
            shown << entry.toLatin1();
        const bool show = !reply.isEmpty() && !told;
        FUZZ_CHECK((op == Op::Map303 ? r.screen.text1Visible : r.screen.list1Visible) == show);
        FUZZ_CHECK(!show || (op == Op::Map303 ? r.screen.text1 == QString::fromLatin1(reply)
                                              : shown == entriesOf(reply)));
        FUZZ_CHECK(at == ev.size());
        return 0;
    }
    if (op == Op::Receive504 || op == Op::Delete504) {
        // The choice: the entry picked goes out in the one command, and nothing else.
        const QList<QByteArray> entries = entriesOf(reply);
        FUZZ_CHECK(!r.screen.list1Visible);
        const bool requested = at < ev.size();
        if (requested) {
            FUZZ_CHECK(!entries.isEmpty());
            const QByteArray name = entries[pick % entries.size()];
            const QByteArray verb = op == Op::Delete504 ? "DC,/ISO/" : "PC,/ISO/";
            FUZZ_CHECK(!ev[at].read && ev[at++].bytes == verb + name + "\r" + PromptSeq);
        }
        reply = requested && op == Op::Receive504 ? replyOf(ev, at, true) : QByteArray();
        FUZZ_CHECK(at == ev.size());
        if (op == Op::Delete504)
            return 0;
    }

    // A reception: what came is shown and offered for saving, however the wait ended; the file
    // holds it byte for byte with one CR LF behind it.
    FUZZ_CHECK(r.screen.saveRequests.size() == (reply.isEmpty() ? 0 : 1));
    FUZZ_CHECK(r.screen.text1Visible == !reply.isEmpty());
    if (!reply.isEmpty()) {
        FUZZ_CHECK(r.screen.text1 == QString::fromLatin1(reply));
        FUZZ_CHECK(told || r.screen.captions.last() == QString::number(reply.size()));
        FUZZ_CHECK(fileBytes(saved) == reply + "\r\n");
    }
    return 0;
}
