#pragma once
// Whole files in one call: the fixtures a test writes and what it reads back.

#include <QFile>

inline bool writeFile(const QString &path, const QByteArray &bytes) {
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

// Null when the file cannot be read.
inline QByteArray readFile(const QString &path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}
