#pragma once
// What the last operation did, left in the link when it ends, so that a front end that runs
// without anyone watching (a script, a station, a journal) knows it without reading the screen.
// The window shows what the operation showed and leaves the record alone.

#include <QByteArray>
#include <QDateTime>
#include <QString>

class OperationState;

// By gravity: when two things happen in one operation, the graver one is kept.
enum class OutcomeKind {
    Done,
    Cancelled,  // nothing done: the operator cancelled a dialog or chose nothing
    NotCounted, // the program went out, but the tool database failed and its tools were not counted
    TimedOut,   // a wait ran out, or a reply ended in silence
    NotOnControl, // the program named is not on the control, or the control had none to give
    FileFailure,
    PortFailure,
    Interrupted, // ended from outside: the window closed, a signal
};

// The outermost operation that ran.
enum class OperationName {
    None,
    SendFile,
    SendData,
    ReceiveFile,
    SaveFile,
    MapContext,
    ChangeContext,
    ChangeExecute,
    DeleteContext,
    SelectCNCFile,
    ReceivePunch,
};

// Lines that a transfer which otherwise ended well did not carry.
enum class Shortfall {
    None,
    BlankLine,        // a send stopped at a blank line: the control has only the lines before it
    NoCarriageReturn, // the file holds line feeds but no CR: its lines went out as one
    LinesDropped,     // a reply brought more in one chunk than the dialogue keeps
};

struct OutcomeRecord {
    OperationName operation = OperationName::None;
    OutcomeKind kind = OutcomeKind::Done;
    QString reason;         // why it failed, in the words the operator was shown
    QString filePath;       // the file sent or saved
    QByteArray programName; // the program chosen from the control's list
    // The program's characters and lines that went out or were kept, line ends included and
    // the dialogue's own characters (the start, the go-ahead, EOT) not.
    qint64 bytes = 0;
    qint64 lines = 0;
    QByteArray sha256; // lower-case hex, of the file sent (whole, as on disk) or of the file saved
    QByteArray received; // what came from the control: the program, or its list
    qint64 listed = -1;  // entries of the list a choice was asked from; -1: no list came
    QString start;       // where a part-way send started ("block N48210"); empty: the top
    Shortfall shortfall = Shortfall::None;
    qint64 linesLeftOut = 0;
    QDateTime started; // UTC
    QDateTime ended;

    // Records a failure unless a graver one is already recorded.
    void fail(OutcomeKind k, const QString &why = QString());

    // Held by every operation for its length. Only the outermost one starts a fresh record and
    // closes it, so that SendFile and SendData, or ReceiveFile and its SaveFile, leave one.
    class Scope {
    public:
        Scope(OutcomeRecord &record, OperationName operation, const OperationState &state);
        ~Scope();
        Scope(const Scope &) = delete;
        Scope &operator=(const Scope &) = delete;

    private:
        OutcomeRecord &m_r;
        const OperationState &m_state;
    };

private:
    int m_depth = 0;
};

// "done", "time-out" ...: the record's kind in a word, for logs.
QString outcomeWord(OutcomeKind kind);
