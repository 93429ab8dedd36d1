<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>Directory</name>
    <message>
        <source>no such command</source>
        <translation>unbekannter Befehl</translation>
    </message>
    <message>
        <source>no delete command</source>
        <translation>kein Löschbefehl</translation>
    </message>
    <message>
        <source>no directory command</source>
        <translation>kein Befehl für das Programmverzeichnis</translation>
    </message>
</context>
<context>
    <name>File</name>
    <message>
        <source>is a FIFO (named pipe), not a regular file</source>
        <translation>ist eine benannte Pipe (FIFO), keine normale Datei</translation>
    </message>
    <message>
        <source>is a character device, not a regular file</source>
        <translation>ist ein zeichenorientiertes Gerät, keine normale Datei</translation>
    </message>
    <message>
        <source>is a block device, not a regular file</source>
        <translation>ist ein blockorientiertes Gerät, keine normale Datei</translation>
    </message>
    <message>
        <source>is a folder, not a regular file</source>
        <translation>ist ein Ordner, keine normale Datei</translation>
    </message>
    <message>
        <source>is a socket, not a regular file</source>
        <translation>ist ein Socket, keine normale Datei</translation>
    </message>
    <message>
        <source>is no regular file</source>
        <translation>ist keine normale Datei</translation>
    </message>
    <message>
        <source>%1 MB</source>
        <translation>%1 MB</translation>
    </message>
    <message>
        <source>%1 bytes</source>
        <translation>%1 Byte</translation>
    </message>
    <message>
        <source>line %1 is longer than %2</source>
        <translation>Zeile %1 ist länger als %2</translation>
    </message>
    <message>
        <source>%1 %2: only a regular file can be sent.</source>
        <translation>%1 %2: nur eine normale Datei kann gesendet werden.</translation>
    </message>
    <message>
        <source>%1: %2. Nothing was sent.</source>
        <translation>%1: %2. Es wurde nichts gesendet.</translation>
    </message>
    <message>
        <source>%1: %2. The lines before it were sent, the rest of the file was not.</source>
        <translation>%1: %2. Die Zeilen davor wurden gesendet, der Rest der Datei nicht.</translation>
    </message>
    <message>
        <source>it has only %1 lines, no line %2</source>
        <translation>sie hat nur %1 Zeilen, keine Zeile %2</translation>
    </message>
    <message>
        <source>no line of it is block N%1</source>
        <translation>keine ihrer Zeilen ist der Satz N%1</translation>
    </message>
    <message>
        <source>no line of it calls tool %1</source>
        <translation>keine ihrer Zeilen ruft Werkzeug %1 auf</translation>
    </message>
    <message>
        <source>%1 is line %2, inside the program&apos;s head (its first %3 lines, which go first anyway)</source>
        <translation>%1 ist Zeile %2, im Programmkopf (seine ersten %3 Zeilen, die ohnehin zuerst gesendet werden)</translation>
    </message>
    <message>
        <source>The program cannot be saved: %1 %2.</source>
        <translation>Das Programm kann nicht gespeichert werden: %1 %2.</translation>
    </message>
    <message>
        <source>The program cannot be saved as %1: %2</source>
        <translation>Das Programm kann nicht als %1 gespeichert werden: %2</translation>
    </message>
    <message>
        <source>The NC file %1 cannot be sent: %2</source>
        <translation>Die NC-Datei %1 kann nicht gesendet werden: %2</translation>
    </message>
</context>
<context>
    <name>Journal</name>
    <message>
        <source>The folder &quot;%1&quot; cannot be created.</source>
        <translation>Der Ordner „%1“ kann nicht angelegt werden.</translation>
    </message>
    <message>
        <source>The journal &quot;%1&quot; cannot be created: %2</source>
        <translation>Das Journal „%1“ kann nicht angelegt werden: %2</translation>
    </message>
    <message>
        <source>The journal&apos;s tables are not built in.</source>
        <translation>Die Tabellen des Journals sind nicht eingebaut.</translation>
    </message>
    <message>
        <source>The journal&apos;s tables cannot be made in %1: %2</source>
        <translation>Die Tabellen des Journals können in %1 nicht angelegt werden: %2</translation>
    </message>
    <message>
        <source>%1 row(s) of the journal could not be written and are lost.</source>
        <translation>%1 Zeile(n) des Journals konnten nicht geschrieben werden und sind verloren.</translation>
    </message>
    <message>
        <source>There is no journal of this run.</source>
        <translation>Für diesen Lauf gibt es kein Journal.</translation>
    </message>
    <message>
        <source>The journal of transfers cannot be written: %1 The transfers go on; their rows are kept and written as soon as it can be.</source>
        <translation>Das Journal der Übertragungen kann nicht geschrieben werden: %1 Die Übertragungen laufen weiter; ihre Zeilen werden aufbewahrt und geschrieben, sobald es wieder geht.</translation>
    </message>
    <message>
        <source>The journal &quot;%1&quot; does not exist.</source>
        <translation>Das Journal „%1“ existiert nicht.</translation>
    </message>
    <message>
        <source>The journal &quot;%1&quot; is not a file.</source>
        <translation>Das Journal „%1“ ist keine Datei.</translation>
    </message>
    <message>
        <source>The journal &quot;%1&quot; cannot be opened: %2</source>
        <translation>Das Journal „%1“ kann nicht geöffnet werden: %2</translation>
    </message>
</context>
<context>
    <name>Port</name>
    <message>
        <source>no serial port is set up (expected COM1: to COM4:). Choose one with Setup.</source>
        <translation>keine serielle Schnittstelle eingestellt (COM1: bis COM4: erwartet). Bitte unter Einstellungen eine wählen.</translation>
    </message>
    <message>
        <source>expected four values separated by commas: baud, parity, data bits, stop bits</source>
        <translation>vier durch Kommas getrennte Werte erwartet: Baudrate, Parität, Datenbits, Stoppbits</translation>
    </message>
    <message>
        <source>the baud rate must be a whole number above 0, not &quot;%1&quot;</source>
        <translation>die Baudrate muss eine ganze Zahl über 0 sein, nicht „%1“</translation>
    </message>
    <message>
        <source>the parity must be E, O or N, not &quot;%1&quot;</source>
        <translation>die Parität muss E, O oder N sein, nicht „%1“</translation>
    </message>
    <message>
        <source>the data bits must be 5, 6, 7 or 8, not &quot;%1&quot;</source>
        <translation>die Datenbits müssen 5, 6, 7 oder 8 sein, nicht „%1“</translation>
    </message>
    <message>
        <source>1.5 stop bits cannot be set on this system; use 1 or 2</source>
        <translation>1,5 Stoppbits sind auf diesem System nicht einstellbar; 1 oder 2 verwenden</translation>
    </message>
    <message>
        <source>the stop bits must be 1 or 2, not &quot;%1&quot;</source>
        <translation>die Stoppbits müssen 1 oder 2 sein, nicht „%1“</translation>
    </message>
    <message>
        <source>The group %1 may open it: add the user to it with  %2  then log out and in again.</source>
        <translation>Die Gruppe %1 darf sie öffnen: den Benutzer mit  %2  hinzufügen, dann ab- und wieder anmelden.</translation>
    </message>
    <message>
        <source>Serial devices on Debian belong to the group %1, which a user joins with  %2  (then log out and in again)</source>
        <translation>Serielle Schnittstellen gehören unter Debian der Gruppe %1, in die man einen Benutzer mit  %2  aufnimmt (dann ab- und wieder anmelden)</translation>
    </message>
    <message>
        <source>; this device (%1) lets no group open it: ask the administrator.</source>
        <translation>; dieses Gerät (%1) lässt keine Gruppe zu: bitte den Administrator fragen.</translation>
    </message>
    <message>
        <source>the station of section %1 (process %2)</source>
        <translation>die Station des Abschnitts %1 (Prozess %2)</translation>
    </message>
    <message>
        <source>the line settings &quot;%1&quot; cannot be used: %2</source>
        <translation>die Leitungseinstellungen „%1“ sind nicht verwendbar: %2</translation>
    </message>
    <message>
        <source>the port is not open</source>
        <translation>die Schnittstelle ist nicht offen</translation>
    </message>
    <message>
        <source>writing to the device failed (%1)</source>
        <translation>Schreiben auf die Schnittstelle fehlgeschlagen (%1)</translation>
    </message>
    <message>
        <source>the device is gone: unplugged, or closed at the other end</source>
        <translation>die Schnittstelle ist weg: ausgesteckt oder am anderen Ende geschlossen</translation>
    </message>
    <message>
        <source>reading from the device failed: it was unplugged, or closed at the other end</source>
        <translation>Lesen von der Schnittstelle fehlgeschlagen: sie wurde ausgesteckt oder am anderen Ende geschlossen</translation>
    </message>
    <message>
        <source>writing to the device failed: it was unplugged, or closed at the other end</source>
        <translation>Schreiben auf die Schnittstelle fehlgeschlagen: sie wurde ausgesteckt oder am anderen Ende geschlossen</translation>
    </message>
    <message>
        <source>%1 (process %2)</source>
        <translation>%1 (Prozess %2)</translation>
    </message>
    <message>
        <source>the opening was given up</source>
        <translation>das Öffnen wurde abgebrochen</translation>
    </message>
    <message>
        <source>an answer of %1 bytes</source>
        <translation>eine Antwort von %1 Byte</translation>
    </message>
    <message>
        <source>the device server sent what is not Telnet (%1): the line&apos;s characters behind it cannot be trusted</source>
        <translation>der Geräteserver hat etwas gesendet, das kein Telnet ist (%1): den Zeichen der Leitung danach ist nicht zu trauen</translation>
    </message>
    <message>
        <source>writing to the device server failed (%1)</source>
        <translation>Schreiben zum Geräteserver fehlgeschlagen (%1)</translation>
    </message>
    <message>
        <source>the device is gone: %1 closed the connection</source>
        <translation>die Schnittstelle ist weg: %1 hat die Verbindung geschlossen</translation>
    </message>
    <message>
        <source>the device is gone: the connection to %1 was lost (%2)</source>
        <translation>die Schnittstelle ist weg: die Verbindung zu %1 ist verloren (%2)</translation>
    </message>
    <message>
        <source>The port %1 failed: %2</source>
        <translation>Die Schnittstelle %1 ist ausgefallen: %2</translation>
    </message>
    <message>
        <source>No port can be opened: %1</source>
        <translation>Es kann keine Schnittstelle geöffnet werden: %1</translation>
    </message>
    <message>
        <source>The port %1 cannot be opened: %2</source>
        <translation>Die Schnittstelle %1 kann nicht geöffnet werden: %2</translation>
    </message>
    <message>
        <source>the name %1 does not resolve to an address. Check the device server&apos;s name, or give its address.</source>
        <translation>der Name %1 ergibt keine Adresse. Den Namen des Geräteservers prüfen oder seine Adresse angeben.</translation>
    </message>
    <message>
        <source>%1 refused the connection. Nothing listens there: check the port number set on the device server, and that it is on.</source>
        <translation>%1 hat die Verbindung abgelehnt. Dort hört nichts: die am Geräteserver eingestellte Portnummer prüfen und ob er eingeschaltet ist.</translation>
    </message>
    <message>
        <source>the connection to %1 failed (%2)</source>
        <translation>die Verbindung zu %1 ist fehlgeschlagen (%2)</translation>
    </message>
    <message>
        <source>%1 did not answer within %2 s. Is the device server on, and its address right?</source>
        <translation>%1 hat nicht innerhalb von %2 s geantwortet. Ist der Geräteserver eingeschaltet und seine Adresse richtig?</translation>
    </message>
    <message>
        <source>%1 does not take RFC 2217 (COM port control). If it carries the line&apos;s bytes alone, name it tcp://%2:%3.</source>
        <translation>%1 beherrscht RFC 2217 (Steuerung der COM-Schnittstelle) nicht. Überträgt er nur die Bytes der Leitung, ihn als tcp://%2:%3 angeben.</translation>
    </message>
    <message>
        <source>%1 sent what is not Telnet (%2)</source>
        <translation>%1 hat etwas gesendet, das kein Telnet ist (%2)</translation>
    </message>
    <message>
        <source>%1 closed the connection while the line was set up</source>
        <translation>%1 hat die Verbindung beim Einstellen der Leitung geschlossen</translation>
    </message>
    <message>
        <source>%1 did not confirm the %2 within %3 s</source>
        <translation>%1 hat die Einstellung %2 nicht innerhalb von %3 s bestätigt</translation>
    </message>
    <message>
        <source>%1 refused the baud rate %2: it set %3</source>
        <translation>%1 hat die Baudrate %2 abgelehnt: eingestellt ist %3</translation>
    </message>
    <message>
        <source>%1 refused %2 data bits: it set %3</source>
        <translation>%1 hat %2 Datenbits abgelehnt: eingestellt ist %3</translation>
    </message>
    <message>
        <source>%1 refused the parity %2: it set %3</source>
        <translation>%1 hat die Parität %2 abgelehnt: eingestellt ist %3</translation>
    </message>
    <message>
        <source>%1 refused %2 stop bits: it set %3</source>
        <translation>%1 hat %2 Stoppbits abgelehnt: eingestellt ist %3</translation>
    </message>
    <message>
        <source>there is no such device, and this PC has no serial device at all. Is the adapter plugged in?</source>
        <translation>dieses Gerät gibt es nicht, und dieser PC hat überhaupt keine serielle Schnittstelle. Ist der Adapter eingesteckt?</translation>
    </message>
    <message>
        <source>there is no such device. This PC has: %1.</source>
        <translation>dieses Gerät gibt es nicht. Dieser PC hat: %1.</translation>
    </message>
    <message>
        <source>there is no such device. This PC has: %1. Choose the device of %2 with Setup.</source>
        <translation>dieses Gerät gibt es nicht. Dieser PC hat: %1. Das Gerät für %2 unter Einstellungen wählen.</translation>
    </message>
    <message>
        <source>%1 holds it (%2). Close that program and try again.</source>
        <translation>%1 belegt sie (%2). Dieses Programm beenden und noch einmal versuchen.</translation>
    </message>
    <message>
        <source>another program holds it (%1). Close that program (a terminal, another DNC program) and try again.</source>
        <translation>ein anderes Programm belegt sie (%1). Dieses Programm (ein Terminal, ein anderes DNC-Programm) beenden und noch einmal versuchen.</translation>
    </message>
    <message>
        <source>the user %1 may not open it (%2). </source>
        <translation>der Benutzer %1 darf sie nicht öffnen (%2). </translation>
    </message>
    <message>
        <source>it is open already</source>
        <translation>sie ist schon offen</translation>
    </message>
    <message>
        <source>%1 holds it. Stop the station (systemctl stop dnc-station@%2) to use the port here.</source>
        <translation>%1 belegt sie. Die Station anhalten (systemctl stop dnc-station@%2), um die Schnittstelle hier zu benutzen.</translation>
    </message>
</context>
<context>
    <name>Settings</name>
    <message>
        <source>The settings file %1 %2: the settings can be neither read nor saved.</source>
        <translation>Die Einstellungsdatei %1 %2: die Einstellungen können weder gelesen noch gespeichert werden.</translation>
    </message>
    <message>
        <source>cannot be read (%1)</source>
        <translation>ist nicht lesbar (%1)</translation>
    </message>
    <message>
        <source>The configuration name given with -s holds a line break, which a section of the settings file cannot hold. Start the program again with a name on one line.</source>
        <translation>Der mit -s angegebene Konfigurationsname enthält einen Zeilenumbruch, den ein Abschnitt der Einstellungsdatei nicht aufnehmen kann. Das Programm mit einem einzeiligen Namen neu starten.</translation>
    </message>
</context>
<context>
    <name>Setup</name>
    <message>
        <source>Device of %1</source>
        <translation>Gerät für %1</translation>
    </message>
    <message>
        <source>Default: %1</source>
        <translation>Standard: %1</translation>
    </message>
    <message>
        <source>absent: %1</source>
        <translation>nicht vorhanden: %1</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Beschreibung</translation>
    </message>
    <message>
        <source>Maker</source>
        <translation>Hersteller</translation>
    </message>
    <message>
        <source>Serial number</source>
        <translation>Seriennummer</translation>
    </message>
    <message>
        <source>Look again</source>
        <translation>Neu suchen</translation>
    </message>
    <message>
        <source>%1 is set in the environment and comes first: %2 is opened.</source>
        <translation>%1 ist in der Umgebung gesetzt und hat Vorrang: %2 wird geöffnet.</translation>
    </message>
    <message>
        <source>Not present on this PC now.</source>
        <translation>Zurzeit an diesem PC nicht vorhanden.</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Asking the device server…</source>
        <translation>Der Geräteserver wird gefragt …</translation>
    </message>
    <message>
        <source>The device server answers.</source>
        <translation>Der Geräteserver antwortet.</translation>
    </message>
    <message>
        <source>The device server does not answer: %1</source>
        <translation>Der Geräteserver antwortet nicht: %1</translation>
    </message>
    <message>
        <source>&quot;Look again&quot; asks the device server whether it answers.</source>
        <translation>„Neu suchen“ fragt den Geräteserver, ob er antwortet.</translation>
    </message>
</context>
<context>
    <name>Station</name>
    <message>
        <source>Usage: dnc-station [-s SECTION] [-d DATABASE] [-c CODE] [-x STRING]...
Serves the machine of one section of dnc.ini (control type &quot;XonXoff&quot;) until stopped:
a request punched at the control is answered with the program it names, from
ProgramDir; any other program punched is filed in ReceiveDir.
  -s SECTION    the section of dnc.ini (default: Default)
  -d DATABASE   count the tools of each program sent (an SQLite file or postgresql://)
  -c CODE       language: 044 English, 033 French, 049 German
  -x STRING     a limit string that cuts tool names short; repeat for each
SIGTERM stops it, SIGHUP reads dnc.ini again between transfers.
</source>
        <translation>Aufruf: dnc-station [-s ABSCHNITT] [-d DATENBANK] [-c CODE] [-x TEXT]...
Bedient die Maschine eines Abschnitts von dnc.ini (Steuerung „XonXoff“) bis zum Anhalten:
eine an der Steuerung gestanzte Anforderung wird mit dem genannten Programm aus
ProgramDir beantwortet; jedes andere gestanzte Programm wird in ReceiveDir abgelegt.
  -s ABSCHNITT  der Abschnitt von dnc.ini (Standard: Default)
  -d DATENBANK  die Werkzeuge jedes gesendeten Programms zählen (SQLite-Datei oder postgresql://)
  -c CODE       Sprache: 044 Englisch, 033 Französisch, 049 Deutsch
  -x TEXT       ein Text, an dem Werkzeugnamen abgeschnitten werden; für jeden wiederholen
SIGTERM hält sie an, SIGHUP liest dnc.ini zwischen zwei Übertragungen neu.
</translation>
    </message>
    <message>
        <source>%1 takes a value that is not empty</source>
        <translation>%1 verlangt einen nicht leeren Wert</translation>
    </message>
    <message>
        <source>unknown argument %1</source>
        <translation>unbekanntes Argument %1</translation>
    </message>
    <message>
        <source>cannot serve section [%1] of %2: %3</source>
        <translation>Abschnitt [%1] von %2 kann nicht bedient werden: %3</translation>
    </message>
    <message>
        <source>no free name beside %1</source>
        <translation>kein freier Name neben %1</translation>
    </message>
    <message>
        <source>, cut short: the device went away</source>
        <translation>, abgebrochen: die Schnittstelle ist weg</translation>
    </message>
    <message>
        <source>, cut short: the control fell silent before its closing %</source>
        <translation>, abgebrochen: die Steuerung verstummte vor ihrem abschließenden %</translation>
    </message>
    <message>
        <source>, cut short: the station was stopped</source>
        <translation>, abgebrochen: die Station wurde angehalten</translation>
    </message>
    <message>
        <source>serving %1: programs from %2, punches filed in %3, requests %4</source>
        <translation>bedient %1: Programme aus %2, Stanzungen abgelegt in %3, Anforderungen %4</translation>
    </message>
    <message>
        <source>settings read again: %1</source>
        <translation>Einstellungen neu gelesen: %1</translation>
    </message>
    <message>
        <source>settings read again, not used: %1</source>
        <translation>Einstellungen neu gelesen, nicht übernommen: %1</translation>
    </message>
    <message>
        <source>%1 characters before any %% ignored</source>
        <translation>%1 Zeichen vor dem ersten %% übergangen</translation>
    </message>
    <message>
        <source>%1 serves it already</source>
        <translation>%1 bedient sie schon</translation>
    </message>
    <message>
        <source>%1; trying again every %2 s</source>
        <translation>%1; neuer Versuch alle %2 s</translation>
    </message>
    <message>
        <source>%1 is back: listening</source>
        <translation>%1 ist wieder da: empfangsbereit</translation>
    </message>
    <message>
        <source>listening on %1</source>
        <translation>empfangsbereit an %1</translation>
    </message>
    <message>
        <source>device lost: %1; waiting for it to come back</source>
        <translation>Schnittstelle verloren: %1; warte, bis sie wieder da ist</translation>
    </message>
    <message>
        <source>punch of %1 characters NOT filed in %2: %3</source>
        <translation>Stanzung von %1 Zeichen NICHT abgelegt in %2: %3</translation>
    </message>
    <message>
        <source>punch filed: %1, %2 characters, %3 lines%4</source>
        <translation>Stanzung abgelegt: %1, %2 Zeichen, %3 Zeilen%4</translation>
    </message>
    <message>
        <source>request for &quot;%1&quot; refused: %2</source>
        <translation>Anforderung von „%1“ abgelehnt: %2</translation>
    </message>
    <message>
        <source>no reply sent: %1</source>
        <translation>keine Antwort gesendet: %1</translation>
    </message>
    <message>
        <source>request for &quot;%1&quot;: %2</source>
        <translation>Anforderung von „%1“: %2</translation>
    </message>
    <message>
        <source>answer %1: %2, %3 characters, %4 lines in %5 s%6</source>
        <translation>Antwort %1: %2, %3 Zeichen, %4 Zeilen in %5 s%6</translation>
    </message>
    <message>
        <source>%1 is not set</source>
        <translation>%1 ist nicht gesetzt</translation>
    </message>
    <message>
        <source>%1=%2 is no folder</source>
        <translation>%1=%2 ist kein Ordner</translation>
    </message>
    <message>
        <source>%1=%2 cannot be written</source>
        <translation>%1=%2 ist nicht beschreibbar</translation>
    </message>
    <message>
        <source>a station serves a control &quot;XonXoff&quot; only: a control &quot;303&quot; or &quot;504&quot; sends a program only when the PC asks for it</source>
        <translation>eine Station bedient nur eine Steuerung „XonXoff“: eine Steuerung „303“ oder „504“ sendet ein Programm nur, wenn der PC es anfordert</translation>
    </message>
    <message>
        <source>%1=%2 is no program number (O and digits)</source>
        <translation>%1=%2 ist keine Programmnummer (O und Ziffern)</translation>
    </message>
    <message>
        <source>RequestNumber and ReplyNumber are the same program</source>
        <translation>RequestNumber und ReplyNumber sind dasselbe Programm</translation>
    </message>
    <message>
        <source>request for &quot;%1&quot; from %2: %3</source>
        <translation>Anforderung von „%1“ ab %2: %3</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>cancelled</source>
        <translation>abgebrochen</translation>
    </message>
    <message>
        <source>sent, tools not counted</source>
        <translation>gesendet, Werkzeuge nicht gezählt</translation>
    </message>
    <message>
        <source>timed out</source>
        <translation>Zeit überschritten</translation>
    </message>
    <message>
        <source>not on the control</source>
        <translation>nicht in der Steuerung</translation>
    </message>
    <message>
        <source>file failure</source>
        <translation>Dateifehler</translation>
    </message>
    <message>
        <source>port failure</source>
        <translation>Schnittstellenfehler</translation>
    </message>
    <message>
        <source>interrupted</source>
        <translation>unterbrochen</translation>
    </message>
    <message>
        <source>line %1</source>
        <translation>Zeile %1</translation>
    </message>
    <message>
        <source>block N%1</source>
        <translation>Satz N%1</translation>
    </message>
    <message>
        <source>tool %1</source>
        <translation>Werkzeug %1</translation>
    </message>
    <message>
        <source>the station&apos;s state is not written: %1</source>
        <translation>der Zustand der Station wird nicht geschrieben: %1</translation>
    </message>
</context>
<context>
    <name>ToolList</name>
    <message>
        <source>The tool &quot;%1&quot; and those after it in this program were not counted: the tool database %2 is busy (another station or program holds it locked) and stayed so for %3, the longest this program waits.</source>
        <translation>Das Werkzeug „%1“ und die folgenden dieses Programms wurden nicht gezählt: die Werkzeugdatenbank %2 ist belegt (eine andere Station oder ein anderes Programm hält sie gesperrt) und blieb es %3 lang, so lange, wie dieses Programm höchstens wartet.</translation>
    </message>
    <message>
        <source>The tool &quot;%1&quot; has no count (util is empty).</source>
        <translation>Das Werkzeug „%1“ hat keinen Zähler (util ist leer).</translation>
    </message>
    <message>
        <source>The count of the tool &quot;%1&quot; is not a 16-bit integer: %2</source>
        <translation>Der Zähler des Werkzeugs „%1“ ist keine 16-Bit-Ganzzahl: %2</translation>
    </message>
    <message>
        <source>The count of the tool &quot;%1&quot; is at its highest, 32767.</source>
        <translation>Der Zähler des Werkzeugs „%1“ steht auf dem Höchstwert 32767.</translation>
    </message>
    <message>
        <source>The tool name &quot;%1&quot; holds a double quote (&quot;), which a tool name may not hold.</source>
        <translation>Der Werkzeugname „%1“ enthält ein Anführungszeichen (&quot;), das in einem Werkzeugnamen nicht stehen darf.</translation>
    </message>
    <message>
        <source>The tool database &quot;%1&quot; does not exist.</source>
        <translation>Die Werkzeugdatenbank „%1“ existiert nicht.</translation>
    </message>
    <message>
        <source>The tool database &quot;%1&quot; is not a file.</source>
        <translation>Die Werkzeugdatenbank „%1“ ist keine Datei.</translation>
    </message>
    <message>
        <source>The tool database &quot;%1&quot; cannot be opened: %2</source>
        <translation>Die Werkzeugdatenbank „%1“ kann nicht geöffnet werden: %2</translation>
    </message>
    <message>
        <source>The tool database %1 is no valid PostgreSQL URI: %2.</source>
        <translation>Die Werkzeugdatenbank %1 ist keine gültige PostgreSQL-URI: %2.</translation>
    </message>
    <message>
        <source>The tool database %1 cannot be used: Qt&apos;s PostgreSQL driver (QPSQL, package libqt6sql6-psql) is not installed.</source>
        <translation>Die Werkzeugdatenbank %1 ist nicht verwendbar: der PostgreSQL-Treiber von Qt (QPSQL, Paket libqt6sql6-psql) ist nicht installiert.</translation>
    </message>
    <message>
        <source>The tool database %1 cannot be opened: %2</source>
        <translation>Die Werkzeugdatenbank %1 kann nicht geöffnet werden: %2</translation>
    </message>
    <message>
        <source>The tool database %1 is busy: another station or program holds it locked, and it stayed so for %2.</source>
        <translation>Die Werkzeugdatenbank %1 ist belegt: eine andere Station oder ein anderes Programm hält sie gesperrt, und das blieb %2 lang so.</translation>
    </message>
    <message>
        <source>%1 is not a usable %2 database: %3</source>
        <translation>%1 ist keine verwendbare %2-Datenbank: %3</translation>
    </message>
    <message>
        <source>The database %1 holds no table tool_list.</source>
        <translation>Die Datenbank %1 enthält keine Tabelle tool_list.</translation>
    </message>
    <message>
        <source>The table tool_list of %1 cannot be read: %2</source>
        <translation>Die Tabelle tool_list von %1 ist nicht lesbar: %2</translation>
    </message>
    <message>
        <source>The table tool_list of %1 lacks the field(s) %2.</source>
        <translation>Der Tabelle tool_list von %1 fehlt/fehlen das/die Feld(er) %2.</translation>
    </message>
    <message>
        <source> Until it can be used, tools are not counted and the tool list is not shown; every send tries again, and counting comes back by itself.</source>
        <translation> Solange sie nicht verwendbar ist, werden keine Werkzeuge gezählt und die Werkzeugliste wird nicht angezeigt; jedes Senden versucht es neu, und das Zählen kommt von selbst wieder.</translation>
    </message>
    <message>
        <source> Tools are not counted and the tool list is not shown until the program is started again.</source>
        <translation> Werkzeuge werden nicht gezählt und die Werkzeugliste wird nicht angezeigt, bis das Programm neu gestartet wird.</translation>
    </message>
    <message>
        <source>The head of the program was not read to its end: %1.</source>
        <translation>Der Programmkopf wurde nicht bis zu seinem Ende gelesen: %1.</translation>
    </message>
    <message>
        <source>The tool number in the line &quot;%1&quot; is out of range.</source>
        <translation>Die Werkzeugnummer in der Zeile „%1“ liegt außerhalb des Bereichs.</translation>
    </message>
    <message>
        <source>The tool line &quot;%1&quot; has no tool name after its number.</source>
        <translation>Die Werkzeugzeile „%1“ hat nach ihrer Nummer keinen Werkzeugnamen.</translation>
    </message>
    <message>
        <source>The tool database is busy with another station or program: waiting up to %1 for it.</source>
        <translation>Die Werkzeugdatenbank ist von einer anderen Station oder einem anderen Programm belegt: warte höchstens %1.</translation>
    </message>
    <message>
        <source>The tools of %1 cannot be counted: it cannot be read (%2).</source>
        <translation>Die Werkzeuge von %1 können nicht gezählt werden: die Datei ist nicht lesbar (%2).</translation>
    </message>
    <message>
        <source>The tools of this program were not counted: the tool database %1 failed: %2</source>
        <translation>Die Werkzeuge dieses Programms wurden nicht gezählt: Fehler der Werkzeugdatenbank %1: %2</translation>
    </message>
    <message>
        <source>The tool name &quot;%1&quot; holds a NUL character, which a tool name may not hold.</source>
        <translation>Der Werkzeugname „%1“ enthält ein NUL-Zeichen, das in einem Werkzeugnamen nicht stehen darf.</translation>
    </message>
    <message>
        <source>The tool name &quot;%1&quot; is %2 bytes long; a tool name may hold at most %3.</source>
        <translation>Der Werkzeugname „%1“ ist %2 Bytes lang; ein Werkzeugname darf höchstens %3 haben.</translation>
    </message>
    <message>
        <source>the connection was lost.</source>
        <translation>die Verbindung ist abgerissen.</translation>
    </message>
    <message>
        <source>The change was not saved: the connection to the tool database %1 was lost.</source>
        <translation>Die Änderung wurde nicht gespeichert: die Verbindung zur Werkzeugdatenbank %1 ist abgerissen.</translation>
    </message>
</context>
<context>
    <name>Web</name>
    <message>
        <source>All machines</source>
        <translation>Alle Maschinen</translation>
    </message>
    <message>
        <source>All outcomes</source>
        <translation>Alle Ergebnisse</translation>
    </message>
    <message>
        <source>Machine</source>
        <translation>Maschine</translation>
    </message>
    <message>
        <source>Day</source>
        <translation>Tag</translation>
    </message>
    <message>
        <source>Outcome</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>Anzeigen</translation>
    </message>
    <message>
        <source>Download as CSV</source>
        <translation>Als CSV herunterladen</translation>
    </message>
    <message>
        <source>No journal row matches.</source>
        <translation>Keine Zeile des Protokolls passt.</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Operation</source>
        <translation>Vorgang</translation>
    </message>
    <message>
        <source>Program</source>
        <translation>Programm</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Bytes</source>
        <translation>Bytes</translation>
    </message>
    <message>
        <source>Duration</source>
        <translation>Dauer</translation>
    </message>
    <message>
        <source>← Newer</source>
        <translation>← Neuere</translation>
    </message>
    <message>
        <source>Page %1</source>
        <translation>Seite %1</translation>
    </message>
    <message>
        <source>Older →</source>
        <translation>Ältere →</translation>
    </message>
    <message>
        <source>Journal</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>Senden</translation>
    </message>
    <message>
        <source>Receive</source>
        <translation>Empfangen</translation>
    </message>
    <message>
        <source>Punched at the control</source>
        <translation>An der Steuerung gestanzt</translation>
    </message>
    <message>
        <source>Request from the control</source>
        <translation>Anforderung der Steuerung</translation>
    </message>
    <message>
        <source>List of programs</source>
        <translation>Programmliste</translation>
    </message>
    <message>
        <source>Change program</source>
        <translation>Programmwahl</translation>
    </message>
    <message>
        <source>Change execute</source>
        <translation>Produktionsprogramm wählen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Erledigt</translation>
    </message>
    <message>
        <source>Time-out</source>
        <translation>Zeitüberschreitung</translation>
    </message>
    <message>
        <source>Port failure</source>
        <translation>Schnittstellenfehler</translation>
    </message>
    <message>
        <source>Interrupted</source>
        <translation>Unterbrochen</translation>
    </message>
    <message>
        <source>Refused</source>
        <translation>Abgelehnt</translation>
    </message>
    <message>
        <source>Not on the control</source>
        <translation>Nicht auf der Steuerung</translation>
    </message>
    <message>
        <source>File failure</source>
        <translation>Dateifehler</translation>
    </message>
    <message>
        <source>Sent, tools not counted</source>
        <translation>Gesendet, Werkzeuge nicht gezählt</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>Abgebrochen</translation>
    </message>
    <message>
        <source>Journal rows lost</source>
        <translation>Protokollzeilen verloren</translation>
    </message>
    <message>
        <source>No station</source>
        <translation>Keine Station</translation>
    </message>
    <message>
        <source>Offline</source>
        <translation>Nicht erreichbar</translation>
    </message>
    <message>
        <source>Listening</source>
        <translation>Wartet auf die Steuerung</translation>
    </message>
    <message>
        <source>Sending, %1 %</source>
        <translation>Sendet, %1 %</translation>
    </message>
    <message>
        <source>Sending</source>
        <translation>Sendet</translation>
    </message>
    <message>
        <source>Receiving</source>
        <translation>Empfängt</translation>
    </message>
    <message>
        <source>Waiting out a request&apos;s delay</source>
        <translation>Wartet die Verzögerung einer Anforderung ab</translation>
    </message>
    <message>
        <source>Device gone</source>
        <translation>Schnittstelle weg</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Gestoppt</translation>
    </message>
    <message>
        <source>No station has reported and the journal is empty.</source>
        <translation>Keine Station hat sich gemeldet, und das Protokoll ist leer.</translation>
    </message>
    <message>
        <source>Machines</source>
        <translation>Maschinen</translation>
    </message>
    <message>
        <source>Device</source>
        <translation>Schnittstelle</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>Since</source>
        <translation>Seit</translation>
    </message>
    <message>
        <source>Last transfer</source>
        <translation>Letzte Übertragung</translation>
    </message>
    <message>
        <source>Cannot listen on %1:%2: %3</source>
        <translation>Kann nicht auf %1:%2 lauschen: %3</translation>
    </message>
    <message>
        <source>Serving on http://%1:%2/</source>
        <translation>Bereit unter http://%1:%2/</translation>
    </message>
    <message>
        <source>Tools</source>
        <translation>Werkzeuge</translation>
    </message>
    <message>
        <source>Tool</source>
        <translation>Werkzeug</translation>
    </message>
    <message>
        <source>Most used tools in the last %1 days</source>
        <translation>Meistgenutzte Werkzeuge der letzten %1 Tage</translation>
    </message>
    <message>
        <source>No tool was used in this period.</source>
        <translation>In diesem Zeitraum wurde kein Werkzeug benutzt.</translation>
    </message>
    <message>
        <source>Uses</source>
        <translation>Einsätze</translation>
    </message>
    <message>
        <source>Uses of %1 per day</source>
        <translation>Einsätze von %1 pro Tag</translation>
    </message>
    <message>
        <source>This tool was not used in this period.</source>
        <translation>Dieses Werkzeug wurde in diesem Zeitraum nicht benutzt.</translation>
    </message>
    <message>
        <source>%1 takes a value</source>
        <translation>%1 braucht einen Wert</translation>
    </message>
    <message>
        <source>%1 is not an address and port such as 0.0.0.0:8080</source>
        <translation>%1 ist keine Adresse mit Port wie 0.0.0.0:8080</translation>
    </message>
    <message>
        <source>Unknown option %1</source>
        <translation>Unbekannte Option %1</translation>
    </message>
    <message>
        <source>Not allowed</source>
        <translation>Nicht erlaubt</translation>
    </message>
    <message>
        <source>These pages can only be read.</source>
        <translation>Diese Seiten können nur gelesen werden.</translation>
    </message>
    <message>
        <source>Journal not available</source>
        <translation>Protokoll nicht verfügbar</translation>
    </message>
    <message>
        <source>The journal cannot be read at the moment. The page tries again by itself.</source>
        <translation>Das Protokoll kann gerade nicht gelesen werden. Die Seite versucht es von selbst wieder.</translation>
    </message>
    <message>
        <source>Not found</source>
        <translation>Nicht gefunden</translation>
    </message>
    <message>
        <source>There is no such page.</source>
        <translation>Diese Seite gibt es nicht.</translation>
    </message>
    <message>
        <source>Usage: dnc-web [-d DATABASE] [--listen ADDRESS:PORT] | --help | --version
Shows the machines, the journal of transfers and the tools&apos; use to a browser,
read-only.
  -d DATABASE             the journal the stations write: an SQLite file or
                          postgresql://...; the default journal when not given
  --listen ADDRESS:PORT   where to listen (default: 127.0.0.1:8080);
                          0.0.0.0:8080 for every network of the machine
</source>
        <translation>Aufruf: dnc-web [-d DATENBANK] [--listen ADRESSE:PORT] | --help | --version
Zeigt einem Browser die Maschinen, das Protokoll der Übertragungen und den
Werkzeugeinsatz, nur zum Lesen.
  -d DATENBANK             das Protokoll, das die Stationen schreiben: eine SQLite-Datei
                           oder postgresql://...; sonst das Standardprotokoll
  --listen ADRESSE:PORT    wo gelauscht wird (Standard: 127.0.0.1:8080);
                           0.0.0.0:8080 für alle Netze des Rechners
</translation>
    </message>
</context>
<context>
    <name>Window</name>
    <message>
        <source> The tool list is not shown until it can be read again; every send tries again.</source>
        <translation> Die Werkzeugliste wird nicht angezeigt, bis sie wieder lesbar ist; jedes Senden versucht es neu.</translation>
    </message>
</context>
<context>
    <name>dncctl</name>
    <message>
        <source>--baud takes a whole number above 0, not &quot;%1&quot;</source>
        <translation>--baud verlangt eine ganze Zahl über 0, nicht „%1“</translation>
    </message>
    <message>
        <source>--parity takes E, O or N, not &quot;%1&quot;</source>
        <translation>--parity verlangt E, O oder N, nicht „%1“</translation>
    </message>
    <message>
        <source>--data takes 7 or 8, not &quot;%1&quot;</source>
        <translation>--data verlangt 7 oder 8, nicht „%1“</translation>
    </message>
    <message>
        <source>--stop takes 1 or 2, not &quot;%1&quot;</source>
        <translation>--stop verlangt 1 oder 2, nicht „%1“</translation>
    </message>
    <message>
        <source>--cnc takes 303, 504 or XonXoff, not &quot;%1&quot;</source>
        <translation>--cnc verlangt 303, 504 oder XonXoff, nicht „%1“</translation>
    </message>
    <message>
        <source>--wait takes seconds from 1 to 86400, not &quot;%1&quot;</source>
        <translation>--wait verlangt Sekunden von 1 bis 86400, nicht „%1“</translation>
    </message>
    <message>
        <source>--port takes a device path</source>
        <translation>--port verlangt den Pfad eines Geräts</translation>
    </message>
    <message>
        <source>-x takes a string that is not empty</source>
        <translation>-x verlangt einen nicht leeren Text</translation>
    </message>
    <message>
        <source>unknown option %1</source>
        <translation>unbekannte Option %1</translation>
    </message>
    <message>
        <source>%1 needs a value</source>
        <translation>%1 verlangt einen Wert</translation>
    </message>
    <message>
        <source>at most %1 limit strings (-x)</source>
        <translation>höchstens %1 Begrenzungstexte (-x)</translation>
    </message>
    <message>
        <source>no command given</source>
        <translation>kein Befehl angegeben</translation>
    </message>
    <message>
        <source>usage: dncctl [options] %1</source>
        <translation>Aufruf: dncctl [Optionen] %1</translation>
    </message>
    <message>
        <source>unknown command &quot;%1&quot;</source>
        <translation>unbekannter Befehl „%1“</translation>
    </message>
    <message>
        <source>read-only</source>
        <translation>schreibgeschützt</translation>
    </message>
    <message>
        <source>no such folder</source>
        <translation>Ordner nicht vorhanden</translation>
    </message>
    <message>
        <source>the folder is read-only</source>
        <translation>der Ordner ist schreibgeschützt</translation>
    </message>
    <message>
        <source>a control &quot;504&quot; sends the program named: dncctl receive NAME OUT</source>
        <translation>eine Steuerung „504“ sendet das genannte Programm: dncctl receive NAME AUSGABE</translation>
    </message>
    <message>
        <source>a control &quot;%1&quot; chooses the program it sends itself: dncctl receive OUT</source>
        <translation>eine Steuerung „%1“ wählt das gesendete Programm selbst: dncctl receive AUSGABE</translation>
    </message>
    <message>
        <source>standard output</source>
        <translation>die Standardausgabe</translation>
    </message>
    <message>
        <source>%1: not offered by the control &quot;%2&quot;</source>
        <translation>%1: bei der Steuerung „%2“ nicht vorhanden</translation>
    </message>
    <message>
        <source>no control type in section [%1] of %2: give --cnc 303, 504 or XonXoff (a section is read only as far as its port and line settings are complete)</source>
        <translation>kein Steuerungstyp in Abschnitt [%1] von %2: --cnc 303, 504 oder XonXoff angeben (ein Abschnitt wird nur gelesen, soweit Schnittstelle und Leitung vollständig sind)</translation>
    </message>
    <message>
        <source>no %3 in section [%1] of %2: set it with the window&apos;s Setup, or give %4</source>
        <translation>kein %3 in Abschnitt [%1] von %2: in den Einstellungen des Fensters setzen oder %4 angeben</translation>
    </message>
    <message>
        <source>Port=%3 in section [%1] of %2 names no serial port (COM1: to COM4:): choose one with the window&apos;s Setup, or give --port DEVICE</source>
        <translation>Port=%3 in Abschnitt [%1] von %2 bezeichnet keine serielle Schnittstelle (COM1: bis COM4:): in den Einstellungen des Fensters eine wählen oder --port GERÄT angeben</translation>
    </message>
    <message>
        <source>%1: no such file</source>
        <translation>%1: Datei nicht gefunden</translation>
    </message>
    <message>
        <source>%1: not a regular file</source>
        <translation>%1: keine normale Datei</translation>
    </message>
    <message>
        <source>%1: cannot be read (%2)</source>
        <translation>%1: nicht lesbar (%2)</translation>
    </message>
    <message>
        <source>%1: cannot be written (%2)</source>
        <translation>%1: nicht schreibbar (%2)</translation>
    </message>
    <message>
        <source>%1: no such program on the control</source>
        <translation>%1: dieses Programm ist nicht in der Steuerung</translation>
    </message>
    <message>
        <source>the control lists no programs</source>
        <translation>die Steuerung listet keine Programme</translation>
    </message>
    <message>
        <source>the control sent no program</source>
        <translation>die Steuerung hat kein Programm gesendet</translation>
    </message>
    <message>
        <source>interrupted (%1): the transfer was ended and the port closed</source>
        <translation>unterbrochen (%1): Übertragung beendet, Schnittstelle geschlossen</translation>
    </message>
    <message>
        <source>the %1 characters received are not saved: the reception was cut short</source>
        <translation>die %1 empfangenen Zeichen sind nicht gespeichert: der Empfang wurde abgebrochen</translation>
    </message>
    <message>
        <source>the program was sent, but its tools were not counted</source>
        <translation>das Programm wurde gesendet, seine Werkzeuge aber nicht gezählt</translation>
    </message>
    <message>
        <source>the send stopped at a blank line: the %1 lines with text behind it were not sent, the control has only the lines before it</source>
        <translation>das Senden endete an einer Leerzeile: die %1 Zeilen mit Text dahinter wurden nicht gesendet, die Steuerung hat nur die Zeilen davor</translation>
    </message>
    <message>
        <source>the file holds no CR: its %1 lines ended by LF went out as one line</source>
        <translation>die Datei enthält kein CR: ihre %1 mit LF endenden Zeilen gingen als eine einzige Zeile hinaus</translation>
    </message>
    <message>
        <source>%1 lines the control sent were not kept: it sent more than one line before the go-ahead, or a line together with its end</source>
        <translation>%1 von der Steuerung gesendete Zeilen wurden nicht behalten: sie sandte mehr als eine Zeile vor der Freigabe oder eine Zeile zusammen mit ihrem Ende</translation>
    </message>
    <message>
        <source>standard output is closed</source>
        <translation>die Standardausgabe ist geschlossen</translation>
    </message>
    <message>
        <source>%1 characters</source>
        <translation>%1 Zeichen</translation>
    </message>
    <message>
        <source>%1 characters/s</source>
        <translation>%1 Zeichen/s</translation>
    </message>
    <message>
        <source>%1 left</source>
        <translation>noch %1</translation>
    </message>
    <message>
        <source>Receive : </source>
        <translation>Empfang : </translation>
    </message>
    <message>
        <source>dncctl: %1
Try &apos;dncctl --help&apos;.
</source>
        <translation>dncctl: %1
Siehe „dncctl --help“.
</translation>
    </message>
    <message>
        <source>%1 takes a whole number above 0, not &quot;%2&quot;</source>
        <translation>%1 verlangt eine ganze Zahl über 0, nicht „%2“</translation>
    </message>
    <message>
        <source>--from-block takes a block number such as N48210, not &quot;%1&quot;</source>
        <translation>--from-block verlangt eine Satznummer wie N48210, nicht „%1“</translation>
    </message>
    <message>
        <source>one place to start from, not two</source>
        <translation>nur eine Startstelle, nicht zwei</translation>
    </message>
    <message>
        <source>--from-line, --from-block and --from-tool are for send</source>
        <translation>--from-line, --from-block und --from-tool gelten nur für send</translation>
    </message>
    <message>
        <source>the journal cannot be read: %1</source>
        <translation>das Journal kann nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>the journal&apos;s rows cannot be removed: %1</source>
        <translation>die Zeilen des Journals können nicht gelöscht werden: %1</translation>
    </message>
    <message>
        <source>%1 row(s) removed from the journal.
</source>
        <translation>%1 Zeile(n) aus dem Journal gelöscht.
</translation>
    </message>
    <message>
        <source>standard output cannot be written</source>
        <translation>die Standardausgabe kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>%1 takes a date such as 2026-11-24 or 2026-11-24T08:30, not &quot;%2&quot;</source>
        <translation>%1 erwartet ein Datum wie 2026-11-24 oder 2026-11-24T08:30, nicht „%2“</translation>
    </message>
    <message>
        <source>--format takes table, csv or json, not &quot;%1&quot;</source>
        <translation>--format erwartet table, csv oder json, nicht „%1“</translation>
    </message>
    <message>
        <source>--outcome takes one of %1, not &quot;%2&quot;</source>
        <translation>--outcome erwartet eins von %1, nicht „%2“</translation>
    </message>
    <message>
        <source>--prune-before takes no other option</source>
        <translation>--prune-before nimmt keine weitere Option</translation>
    </message>
    <message>
        <source>Usage: dncctl [options] COMMAND [arguments]

Moves NC programs between this PC and a CNC over the serial line, with the settings
of the window program ($XDG_CONFIG_HOME/dnc.ini) and the same dialogue on the wire.

Commands:
  send FILE          send an NC program (its tools counted with -d)
  receive OUT        receive the program a control &quot;303&quot; sends, save it to OUT
  receive NAME OUT   receive the program NAME from a control &quot;504&quot;
                     (&quot;XonXoff&quot;: waits for the program punched at the control)
                     (OUT - writes the program to standard output)
  list               the control&apos;s programs, one a line, on standard output
  change             CC, change program (&quot;303&quot;)
  execute            CE, change execute (&quot;303&quot;)
  delete NAME        DC, delete the program NAME on a control &quot;504&quot;
  journal            the journal of transfers: one row per operation of the window,
                     dncctl and the stations, in the -d database or else in
                     $XDG_STATE_HOME/dnc/journal.db; oldest first
    --since DATE     rows from DATE on (2026-11-24 or 2026-11-24T08:30, UTC)
    --until DATE     rows before DATE (a day given alone is taken in whole)
    --machine NAME   the rows of one machine (the section)
    --outcome WHAT   done, timeout, port_failure, interrupted, refused,
                     not_on_control, file_failure, not_counted, cancelled
    --format F       table (default), csv (RFC 4180, a header row) or json
  journal --prune-before DATE
                     removes the rows and the tool usage from before DATE

Options, before the command, each value as its own argument:
  -c CODE            language of the messages: 044 English, 033 French, 049 German;
                     without it, the language of LC_ALL, LC_MESSAGES or LANG
  -s SECTION         the section of dnc.ini (default: Default)
  -d DATABASE        count the tools of each program sent in this tool database
  -x STRING          a limit string that cuts tool names short; repeat -x for each
                     one (at most 10)
  --port DEVICE      the serial device for this run, e.g. /dev/ttyUSB0, or a
                     device server&apos;s port: tcp://HOST:PORT, rfc2217://HOST:PORT
  --baud N           baud rate for this run
  --parity E|O|N     parity for this run
  --data 7|8         data bits for this run
  --stop 1|2         stop bits for this run
  --cnc TYPE         control type for this run: 303, 504 or XonXoff
  --from-line N      send: the program&apos;s head, then its lines from line N on
  --from-block N48210  send: the head, then from the block N48210 on
  --from-tool T      send: the head, then from the first line that calls tool T
                     (T5, T05 or T0505); a part-way send counts no tools
  --wait SECONDS     receive on &quot;XonXoff&quot;: how long to wait for the punch to
                     begin (default 300)
                     (the overrides leave dnc.ini untouched)
  -q, --quiet        no progress line
  -h, --help         this text
  --version          the version

Exit status:
  0    done: the control took everything
  2    bad usage
  3    time-out: the control did not answer, or stopped answering
  4    port failure: absent, busy, refused its settings, or gone
  5    file failure: the file to send or to write cannot be used
  6    no such program on the control, or the control sent none
  7    the tool database cannot be used; nothing was sent (journal: the
       journal&apos;s database cannot be read or changed)
  8    not offered by the control type, or the settings are incomplete
  9    sent, but the tools were not counted (the tool database failed)
  10   ended, but lines are missing: the send stopped at a blank line, the file
       has no CR (sent as one line), or the control sent lines that were not kept
  130  interrupted by Ctrl-C (SIGINT); 143 by SIGTERM
</source>
        <translation>Aufruf: dncctl [Optionen] BEFEHL [Argumente]

Überträgt NC-Programme zwischen diesem PC und einer CNC-Steuerung über die serielle
Leitung, mit den Einstellungen des Fensterprogramms ($XDG_CONFIG_HOME/dnc.ini) und
demselben Ablauf auf der Leitung.

Befehle:
  send DATEI         ein NC-Programm senden (seine Werkzeuge mit -d gezählt)
  receive AUSGABE    das Programm empfangen, das eine Steuerung „303“ sendet, in AUSGABE speichern
  receive NAME AUSGABE  das Programm NAME von einer Steuerung „504“ empfangen
                     („XonXoff“: wartet auf das an der Steuerung gestanzte Programm)
                     (AUSGABE - schreibt das Programm auf die Standardausgabe)
  list               die Programme der Steuerung, eines je Zeile, auf der Standardausgabe
  change             CC, Programmwahl („303“)
  execute            CE, Produktion („303“)
  delete NAME        DC, das Programm NAME in einer Steuerung „504“ löschen
  journal            das Journal der Übertragungen: eine Zeile je Vorgang des Fensters,
                     von dncctl und den Stationen, in der Datenbank von -d, sonst in
                     $XDG_STATE_HOME/dnc/journal.db; die ältesten zuerst
    --since DATUM    die Zeilen ab DATUM (2026-11-24 oder 2026-11-24T08:30, UTC)
    --until DATUM    die Zeilen vor DATUM (ein Tag allein zählt ganz)
    --machine NAME   die Zeilen einer Maschine (der Abschnitt)
    --outcome WAS    done, timeout, port_failure, interrupted, refused,
                     not_on_control, file_failure, not_counted, cancelled
    --format F       table (Standard), csv (RFC 4180, eine Kopfzeile) oder json
  journal --prune-before DATUM
                     löscht die Zeilen und die Werkzeugnutzung von vor DATUM

Optionen, vor dem Befehl, jeder Wert als eigenes Argument:
  -c CODE            Sprache der Meldungen: 044 Englisch, 033 Französisch, 049 Deutsch;
                     ohne sie die Sprache von LC_ALL, LC_MESSAGES oder LANG
  -s ABSCHNITT       der Abschnitt von dnc.ini (Standard: Default)
  -d DATENBANK       die Werkzeuge jedes gesendeten Programms in dieser Datenbank zählen
  -x TEXT            ein Text, an dem Werkzeugnamen abgeschnitten werden; -x für jeden
                     wiederholen (höchstens 10)
  --port GERÄT       die serielle Schnittstelle für diesen Lauf, z. B. /dev/ttyUSB0, oder
                     der Port eines Geräteservers: tcp://HOST:PORT, rfc2217://HOST:PORT
  --baud N           Baudrate für diesen Lauf
  --parity E|O|N     Parität für diesen Lauf
  --data 7|8         Datenbits für diesen Lauf
  --stop 1|2         Stoppbits für diesen Lauf
  --cnc TYP          Steuerungstyp für diesen Lauf: 303, 504 oder XonXoff
  --from-line N      send: der Programmkopf, dann die Zeilen ab Zeile N
  --from-block N48210  send: der Kopf, dann ab dem Satz N48210
  --from-tool T      send: der Kopf, dann ab der ersten Zeile, die Werkzeug T aufruft
                     (T5, T05 oder T0505); ein Teilsenden zählt keine Werkzeuge
  --wait SEKUNDEN    Empfang bei „XonXoff“: wie lange auf den Beginn der Stanzung
                     gewartet wird (Standard 300)
                     (diese Angaben lassen dnc.ini unverändert)
  -q, --quiet        keine Fortschrittszeile
  -h, --help         dieser Text
  --version          die Version

Rückgabewert:
  0    fertig: die Steuerung hat alles übernommen
  2    falscher Aufruf
  3    Zeitüberschreitung: die Steuerung hat nicht oder nicht mehr geantwortet
  4    Schnittstellenfehler: nicht vorhanden, belegt, Einstellungen abgelehnt oder weg
  5    Dateifehler: die zu sendende oder zu schreibende Datei ist nicht verwendbar
  6    Programm nicht in der Steuerung, oder die Steuerung hat keines gesendet
  7    die Werkzeugdatenbank ist nicht verwendbar; nichts wurde gesendet (journal:
       die Datenbank des Journals kann nicht gelesen oder geändert werden)
  8    vom Steuerungstyp nicht angeboten, oder die Einstellungen sind unvollständig
  9    gesendet, aber die Werkzeuge nicht gezählt (die Werkzeugdatenbank versagte)
  10   beendet, aber es fehlen Zeilen: das Senden endete an einer Leerzeile, die Datei
       hat kein CR (als eine Zeile gesendet), oder die Steuerung sandte nicht behaltene Zeilen
  130  unterbrochen durch Strg-C (SIGINT); 143 durch SIGTERM
</translation>
    </message>
</context>
</TS>
