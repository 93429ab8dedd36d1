#pragma once
// Placing the program's widgets: form coordinates are in twips, and captions must fit the
// boxes those coordinates give them.

#include <QList>
#include <QtGlobal>

class QWidget;

// 15 twips to a pixel at 96 dpi, scaled with the screen's dpi.
inline int twipsToPixels(int twips, qreal logicalDpi) {
    return qRound(twips / 15.0 * logicalDpi / 96.0);
}

// The boxes keep their form size whatever the font: when a caption does not fit its box, all
// the captions given take one smaller font, half a point at a time, rather than cut the text
// or move a control.
void fitCaptions(const QList<QWidget *> &captions);
