// The operator's choice in the window's own list: a selection by keyboard or click counts,
// keyboard focus alone and a selection left from an earlier list do not.
#include "chunk_script.h"
#include "directory.h"
#include "window_screen.h"

#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTest>
#include <QVBoxLayout>

using Action = std::function<void(QListWidget *)>;
Q_DECLARE_METATYPE(Action)

class TestSelectKeyboard : public QObject {
    Q_OBJECT

private slots:
    void choice_data() {
        QTest::addColumn<QList<Action>>("actions"); // one action at each pass of the wait
        QTest::addColumn<QByteArray>("chosen");

        const Action focus = [](QListWidget *l) { l->setFocus(); };
        const Action nothing = [](QListWidget *) {};
        const Action space = [](QListWidget *l) { QTest::keyClick(l, Qt::Key_Space); };
        const Action end = [](QListWidget *l) { QTest::keyClick(l, Qt::Key_End); };
        const Action clickSecond = [](QListWidget *l) {
            QTest::mouseClick(l->viewport(), Qt::LeftButton, {},
                              l->visualItemRect(l->item(1)).center());
        };
        QTest::newRow("space on the entry under the focus")
            << QList<Action>{focus, space} << QByteArray("P1");
        QTest::newRow("end key") << QList<Action>{focus, end} << QByteArray("P 3");
        QTest::newRow("focus alone is no choice, then a click")
            << QList<Action>{focus, nothing, nothing, clickSecond} << QByteArray("P2");
    }
    void choice() {
        QFETCH(QList<Action>, actions);
        QFETCH(QByteArray, chosen);

        QWidget window;
        auto *label = new QLabel(&window);
        auto *text = new QPlainTextEdit(&window);
        auto *list = new QListWidget(&window);
        auto *layout = new QVBoxLayout(&window);
        layout->addWidget(label);
        layout->addWidget(text);
        layout->addWidget(list);
        // An earlier list with its selection still standing.
        list->addItems({"OLD1", "OLD2"});
        list->setCurrentRow(1);
        list->hide();
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));

        FakeLink f;
        WindowScreen screen(&window, label, text, list);
        Link link{f.g, f.comm, f.timer, f.yield, screen, f.dialog};
        f.comm.setPortOpen(true);
        deliverChunks(f, {"P1\r", "P2\r", "P 3\r", "\x04"});
        for (const Action &a : actions)
            f.yield.then([list, a] { a(list); });
        f.yield.limit = 100; // a wait that never ends fails instead of hanging

        QCOMPARE(SelectCNCFile(link), chosen);
        QVERIFY(!list->isVisible());
        QCOMPARE(list->count(), 3);
        QVERIFY(f.yield.steps.empty()); // the choice came with the last action, not before
    }
};

QTEST_MAIN(TestSelectKeyboard)
#include "tst_select_keyboard.moc"
