// The main window's controls at their form positions (twips).

#include "dnc_window.h"
#include "form_geometry.h"

#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>

namespace {
struct Place {
    int left, top, width, height;
};
constexpr Place Command1Places[CommandCount] = {
    {0, 0, 1335, 375},   {1320, 0, 1335, 375},   {2640, 0, 1335, 375},   {3960, 0, 1335, 375},
    {0, 360, 1335, 375}, {1320, 360, 1335, 375}, {2640, 360, 1335, 375}, {3960, 360, 1335, 375}};
constexpr Place Command2Place{5280, 0, 1335, 735};
constexpr Place Text1Place{120, 960, 6375, 2895};
constexpr Place List1Place{120, 960, 6375, 2790};
constexpr Place Label1Place{120, 2400, 6375, 375};
constexpr int ClientWidth = 6615;
constexpr int ClientHeight = 4365;
} // namespace

void DncWindow::createControls() {
    const qreal dpi = logicalDpiX();
    auto px = [dpi](int twips) { return twipsToPixels(twips, dpi); };
    auto place = [&](QWidget *w, const Place &p) {
        w->setGeometry(px(p.left), px(p.top), px(p.width), px(p.height));
    };

    setObjectName(QStringLiteral("dnc"));
    // Fixed single border, no maximise button.
    setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                   Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint |
                   Qt::WindowCloseButtonHint);
    setFixedSize(px(ClientWidth), px(ClientHeight));

    // Created bottom first, so that the stacking is DBGrid1 over List1 over Text1.
    Text1 = new QPlainTextEdit(this);
    Text1->setObjectName(QStringLiteral("Text1"));
    Text1->setLineWrapMode(QPlainTextEdit::NoWrap);
    Text1->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    Text1->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    Text1->setReadOnly(true);
    place(Text1, Text1Place);
    Text1->hide();

    List1 = new QListWidget(this);
    List1->setObjectName(QStringLiteral("List1"));
    List1->setSelectionMode(QAbstractItemView::SingleSelection);
    place(List1, List1Place);
    List1->hide();

    Label1 = new QLabel(this);
    Label1->setObjectName(QStringLiteral("Label1"));
    Label1->setAutoFillBackground(true);
    QPalette pal = Label1->palette();
    // Black on green: the running text stands out from whatever lies beneath it.
    pal.setColor(QPalette::Window, QColor(0, 255, 0));
    pal.setColor(QPalette::WindowText, Qt::black);
    Label1->setPalette(pal);
    place(Label1, Label1Place);
    Label1->hide();

    for (int i = 0; i < CommandCount; ++i) {
        Command1[i] = new QPushButton(this);
        Command1[i]->setObjectName(QStringLiteral("Command1_%1").arg(i));
        place(Command1[i], Command1Places[i]);
        Command1[i]->setEnabled(i == HelpCommand);
        connect(Command1[i], &QPushButton::clicked, this, [this, i] { Command1_Click(i); });
    }
    Command2 = new QPushButton(this);
    Command2->setObjectName(QStringLiteral("Command2"));
    place(Command2, Command2Place);
    connect(Command2, &QPushButton::clicked, this, &DncWindow::Command2_Click);

    // The running text shows over whatever lies in the area beneath it.
    Label1->raise();

    // TabIndex order: Command2, Command1(0..3), Text1, List1, Command1(4..7), DBGrid1.
    QWidget *order[] = {Command2, Command1[0], Command1[1], Command1[2], Command1[3], Text1,
                        List1,    Command1[4], Command1[5], Command1[6], Command1[7]};
    for (size_t i = 0; i + 1 < std::size(order); ++i)
        setTabOrder(order[i], order[i + 1]);
}

void DncWindow::fitButtonCaptions() {
    QList<QWidget *> buttons{Command2};
    for (QPushButton *b : Command1)
        buttons << b;
    fitCaptions(buttons);
}
