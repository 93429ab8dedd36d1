#include "console_screen.h"

#include "ctl_texts.h"
#include "progress_line.h"

#include <sys/ioctl.h>
#include <unistd.h>

ConsoleScreen::ConsoleScreen(const OperationState &state, std::FILE *err)
    : m_state(state), m_err(err) {
    m_tick.setTimerType(Qt::CoarseTimer);
    QObject::connect(&m_tick, &QTimer::timeout, [this] { draw(); });
}

ConsoleScreen::~ConsoleScreen() {
    if (m_drawn)
        std::fputc('\n', m_err);
}

void ConsoleScreen::enableProgress(int refreshMs, std::function<qint64()> characters) {
    m_progress = true;
    m_tick.setInterval(refreshMs);
    m_characters = std::move(characters);
}

int ConsoleScreen::list1ListIndex() const {
    if (m_pickName.isEmpty())
        return -1;
    // Entries are the control's bytes shown as Latin-1: compare bytes with bytes.
    for (int i = 0; i < m_list1.size(); ++i)
        if (m_list1[i].toLatin1() == m_pickName)
            return i;
    // Nobody will ever point at another entry.
    return NoChoiceComing;
}

void ConsoleScreen::setLabel1Visible(bool on) {
    if (!m_progress)
        return;
    if (on && !m_tick.isActive()) {
        m_clock.start();
        m_tick.start();
        draw();
    } else if (!on && m_tick.isActive()) {
        m_tick.stop();
        draw();
        std::fputc('\n', m_err);
        std::fflush(m_err);
        m_drawn = false;
    }
}

void ConsoleScreen::draw() {
    ProgressFigures f = figuresOfCaption(m_caption);
    if (m_characters) {
        f.characters = m_characters();
    } else {
        f.characters = m_caption.toLongLong();
        f.label = ctlText(CtlText::Receiving);
    }
    f.seconds = double(m_clock.nsecsElapsed()) / 1e9;
    const QByteArray line = progressText(f, columns()).toLocal8Bit();
    std::fputc('\r', m_err);
    std::fwrite(line.constData(), 1, size_t(line.size()), m_err);
    std::fputs("\033[K", m_err); // the rest of an earlier, longer line
    std::fflush(m_err);
    m_drawn = true;
    ++m_draws;
}

void ConsoleScreen::clearLine() {
    if (m_drawn) {
        std::fputs("\r\033[K", m_err);
        m_drawn = false;
    }
}

int ConsoleScreen::columns() const {
    winsize size{};
    if (::ioctl(::fileno(m_err), TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col;
    return 80;
}

void ConsoleScreen::say(const QString &text) {
    clearLine();
    const QByteArray line = ("dncctl: " + text + u'\n').toLocal8Bit();
    std::fwrite(line.constData(), 1, size_t(line.size()), m_err);
    std::fflush(m_err);
    if (m_tick.isActive())
        draw();
}

void ConsoleScreen::msgBox(const QString &text, BoxIcon, const QString &) {
    say(text);
}

QString ConsoleScreen::showSave(const FileDialogRequest &) {
    // A reception cut short by a signal is not saved as if it were whole.
    return m_state.ending() ? QString() : m_saveAnswer;
}
