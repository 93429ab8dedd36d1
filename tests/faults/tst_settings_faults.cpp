// Faults of the settings file, through the whole window. Start-up must not hang or abort, the
// operator is told what is wrong, Setup gives the buttons back, and dnc.ini is never damaged.

#include "dnc_window.h"
#include "fault_support.h"
#include "setup_dialog.h"
#include "window_guard.h"

#include <QtWidgets>

#include <sys/stat.h>

namespace {
const B Ini("[Default]\nPort=COM1:\nBaud=9600\nParity=E\nData=7\nStop=2\nCNC=303\n\n"
            "[Shop]\nPort=COM2:\nTapeDir=/home/op/nc\n");

// What the file is now: its bytes, or what kind of thing it is.
B stateOf(const QString &path) {
    const QFileInfo info(path);
    return info.isSymLink() ? "link to " + QFile::encodeName(info.symLinkTarget())
           : info.isFile()  ? readFile(path)
                            : B("not a file");
}
} // namespace

class TstSettingsFaults : public QObject {
    Q_OBJECT
private slots:
    void startAndSetup_data() {
        QTest::addColumn<QString>("ini"); // "fifo", "zero", "read-only", "plain"
        QTest::addColumn<QString>("commandLine");
        QTest::addColumn<QString>("told"); // words of the start-up box; none if empty
        row("dnc.ini is a FIFO", "fifo", "", "is a FIFO (named pipe), not a regular file");
        row("dnc.ini links to /dev/zero", "zero", "", "is a character device");
        row("dnc.ini not writable when Setup closes", "read-only", "", "");
        row("section name on two lines", "plain", "-s Shop\nTapeDir=/etc", "holds a line break");
    }
    void startAndSetup() {
        QFETCH(QString, ini);
        std::unique_ptr<SmallDisk> disk;
        QTemporaryDir dir;
        FakeLink f;
        f.g.iniPath = dir.filePath(QStringLiteral("dnc.ini"));
        if (ini == u"read-only") {
            disk = std::make_unique<SmallDisk>("size=64k");
            if (!disk->mounted())
                QSKIP(qPrintable(disk->whyNot()));
            f.g.iniPath = disk->filePath(QStringLiteral("dnc.ini"));
        }
        if (ini == u"fifo")
            QVERIFY(::mkfifo(QFile::encodeName(f.g.iniPath).constData(), 0600) == 0);
        else if (ini == u"zero")
            QVERIFY(QFile::link(QStringLiteral("/dev/zero"), f.g.iniPath));
        else
            QVERIFY(writeFile(f.g.iniPath, Ini) && (!disk || disk->remountReadOnly()));
        const B before = stateOf(f.g.iniPath);

        WindowGuard guard;
        QFETCH(QString, told);
        if (!told.isEmpty())
            guard.expect<QMessageBox>([&](QMessageBox *box) {
                QVERIFY2(box->text().contains(told), qPrintable(box->text()));
                box->accept();
            });
        QFETCH(QString, commandLine);
        OperationState state;
        std::unique_ptr<DncWindow> w;
        const qint64 startMs = msTaken([&] {
            w = std::make_unique<DncWindow>(f.g, state, f.comm, f.timer, f.yield, commandLine);
        });
        QCOMPARE(w->startRefused(), ini == u"plain");
        if (!w->startRefused()) { // Setup: the operator picks COM3: and presses the button
            guard.expect<SetupDialog>([](SetupDialog *setup) {
                setup->Combo[0]->setCurrentText(QStringLiteral("COM3:"));
                setup->Command1->click();
            });
            w->show();
            w->Command1_Click(0);
            // The buttons back: they come back all together.
            QVERIFY(w->Command1[0]->isEnabled() && w->Command2->isEnabled());
        }
        guard.check(); // the one box at start-up; Setup itself tells nothing
        QCOMPARE(stateOf(f.g.iniPath), before);
        QCOMPARE(f.comm.opens, 0);
        QVERIFY2(startMs < 5000, qPrintable(QString::number(startMs)));

        recordFault(QStringLiteral("settings: ") + QTest::currentDataTag(),
                    (told.isEmpty() ? QStringLiteral("no box") : "critical: " + told) +
                        (w->startRefused() ? QStringLiteral(", program ends") : QString()),
                    0, startMs); // dnc.ini is as it was: compared above
    }
};

QTEST_MAIN(TstSettingsFaults)
#include "tst_settings_faults.moc"
