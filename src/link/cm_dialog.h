#pragma once
// The file dialog component: its properties stay set from one use to the next,
// shared by the send and the save command.

#include "screen.h"

#include <QString>

class CmDialog {
public:
    QString InitDir;
    QString Filter; // "Tape file *.tap|*.tap|All files *.*|*.*"
    QString DefaultExt;
    QString FileName;

    void ShowOpen(Screen &screen);
    void ShowSave(Screen &screen);

    // "desc|pattern|desc|pattern" to Qt's "desc (pattern);;desc (pattern)"
    static QString qtFilter(const QString &filter);
};

// The folder of a path: everything before the last separator. A file in the root folder
// gives "/", so that the stored folder still names a place.
QString folderOf(const QString &path);
