#include "setup_dialog.h"

#include "form_geometry.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>

namespace {

// Tops of the seven rows of list and label, in twips.
constexpr int RowTop[7] = {120, 600, 1080, 1560, 2040, 2520, 3000};
constexpr int DeviceColumnLeft = 3780;
constexpr int DeviceColumnWidth = 5400;

} // namespace

SetupDialog::SetupDialog(const Globals &g, QWidget *parent, SerialDeviceScan scan)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                          Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint),
      m_g(g), m_scan(std::move(scan)) {
    const qreal dpiX = logicalDpiX();
    const qreal dpiY = logicalDpiY();
    auto place = [&](QWidget *w, int left, int top, int width, int height) {
        w->setGeometry(twipsToPixels(left, dpiX), twipsToPixels(top, dpiY),
                       twipsToPixels(width, dpiX), twipsToPixels(height, dpiY));
    };
    // The form's own 3900 twips, and a column for the device at their right.
    setFixedSize(twipsToPixels(DeviceColumnLeft + DeviceColumnWidth + 120, dpiX),
                 twipsToPixels(5055, dpiY));

    const SetupForm form = loadSetup(g);

    setWindowTitle(g.Text(SetupTitle));
    Command1 = new QPushButton(g.Text(QuitCaption), this);
    place(Command1, 2520, 4560, 1095, 375);

    for (int i = 0; i < 7; ++i) {
        Combo[i] = new QComboBox(this); // not editable: only an entry can be picked
        Combo[i]->addItems(form.entries[i]);
        Combo[i]->setCurrentIndex(form.selected[i]);
        place(Combo[i], 2160, RowTop[i], 1455, 300);

        Label[i] = new QLabel(g.Text(SetupFirstLabel + i), this);
        place(Label[i], 120, RowTop[i], 1935, 255);
    }

    Check1 = new QCheckBox(g.Text(WaitXonCaption), this);
    Check1->setChecked(form.check1 != 0);
    place(Check1, 600, 3480, 3015, 375);
    Check2 = new QCheckBox(g.Text(NoSpaceCaption), this);
    Check2->setChecked(form.check2 != 0);
    place(Check2, 600, 3960, 3015, 375);
    QList<QWidget *> captions = {Check1, Check2};
    for (QLabel *l : Label)
        captions << l;
    fitCaptions(captions);

    m_devices = form.devices;
    createDeviceControls();
    place(DeviceCombo, DeviceColumnLeft, RowTop[0], DeviceColumnWidth, 300);
    place(DeviceInfo, DeviceColumnLeft, RowTop[1], DeviceColumnWidth, RowTop[6] - 120 - RowTop[1]);
    place(DeviceRefresh, DeviceColumnLeft, RowTop[6], 1935, 375);
    fitCaptions({DeviceRefresh});
    DeviceInfo->setFont(Label[0]->font()); // one size for the dialog's texts
    lookForDevices();

    // The form's tab order; the labels take no focus, so only the controls that do are
    // chained. The device follows the port it belongs to.
    QWidget *const order[] = {Command1, Combo[0], DeviceCombo, DeviceRefresh, Combo[1], Combo[2],
                              Combo[3], Combo[4], Combo[5],    Combo[6],      Check1,   Check2};
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
    form.devices = m_devices;
    saveSetup(m_g, form);
    accept();
}
