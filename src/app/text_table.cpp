#include "text_table.h"

#include "app_info.h"

namespace {

struct Row {
    int row;
    const char16_t *text[4]; // columns 1..4
};

// clang-format off
const Row Rows[] = {
    {5,  {u"&Quit", u"&Quitter", u"&Beenden", u"&Quit"}},
    {6,  {u"Send file : ", u"Envoi du fichier : ", u"Sende Datei : ", u"Send file : "}},
    {7,  {u"Timeout - No answer from CNC", u"Dépassement du temps de réponse CNC",
          u"Wartezeit überschritten - Keine Antwort von CNC erhalten",
          u"Timeout - No answer from CNC"}},
    {10, {u"Setup DNC Communication", u"Configuration liaison DNC",
          u"Einstellungen DNC Verbindung", u"Setup DNC Communication"}},
    {11, {u"Communication Port", u"Port serie", u"Schnittstelle", u"Communication Port"}},
    {12, {u"Baud rate", u"Vitesse", u"Geschwindigkeit", u"Baud rate"}},
    {13, {u"Parity", u"Controlle parité", u"Paritätskontrolle", u"Parity"}},
    {14, {u"Data bit", u"Bit de données", u"Daten Bit", u"Data bit"}},
    {15, {u"Stop bit", u"Bit de stop", u"Stop Bit", u"Stop Bit"}},
    {16, {u"CNC Control type", u"Type de control numerique", u"CNC Steuerung",
          u"CNC Control type"}},
    {17, {u"CNC Software Version", u"Version de logiciel CNC", u"CNC Software Version",
          u"CNC Software Version"}},
    {18, {u"Waiting fot X-on before output data", u"Attentre X-on avant l'envoi",
          u"Wartet auf X-on vor dem senden", u"Waiting fot X-on before output data"}},
    {19, {u"Do not send SPACE characters", u"Ne pas envoyer les espaces",
          u"Leerzeichen nicht senden", u"Do not send SPACE characters"}},
    {31, {u"S&etup", u"&Configuration", u"E&instellungen", u"&Setup"}},
    {32, {u"&Send", u"&Envoi", u"&Senden", u"&Send"}},
    {33, {u"&Reveive", u"&Reception", u"&Empfangen", u"&Receive"}},
    {34, {u"&Map Context", u"&MC Contenu CN", u"&MC Inhalt CNC", u"&Map Context"}},
    {35, {u"CC", u"Change prg.", u"Prg.Wahl", u"CC"}},
    {36, {u"CE", u"Change exe.", u"Produktion", u"CE"}},
    {37, {u"DC", u"Effacer", u"Löschen", u"DC"}},
    {38, {u"Help", u"Aide", u"Hilfe", u"Help"}},
};
// clang-format on

} // namespace

void InitTexts(Globals &g) {
    for (const Row &r : Rows)
        for (int col = 1; col <= 4; ++col)
            g.TextTable[r.row * 5 + col] = QString::fromUtf16(r.text[col - 1]);

    // The start of the window's caption, the same in every language.
    const QString title = QStringLiteral("%1 - V%2.%3.%4 - ")
                              .arg(QString::fromUtf8(AppTitle))
                              .arg(AppMajor)
                              .arg(AppMinor)
                              .arg(AppRevision);
    for (int col = 1; col <= 4; ++col)
        g.TextTable[20 * 5 + col] = title;
}
