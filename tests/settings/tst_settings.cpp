#include "ini_file.h"
#include "profile.h"
#include "rows.h"

#include <QTest>

#include <csignal>
#include <sys/resource.h>

// As the setup dialog writes it.
static const QByteArray Section = "[Default]\nPort=COM3:\nBaud=4800\nParity=O\nData=7\nStop=2\n"
                                  "CNC=504\nSoft=05\nWait-Xon=1\nSpace=0\n";

class TstSettings : public QObject {
    Q_OBJECT
private slots:
    // Key "Baud" of section "Default" where it is new; an empty `before`: no file. That a value
    // replaces the one a read finds, and leaves other lines alone, is a fuzz target's property.
    void putProfile_data() {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        row("new file and folder", QByteArray(), QByteArray("[Default]\nBaud=3\n"));
        row("at the end of its section", QByteArray("[Default]\nA=1\n\n[B]\n"),
            QByteArray("[Default]\nA=1\nBaud=3\n\n[B]\n"));
        row("in an empty last section", QByteArray("[B]\n[Default]"),
            QByteArray("[B]\n[Default]\nBaud=3\n"));
        row("new section behind the others, CR LF", QByteArray("[B]\r\nX=1"),
            QByteArray("[B]\r\nX=1\r\n\r\n[Default]\r\nBaud=3\r\n"));
    }
    void putProfile() {
        QFETCH(QByteArray, before);
        IniFile ini;
        if (!before.isEmpty())
            ini.write(before);
        PutProfile(ini.g, "Default", "Baud", "3");
        QTEST(ini.read(), "after");
    }

    // Root may write anywhere, but not beyond the file size limit.
    void failedWriteLeavesTheOldFile() {
        IniFile ini;
        const QByteArray old = "[Default]\nPort=COM1:\n" + QByteArray(4000, ';') + "\n";
        ini.write(old);
        rlimit saved{};
        QVERIFY(getrlimit(RLIMIT_FSIZE, &saved) == 0);
        const rlimit small{1000, saved.rlim_max};
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        QVERIFY(setrlimit(RLIMIT_FSIZE, &small) == 0);
        PutProfile(ini.g, "Default", "Port", "COM2:");
        setrlimit(RLIMIT_FSIZE, &saved);
        std::signal(SIGXFSZ, handler);
        QCOMPARE(ini.read(), old);
        QCOMPARE(
            QDir(ini.dir.filePath("config")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries),
            QStringList{"dnc.ini"}); // no temporary file left behind
    }

    // Each row edits the section (an empty value reads as a missing key) and reads it over
    // settings left by an earlier read.
    void readSettings_data() {
        QTest::addColumn<QStringList>("edits");
        QTest::addColumn<QString>("com");
        QTest::addColumn<int>("cnc");
        QTest::addColumn<int>("waitXon");
        QTest::addColumn<int>("noSpace");
        const QString full = QStringLiteral("COM3:4800,O,7,2");
        row("Port missing: nothing read", QStringList{"Port="}, QString("old"), 1, 7, 7);
        // A flag is the number its value begins with; one beyond 16 bits is on.
        row("CNC in other case: type kept; flags read",
            QStringList{"CNC=xonxoff", "Wait-Xon=99999", "Space=-1"}, full, 1, 1, -1);
    }
    void readSettings() {
        QFETCH(QStringList, edits);
        IniFile ini;
        ini.write(Section);
        for (const QString &e : edits)
            PutProfile(ini.g, "Default", e.section(u'=', 0, 0), e.section(u'=', 1));
        ini.g.ComSettings = "old";
        ini.g.CncType = 1;
        ini.g.WaitXon = ini.g.NoSpace = 7;
        ReadSettings(ini.g);
        QTEST(ini.g.ComSettings, "com");
        QTEST(int(ini.g.CncType), "cnc");
        QTEST(int(ini.g.WaitXon), "waitXon");
        QTEST(int(ini.g.NoSpace), "noSpace");
    }
};

QTEST_GUILESS_MAIN(TstSettings)
#include "tst_settings.moc"
