#pragma once
// Reads what a control punches on its own: a program from the first line holding "%" to the
// line holding the next "%". Punch on and off (DC2, DC4), X-on, X-off and NUL leader are not
// part of it; every other byte is kept as it came. The port is open and stays open.

#include "link.h"

#include <QByteArray>
#include <functional>

struct Punch {
    QByteArray bytes;
    bool complete = false;     // its closing "%" came
    bool cutBySilence = false; // the control fell silent before it
    QString portFailure;       // the port failed: what came is kept all the same
    qint64 lines = 0;          // line ends in it (CR LF counts once)
};

class PunchReader {
public:
    // Waits for a punch to begin: for `waitMs` (negative: until `stopWaiting` holds or the
    // operation is being ended), then collects it until its closing line has ended or the
    // control has been silent for `silenceMs`. Characters that came behind it are kept for the
    // next read. Empty when nothing began.
    Punch read(Link &l, int waitMs, int silenceMs, const std::function<bool()> &stopWaiting = {});

    // Whether the punch of the running read has begun.
    bool started() const { return m_started; }
    // Characters that came before any "%" since the last read: not part of any punch.
    qint64 ignored() const { return m_ignored; }

    // How long the LF of a closing CR LF may lag behind its CR.
    static constexpr int LateLfMs = 200;

private:
    // Takes one character; true when it ended the punch.
    bool take(char c, Punch &p);
    void takeLateLf(Link &l, Punch &p);

    QByteArray m_pending; // came behind the last punch
    QByteArray m_line;    // the line in progress before a punch began
    bool m_started = false;
    bool m_closing = false; // the punch's current line holds its closing "%"
    bool m_afterCr = false;
    qint64 m_ignored = 0;
};
