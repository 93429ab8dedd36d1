#pragma once
// A settings file of its own for each test: a fresh folder, the path in g.IniPath.

#include "globals.h"

#include <QFile>
#include <QTemporaryDir>

struct IniFile {
    QTemporaryDir dir;
    QString path = dir.filePath(QStringLiteral("dnc.ini"));

    void useIn(Globals &g) const { g.IniPath = path; }
    void write(const QByteArray &bytes) const {
        QFile f(path);
        if (f.open(QIODevice::WriteOnly))
            f.write(bytes);
    }
    QByteArray read() const {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    bool exists() const { return QFile::exists(path); }
};
