#pragma once
// A settings file of its own for each test, with fresh Globals pointing at it. Its folder does
// not exist yet: the first write must make it.

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
        QFile f(path);
        if (f.open(QIODevice::WriteOnly))
            f.write(bytes);
    }
    QByteArray read() const {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
};
