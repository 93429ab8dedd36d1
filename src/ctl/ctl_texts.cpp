#include "ctl_texts.h"

namespace {

struct Row {
    const char *en;
    const char *fr;
    const char *de;
};

Row rowOf(CtlText text) {
    switch (text) {
    case CtlText::NotOffered:
        return {"%1: not offered by the control \"%2\"", "%1 : non disponible pour la CN \"%2\"",
                "%1: bei der Steuerung \"%2\" nicht vorhanden"};
    case CtlText::NoControlType:
        return {"no control type in section [%1] of %2: give --cnc 303, 504 or XonXoff (a "
                "section is read only as far as its port and line settings are complete)",
                "aucun type de CN dans la section [%1] de %2 : donner --cnc 303, 504 ou XonXoff "
                "(une section n'est lue que si son port et sa liaison sont complets)",
                "kein Steuerungstyp in Abschnitt [%1] von %2: --cnc 303, 504 oder XonXoff angeben "
                "(ein Abschnitt wird nur gelesen, soweit Port und Leitung vollständig sind)"};
    case CtlText::MissingSetting:
        return {"no %3 in section [%1] of %2: set it with the window's Setup, or give %4",
                "pas de %3 dans la section [%1] de %2 : le régler dans la configuration de la "
                "fenêtre, ou donner %4",
                "kein %3 in Abschnitt [%1] von %2: in den Einstellungen des Fensters setzen oder "
                "%4 angeben"};
    case CtlText::NoSuchPort:
        return {"Port=%3 in section [%1] of %2 names no serial port (COM1: to COM4:): choose one "
                "with the window's Setup, or give --port DEVICE",
                "Port=%3 dans la section [%1] de %2 ne désigne aucun port série (COM1: à COM4:) : "
                "en choisir un dans la configuration de la fenêtre, ou donner --port PÉRIPHÉRIQUE",
                "Port=%3 in Abschnitt [%1] von %2 bezeichnet keine serielle Schnittstelle (COM1: "
                "bis COM4:): in den Einstellungen des Fensters wählen oder --port GERÄT angeben"};
    case CtlText::NoSuchFile:
        return {"%1: no such file", "%1 : fichier introuvable", "%1: Datei nicht gefunden"};
    case CtlText::NotAFile:
        return {"%1: not a regular file", "%1 : pas un fichier ordinaire",
                "%1: keine gewöhnliche Datei"};
    case CtlText::CannotRead:
        return {"%1: cannot be read (%2)", "%1 : lecture impossible (%2)", "%1: nicht lesbar (%2)"};
    case CtlText::CannotWrite:
        return {"%1: cannot be written (%2)", "%1 : écriture impossible (%2)",
                "%1: nicht schreibbar (%2)"};
    case CtlText::NotListed:
        return {"%1: no such program on the control", "%1 : programme absent de la CN",
                "%1: Programm nicht in der Steuerung"};
    case CtlText::NothingListed:
        return {"the control lists no programs", "la CN ne liste aucun programme",
                "die Steuerung listet keine Programme"};
    case CtlText::NothingReceived:
        return {"the control sent no program", "la CN n'a envoyé aucun programme",
                "die Steuerung hat kein Programm gesendet"};
    case CtlText::Interrupted:
        return {"interrupted (%1): the transfer was ended and the port closed",
                "interrompu (%1) : transfert arrêté, port fermé",
                "unterbrochen (%1): Übertragung beendet, Schnittstelle geschlossen"};
    case CtlText::NotSaved:
        return {"the %1 characters received are not saved: the reception was cut short",
                "les %1 caractères reçus ne sont pas enregistrés : réception interrompue",
                "die %1 empfangenen Zeichen sind nicht gespeichert: Empfang abgebrochen"};
    case CtlText::NotCounted:
        return {"the program was sent, but its tools were not counted",
                "le programme a été envoyé, mais ses outils n'ont pas été comptés",
                "das Programm wurde gesendet, seine Werkzeuge aber nicht gezählt"};
    case CtlText::BlankLine:
        return {"the send stopped at a blank line: the %1 lines with text behind it were not "
                "sent, the control has only the lines before it",
                "l'envoi s'est arrêté à une ligne vide : les %1 lignes non vides qui la suivent "
                "n'ont pas été envoyées, la CN n'a que les lignes d'avant",
                "die Übertragung endete an einer Leerzeile: die %1 Zeilen mit Text dahinter "
                "wurden nicht gesendet, die Steuerung hat nur die Zeilen davor"};
    case CtlText::NoCarriageReturn:
        return {"the file holds no CR: its %1 lines ended by LF went out as one line",
                "le fichier ne contient aucun CR : ses %1 lignes terminées par LF sont parties "
                "en une seule ligne",
                "die Datei enthält kein CR: ihre %1 mit LF endenden Zeilen gingen als eine Zeile "
                "hinaus"};
    case CtlText::LinesDropped:
        return {"%1 lines the control sent were not kept: it sent more than one line before "
                "the go-ahead, or a line together with its end",
                "%1 lignes envoyées par la CN n'ont pas été gardées : elle a envoyé plus d'une "
                "ligne avant l'acquittement, ou une ligne avec la fin",
                "%1 von der Steuerung gesendete Zeilen wurden nicht behalten: sie sandte mehr als "
                "eine Zeile vor der Freigabe, oder eine Zeile mit dem Ende zusammen"};
    case CtlText::StdoutClosed:
        return {"standard output is closed", "la sortie standard est fermée",
                "die Standardausgabe ist geschlossen"};
    case CtlText::Characters:
        return {"characters", "caractères", "Zeichen"};
    case CtlText::PerSecond:
        return {"characters/s", "caractères/s", "Zeichen/s"};
    case CtlText::Left:
        return {"left", "restant", "verbleibend"};
    case CtlText::Receiving:
        return {"Receive : ", "Réception : ", "Empfang : "};
    }
    return {"", "", ""};
}

} // namespace

QString ctlText(CtlText text, qint16 language) {
    const Row r = rowOf(text);
    return QString::fromUtf8(language == 2 ? r.fr : language == 3 ? r.de : r.en);
}
