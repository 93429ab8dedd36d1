#pragma once
// Form coordinates are in twips: 15 twips to a pixel at 96 dpi, scaled with the screen's dpi.

#include <QtGlobal>

inline int twipsToPixels(int twips, qreal logicalDpi) {
    return qRound(twips / 15.0 * logicalDpi / 96.0);
}
