// The Send command: how the file is chosen, and what is remembered of the choice.
#include "fake_link.h"
#include "profile.h"
#include "transfer.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace {
struct AskingScreen : RecordingScreen {
    QStringList asked; // title | default of every input box
    QString inputBox(const QString &prompt, const QString &title, const QString &def) override {
        asked << title + "|" + def;
        return RecordingScreen::inputBox(prompt, title, def);
    }
};

// Sees which file SendData got, and what TapeDir held at that moment.
struct Spy : ToolListHook {
    Globals *g = nullptr;
    QStringList sent;
    QString tapeDirThen;
    void UpdateToolList(const QString &file) override {
        sent << file;
        tapeDirThen = GetProfile(*g, g->ConfigSection, QStringLiteral("TapeDir"));
    }
};
} // namespace

class TestSendFile : public QObject {
    Q_OBJECT
private slots:
    void choose_data();
    void choose();
};

void TestSendFile::choose_data() {
    QTest::addColumn<qint16>("type");
    QTest::addColumn<bool>("simple");
    QTest::addColumn<QStringList>("answers"); // input box; "<cancel>" gives nothing
    QTest::addColumn<QString>("dialogGives"); // relative to the folder, "/..." as it is
    QTest::addColumn<QString>("dialogShows"); // name field, "-" when no dialog opens
    QTest::addColumn<QString>("sent");

    const QStringList none;
    QTest::newRow("PART exists") << qint16(1) << true << QStringList{"PART"} << ""
                                 << "-"
                                 << "PART.tap";
    QTest::newRow("PA: no PA.tap") << qint16(2) << true << QStringList{"PA"} << "PART.tap"
                                   << "PA*.tap"
                                   << "PART.tap";
    QTest::newRow("PART.NC exists") << qint16(1) << true << QStringList{"PART.NC"} << ""
                                    << "-"
                                    << "PART.NC";
    QTest::newRow("PART.NX missing") << qint16(1) << true << QStringList{"PART.NX"} << ""
                                     << "*.tap"
                                     << "";
    QTest::newRow("* unchanged") << qint16(1) << true << none << ""
                                 << "**.tap"
                                 << "";
    QTest::newRow("Cancel in the input box")
        << qint16(1) << true << QStringList{"<cancel>"} << "EMPTY.tap"
        << "*.tap"
        << "EMPTY.tap";
    QTest::newRow("no -b") << qint16(1) << false << none << "PART.tap"
                           << ""
                           << "PART.tap";
    QTest::newRow("type 3 ignores -b") << qint16(3) << true << none << "CUT.LCC"
                                       << ""
                                       << "CUT.LCC";
    QTest::newRow("Cancel in the dialog") << qint16(2) << false << none << ""
                                          << ""
                                          << "";
    QTest::newRow("root folder") << qint16(1) << false << none << "/dnc-none.tap"
                                 << ""
                                 << "/dnc-none.tap";
}

void TestSendFile::choose() {
    QFETCH(qint16, type);
    QFETCH(bool, simple);
    QFETCH(QStringList, answers);
    QFETCH(QString, dialogGives);
    QFETCH(QString, dialogShows);
    QFETCH(QString, sent);

    QTemporaryDir dir;
    const QString folder = dir.filePath(QStringLiteral("nc"));
    QVERIFY(QDir().mkpath(folder));
    for (const char *name : {"PART.tap", "PART.NC", "EMPTY.tap", "CUT.LCC"})
        QVERIFY(QFile(folder + "/" + name).open(QIODevice::WriteOnly)); // length 0

    FakeLink f;
    AskingScreen screen;
    Link link{f.g, f.comm, f.timer, f.yield, screen, f.dialog};
    Spy spy;
    spy.g = &f.g;
    link.toolList = &spy;
    f.g.ToolDbEnabled = true;
    f.g.IniPath = dir.filePath(QStringLiteral("dnc.ini"));
    f.g.ComSettings = QStringLiteral("COM1:9600,E,7,1");
    f.g.CncType = type;
    f.g.SimpleFileDialog = simple;
    PutProfile(f.g, f.g.ConfigSection, QStringLiteral("TapeDir"), folder);
    for (const QString &a : answers)
        screen.inputAnswers.push_back(a == "<cancel>" ? QString() : a);
    if (!dialogGives.isEmpty())
        screen.openAnswers.push_back(dialogGives.startsWith('/') ? dialogGives
                                                                 : folder + "/" + dialogGives);

    SendFile(link);

    const bool quick = simple && type != 3;
    QCOMPARE(screen.asked, quick ? QStringList{"Select file to send|*"} : QStringList());
    if (quick)
        QCOMPARE(screen.inputPrompts, QStringList{"File name filter"});
    QCOMPARE(screen.openRequests.size(), dialogShows == "-" ? 0 : 1);
    if (!screen.openRequests.isEmpty()) {
        const FileDialogRequest &r = screen.openRequests[0];
        QCOMPARE(r.fileName, dialogShows);
        QCOMPARE(r.initDir, folder);
        QCOMPARE(r.defaultExt, type == 3 ? "lcc" : "tap");
        QCOMPARE(r.filter, type == 3 ? "Bystronic file *.LCC (*.LCC);;All files *.* (*.*)"
                                     : "Tape file *.tap (*.tap);;All files *.* (*.*)");
    }
    const QString path = sent.startsWith('/') ? sent : folder + "/" + sent;
    QCOMPARE(spy.sent, sent.isEmpty() ? QStringList() : QStringList{path});
    if (!sent.isEmpty())
        QCOMPARE(spy.tapeDirThen, sent.startsWith('/') ? "/" : folder);
    // A file of length 0 puts nothing on the wire and leaves the port alone.
    QCOMPARE(f.comm.opens, 0);
    // Only a missing file is told of.
    QCOMPARE(screen.boxes.size(), sent.startsWith('/') ? 1 : 0);
}

QTEST_GUILESS_MAIN(TestSendFile)
#include "tst_send_file.moc"
