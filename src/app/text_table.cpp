#include "text_table.h"

#include "app_info.h"

namespace {

struct Row {
    TextRow row;
    const char16_t *text[4]; // columns 1..4
};

// clang-format off
const Row Rows[] = {
    {QuitCaption, {u"&Quit", u"&Quitter", u"&Beenden", u"&Quit"}},
    {SendFilePrefix, {u"Send file : ", u"Envoi du fichier : ", u"Sende Datei : ", u"Send file : "}},
    {TimeoutMessage, {u"Timeout - No answer from CNC", u"Dépassement du temps de réponse CNC",
          u"Wartezeit überschritten - Keine Antwort von CNC erhalten",
          u"Timeout - No answer from CNC"}},
    {SetupTitle, {u"Setup DNC Communication", u"Configuration liaison DNC",
          u"Einstellungen DNC Verbindung", u"Setup DNC Communication"}},
    {PortLabel, {u"Communication Port", u"Port serie", u"Schnittstelle", u"Communication Port"}},
    {BaudLabel, {u"Baud rate", u"Vitesse", u"Geschwindigkeit", u"Baud rate"}},
    {ParityLabel, {u"Parity", u"Controlle parité", u"Paritätskontrolle", u"Parity"}},
    {DataLabel, {u"Data bit", u"Bit de données", u"Daten Bit", u"Data bit"}},
    {StopLabel, {u"Stop bit", u"Bit de stop", u"Stop Bit", u"Stop Bit"}},
    {CncLabel, {u"CNC Control type", u"Type de control numerique", u"CNC Steuerung",
          u"CNC Control type"}},
    {SoftLabel, {u"CNC Software Version", u"Version de logiciel CNC", u"CNC Software Version",
          u"CNC Software Version"}},
    {WaitXonCaption, {u"Waiting fot X-on before output data", u"Attentre X-on avant l'envoi",
          u"Wartet auf X-on vor dem senden", u"Waiting fot X-on before output data"}},
    {NoSpaceCaption, {u"Do not send SPACE characters", u"Ne pas envoyer les espaces",
          u"Leerzeichen nicht senden", u"Do not send SPACE characters"}},
    {SetupCaption, {u"S&etup", u"&Configuration", u"E&instellungen", u"&Setup"}},
    {SendCaption, {u"&Send", u"&Envoi", u"&Senden", u"&Send"}},
    {ReceiveCaption, {u"&Reveive", u"&Reception", u"&Empfangen", u"&Receive"}},
    {MapCaption, {u"&Map Context", u"&MC Contenu CN", u"&MC Inhalt CNC", u"&Map Context"}},
    {ChangeCaption, {u"CC", u"Change prg.", u"Prg.Wahl", u"CC"}},
    {ExecuteCaption, {u"CE", u"Change exe.", u"Produktion", u"CE"}},
    {DeleteCaption, {u"DC", u"Effacer", u"Löschen", u"DC"}},
    {HelpCaption, {u"Help", u"Aide", u"Hilfe", u"Help"}},
};
// clang-format on

} // namespace

void InitTexts(Globals &g) {
    for (const Row &r : Rows)
        for (int col = 1; col <= 4; ++col)
            g.TextTable[textIndex(r.row, col)] = QString::fromUtf16(r.text[col - 1]);

    // The start of the window's caption, the same in every language.
    const QString title = QStringLiteral("%1 - V%2.%3.%4 - ")
                              .arg(QString::fromUtf8(AppTitle))
                              .arg(AppMajor)
                              .arg(AppMinor)
                              .arg(AppRevision);
    for (int col = 1; col <= 4; ++col)
        g.TextTable[textIndex(WindowTitle, col)] = title;
}
