#include "reply_program.h"

#include <QString>

QByteArray replyProgram(const QByteArray &replyNumber, const QString &name, const QByteArray &why) {
    // Capitals a control shows, and nothing that would end the comment or the line early.
    QByteArray shown;
    for (const QChar c : name.toUpper()) {
        const char l = c.toLatin1();
        shown += (l >= 0x20 && l < 0x7f && l != '(' && l != ')' && l != '%') ? l : '?';
    }
    const QByteArray comment =
        shown.isEmpty() ? "(DNC NO NAME GIVEN)" : "(DNC " + shown.left(40) + ' ' + why + ')';
    return "%\r\n" + replyNumber + "\r\n" + comment + "\r\nM30\r\n%\r\n";
}
