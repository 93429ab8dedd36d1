#include "dnc_window.h"

#include "app_info.h"
#include "command_line.h"
#include "commands_by_type.h"
#include "directory.h"
#include "form_geometry.h"
#include "languages.h"
#include "profile.h"
#include "settings.h"
#include "setup_dialog.h"
#include "text_table.h"
#include "tool_db.h"
#include "tool_grid.h"
#include "tool_list_model.h"
#include "transfer.h"
#include "update_tool_list.h"
#include "window_screen.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>

DncWindow::DncWindow(Globals &g, OperationState &state, Comm &comm, LinkTimer &timer, Yield &yield,
                     const QString &commandLine, QWidget *parent)
    : QWidget(parent), m_g(g), m_state(state), m_timer(timer), m_yield(yield) {
    createControls();
    m_screen = std::make_unique<WindowScreen>(this, Label1, Text1, List1);
    m_link = std::make_unique<Link>(Link{m_g, comm, m_timer, yield, *m_screen, m_dialog, m_state});
    Form_Load(commandLine);
}

DncWindow::~DncWindow() = default;

Screen &DncWindow::screen() {
    return *m_screen;
}

void DncWindow::Form_Load(const QString &commandLine) {
    m_g.ToolDbEnabled = false;
    GetParameter(m_g, commandLine);
    loadTranslations(m_g.Language);
    // A section name on two lines would break dnc.ini at the first Setup: the program ends.
    if (const QString why = sectionNameProblem(m_g.ConfigSection); !why.isEmpty()) {
        m_screen->msgBox(why, BoxIcon::Critical, QString());
        m_startRefused = true;
        return;
    }
    InitTexts(m_g);
    InitChoices(m_g);
    if (const QString why = iniFileProblem(m_g); !why.isEmpty())
        m_screen->msgBox(why, BoxIcon::Critical, QString());
    ReadSettings(m_g);
    if (const int interval = startupTimerInterval(m_g.CncType))
        m_timer.setInterval(interval); // else the timer keeps the interval it was made with
    openToolDatabase();
    Enable_cmd();
    Command2->setText(m_g.Text(QuitCaption));
    for (int i = 0; i < CommandCount; ++i)
        Command1[i]->setText(m_g.Text(FirstCommandCaption + i));
    fitButtonCaptions();
    setCaption();
}

void DncWindow::openToolDatabase() {
    if (!m_g.ToolDbEnabled)
        return;
    const ToolDbStart start = startToolDatabase(m_g.DatabasePath);
    if (!start.message.isEmpty())
        m_screen->msgBox(start.message, BoxIcon::Critical, QString());
    if (!start.counting) {
        m_g.ToolDbEnabled = false;
        return;
    }
    // A lock or a server that is away keeps the grid hidden; the next send tries again.
    m_gridOff = !start.gridNow;
    const qreal dpi = logicalDpiX();
    DBGrid1 = new ToolGrid(m_g.DatabasePath, this);
    DBGrid1->setObjectName(QStringLiteral("DBGrid1"));
    DBGrid1->setGeometry(twipsToPixels(120, dpi), twipsToPixels(960, dpi), twipsToPixels(6375, dpi),
                         twipsToPixels(2895, dpi));
    DBGrid1->hide();
    DBGrid1->raise();
    Label1->raise();
    setTabOrder(Command1[HelpCommand], DBGrid1);
    m_toolList = std::make_unique<ToolListUpdater>(m_g, *m_screen, DefaultBusyTimeoutMs, &m_yield);
    m_link->toolList = m_toolList.get();
}

void DncWindow::setCaption() {
    setWindowTitle(m_g.Text(WindowTitle) + m_g.ComSettings);
}

void DncWindow::Enable_cmd() {
    // Only enables: the frame has disabled the others.
    for (int i = SetupCommand; i <= DeleteCommand; ++i)
        if (commandOffered(m_g.CncType, i))
            Command1[i]->setEnabled(true);
    Command2->setEnabled(true);
    if (m_g.ToolDbEnabled && DBGrid1 && !m_gridOff) {
        DBGrid1->show();
        if (!DBGrid1->refresh()) {
            DBGrid1->hide();
            m_gridOff = true;
            m_screen->msgBox(DBGrid1->toolModel()->errorText() +
                                 QCoreApplication::translate(
                                     "Window", " The tool list is not shown until it can be "
                                               "read again; every send tries again."),
                             BoxIcon::Critical, QString());
        }
    }
}

void DncWindow::Command1_Click(int index) {
    if (m_state.running()) {
        // Help is the only button left enabled during an operation. It shows its box and
        // leaves the running operation's frame alone; the box does not block, so the
        // operation's waits go on while it is open.
        if (index == HelpCommand) {
            auto *box = new QMessageBox(QMessageBox::NoIcon, QString::fromLatin1(AppTitle),
                                        boxText(helpText(m_g.Language)), QMessageBox::Ok, this);
            box->setAttribute(Qt::WA_DeleteOnClose);
            box->setModal(false);
            box->show();
        }
        return;
    }
    {
        const OperationState::Run run(m_state);
        frame(CommandIndex(index));
    }
    if (m_state.ending())
        close();
}

void DncWindow::frame(CommandIndex index) {
    for (int i = SetupCommand; i <= DeleteCommand; ++i)
        Command1[i]->setEnabled(false);
    if (m_g.ToolDbEnabled && DBGrid1)
        DBGrid1->hide();
    Command2->setEnabled(false);
    Text1->hide();
    List1->hide();

    switch (index) {
    case SetupCommand:
        runSetup();
        break;
    case SendCommand:
        SendFile(*m_link);
        // The send has reached the database or told why not: the grid may come back.
        if (m_gridOff && DBGrid1)
            m_gridOff = !DBGrid1->refresh();
        break;
    case ReceiveCommand:
        ReceiveFile(*m_link);
        break;
    case MapCommand:
        MapContext(*m_link);
        break;
    case ChangeContextCommand:
        ChangeContext(*m_link);
        break;
    case ChangeExecuteCommand:
        ChangeExecute(*m_link);
        break;
    case DeleteCommand:
        DeleteContext(*m_link);
        break;
    case HelpCommand:
        DisplayHelp(m_g, *m_screen);
        break;
    default:
        break;
    }
    if (m_journal && index != SetupCommand && index != HelpCommand)
        m_journal(m_link->outcome);

    Enable_cmd();
}

void DncWindow::runSetup() {
    SetupDialog setup(m_g, this, m_deviceScan);
    setup.exec();
    ReadSettings(m_g);
    setCaption();
}

void DncWindow::Command2_Click() {
    close();
}

void DncWindow::closeEvent(QCloseEvent *event) {
    // The running operation needs the window until it has closed its port and file: ask it
    // to end at its next pass, and close once its frame is over.
    if (m_state.requestEnd()) {
        event->ignore();
        return;
    }
    event->accept();
}
