#pragma once
// The program's process-wide variables, kept in one plain struct so that start-up fills
// one and every test can begin from a fresh one.

#include <QString>
#include <array>

// The control types, by their place in CncChoices; 0 until a known type has been read.
enum CncKind : qint16 { CncNone = 0, Cnc303 = 1, Cnc504 = 2, CncXonXoff = 3 };

// The filled rows of TextTable. The setup dialog's labels and the command buttons are read by a
// computed row (first + index), so the numbers are fixed.
enum TextRow : int {
    QuitCaption = 5,
    SendFilePrefix = 6,
    TimeoutMessage = 7,
    SetupTitle = 10,
    PortLabel = 11, // Label(0) to Label(6) of the setup dialog
    BaudLabel,
    ParityLabel,
    DataLabel,
    StopLabel,
    CncLabel,
    SoftLabel,
    WaitXonCaption = 18,
    NoSpaceCaption = 19,
    WindowTitle = 20,
    SetupCaption = 31, // Command1(0) to Command1(7)
    SendCaption,
    ReceiveCaption,
    MapCaption,
    ChangeCaption,
    ExecuteCaption,
    DeleteCaption,
    HelpCaption,
    SetupFirstLabel = PortLabel,
    FirstCommandCaption = SetupCaption,
};

// The place of (row, column) in TextTable, stored row after row.
constexpr int textIndex(int row, int column) {
    return row * 5 + column;
}

struct Globals {
    // Command line
    qint16 Language = 1;
    QString ConfigSection = QStringLiteral("Default");
    QString DatabasePath;
    bool ToolDbEnabled = false;
    std::array<QString, 11> LimitStrings; // 1..LimitCount in use
    qint16 LimitCount = 0;
    bool SimpleFileDialog = false;

    // Texts: row * 5 + column, rows 0..50, columns 0..4
    std::array<QString, 51 * 5> TextTable;
    QString Text(int row) const { return TextTable[textIndex(row, Language)]; }

    // Settings read from the settings file
    QString ComSettings;
    qint16 CncType = CncNone;
    qint16 WaitXon = 0;
    qint16 NoSpace = 0;

    // Choice lists, used from index 1
    std::array<QString, 5> PortChoices;
    std::array<QString, 11> BaudChoices;
    std::array<QString, 4> ParityChoices;
    std::array<QString, 3> DataChoices;
    std::array<QString, 3> StopChoices;
    std::array<QString, 4> CncChoices;
    std::array<QString, 4> SoftChoices;

    // The clock of the waits
    bool TimedOut = false;

    // Where dnc.ini lies (one fixed place, never the current folder)
    QString iniPath;
};
