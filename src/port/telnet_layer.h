#pragma once
// The Telnet layer of an RFC 2217 port: what the device server sends, taken apart into the
// line's characters, the answers to our COM port requests and the option negotiation, which
// it answers itself. Only the options a serial port needs are taken (binary both ways,
// suppress go-ahead, COM port control); every other is refused. Anything that breaks the
// protocol is garbage: the layer stops there, since the characters behind it can no longer be
// told apart from its commands.

#include <QByteArray>
#include <QList>
#include <QString>
#include <array>

namespace Telnet {
constexpr char Iac = char(255);
constexpr char Sb = char(250);
constexpr char Se = char(240);
constexpr char Will = char(251);
constexpr char Wont = char(252);
constexpr char Do = char(253);
constexpr char Dont = char(254);

constexpr int Binary = 0;
constexpr int SuppressGoAhead = 3;
constexpr int ComPortOption = 44;

// COM port commands as the client sends them; the server answers with 100 added.
constexpr int SetBaudRate = 1;
constexpr int SetDataSize = 2;
constexpr int SetParity = 3;
constexpr int SetStopSize = 4;
constexpr int SetControl = 5;
constexpr int ServerOffset = 100;

constexpr int ControlDtrOn = 8;
constexpr int ControlDtrOff = 9;
constexpr int ControlRtsOff = 12;
} // namespace Telnet

struct ComPortAnswer {
    int command = 0; // the client's command it answers (the server's minus 100)
    QByteArray value;
};

class TelnetLayer {
public:
    static constexpr int MaxSubnegotiation = 64;

    // What the client says first: it will control the COM port and talk binary both ways.
    static QByteArray opening();
    // One COM port request, its value escaped.
    static QByteArray comPortRequest(int command, const QByteArray &value);
    // The line's characters as they go on the socket: IAC doubled.
    static QByteArray escape(const QByteArray &data);

    // Takes what the server sent; the line's characters are appended to `data`.
    void feed(const QByteArray &bytes, QByteArray &data);

    // Our answers to the negotiation, to be sent; taken once.
    QByteArray takeReplies();
    QList<ComPortAnswer> takeAnswers();

    // The server refused COM port control (DONT, or WONT to a request of ours).
    bool comPortRefused() const { return m_comPortRefused; }
    bool comPortAgreed() const { return m_us[Telnet::ComPortOption]; }
    // What broke the protocol, in plain words; empty while all is well.
    const QString &garbage() const { return m_garbage; }

private:
    enum class State { Data, Iac, Verb, Sub, SubIac };
    void negotiate(char verb, int option);
    void endSubnegotiation();
    void fail(const QString &why);

    State m_state = State::Data;
    char m_verb = 0;
    QByteArray m_sub;
    QByteArray m_replies;
    QList<ComPortAnswer> m_answers;
    QString m_garbage;
    bool m_comPortRefused = false;
    // Options in force on our side (WILL) and on the server's (DO), and the requests of ours
    // not answered yet, so that an answer is not answered again.
    std::array<bool, 256> m_us{};
    std::array<bool, 256> m_him{};
    std::array<bool, 256> m_askedUs{};
    std::array<bool, 256> m_askedHim{};
    bool m_opened = false;
};
