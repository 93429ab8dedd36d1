#pragma once
// The program's process-wide variables, kept in one plain struct so that start-up fills
// one and every test can begin from a fresh one.

#include <QByteArray>
#include <QString>
#include <array>

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
    QString Text(int row) const { return TextTable[row * 5 + Language]; }

    // Settings read from the settings file
    QString ComSettings;
    qint16 CncType = 0;
    qint16 WaitXon = 0;
    qint16 NoSpace = 0;

    // Choice lists, used from index 1
    std::array<QString, 5> PortChoices;
    std::array<QString, 7> BaudChoices;
    std::array<QString, 4> ParityChoices;
    std::array<QString, 3> DataChoices;
    std::array<QString, 3> StopChoices;
    std::array<QString, 4> CncChoices;
    std::array<QString, 4> SoftChoices;

    // The wire
    QByteArray PromptSeq; // DLE "7"
    QByteArray CR;        // 13

    // The clock of the waits
    bool TimedOut = false;

    // Where dnc.ini lies (one fixed place, never the current folder)
    QString IniPath;

    // The window is being closed: a running operation ends at its next pass.
    bool Closing = false;
};
