#pragma once
// What a punched program says of itself: its program number and its first comment, and
// whether it is a request for a program (a reserved number whose first comment names the file).

#include "start_point.h"

#include <QByteArray>
#include <QString>
#include <optional>

// The first "O" or ":" followed by digits, as it stands ("O1234", ":0012"); empty when none.
QByteArray programNumberOf(const QByteArray &punch);
// The text of the first comment, between "(" and ")"; empty when none.
QByteArray firstCommentOf(const QByteArray &punch);
// Whether two program numbers name the same program: "O9999", "o9999", ":09999".
bool sameProgramNumber(const QByteArray &a, const QByteArray &b);

struct ProgramRequest {
    QString name;  // as the operator punched it: "1234", "O1234", "PART.tap"
    QString place; // where to start, as punched after the name ("/BL N48210"); empty: the top
};

// The request a punch makes: its number is `requestNumber` and its first comment reads
// "PRG=name" or just "name", a place after a blank and a slash. None when it is no request; a
// request without a comment names nothing (an empty name).
std::optional<ProgramRequest> requestOf(const QByteArray &punch, const QByteArray &requestNumber);

// The place a request names: "/LI 1020" a line, "/BL N48210" a block, "/TO 5" a tool; none
// for a place it cannot read.
std::optional<StartPoint> startPointOf(const QString &place);
