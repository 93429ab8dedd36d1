#pragma once
// The text of the progress line: how far a transfer has got, how fast it goes, and how long
// it still needs, cut to the width of the terminal.

#include <QString>

struct ProgressFigures {
    QString label;    // "Send file : /nc/A.tap" or "Receive : "
    int percent = -1; // -1: unknown (a reception)
    qint64 characters = 0;
    double seconds = 0; // since the transfer began
};

// A send's caption, "<prefix><file> - 42%", taken apart; any other text is all label.
ProgressFigures figuresOfCaption(const QString &caption);

// "Send file : A.tap - 42%  4200 characters  960 characters/s  0:05 left", in the language of
// the loaded translations. The label is shortened in its middle so that the whole fits in width - 1
// columns.
QString progressText(const ProgressFigures &f, int width);
