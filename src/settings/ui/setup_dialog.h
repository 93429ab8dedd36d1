#pragma once
// The setup dialog: seven drop-down lists, two check boxes and one button that writes all
// and closes.

#include "globals.h"
#include "setup_form.h"

#include <QDialog>
#include <array>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;

class SetupDialog : public QDialog {
    Q_OBJECT
public:
    SetupDialog(const Globals &g, QWidget *parent = nullptr);

    std::array<QComboBox *, 7> Combo{};
    std::array<QLabel *, 7> Label{};
    QCheckBox *Check1 = nullptr;
    QCheckBox *Check2 = nullptr;
    QPushButton *Command1 = nullptr;

private:
    void Command1_Click();
    const Globals &m_g;
};
