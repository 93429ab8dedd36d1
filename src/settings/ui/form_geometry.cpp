#include "form_geometry.h"

#include <QWidget>

void fitCaptions(const QList<QWidget *> &captions) {
    if (captions.isEmpty())
        return;
    auto fits = [&] {
        for (const QWidget *w : captions)
            if (w->sizeHint().width() > w->width())
                return false;
        return true;
    };
    QFont f = captions.first()->font();
    while (!fits() && f.pointSizeF() > 6.0) {
        f.setPointSizeF(f.pointSizeF() - 0.5);
        for (QWidget *w : captions)
            w->setFont(f);
    }
}
