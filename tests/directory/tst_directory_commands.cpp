// The commands on the control's programs over the scripted port and clock: the listing chunk
// by chunk, the choice from the window's own list, and the end state of a port failure.
#include "chunk_script.h"
#include "directory.h"
#include "transfer.h"
#include "window_screen.h"

#include <QTest>
#include <QtWidgets>

using Chunks = QList<QByteArray>;
using Operation = std::function<void(Link &)>;
Q_DECLARE_METATYPE(Operation)

namespace {
void prepare(FakeLink &f, int cncType) {
    f.g.ComSettings = QStringLiteral("COM2:9600,E,7,2");
    f.g.CncType = qint16(cncType);
    f.g.TimedOut = true; // left by an earlier wait that ran out
    f.screen.list1 = QStringList{"OLD"};
    f.screen.text1Visible = cncType == 2;
}
void mapRow(const char *name, int type, const Chunks &chunks, int prompts, bool eot,
            const char *shown) {
    QTest::newRow(name) << type << chunks << prompts << eot << QString(shown);
}
void choiceRow(const char *name, const Chunks &listing, const char *actions, const char *chosen) {
    QTest::newRow(name) << listing << QByteArray(actions) << QByteArray(chosen);
}
const Chunks Three{"P1\r", "P2\r", "P 3\r", "\x04"};
} // namespace

class TestDirectoryCommands : public QObject {
    Q_OBJECT
private slots:
    // An EOT counts only in a chunk without CR. Shown: Text1 on a 303, List1 on a 504.
    void map_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<Chunks>("chunks");
        QTest::addColumn<int>("prompts");
        QTest::addColumn<bool>("eot"); // ended by an EOT, not by the clock
        QTest::addColumn<QString>("shown");
        mapRow("EOT behind a CR lost, wait goes on", 1, {"A\r\x04", "B\r"}, 2, 0, "A\r\nB\r\n");
        mapRow("line in two chunks, one go-ahead", 1, {"PR", "1\r", "\x04"}, 1, 1, "PR1\r\n");
        mapRow("CR LF split: LF ahead of the next line", 1, {"A\r", "\nB\r", "\x04"}, 2, 1,
               "A\r\n\nB\r\n");
        mapRow("EOT first: nothing shown at once", 1, {"\x04", "A\r"}, 0, 1, "hidden ");
        mapRow("303 time-out mid line shows it", 1, {"A\r", "BC"}, 1, 0, "A\r\nBC");
        mapRow("empty and spaced entries", 2, {"P1\r", "\r", " P 3 \r", "\x04"}, 3, 1, "P1|| P 3 ");
        mapRow("504 time-out mid line: whole lines", 2, {"P1\r", "P2"}, 1, 0, "P1");
        mapRow("answer without CR: empty list shown", 2, {"ABC"}, 0, 0, "");
        mapRow("Latin-1 entry", 2, {"\xC4\xE9\xFF\r", "\x04"}, 1, 1, "\u00C4\u00E9\u00FF");
        mapRow("504 EOT first: earlier list hidden", 2, {"\x04"}, 0, 1, "hidden OLD");
    }
    void map() {
        QFETCH(int, type);
        QFETCH(Chunks, chunks);
        QFETCH(int, prompts);
        QFETCH(bool, eot);
        FakeLink f;
        prepare(f, type);
        deliverChunks(f, chunks);
        MapContext(f.link);

        const QByteArray command = type == 1 ? "MC\r" : "MC,/ISO\r";
        QCOMPARE(f.comm.written(), command + PromptSeq.repeated(prompts + 1));
        QVERIFY(f.comm.opens == 1 && !f.comm.open && !f.timer.on);
        QCOMPARE(f.screen.pointers, (QList<int>{11, 0}));
        QCOMPARE(f.g.TimedOut, !eot);
        QCOMPARE(f.yield.idlePasses > 0, !eot);
        const RecordingScreen &s = f.screen;
        QTEST(QString((type == 1 ? s.text1Visible : s.list1Visible) ? "" : "hidden ") +
                  (type == 1 ? s.text1 : s.list1.join(u'|')),
              "shown");
        QVERIFY(!(s.text1Visible && s.list1Visible));
    }

    // DeleteContext drives the choice, so the line shows what was chosen.
    void choice_data() {
        QTest::addColumn<Chunks>("listing");
        // One at each pass of the wait for the choice: f focus, s Space, e End, d Down, x the
        // window closed.
        QTest::addColumn<QByteArray>("actions");
        QTest::addColumn<QByteArray>("name"); // empty: no delete command
        choiceRow("space on the entry under the focus, which alone is none", Three, "fs", "P1");
        choiceRow("end key", Three, "fe", "P 3");
        choiceRow("down key", Three, "fd", "P2");
        choiceRow("one entry", {"ONLY\r", "\x04"}, "fs", "ONLY");
        choiceRow("empty entry chosen", {"\r", "P2\r", "\x04"}, "fs", "");
        choiceRow("window closed", Three, "x", "");
    }
    void choice() {
        QFETCH(Chunks, listing);
        QFETCH(QByteArray, actions);
        QFETCH(QByteArray, name);
        QWidget window;
        auto *list = new QListWidget(&window);
        list->setGeometry(0, 0, 200, 200);
        list->addItems({"OLD1", "OLD2"}); // an earlier list, its selection still standing
        list->setCurrentRow(1);
        list->hide();
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));

        FakeLink f;
        prepare(f, 2);
        WindowScreen screen(&window, new QLabel(&window), new QPlainTextEdit(&window), list);
        Link link{f.g, f.comm, f.timer, f.yield, screen, f.dialog, f.state};
        deliverChunks(f, listing);
        const QHash<char, std::function<void()>> act{
            {'f', [&] { list->setFocus(); }},
            {'s', [&] { QTest::keyClick(list, Qt::Key_Space); }},
            {'e', [&] { QTest::keyClick(list, Qt::Key_End); }},
            {'d', [&] { QTest::keyClick(list, Qt::Key_Down); }},
            {'x', [&] { f.state.requestEnd(); }},
        };
        bool hourglassWhileChoosing = false;
        for (const char a : actions)
            f.yield.then([&, a] {
                hourglassWhileChoosing |= QApplication::overrideCursor() != nullptr;
                act[a]();
            });
        f.yield.limit = 100; // a wait that never ends fails instead of hanging
        DeleteContext(link);

        const QByteArray listed = "MC,/ISO\r" + PromptSeq.repeated(listing.size());
        QCOMPARE(f.comm.written(),
                 name.isEmpty() ? listed : listed + "DC,/ISO/" + name + "\r\x10\x37");
        QVERIFY(f.yield.steps.empty()); // the choice came with the last action, not before
        QCOMPARE(list->count(), listing.size() - 1);
        QVERIFY(!list->isVisible() && !f.comm.open && !hourglassWhileChoosing);
        QCOMPARE(QApplication::overrideCursor(), nullptr);
    }

    // A port that cannot be opened ends each command with the end state and a message; what
    // a failure in a wait leaves is the same, and is shown with the transmission.
    void portFailure_data() {
        QTest::addColumn<Operation>("operation");
        QTest::addColumn<int>("type");
        QTest::newRow("map") << Operation(MapContext) << 2;
        QTest::newRow("receive") << Operation(ReceiveFile) << 1;
        QTest::newRow("delete") << Operation(DeleteContext) << 2;
        QTest::newRow("CC") << Operation(ChangeContext) << 1;
        QTest::newRow("CE") << Operation(ChangeExecute) << 1;
    }
    void portFailure() {
        QFETCH(Operation, operation);
        QFETCH(int, type);
        FakeLink f;
        prepare(f, type);
        f.comm.openError = CommError{"COM2: (/dev/ttyS1)", "No such file or directory"};
        operation(f.link);
        QVERIFY(!f.comm.open && !f.timer.on && !f.screen.label1Visible && f.screen.pointer == 0);
        QCOMPARE(f.screen.boxes.size(), 1);
        QVERIFY(f.screen.boxes[0].text.contains("No such file") && f.screen.saveRequests.isEmpty());
    }
};

QTEST_MAIN(TestDirectoryCommands)
#include "tst_directory_commands.moc"
