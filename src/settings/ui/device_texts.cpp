#include "device_texts.h"

#include <QCoreApplication>

namespace {

const char *const Texts[] = {
    QT_TRANSLATE_NOOP("Setup", "Device of %1"),
    QT_TRANSLATE_NOOP("Setup", "Default: %1"),
    QT_TRANSLATE_NOOP("Setup", "absent: %1"),
    QT_TRANSLATE_NOOP("Setup", "Description"),
    QT_TRANSLATE_NOOP("Setup", "Maker"),
    QT_TRANSLATE_NOOP("Setup", "Serial number"),
    QT_TRANSLATE_NOOP("Setup", "Look again"),
    QT_TRANSLATE_NOOP("Setup", "%1 is set in the environment and comes first: %2 is opened."),
    QT_TRANSLATE_NOOP("Setup", "Not present on this PC now."),
    QT_TRANSLATE_NOOP("Setup", "Asking the device server…"),
    QT_TRANSLATE_NOOP("Setup", "The device server answers."),
    QT_TRANSLATE_NOOP("Setup", "The device server does not answer: %1"),
    QT_TRANSLATE_NOOP("Setup", "\"Look again\" asks the device server whether it answers."),
};

} // namespace

QString deviceText(DeviceText text) {
    return QCoreApplication::translate("Setup", Texts[int(text)]);
}
