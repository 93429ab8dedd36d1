#include "fake_link.h"
#include "profile.h"
#include "transfer.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class TestSaveFile : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;

    void prepare(FakeLink &f) {
        f.g.IniPath = m_dir.filePath("dnc.ini");
        QFile::remove(f.g.IniPath);
        f.g.ConfigSection = QStringLiteral("Mill");
    }
    QString cncDir(const FakeLink &f) { return GetProfile(f.g, "Mill", "CNCDir"); }

    static QByteArray contents(const QString &path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
    }

private slots:
    void written_data() {
        QTest::addColumn<QByteArray>("buffer");
        QTest::addColumn<QByteArray>("before"); // empty: no file there yet
        QTest::newRow("new file ends in one more CR LF")
            << QByteArray("N1 G0\r\nN2 M30\r\n") << QByteArray();
        QTest::newRow("unfinished last line still ends in CR LF")
            << QByteArray("N1\r\nN2") << QByteArray();
        QTest::newRow("bytes above 127 and a lone LF pass unchanged")
            << QByteArray("\xC4\xFF\n\x80\r\n") << QByteArray();
        QTest::newRow("longer file replaced whole")
            << QByteArray("N1\r\n") << QByteArray(5000, 'X');
    }
    void written() {
        QFETCH(QByteArray, buffer);
        QFETCH(QByteArray, before);

        FakeLink f;
        prepare(f);
        const QString path = m_dir.filePath("prog.tap");
        QFile::remove(path);
        if (!before.isEmpty()) {
            QFile old(path);
            QVERIFY(old.open(QIODevice::WriteOnly));
            old.write(before);
        }
        f.screen.saveAnswers.push_back(path);
        SaveFile(f.link, buffer);

        QCOMPARE(contents(path), buffer + "\r\n");
        QCOMPARE(cncDir(f), m_dir.path());
        QVERIFY(f.screen.boxes.isEmpty());
        QCOMPARE(f.screen.saveRequests.size(), 1);
        const FileDialogRequest &r = f.screen.saveRequests[0];
        QCOMPARE(r.filter, CmDialog::qtFilter("Tape file *.tap|*.tap|All files *.*|*.*"));
        QCOMPARE(r.defaultExt, QStringLiteral("tap"));
    }

    void cancelWritesNothing() {
        FakeLink f;
        prepare(f);
        PutProfile(f.g, "Mill", "CNCDir", m_dir.path());
        const QStringList before = QDir(m_dir.path()).entryList(QDir::Files);
        f.dialog.FileName = m_dir.filePath("last.tap"); // the dialog's last use
        SaveFile(f.link, "N1\r\n");

        QCOMPARE(f.screen.saveRequests.size(), 1);
        QCOMPARE(f.screen.saveRequests[0].initDir, m_dir.path());
        QCOMPARE(f.screen.saveRequests[0].fileName, m_dir.filePath("last.tap"));
        QCOMPARE(QDir(m_dir.path()).entryList(QDir::Files), before);
        QCOMPARE(cncDir(f), m_dir.path());
    }

    // Without CNCDir the dialog starts where its last use (e.g. a send) left it; the folder
    // saved to is where the next save starts.
    void folderRemembered() {
        FakeLink f;
        prepare(f);
        f.dialog.InitDir = QStringLiteral("/where/the/send/was");
        QDir(m_dir.path()).mkpath("sub");
        f.screen.saveAnswers.push_back(m_dir.filePath("sub/a.tap"));
        SaveFile(f.link, "N1\r\n");
        SaveFile(f.link, "N1\r\n");
        QCOMPARE(f.screen.saveRequests[0].initDir, QStringLiteral("/where/the/send/was"));
        QCOMPARE(f.screen.saveRequests[1].initDir, m_dir.filePath("sub"));
    }

    // A file directly in the root: the folder stored is "/" itself. "/proc" cannot be written
    // as a file even by root, so this also shows CNCDir stored before the file is touched.
    void rootFolder() {
        FakeLink f;
        prepare(f);
        f.screen.saveAnswers.push_back(QStringLiteral("/proc"));
        SaveFile(f.link, "N1\r\n");
        QCOMPARE(cncDir(f), QStringLiteral("/"));
        SaveFile(f.link, "N1\r\n");
        QCOMPARE(f.screen.saveRequests[1].initDir, QStringLiteral("/"));
    }

    void unwritablePathReported() {
        FakeLink f;
        prepare(f);
        const QString path = m_dir.filePath("no-such-folder/prog.tap");
        f.screen.saveAnswers.push_back(path);
        SaveFile(f.link, "N1\r\n");

        QCOMPARE(f.screen.boxes.size(), 1);
        QCOMPARE(f.screen.boxes[0].icon, BoxIcon::Critical);
        const QString text = f.screen.boxes[0].text;
        QVERIFY2(text.startsWith(path + ": ") && text.size() > path.size() + 2, qPrintable(text));
        QVERIFY(!QFile::exists(path));
        QCOMPARE(cncDir(f), m_dir.filePath("no-such-folder"));
    }
};

QTEST_GUILESS_MAIN(TestSaveFile)
#include "tst_save_file.moc"
