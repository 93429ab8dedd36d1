#include "setup_dialog.h"

#include "twips.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>

namespace {

// Tops of the seven rows of list and label, in twips.
constexpr int RowTop[7] = {120, 600, 1080, 1560, 2040, 2520, 3000};

// The boxes are sized for the fonts of their day: when a caption does not fit its box in
// today's font, the whole form takes a smaller one rather than cut the text.
void fitCaptions(QWidget *form, const QList<QWidget *> &captions) {
    auto fits = [&] {
        for (const QWidget *w : captions)
            if (w->sizeHint().width() > w->width())
                return false;
        return true;
    };
    QFont f = form->font();
    while (!fits() && f.pointSizeF() > 6.0) {
        f.setPointSizeF(f.pointSizeF() - 0.5);
        form->setFont(f);
    }
}

} // namespace

SetupDialog::SetupDialog(const Globals &g, QWidget *parent)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                          Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint),
      m_g(g) {
    const qreal dpiX = logicalDpiX();
    const qreal dpiY = logicalDpiY();
    auto place = [&](QWidget *w, int left, int top, int width, int height) {
        w->setGeometry(twipsToPixels(left, dpiX), twipsToPixels(top, dpiY),
                       twipsToPixels(width, dpiX), twipsToPixels(height, dpiY));
    };
    setFixedSize(twipsToPixels(3900, dpiX), twipsToPixels(5055, dpiY));

    const SetupForm form = LoadSetup(g);

    setWindowTitle(g.Text(10));
    Command1 = new QPushButton(g.Text(5), this);
    place(Command1, 2520, 4560, 1095, 375);

    for (int i = 0; i < 7; ++i) {
        Combo[i] = new QComboBox(this); // not editable: only an entry can be picked
        Combo[i]->addItems(form.entries[i]);
        Combo[i]->setCurrentIndex(form.selected[i]);
        place(Combo[i], 2160, RowTop[i], 1455, 300);

        Label[i] = new QLabel(g.Text(11 + i), this);
        place(Label[i], 120, RowTop[i], 1935, 255);
    }

    Check1 = new QCheckBox(g.Text(18), this);
    Check1->setChecked(form.check1 != 0);
    place(Check1, 600, 3480, 3015, 375);
    Check2 = new QCheckBox(g.Text(19), this);
    Check2->setChecked(form.check2 != 0);
    place(Check2, 600, 3960, 3015, 375);
    QList<QWidget *> captions = {Check1, Check2};
    for (QLabel *l : Label)
        captions << l;
    fitCaptions(this, captions);

    // The form's tab order; the labels take no focus, so only the controls that do are chained.
    QWidget *const order[] = {Command1, Combo[0], Combo[1], Combo[2], Combo[3],
                              Combo[4], Combo[5], Combo[6], Check1,   Check2};
    for (size_t i = 1; i < std::size(order); ++i)
        setTabOrder(order[i - 1], order[i]);
    Command1->setFocus();

    connect(Command1, &QPushButton::clicked, this, &SetupDialog::Command1_Click);
}

void SetupDialog::Command1_Click() {
    SetupForm form;
    for (int i = 0; i < 7; ++i) {
        for (int k = 0; k < Combo[i]->count(); ++k)
            form.entries[i] << Combo[i]->itemText(k);
        form.selected[i] = Combo[i]->currentIndex();
    }
    form.check1 = Check1->isChecked() ? 1 : 0;
    form.check2 = Check2->isChecked() ? 1 : 0;
    SaveSetup(m_g, form);
    accept();
}
