#pragma once
// A settings file of its own for each test, with fresh Globals pointing at it. Its folder does
// not exist yet: the first write must make it.

#include "files.h"
#include "globals.h"
#include "settings.h"

#include <QDir>
#include <QTemporaryDir>

// An environment variable set (a null value: unset) while this lives, then as it was.
struct EnvVar {
    const char *name;
    const bool wasSet = qEnvironmentVariableIsSet(name);
    const QByteArray saved = qgetenv(name);
    EnvVar(const char *n, const QString &value) : name(n) { set(value); }
    ~EnvVar() { wasSet ? qputenv(name, saved) : qunsetenv(name); }
    void set(const QString &value) const {
        value.isNull() ? qunsetenv(name) : qputenv(name, value.toLocal8Bit());
    }
};

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
