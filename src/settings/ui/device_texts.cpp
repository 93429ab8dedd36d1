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
    {u"Asking the device server…", u"Interrogation du serveur de ports série…",
     u"Der Geräteserver wird gefragt …"},
    {u"The device server answers.", u"Le serveur de ports série répond.",
     u"Der Geräteserver antwortet."},
    {u"The device server does not answer: %1", u"Le serveur de ports série ne répond pas : %1",
     u"Der Geräteserver antwortet nicht: %1"},
    {u"\"Look again\" asks the device server whether it answers.",
     u"« Actualiser » demande au serveur de ports série s'il répond.",
     u"„Neu suchen“ fragt den Geräteserver, ob er antwortet."},
};
// clang-format on

} // namespace

QString deviceText(int language, DeviceText text) {
    const int column = language == 2 ? 1 : language == 3 ? 2 : 0;
    return QString::fromUtf16(Texts[int(text)][column]);
}
