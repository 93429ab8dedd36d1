#include "reply_list.h"

void showReplyInList1(Link &l, const QByteArray &reply) {
    l.screen.setText1Visible(false);
    l.screen.setList1Visible(true);
    l.screen.list1Clear();
    // One pass over the reply, whatever the number of lines.
    qsizetype from = 0;
    for (;;) {
        const qsizetype end = reply.indexOf("\r\n", from);
        if (end < 0)
            break;
        l.screen.list1AddItem(QString::fromLatin1(reply.constData() + from, end - from));
        from = end + 2;
    }
}
