// The commands on the control's programs over the scripted port and clock: the listing chunk
// by chunk, the choice from the window's own list, and the commands a control does not have.
#include "chunk_script.h"
#include "directory.h"
#include "rows.h"
#include "window_guard.h"
#include "window_screen.h"

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
const Chunks Three{"P1\r", "P2\r", "P 3\r", "\x04"};
} // namespace

class TstDirectoryCommands : public QObject {
    Q_OBJECT
private slots:
    // An EOT counts only in a chunk without CR. Shown: Text1 on a 303, List1 on a 504.
    void map_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<Chunks>("chunks");
        QTest::addColumn<int>("prompts");
        QTest::addColumn<bool>("eot"); // ended by an EOT, not by the clock
        QTest::addColumn<QString>("shown");
        row("EOT behind a CR lost, wait goes on", 1, Chunks{"A\r\x04", "B\r"}, 2, false,
            "A\r\nB\r\n");
        row("line in two chunks, one go-ahead", 1, Chunks{"PR", "1\r", "\x04"}, 1, true, "PR1\r\n");
        row("CR LF split: LF ahead of the next line", 1, Chunks{"A\r", "\nB\r", "\x04"}, 2, true,
            "A\r\n\nB\r\n");
        row("EOT first: nothing shown at once", 1, Chunks{"\x04", "A\r"}, 0, true, "hidden ");
        row("303 time-out mid line shows it", 1, Chunks{"A\r", "BC"}, 1, false, "A\r\nBC");
        row("empty and spaced entries", 2, Chunks{"P1\r", "\r", " P 3 \r", "\x04"}, 3, true,
            "P1|| P 3 ");
        row("504 time-out mid line: whole lines", 2, Chunks{"P1\r", "P2"}, 1, false, "P1");
        row("answer without CR: empty list shown", 2, Chunks{"ABC"}, 0, false, "");
        row("Latin-1 entry", 2, Chunks{"\xC4\xE9\xFF\r", "\x04"}, 1, true, "\u00C4\u00E9\u00FF");
        row("504 EOT first: earlier list hidden", 2, Chunks{"\x04"}, 0, true, "hidden OLD");
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
        QCOMPARE(f.comm.written(), command + Go.repeated(prompts + 1));
        QCOMPARE(f.comm.opens, 1);
        QCOMPARE(leftOver(f), QString());
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
        QTest::addColumn<B>("actions");
        QTest::addColumn<B>("name"); // empty: no delete command
        row("space on the entry under the focus, which alone is none", Three, B("fs"), B("P1"));
        row("end key", Three, B("fe"), B("P 3"));
        row("down key", Three, B("fd"), B("P2"));
        row("empty entry chosen", Chunks{"\r", "P2\r", "\x04"}, B("fs"), B());
        row("window closed", Three, B("x"), B());
    }
    void choice() {
        QFETCH(Chunks, listing);
        QFETCH(B, actions);
        QFETCH(B, name);
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
        WindowGuard guard; // checked before the screen goes
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

        const B listed = "MC,/ISO\r" + Go.repeated(listing.size());
        QCOMPARE(f.comm.written(),
                 name.isEmpty() ? listed : listed + "DC,/ISO/" + name + "\r" + Go);
        QVERIFY(f.yield.steps.empty()); // the choice came with the last action, not before
        QCOMPARE(list->count(), listing.size() - 1);
        QVERIFY(!list->isVisible() && !f.comm.open && !hourglassWhileChoosing);
    }

    // Commands the control type does not have, or that need no type: the port stays shut and
    // nothing is written, but for the two letters, which go to a control of no known type too.
    void notForThisControl_data() {
        QTest::addColumn<Operation>("operation");
        QTest::addColumn<int>("type");
        QTest::addColumn<B>("written");
        row("map, XonXoff", Operation(MapContext), 3, B());
        row("map, no type read", Operation(MapContext), 0, B());
        row("CC, 504", Operation(ChangeContext), 2, B());
        row("CE, XonXoff", Operation(ChangeExecute), 3, B());
        row("CC, no type read", Operation(ChangeContext), 0, B("CC"));
        row("delete, 303", Operation(DeleteContext), 1, B());
    }
    void notForThisControl() {
        QFETCH(Operation, operation);
        QFETCH(int, type);
        FakeLink f;
        prepare(f, type);
        operation(f.link);
        QTEST(f.comm.written(), "written");
        QCOMPARE(f.comm.opens, f.comm.writes.size());
        QCOMPARE(leftOver(f), QString());
    }
};

QTEST_MAIN(TstDirectoryCommands)
#include "tst_directory_commands.moc"
