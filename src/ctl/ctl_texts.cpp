#include "ctl_texts.h"

#include <QCoreApplication>

namespace {

// In the order of CtlText.
const char *const Texts[] = {
    QT_TRANSLATE_NOOP("dncctl", "%1: not offered by the control \"%2\""),
    QT_TRANSLATE_NOOP("dncctl",
                      "no control type in section [%1] of %2: give --cnc 303, 504 or XonXoff (a "
                      "section is read only as far as its port and line settings are complete)"),
    QT_TRANSLATE_NOOP("dncctl",
                      "no %3 in section [%1] of %2: set it with the window's Setup, or give %4"),
    QT_TRANSLATE_NOOP(
        "dncctl", "Port=%3 in section [%1] of %2 names no serial port (COM1: to COM4:): choose one "
                  "with the window's Setup, or give --port DEVICE"),
    QT_TRANSLATE_NOOP("dncctl", "%1: no such file"),
    QT_TRANSLATE_NOOP("dncctl", "%1: not a regular file"),
    QT_TRANSLATE_NOOP("dncctl", "%1: cannot be read (%2)"),
    QT_TRANSLATE_NOOP("dncctl", "%1: cannot be written (%2)"),
    QT_TRANSLATE_NOOP("dncctl", "%1: no such program on the control"),
    QT_TRANSLATE_NOOP("dncctl", "the control lists no programs"),
    QT_TRANSLATE_NOOP("dncctl", "the control sent no program"),
    QT_TRANSLATE_NOOP("dncctl", "interrupted (%1): the transfer was ended and the port closed"),
    QT_TRANSLATE_NOOP("dncctl",
                      "the %1 characters received are not saved: the reception was cut short"),
    QT_TRANSLATE_NOOP("dncctl", "the program was sent, but its tools were not counted"),
    QT_TRANSLATE_NOOP("dncctl",
                      "the send stopped at a blank line: the %1 lines with text behind it were not "
                      "sent, the control has only the lines before it"),
    QT_TRANSLATE_NOOP("dncctl",
                      "the file holds no CR: its %1 lines ended by LF went out as one line"),
    QT_TRANSLATE_NOOP("dncctl",
                      "%1 lines the control sent were not kept: it sent more than one line before "
                      "the go-ahead, or a line together with its end"),
    QT_TRANSLATE_NOOP("dncctl", "standard output is closed"),
    QT_TRANSLATE_NOOP("dncctl", "%1 characters"),
    QT_TRANSLATE_NOOP("dncctl", "%1 characters/s"),
    QT_TRANSLATE_NOOP("dncctl", "%1 left"),
    QT_TRANSLATE_NOOP("dncctl", "Receive : "),
};

} // namespace

QString ctlText(CtlText text) {
    return QCoreApplication::translate("dncctl", Texts[int(text)]);
}
