#include "chunk_script.h"
#include "transfer.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using Chunks = QList<QByteArray>;

namespace {
const QByteArray Prompt("\x10\x37");

// Notes whether the port was still open when the save dialog came up.
class SaveWatchScreen : public RecordingScreen {
public:
    const FakeComm *comm = nullptr;
    bool portOpenAtSave = false;
    QString showSave(const FileDialogRequest &r) override {
        portOpenAtSave = comm->open;
        return RecordingScreen::showSave(r);
    }
};
} // namespace

class TestReceiveFile : public QObject {
    Q_OBJECT

    static void prepare(FakeLink &f, int cncType) {
        f.g.ComSettings = QStringLiteral("COM1:9600,E,7,2");
        f.g.CncType = qint16(cncType);
        f.g.TimedOut = true; // left by an earlier wait that ran out
    }

private slots:
    // The reception's rule: a chunk with an EOT anywhere ends it, before any CR is looked at.
    void chunks_data() {
        QTest::addColumn<Chunks>("chunks");
        QTest::addColumn<QByteArray>("program");
        QTest::addColumn<int>("prompts");
        QTest::addColumn<bool>("endedByEot");
        QTest::addColumn<QStringList>("counter");

        QTest::newRow("last line and EOT in one chunk: line lost")
            << Chunks{"N1\r", "N2\r\x04"} << QByteArray("N1\r\n") << 1 << true
            << QStringList{"0", "4"};
        QTest::newRow("EOT first: nothing, no dialog")
            << Chunks{"\x04", "A\r"} << QByteArray() << 0 << true << QStringList{"0"};
        QTest::newRow("line of 9 counts 11 with its CR and LF")
            << Chunks{"123456789\r", "\x04"} << QByteArray("123456789\r\n") << 1 << true
            << QStringList{"0", "11"};
        QTest::newRow("line in two chunks, counter after each")
            << Chunks{"PROG", "1\r", "\x04"} << QByteArray("PROG1\r\n") << 1 << true
            << QStringList{"0", "4", "7"};
        QTest::newRow("CR LF in one chunk: LF dropped")
            << Chunks{"A\r\n", "B\r\n", "\x04"} << QByteArray("A\r\nB\r\n") << 2 << true
            << QStringList{"0", "3", "6"};
        QTest::newRow("CR LF split: LF goes ahead of the next line")
            << Chunks{"A\r", "\nB\r", "\x04"} << QByteArray("A\r\n\nB\r\n") << 2 << true
            << QStringList{"0", "3", "7"};
        QTest::newRow("two lines in one chunk: second lost")
            << Chunks{"A\rB\r", "\x04"} << QByteArray("A\r\n") << 1 << true
            << QStringList{"0", "3"};
        QTest::newRow("time-out in the middle of a line keeps it")
            << Chunks{"A\r", "BC"} << QByteArray("A\r\nBC") << 1 << false
            << QStringList{"0", "3", "5"};
        QTest::newRow("answer with no CR")
            << Chunks{"ABC"} << QByteArray("ABC") << 0 << false << QStringList{"0", "3"};
        QTest::newRow("no answer") << Chunks{} << QByteArray() << 0 << false << QStringList{"0"};
        QTest::newRow("chunk arriving with the tick still counts")
            << Chunks{"", "A\r" + Tick} << QByteArray("A\r\n") << 1 << false
            << QStringList{"0", "3"};
        QTest::newRow("silence counts from the last chunk")
            << Chunks{"", "A\r", Tick, "\x04"} << QByteArray("A\r\n") << 1 << true
            << QStringList{"0", "3"};
    }
    void chunks() {
        QFETCH(Chunks, chunks);
        QFETCH(QByteArray, program);
        QFETCH(int, prompts);
        QFETCH(bool, endedByEot);
        QFETCH(QStringList, counter);

        FakeLink f;
        prepare(f, 1);
        deliverChunks(f, chunks);
        ReceiveFile(f.link);

        QCOMPARE(f.comm.writes.first(), QByteArray("PC\r\x10\x37"));
        QCOMPARE(f.comm.writes.size(), 1 + prompts);
        QCOMPARE(promptsWritten(f), prompts);
        QCOMPARE(f.g.TimedOut, !endedByEot);
        if (endedByEot)
            QCOMPARE(f.yield.idlePasses, 0);
        QCOMPARE(f.screen.captions, counter);
        QCOMPARE(f.screen.text1, QString::fromLatin1(program));
        QCOMPARE(f.screen.text1Visible, !program.isEmpty());
        QCOMPARE(f.screen.saveRequests.size(), program.isEmpty() ? 0 : 1);
        QCOMPARE(f.comm.opens, 1);
        QVERIFY(!f.comm.open);
        QVERIFY(!f.timer.on);
        QVERIFY(!f.screen.label1Visible);
        QCOMPARE(f.screen.pointers, (QList<int>{11, 0}));
    }

    // Every byte but CR and EOT passes from the port to the file unchanged, and the port is
    // closed before the dialog opens.
    void programSavedAsBytes() {
        QTemporaryDir dir;
        QByteArray line;
        for (int b = 1; b < 256; ++b)
            if (b != '\r' && b != 4)
                line += char(b);
        line += '\0';

        FakeLink f;
        SaveWatchScreen screen;
        screen.comm = &f.comm;
        Link link{f.g, f.comm, f.timer, f.yield, screen, f.dialog};
        prepare(f, 1);
        f.g.IniPath = dir.filePath("dnc.ini");
        screen.saveAnswers.push_back(dir.filePath("got.tap"));
        answerCommands(f, {{"PC\r", {line + "\r", "N2\r"}}});
        f.yield.idle = [&] { f.timer.fire(); };
        ReceiveFile(link);

        const QByteArray program = line + "\r\n" + "N2\r\n";
        QVERIFY(!screen.portOpenAtSave);
        QCOMPARE(screen.text1, QString::fromLatin1(program));
        QFile saved(dir.filePath("got.tap"));
        QVERIFY(saved.open(QIODevice::ReadOnly));
        QCOMPARE(saved.readAll(), program + "\r\n");
        QVERIFY(!f.g.TimedOut);
    }

    // On the 504 the operator chooses the program from the control's list first.
    void requestByChosenName() {
        FakeLink f;
        prepare(f, 2);
        answerCommands(f, {{"MC,/ISO", {"A 1\r", "\xE9\r"}}, {"PC,/ISO/", {"N1\r"}}});
        pickWhenShown(f, 1);
        ReceiveFile(f.link);

        const QByteArray expected =
            QByteArray("MC,/ISO\r\x10\x37") + Prompt + Prompt + "PC,/ISO/\xE9\r\x10\x37" + Prompt;
        QCOMPARE(f.comm.written(), expected);
        QCOMPARE(f.screen.text1, QStringLiteral("N1\r\n"));
        QCOMPARE(f.screen.captions, (QStringList{"0", "4"}));
        QVERIFY(!f.screen.list1Visible);
        QCOMPARE(f.comm.opens, 1);
        QVERIFY(!f.comm.open);
        QCOMPARE(f.screen.pointer, 0);
    }

    void nothingRequested_data() {
        QTest::addColumn<int>("cncType");
        QTest::addColumn<QByteArray>("written");
        QTest::addColumn<bool>("closing");
        QTest::newRow("504, no answer to the list")
            << 2 << QByteArray("MC,/ISO\r\x10\x37") << false;
        QTest::newRow("504, window closed during the choice")
            << 2 << QByteArray("MC,/ISO\r\x10\x37\x10\x37") << true;
        QTest::newRow("XonXoff: port opened and closed") << 3 << QByteArray() << false;
    }
    void nothingRequested() {
        QFETCH(int, cncType);
        QFETCH(QByteArray, written);
        QFETCH(bool, closing);

        FakeLink f;
        prepare(f, cncType);
        if (closing) {
            answerCommands(f, {{"MC,/ISO", {"P1\r"}}});
            f.yield.idle = [&] {
                if (f.screen.list1Visible)
                    f.g.Closing = true;
                f.timer.fire();
            };
        } else {
            f.yield.idle = [&] { f.timer.fire(); };
        }
        ReceiveFile(f.link);

        QCOMPARE(f.comm.written(), written);
        QCOMPARE(f.comm.opens, 1);
        QVERIFY(!f.comm.open);
        QVERIFY(f.screen.saveRequests.isEmpty());
        QVERIFY(!f.screen.label1Visible);
        QCOMPARE(f.screen.pointer, 0);
    }

    // Closing the window while a program comes ends the wait with the port closed; what had
    // come is still offered for saving, so that nothing is lost.
    void windowClosedDuringReception() {
        FakeLink f;
        prepare(f, 1);
        deliverChunks(f, {"N1\r"});
        f.yield.then([&] { f.g.Closing = true; });
        ReceiveFile(f.link);
        QVERIFY(!f.comm.open);
        QCOMPARE(f.screen.saveRequests.size(), 1);
        QCOMPARE(f.screen.text1, QStringLiteral("N1\r\n"));
        QVERIFY(!f.screen.label1Visible);
        QCOMPARE(f.yield.idlePasses, 0);
    }
};

QTEST_GUILESS_MAIN(TestReceiveFile)
#include "tst_receive_file.moc"
