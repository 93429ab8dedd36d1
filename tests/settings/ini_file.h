#pragma once
// A settings file of its own for each test, with fresh Globals pointing at it. Its folder does
// not exist yet: the first write must make it.

#include "files.h"
#include "globals.h"
#include "settings.h"

#include <QDir>
#include <QTemporaryDir>

struct IniFile {
    QTemporaryDir dir;
    QString path = dir.filePath(QStringLiteral("config/dnc.ini"));
    Globals g;

    IniFile() {
        g.iniPath = path;
        InitChoices(g);
    }
    void write(const QByteArray &bytes) const {
        QDir().mkpath(dir.filePath(QStringLiteral("config")));
        writeFile(path, bytes);
    }
    QByteArray read() const { return readFile(path); }
};
