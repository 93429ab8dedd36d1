#pragma once
// The short program a station sends back when it cannot serve a request, so that the operator
// reads why on the control's screen: "%", the reply's number, "(DNC 1234 NOT FOUND)", "M30", "%".

#include <QByteArray>

// Lines end CR LF in the file, so that the send takes them line by line as any program.
QByteArray replyProgram(const QByteArray &replyNumber, const QString &name, const QByteArray &why);
