#include "telnet_layer.h"

using namespace Telnet;

namespace {

bool supported(int option) {
    return option == Binary || option == SuppressGoAhead || option == ComPortOption;
}

QByteArray command(char verb, int option) {
    return QByteArray(1, Iac) + verb + char(option);
}

} // namespace

QByteArray TelnetLayer::opening() {
    return command(Will, ComPortOption) + command(Will, Binary) + command(Do, Binary);
}

QByteArray TelnetLayer::comPortRequest(int cmd, const QByteArray &value) {
    return QByteArray(1, Iac) + Sb + char(ComPortOption) + char(cmd) + escape(value) + Iac + Se;
}

QByteArray TelnetLayer::escape(const QByteArray &data) {
    if (!data.contains(Iac))
        return data;
    QByteArray out;
    out.reserve(data.size() + 8);
    for (const char c : data) {
        out += c;
        if (c == Iac)
            out += Iac;
    }
    return out;
}

QByteArray TelnetLayer::takeReplies() {
    return std::exchange(m_replies, QByteArray());
}

QList<ComPortAnswer> TelnetLayer::takeAnswers() {
    return std::exchange(m_answers, QList<ComPortAnswer>());
}

void TelnetLayer::fail(const QString &why) {
    if (m_garbage.isEmpty())
        m_garbage = why;
}

void TelnetLayer::feed(const QByteArray &bytes, QByteArray &data) {
    if (!m_opened) {
        // What opening() asked for is pending until the server answers.
        m_opened = true;
        m_askedUs[ComPortOption] = m_askedUs[Binary] = m_askedHim[Binary] = true;
    }
    for (const char c : bytes) {
        if (!m_garbage.isEmpty())
            return;
        switch (m_state) {
        case State::Data:
            if (c == Iac)
                m_state = State::Iac;
            else
                data += c;
            break;
        case State::Iac:
            m_state = State::Data;
            if (c == Iac) {
                data += c;
            } else if (c == Will || c == Wont || c == Do || c == Dont) {
                m_verb = c;
                m_state = State::Verb;
            } else if (c == Sb) {
                m_sub.clear();
                m_state = State::Sub;
            } else if (uchar(c) < uchar(Se) || c == Se) {
                fail(QStringLiteral("IAC followed by %1, which is no Telnet command")
                         .arg(uchar(c), 2, 16, QLatin1Char('0')));
            }
            // NOP, data mark, break, go-ahead and the like carry nothing for a serial line.
            break;
        case State::Verb:
            m_state = State::Data;
            negotiate(m_verb, uchar(c));
            break;
        case State::Sub:
            if (c == Iac)
                m_state = State::SubIac;
            else if (m_sub.size() >= MaxSubnegotiation)
                fail(
                    QStringLiteral("a subnegotiation longer than %1 bytes").arg(MaxSubnegotiation));
            else
                m_sub += c;
            break;
        case State::SubIac:
            if (c == Iac) {
                m_sub += c;
                m_state = State::Sub;
            } else if (c == Se) {
                m_state = State::Data;
                endSubnegotiation();
            } else {
                fail(QStringLiteral("a subnegotiation broken off by IAC %1")
                         .arg(uchar(c), 2, 16, QLatin1Char('0')));
            }
            break;
        }
    }
}

void TelnetLayer::negotiate(char verb, int option) {
    if (verb == Do || verb == Dont) {
        const bool on = verb == Do && supported(option);
        const bool asked = std::exchange(m_askedUs[option], false);
        if (option == ComPortOption && !on)
            m_comPortRefused = true;
        // An answer to our request, or no change, is not answered: that ends every loop.
        if (!asked && on != m_us[option])
            m_replies += command(on ? Will : Wont, option);
        else if (!asked && verb == Do && !on)
            m_replies += command(Wont, option);
        m_us[option] = on;
    } else {
        const bool on = verb == Will && supported(option) && option != ComPortOption;
        const bool asked = std::exchange(m_askedHim[option], false);
        if (!asked && on != m_him[option])
            m_replies += command(on ? Do : Dont, option);
        else if (!asked && verb == Will && !on)
            m_replies += command(Dont, option);
        m_him[option] = on;
    }
}

void TelnetLayer::endSubnegotiation() {
    if (m_sub.isEmpty())
        return fail(QStringLiteral("an empty subnegotiation"));
    if (uchar(m_sub[0]) != ComPortOption || m_sub.size() < 2)
        return; // another option's, which we refused: nothing for the line
    const int cmd = uchar(m_sub[1]);
    if (cmd < ServerOffset)
        return; // a client's command from the server: not ours to obey
    m_answers.append(ComPortAnswer{cmd - ServerOffset, m_sub.mid(2)});
}
