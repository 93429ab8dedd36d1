// Faults that hit a reception and its save, through the real port on a pseudo-terminal against
// the virtual control. Each case checks what the control was sent, the one message, what the
// file holds byte for byte (an old file intact when the save fails), and the end state.

#include "fault_support.h"
#include "real_link.h"
#include "transfer.h"

#include <QDir>

#include <sys/stat.h>

namespace {
const QStringList C303{"--type", "303"};
const B Pc = "PC\r" + Go, Old("N1 OLD PROGRAM\r\n");
} // namespace

class TstReceiveFaults : public QObject {
    Q_OBJECT
private slots:
    void receive_data() {
        QTest::addColumn<QStringList>("control");
        QTest::addColumn<B>("program");       // as the control holds it, lines end CR
        QTest::addColumn<QString>("fault");   // see armFault
        QTest::addColumn<QString>("saveTo");  // "" a new file; "read-only", "full, old file",
                                              // "full, new file", "fifo", "room, old file"
        QTest::addColumn<B>("arrived");       // at the control, exactly
        QTest::addColumn<B>("saved");         // what the file holds afterwards; none if empty
        QTest::addColumn<QString>("told");    // words of the one critical box; none if empty
        QTest::addColumn<QString>("outcome"); // the kind the record is left with

        const QStringList quietFrom3 = C303 + QStringList{"--silent-from-line", "3"};
        const B three = numberedLines(3, "\r"), two("L1\r\nL2\r\n\r\n"), half("L1\r\nL\r\n");
        const B big = B(10 << 20, 'C') + "\r", every = everyByte().remove(4, 1) + "\r";
        row("far end closed mid-program", quietFrom3, three, "stop at SILENT", "", Pc + Go + Go,
            two, "unplugged", "port failure");
        row("USB adapter pulled mid-program", quietFrom3, three, "pull at SILENT", "", Pc + Go + Go,
            two, "unplugged", "port failure");
        row("window closed in the reception wait", C303 + QStringList{"--stall-mid-line", "2"},
            three, "close at STALLED", "", Pc + Go, half, "", "interrupted");
        row("10 MB line", C303, big, "", "", Pc + Go, big + "\n\r\n", "", "done");
        row("every byte value but EOT", C303, every, "", "", Pc + Go + Go,
            B(every).replace("\r", "\r\n") + "\r\n", "", "done");
        // A program larger than a page, so that it cannot fit where the old file was.
        const B wide = B(8000, 'W') + "\r";
        row("save folder read-only", C303, wide, "", "read-only", Pc + Go, B(),
            "Read-only file system", "file failure");
        row("disk full, over an old file", C303, wide, "", "full, old file", Pc + Go, Old,
            "No space left on device", "file failure");
        row("disk full, a new file", C303, wide, "", "full, new file", Pc + Go, B(),
            "No space left on device", "file failure");
        row("save onto a FIFO", C303, wide, "", "fifo", Pc + Go, B(), "is a FIFO", "file failure");
        row("disk with room, over an old file", C303, three, "", "room, old file",
            Pc + Go.repeated(3), numberedLines(3) + "\r\n", "", "done");
    }
    void receive() {
        QFETCH(QString, saveTo);
        std::unique_ptr<SmallDisk> disk;
        QString target;
        QTemporaryDir out, store; // the save folder; the control's store, the link and dnc.ini
        if (saveTo.isEmpty() || saveTo == u"fifo") {
            target = out.filePath(QStringLiteral("P.tap"));
            QVERIFY(saveTo.isEmpty() || ::mkfifo(QFile::encodeName(target).constData(), 0600) == 0);
        } else {
            disk = std::make_unique<SmallDisk>("size=64k");
            if (!disk->mounted())
                QSKIP(qPrintable(disk->whyNot()));
            target = disk->filePath(saveTo.endsWith(u"new file") ? QStringLiteral("NEW.tap")
                                                                 : QStringLiteral("P.tap"));
            QVERIFY(!saveTo.endsWith(u"old file") || writeFile(target, Old));
            QVERIFY(!saveTo.startsWith(u"full") || disk->fill());
            QVERIFY(saveTo != u"read-only" || disk->remountReadOnly());
        }
        const QDir folder = QFileInfo(target).dir();
        const QStringList before = folder.entryList(QDir::AllEntries | QDir::Hidden);

        QFETCH(B, program);
        QFETCH(QStringList, control);
        QVERIFY(writeFile(store.filePath(QStringLiteral("P.NC")), program));
        const QString link = store.filePath(QStringLiteral("ttyUSB0"));
        VControlProcess vc;
        QVERIFY2(vc.start(control + QStringList{"--dir", store.path(), "--link", link,
                                                "--pc-program", "P.NC"}),
                 qPrintable(vc.errorString()));
        RealLink r(link, 1, program.size() > (1 << 20) ? 2 : 5);
        r.g.iniPath = store.filePath(QStringLiteral("dnc.ini"));
        r.screen.saveAnswers.push_back(target);
        QFETCH(QString, fault);
        Trigger trigger;
        if (const QString why = armFault(trigger, fault, vc, link, [&] { r.state.requestEnd(); });
            !why.isEmpty())
            QSKIP(qPrintable(why));
        const qint64 ms = msTaken([&] { ReceiveFile(r.link); });

        QFETCH(B, arrived);
        QCOMPARE(vc.rxSettled(arrived.size()), arrived);
        // Whatever came is offered for saving, however the reception ended; the file holds it,
        // or after a failed save still holds what it held before, with nothing left beside it.
        QFETCH(B, saved);
        QFETCH(QString, told);
        QVERIFY(r.screen.saveRequests.size() == 1 && r.screen.text1Visible);
        const bool failedSave = !saveTo.isEmpty() && !saveTo.startsWith(u"room");
        if (saveTo == u"fifo") // still the FIFO, not a file put in its place
            QVERIFY(QFileInfo(target).exists() && !QFileInfo(target).isFile());
        else
            QCOMPARE(readFile(target), saved);
        if (failedSave) {
            QCOMPARE(folder.entryList(QDir::AllEntries | QDir::Hidden), before);
            QCOMPARE(r.screen.text1.toLatin1(), B(program).replace("\r", "\r\n"));
        }
        QCOMPARE(takeBox(r.screen, told), QString());
        QCOMPARE(leftOver(r), QString());
        QCOMPARE(openDescriptors(target), 0);
        // The record: how it ended; for a whole reception the program's characters as the
        // control sent them, and the fingerprint of the file as it lies on disk.
        const OutcomeRecord &o = r.link.outcome;
        QTEST(outcomeWord(o.kind), "outcome");
        QCOMPARE(o.operation, OperationName::ReceiveFile);
        if (o.kind == OutcomeKind::Done) {
            const B sent = vc.tx().left(vc.tx().lastIndexOf(WireChar::EOT));
            QVERIFY(o.bytes == sent.size() && o.lines == sent.count('\r'));
            QCOMPARE(o.sha256, sha256Hex(readFile(target)));
            QCOMPARE(o.filePath, target);
        }
        QVERIFY2(ms < 20000, qPrintable(QString::number(ms)));

        const QString outcome = (told.isEmpty() ? QStringLiteral("no box") : "critical: " + told) +
                                QStringLiteral(", offered for saving");
        // What the control sent that is neither in the file nor, after a failed save, on screen.
        const qsizetype lost =
            failedSave ? bytesLost(B(program).replace("\r", "\r\n"), r.screen.text1.toLatin1())
                       : bytesLost(saved, readFile(target));
        recordFault(QStringLiteral("receive: ") + QTest::currentDataTag(), outcome, lost, ms);
    }
};

QTEST_GUILESS_MAIN(TstReceiveFaults)
#include "tst_receive_faults.moc"
