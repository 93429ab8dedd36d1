#pragma once
// Files a punched program in the station's receive folder: under its program number, else its
// first comment made safe as a file name, else the time it arrived. A file that is there is
// never overwritten; the next free name is taken (O1234.1.tap, O1234.2.tap ...).

#include <QByteArray>
#include <QDateTime>
#include <QString>

struct FiledPunch {
    QString path;  // where it was filed; empty when it could not be
    QString error; // why not
};

// The name a punch is filed under, before a number is added to keep it apart: "O1234.tap".
QString punchFileName(const QByteArray &punch, const QDateTime &arrival);

// Writes the bytes as they are beside their place and links them in under a free name, so
// that a reader never sees half a program and no file is replaced.
FiledPunch filePunch(const QString &folder, const QByteArray &punch, const QDateTime &arrival);
