#include "device_texts.h"

namespace {

// clang-format off
const char16_t *const Texts[][3] = {
    {u"Device of %1", u"Périphérique de %1", u"Gerät für %1"},
    {u"Default: %1", u"Par défaut : %1", u"Standard: %1"},
    {u"absent", u"absent", u"nicht vorhanden"},
    {u"Description", u"Description", u"Beschreibung"},
    {u"Maker", u"Fabricant", u"Hersteller"},
    {u"Serial number", u"Numéro de série", u"Seriennummer"},
    {u"Look again", u"Actualiser", u"Neu suchen"},
    {u"%1 is set in the environment and comes first: %2 is opened.",
     u"%1 est défini dans l'environnement et passe en premier : %2 est ouvert.",
     u"%1 ist in der Umgebung gesetzt und hat Vorrang: %2 wird geöffnet."},
    {u"Not present on this PC now.", u"Absent de ce PC pour l'instant.",
     u"Zurzeit an diesem PC nicht vorhanden."},
};
// clang-format on

} // namespace

QString deviceText(int language, DeviceText text) {
    const int column = language == 2 ? 1 : language == 3 ? 2 : 0;
    return QString::fromUtf16(Texts[int(text)][column]);
}
