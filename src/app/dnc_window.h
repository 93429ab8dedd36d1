#pragma once
// The main window: the start-up, the controls, and the frame around every command.

#include "cm_dialog.h"
#include "commands_by_type.h"
#include "globals.h"
#include "link.h"
#include "serial_device.h"

#include <QWidget>
#include <array>
#include <functional>
#include <memory>

class Comm;
class QLabel;
class QListWidget;
class QPlainTextEdit;
class QPushButton;
class WindowScreen;
class ToolGrid;
class ToolListUpdater;

class DncWindow : public QWidget {
    Q_OBJECT
public:
    // Runs the whole start-up; `commandLine` is the one string behind the program's name.
    DncWindow(Globals &g, OperationState &state, Comm &comm, LinkTimer &timer, Yield &yield,
              const QString &commandLine, QWidget *parent = nullptr);
    ~DncWindow() override;

    std::array<QPushButton *, CommandCount> Command1{};
    QPushButton *Command2 = nullptr;
    QPlainTextEdit *Text1 = nullptr;
    QListWidget *List1 = nullptr;
    QLabel *Label1 = nullptr;
    ToolGrid *DBGrid1 = nullptr; // only with a tool database

    void Command1_Click(int index);
    void Command2_Click();
    void Enable_cmd();

    // Hears the record of each operation a button ran, once it has ended (the journal).
    void setJournal(std::function<void(const OutcomeRecord &)> journal) {
        m_journal = std::move(journal);
    }

    // What the setup dialog offers as the port's device.
    void setSerialDeviceScan(SerialDeviceScan scan) { m_deviceScan = std::move(scan); }

    // Start-up found a command line it cannot run with and has said so: the program ends.
    bool startRefused() const { return m_startRefused; }
    Screen &screen();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void Form_Load(const QString &commandLine);
    void frame(CommandIndex index);
    void createControls();
    void fitButtonCaptions();
    void openToolDatabase();
    void setCaption();
    void runSetup();

    Globals &m_g;
    OperationState &m_state;
    LinkTimer &m_timer;
    std::unique_ptr<WindowScreen> m_screen;
    CmDialog m_dialog;
    std::unique_ptr<ToolListUpdater> m_toolList;
    std::unique_ptr<Link> m_link;
    SerialDeviceScan m_deviceScan;
    Yield &m_yield;
    bool m_gridOff = false; // the grid could not be read; tried again after each send
    bool m_startRefused = false;
    std::function<void(const OutcomeRecord &)> m_journal;
};
