// CC and CE by control type, and the choice of a program from the window's own list, over the
// scripted port. The listing's rules: fuzz/fuzz_reply_loops.
#include "chunk_script.h"
#include "directory.h"
#include "rows.h"
#include "window_guard.h"
#include "window_screen.h"

#include <QtWidgets>

using Chunks = QList<QByteArray>;

class TstDirectoryCommands : public QObject {
    Q_OBJECT
private slots:
    void changeCommands_data() {
        QTest::addColumn<qint16>("type");
        QTest::addColumn<bool>("execute"); // CE; else CC
        QTest::addColumn<B>("wire");       // empty: the port is not opened
        // CC and CE on a 303, byte for byte: tst_directory_faults.
        row("CC before any type is read", qint16(CncNone), false, B("CC"));
        row("CE on a 504", qint16(Cnc504), true, B());
        row("CC on an XonXoff", qint16(CncXonXoff), false, B());
    }
    void changeCommands() {
        QFETCH(qint16, type);
        QFETCH(bool, execute);
        QFETCH(B, wire);
        FakeLink f;
        f.g.ComSettings = QStringLiteral("COM1:9600,E,7,2");
        f.g.CncType = type;
        execute ? ChangeExecute(f.link) : ChangeContext(f.link);
        QCOMPARE(f.comm.written(), wire);
        QCOMPARE(f.comm.opens, wire.isEmpty() ? 0 : 1);
        QCOMPARE(leftOver(f), QString());
    }

    // DeleteContext drives the choice, so the line shows what was chosen.
    void choice_data() {
        QTest::addColumn<Chunks>("listing");
        // One at each pass of the wait for the choice: f focus, s Space, d Down.
        QTest::addColumn<B>("actions");
        QTest::addColumn<B>("name"); // empty: no delete command
        const Chunks three{"P1\r", "P2\r", "P 3\r", "\x04"};
        row("space on the entry under the focus, which alone is none", three, B("fs"), B("P1"));
        row("down key", three, B("fd"), B("P2"));
        row("empty entry chosen", Chunks{"\r", "P2\r", "\x04"}, B("fs"), B());
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
        f.g.ComSettings = QStringLiteral("COM2:9600,E,7,2");
        f.g.CncType = Cnc504;
        WindowScreen screen(&window, new QLabel(&window), new QPlainTextEdit(&window), list);
        WindowGuard guard; // checked before the screen goes
        Link link{f.g, f.comm, f.timer, f.yield, screen, f.dialog, f.state};
        deliverChunks(f, listing);
        const QHash<char, std::function<void()>> act{
            {'f', [&] { list->setFocus(); }},
            {'s', [&] { QTest::keyClick(list, Qt::Key_Space); }},
            {'d', [&] { QTest::keyClick(list, Qt::Key_Down); }},
        };
        for (const char a : actions)
            f.yield.then([&, a] { act[a](); });
        f.yield.limit = 100; // a wait that never ends fails instead of hanging
        DeleteContext(link);

        const B listed = "MC,/ISO\r" + Go.repeated(listing.size());
        QCOMPARE(f.comm.written(),
                 name.isEmpty() ? listed : listed + "DC,/ISO/" + name + "\r" + Go);
        QVERIFY(f.yield.steps.empty()); // the choice came with the last action, not before
        QCOMPARE(list->count(), listing.size() - 1);
        QVERIFY(!list->isVisible() && !f.comm.open);
    }
};

QTEST_MAIN(TstDirectoryCommands)
#include "tst_directory_commands.moc"
