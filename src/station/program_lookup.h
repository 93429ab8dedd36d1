#pragma once
// Finds the program a control asks for in the station's program folder. Nothing outside that
// folder is ever found: a name that would leave it, or a link that points out of it, is refused.

#include <QString>

enum class LookupRefusal { None, NotFound, NotAllowed, Ambiguous, ReadError };

struct ProgramLookup {
    QString path; // the file to send; empty when refused
    LookupRefusal refusal = LookupRefusal::None;
};

// The extensions a name is tried with, in this order, after the name as given.
inline constexpr const char *ProgramExtensions[] = {".tap", ".nc", ".LCC"};

// Case-insensitive: the name as given, then with each extension; "O1234" is also found for
// "1234" and the other way round. More than one file that fits is ambiguous.
ProgramLookup findProgram(const QString &folder, const QString &name);

// "NOT FOUND", "NOT ALLOWED", "AMBIGUOUS", "READ ERROR": the words of the reply program.
QByteArray refusalWords(LookupRefusal refusal);
