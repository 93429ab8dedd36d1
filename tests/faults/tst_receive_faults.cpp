// Faults that hit a reception and its save, through the real port on a pseudo-terminal against
// the virtual control: the far end gone mid-program, a silent or stalled control, the window
// closed in each wait, a 10 MB line, every byte value, and a save folder that is read-only,
// full, or holds a FIFO. Each case checks what the control was sent, the one message, what the
// file holds byte for byte (an old file intact when the save fails), and the end state.

#include "fault_support.h"
#include "real_link.h"
#include "transfer.h"
#include "vcontrol_process.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <utility>

#include <sys/stat.h>

using B = QByteArray;

namespace {
const QStringList C303{"--type", "303"}, C504{"--type", "504"};
const B Go("\x10\x37"), Pc = "PC\r" + Go, Old("N1 OLD PROGRAM\r\n");

B fileBytes(const QString &path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : B();
}

// A program as the control holds it, and as the saved file must hold it.
B allButEot() {
    B all = EveryByte();
    all.remove(4, 1);
    return all + "\r"; // its own CR (13) ends the first line
}
} // namespace

class TestReceiveFaults : public QObject {
    Q_OBJECT
private slots:
    void receive_data();
    void receive();
};

void TestReceiveFaults::receive_data() {
    QTest::addColumn<QStringList>("control");
    QTest::addColumn<B>("program");      // as the control holds it, lines end CR
    QTest::addColumn<QString>("fault");  // what happens, and when
    QTest::addColumn<QString>("saveTo"); // "" a new file; "read-only", "full, old file",
                                         // "full, new file", "fifo"
    QTest::addColumn<B>("arrived");      // at the control, exactly
    QTest::addColumn<B>("saved");        // what the file holds afterwards; none if empty
    QTest::addColumn<QString>("told");   // words of the one critical box; none if empty

    const QStringList quietFrom3 = C303 + QStringList{"--silent-from-line", "3"};
    const QStringList stall2 = C303 + QStringList{"--stall-mid-line", "2"};
    const B three = numberedLines(3), kept = numberedLines(3, "\r\n") + "\r\n";
    const B big = B(10 << 20, 'C') + "\r", every = allButEot();
    row("far end closed mid-program", quietFrom3, three, "stop at SILENT", "", Pc + Go + Go,
        B("L1\r\nL2\r\n\r\n"), "unplugged");
    row("USB adapter pulled mid-program", quietFrom3, three, "pull at SILENT", "", Pc + Go + Go,
        B("L1\r\nL2\r\n\r\n"), "unplugged");
    row("control silent after the request", C303 + QStringList{"--silent"}, three, "", "", Pc, B(),
        "");
    row("control stalls mid-line", stall2, three, "", "", Pc + Go, B("L1\r\nL\r\n"), "");
    row("window closed in the reception wait", stall2, three, "close at STALLED", "", Pc + Go,
        B("L1\r\nL\r\n"), "");
    row("window closed in the choice from the list", C504, three, "close at list", "",
        "MC,/ISO\r" + Go + Go, B(), "");
    row("10 MB line", C303, big, "", "", Pc + Go, big + "\n\r\n", "");
    row("every byte value but EOT", C303, every, "", "", Pc + Go + Go,
        B(every).replace("\r", "\r\n") + "\r\n", "");
    // A program larger than a page, so that it cannot fit where the old file was.
    const B wide = B(8000, 'W') + "\r";
    row("save folder read-only", C303, wide, "", "read-only", Pc + Go, B(),
        "Read-only file system");
    row("disk full, over an old file", C303, wide, "", "full, old file", Pc + Go, Old,
        "No space left on device");
    row("disk full, a new file", C303, wide, "", "full, new file", Pc + Go, B(),
        "No space left on device");
    row("save onto a FIFO", C303, wide, "", "fifo", Pc + Go, B(), "is a FIFO");
    row("disk with room, over an old file", C303, three, "", "room, old file", Pc + Go.repeated(3),
        kept, "");
}

void TestReceiveFaults::receive() {
    QFETCH(QString, saveTo);
    std::unique_ptr<SmallDisk> disk;
    QString target;
    QTemporaryDir out, store, cfg; // the save folder, the control's store, the link and dnc.ini
    if (saveTo.isEmpty() || saveTo == u"fifo") {
        target = out.filePath(QStringLiteral("P.tap"));
        if (saveTo == u"fifo")
            QVERIFY(::mkfifo(QFile::encodeName(target).constData(), 0600) == 0);
    } else {
        disk = std::make_unique<SmallDisk>("size=64k");
        if (!disk->mounted())
            QSKIP(qPrintable(disk->whyNot()));
        target = disk->filePath(saveTo.endsWith(u"new file") ? QStringLiteral("NEW.tap")
                                                             : QStringLiteral("P.tap"));
        if (saveTo.endsWith(u"old file"))
            QVERIFY(disk->put(QStringLiteral("P.tap"), Old));
        if (saveTo.startsWith(u"full"))
            QVERIFY(disk->fill());
        if (saveTo == u"read-only")
            QVERIFY2(disk->remountReadOnly(), "cannot make the small disk read-only");
    }
    const QStringList before =
        QDir(QFileInfo(target).path()).entryList(QDir::AllEntries | QDir::Hidden);

    QFETCH(B, program);
    QFETCH(QStringList, control);
    {
        QFile f(store.filePath(QStringLiteral("P.NC")));
        QVERIFY(f.open(QIODevice::WriteOnly) && f.write(program) == program.size());
    }
    const QString link = cfg.filePath(QStringLiteral("ttyUSB0"));
    VControlProcess vc;
    QVERIFY2(vc.start(control +
                      QStringList{"--dir", store.path(), "--link", link, "--pc-program", "P.NC"}),
             qPrintable(vc.errorString()));

    RealLink r(link, control == C504 ? 2 : 1, program.size() > (1 << 20) ? 2 : 5);
    r.g.ComSettings = QStringLiteral("COM1:115200,N,8,1");
    r.g.iniPath = cfg.filePath(QStringLiteral("dnc.ini"));
    r.screen.saveAnswers.push_back(target);

    QFETCH(QString, fault);
    if (const QString why = hangUpUnavailable(); fault.startsWith(u"pull at") && !why.isEmpty())
        QSKIP(qPrintable(why));
    Trigger trigger;
    const QString event = fault.section(u' ', -1);
    auto when = [&] {
        if (event == u"list")
            return r.screen.list1Visible && r.screen.list1Count() > 0;
        vc.refresh();
        // A stalled control: once the program has taken what came, so that it counts.
        return !vc.eventTexts(event).isEmpty() && (event != u"STALLED" || waitingAt(link) == 0);
    };
    if (fault.startsWith(u"stop"))
        trigger.onceWhen(when, [&] { vc.stop(); });
    else if (fault.startsWith(u"pull"))
        trigger.onceWhen(when, [&] {
            const QString why = hangUp(link);
            QVERIFY2(why.isEmpty(), qPrintable(why));
            QFile::remove(link);
        });
    else if (fault.startsWith(u"close"))
        trigger.onceWhen(when, [&] { r.state.requestEnd(); });

    QElapsedTimer clock;
    clock.start();
    ReceiveFile(r.link);
    const qint64 ms = clock.elapsed();

    QFETCH(B, arrived);
    vc.waitUntil([&] { return vc.rx().size() >= arrived.size(); }, 3000);
    QTest::qWait(50);
    vc.refresh();
    QCOMPARE(vc.rx(), arrived);

    // Whatever came is offered for saving, however the reception ended; the file holds it, or
    // after a failed save still holds what it held before, with nothing left beside it.
    QFETCH(B, saved);
    QFETCH(QString, told);
    const bool came = !r.screen.text1.isEmpty();
    QCOMPARE(r.screen.saveRequests.size(), came ? 1 : 0);
    QCOMPARE(r.screen.text1Visible, came);
    const bool failedSave = !saveTo.isEmpty() && !saveTo.startsWith(u"room");
    if (saveTo == u"fifo")
        QVERIFY(QFileInfo(target).exists() && !QFileInfo(target).isFile());
    else
        QCOMPARE(fileBytes(target), saved);
    if (failedSave) {
        QCOMPARE(QDir(QFileInfo(target).path()).entryList(QDir::AllEntries | QDir::Hidden), before);
        QCOMPARE(r.screen.text1.toLatin1(), B(program).replace("\r", "\r\n"));
    }
    const auto boxes = std::exchange(r.screen.boxes, {}); // taken: checked here
    QCOMPARE(boxes.size(), told.isEmpty() ? 0 : 1);
    if (!told.isEmpty()) {
        QVERIFY2(boxes[0].text.contains(told), qPrintable(boxes[0].text));
        QCOMPARE(boxes[0].icon, BoxIcon::Critical);
    }
    QVERIFY(!r.comm.portOpen() && !r.timer.enabled() && !r.screen.label1Visible);
    QVERIFY(!r.screen.list1Visible);
    QCOMPARE(r.screen.pointer, 0);
    QCOMPARE(openDescriptors(target), 0);
    QVERIFY2(ms < 20000, qPrintable(QString::number(ms)));

    const QString outcome = (told.isEmpty() ? QStringLiteral("no box") : "critical: " + told) +
                            (came ? QStringLiteral(", offered for saving") : QString());
    // What the control sent that is neither in the file nor, after a failed save, on screen.
    const qsizetype lost =
        failedSave ? bytesLost(B(program).replace("\r", "\r\n"), r.screen.text1.toLatin1())
                   : bytesLost(saved, fileBytes(target));
    recordFault(QStringLiteral("receive: ") + QTest::currentDataTag(), outcome, lost, ms);
}

QTEST_GUILESS_MAIN(TestReceiveFaults)
#include "tst_receive_faults.moc"
