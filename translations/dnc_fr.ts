<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR">
<context>
    <name>Directory</name>
    <message>
        <source>no such command</source>
        <translation>commande inconnue</translation>
    </message>
    <message>
        <source>no delete command</source>
        <translation>pas de commande d&apos;effacement</translation>
    </message>
    <message>
        <source>no directory command</source>
        <translation>pas de commande de liste des programmes</translation>
    </message>
</context>
<context>
    <name>File</name>
    <message>
        <source>is a FIFO (named pipe), not a regular file</source>
        <translation>est un tube nommé (FIFO), pas un fichier ordinaire</translation>
    </message>
    <message>
        <source>is a character device, not a regular file</source>
        <translation>est un périphérique en mode caractère, pas un fichier ordinaire</translation>
    </message>
    <message>
        <source>is a block device, not a regular file</source>
        <translation>est un périphérique en mode bloc, pas un fichier ordinaire</translation>
    </message>
    <message>
        <source>is a folder, not a regular file</source>
        <translation>est un dossier, pas un fichier ordinaire</translation>
    </message>
    <message>
        <source>is a socket, not a regular file</source>
        <translation>est un socket, pas un fichier ordinaire</translation>
    </message>
    <message>
        <source>is no regular file</source>
        <translation>n&apos;est pas un fichier ordinaire</translation>
    </message>
    <message>
        <source>%1 MB</source>
        <translation>%1 Mo</translation>
    </message>
    <message>
        <source>%1 bytes</source>
        <translation>%1 octets</translation>
    </message>
    <message>
        <source>line %1 is longer than %2</source>
        <translation>la ligne %1 dépasse %2</translation>
    </message>
    <message>
        <source>%1 %2: only a regular file can be sent.</source>
        <translation>%1 %2 : seul un fichier ordinaire peut être envoyé.</translation>
    </message>
    <message>
        <source>%1: %2. Nothing was sent.</source>
        <translation>%1 : %2. Rien n&apos;a été envoyé.</translation>
    </message>
    <message>
        <source>%1: %2. The lines before it were sent, the rest of the file was not.</source>
        <translation>%1 : %2. Les lignes d&apos;avant sont parties, le reste du fichier non.</translation>
    </message>
    <message>
        <source>it has only %1 lines, no line %2</source>
        <translation>il n&apos;a que %1 lignes, pas de ligne %2</translation>
    </message>
    <message>
        <source>no line of it is block N%1</source>
        <translation>aucune de ses lignes n&apos;est le bloc N%1</translation>
    </message>
    <message>
        <source>no line of it calls tool %1</source>
        <translation>aucune de ses lignes n&apos;appelle l&apos;outil %1</translation>
    </message>
    <message>
        <source>%1 is line %2, inside the program&apos;s head (its first %3 lines, which go first anyway)</source>
        <translation>%1 est la ligne %2, dans l&apos;en-tête du programme (ses %3 premières lignes, qui partent de toute façon en premier)</translation>
    </message>
    <message>
        <source>The program cannot be saved: %1 %2.</source>
        <translation>Le programme ne peut pas être enregistré : %1 %2.</translation>
    </message>
    <message>
        <source>The program cannot be saved as %1: %2</source>
        <translation>Le programme ne peut pas être enregistré sous %1 : %2</translation>
    </message>
    <message>
        <source>The NC file %1 cannot be sent: %2</source>
        <translation>Le fichier CN %1 ne peut pas être envoyé : %2</translation>
    </message>
</context>
<context>
    <name>Journal</name>
    <message>
        <source>The folder &quot;%1&quot; cannot be created.</source>
        <translation>Le dossier « %1 » ne peut pas être créé.</translation>
    </message>
    <message>
        <source>The journal &quot;%1&quot; cannot be created: %2</source>
        <translation>Le journal « %1 » ne peut pas être créé : %2</translation>
    </message>
    <message>
        <source>The journal&apos;s tables are not built in.</source>
        <translation>Les tables du journal ne sont pas intégrées au programme.</translation>
    </message>
    <message>
        <source>The journal&apos;s tables cannot be made in %1: %2</source>
        <translation>Les tables du journal ne peuvent pas être créées dans %1 : %2</translation>
    </message>
    <message>
        <source>%1 row(s) of the journal could not be written and are lost.</source>
        <translation>%1 ligne(s) du journal n&apos;ont pas pu être écrites et sont perdues.</translation>
    </message>
    <message>
        <source>There is no journal of this run.</source>
        <translation>Pas de journal pour cette session.</translation>
    </message>
    <message>
        <source>The journal of transfers cannot be written: %1 The transfers go on; their rows are kept and written as soon as it can be.</source>
        <translation>Le journal des transferts ne peut pas être écrit : %1 Les transferts continuent ; leurs lignes sont gardées et écrites dès que possible.</translation>
    </message>
    <message>
        <source>The journal &quot;%1&quot; does not exist.</source>
        <translation>Le journal « %1 » n&apos;existe pas.</translation>
    </message>
    <message>
        <source>The journal &quot;%1&quot; is not a file.</source>
        <translation>Le journal « %1 » n&apos;est pas un fichier.</translation>
    </message>
    <message>
        <source>The journal &quot;%1&quot; cannot be opened: %2</source>
        <translation>Le journal « %1 » ne peut pas être ouvert : %2</translation>
    </message>
</context>
<context>
    <name>Port</name>
    <message>
        <source>no serial port is set up (expected COM1: to COM4:). Choose one with Setup.</source>
        <translation>aucun port série n&apos;est réglé (COM1: à COM4: attendu). Choisissez-en un dans Configuration.</translation>
    </message>
    <message>
        <source>expected four values separated by commas: baud, parity, data bits, stop bits</source>
        <translation>quatre valeurs séparées par des virgules attendues : vitesse, parité, bits de données, bits de stop</translation>
    </message>
    <message>
        <source>the baud rate must be a whole number above 0, not &quot;%1&quot;</source>
        <translation>la vitesse doit être un nombre entier supérieur à 0, pas « %1 »</translation>
    </message>
    <message>
        <source>the parity must be E, O or N, not &quot;%1&quot;</source>
        <translation>la parité doit être E, O ou N, pas « %1 »</translation>
    </message>
    <message>
        <source>the data bits must be 5, 6, 7 or 8, not &quot;%1&quot;</source>
        <translation>les bits de données doivent être 5, 6, 7 ou 8, pas « %1 »</translation>
    </message>
    <message>
        <source>1.5 stop bits cannot be set on this system; use 1 or 2</source>
        <translation>1,5 bit de stop est impossible sur ce système ; prenez 1 ou 2</translation>
    </message>
    <message>
        <source>the stop bits must be 1 or 2, not &quot;%1&quot;</source>
        <translation>les bits de stop doivent être 1 ou 2, pas « %1 »</translation>
    </message>
    <message>
        <source>The group %1 may open it: add the user to it with  %2  then log out and in again.</source>
        <translation>Le groupe %1 y a droit : ajoutez-y l&apos;utilisateur avec  %2  puis fermez la session et reconnectez-vous.</translation>
    </message>
    <message>
        <source>Serial devices on Debian belong to the group %1, which a user joins with  %2  (then log out and in again)</source>
        <translation>Sous Debian, les ports série appartiennent au groupe %1, auquel on ajoute un utilisateur avec  %2  (puis fermer la session et se reconnecter)</translation>
    </message>
    <message>
        <source>; this device (%1) lets no group open it: ask the administrator.</source>
        <translation> ; ce périphérique (%1) n&apos;est ouvert à aucun groupe : voyez l&apos;administrateur.</translation>
    </message>
    <message>
        <source>the station of section %1 (process %2)</source>
        <translation>la station de la section %1 (processus %2)</translation>
    </message>
    <message>
        <source>the line settings &quot;%1&quot; cannot be used: %2</source>
        <translation>les paramètres de liaison « %1 » sont inutilisables : %2</translation>
    </message>
    <message>
        <source>the port is not open</source>
        <translation>le port n&apos;est pas ouvert</translation>
    </message>
    <message>
        <source>writing to the device failed (%1)</source>
        <translation>l&apos;écriture vers l&apos;interface a échoué (%1)</translation>
    </message>
    <message>
        <source>the device is gone: unplugged, or closed at the other end</source>
        <translation>l&apos;interface a disparu : débranchée, ou fermée à l&apos;autre bout</translation>
    </message>
    <message>
        <source>reading from the device failed: it was unplugged, or closed at the other end</source>
        <translation>la lecture de l&apos;interface a échoué : elle a été débranchée, ou fermée à l&apos;autre bout</translation>
    </message>
    <message>
        <source>writing to the device failed: it was unplugged, or closed at the other end</source>
        <translation>l&apos;écriture vers l&apos;interface a échoué : elle a été débranchée, ou fermée à l&apos;autre bout</translation>
    </message>
    <message>
        <source>%1 (process %2)</source>
        <translation>%1 (processus %2)</translation>
    </message>
    <message>
        <source>the opening was given up</source>
        <translation>l&apos;ouverture a été abandonnée</translation>
    </message>
    <message>
        <source>an answer of %1 bytes</source>
        <translation>une réponse de %1 octets</translation>
    </message>
    <message>
        <source>the device server sent what is not Telnet (%1): the line&apos;s characters behind it cannot be trusted</source>
        <translation>le serveur de ports série a envoyé autre chose que du Telnet (%1) : les caractères de la ligne qui suivent ne sont pas sûrs</translation>
    </message>
    <message>
        <source>writing to the device server failed (%1)</source>
        <translation>l&apos;écriture vers le serveur de ports série a échoué (%1)</translation>
    </message>
    <message>
        <source>the device is gone: %1 closed the connection</source>
        <translation>l&apos;interface a disparu : %1 a fermé la connexion</translation>
    </message>
    <message>
        <source>the device is gone: the connection to %1 was lost (%2)</source>
        <translation>l&apos;interface a disparu : la connexion à %1 est perdue (%2)</translation>
    </message>
    <message>
        <source>The port %1 failed: %2</source>
        <translation>Le port %1 est en défaut : %2</translation>
    </message>
    <message>
        <source>No port can be opened: %1</source>
        <translation>Aucun port ne peut être ouvert : %1</translation>
    </message>
    <message>
        <source>The port %1 cannot be opened: %2</source>
        <translation>Impossible d&apos;ouvrir le port %1 : %2</translation>
    </message>
    <message>
        <source>the name %1 does not resolve to an address. Check the device server&apos;s name, or give its address.</source>
        <translation>le nom %1 ne donne aucune adresse. Vérifiez le nom du serveur de ports série, ou donnez son adresse.</translation>
    </message>
    <message>
        <source>%1 refused the connection. Nothing listens there: check the port number set on the device server, and that it is on.</source>
        <translation>%1 a refusé la connexion. Rien n&apos;écoute là : vérifiez le numéro de port réglé sur le serveur de ports série, et qu&apos;il est allumé.</translation>
    </message>
    <message>
        <source>the connection to %1 failed (%2)</source>
        <translation>la connexion à %1 a échoué (%2)</translation>
    </message>
    <message>
        <source>%1 did not answer within %2 s. Is the device server on, and its address right?</source>
        <translation>%1 n&apos;a pas répondu en %2 s. Le serveur de ports série est-il allumé, et son adresse juste ?</translation>
    </message>
    <message>
        <source>%1 does not take RFC 2217 (COM port control). If it carries the line&apos;s bytes alone, name it tcp://%2:%3.</source>
        <translation>%1 ne connaît pas RFC 2217 (pilotage du port COM). S&apos;il ne transmet que les octets de la ligne, désignez-le par tcp://%2:%3.</translation>
    </message>
    <message>
        <source>%1 sent what is not Telnet (%2)</source>
        <translation>%1 a envoyé autre chose que du Telnet (%2)</translation>
    </message>
    <message>
        <source>%1 closed the connection while the line was set up</source>
        <translation>%1 a fermé la connexion pendant le réglage de la liaison</translation>
    </message>
    <message>
        <source>%1 did not confirm the %2 within %3 s</source>
        <translation>%1 n&apos;a pas confirmé le réglage %2 en %3 s</translation>
    </message>
    <message>
        <source>%1 refused the baud rate %2: it set %3</source>
        <translation>%1 a refusé la vitesse %2 : il a réglé %3</translation>
    </message>
    <message>
        <source>%1 refused %2 data bits: it set %3</source>
        <translation>%1 a refusé %2 bits de données : il a réglé %3</translation>
    </message>
    <message>
        <source>%1 refused the parity %2: it set %3</source>
        <translation>%1 a refusé la parité %2 : il a réglé %3</translation>
    </message>
    <message>
        <source>%1 refused %2 stop bits: it set %3</source>
        <translation>%1 a refusé %2 bits de stop : il a réglé %3</translation>
    </message>
    <message>
        <source>there is no such device, and this PC has no serial device at all. Is the adapter plugged in?</source>
        <translation>ce périphérique n&apos;existe pas, et ce PC n&apos;a aucune interface série. L&apos;adaptateur est-il branché ?</translation>
    </message>
    <message>
        <source>there is no such device. This PC has: %1.</source>
        <translation>ce périphérique n&apos;existe pas. Ce PC a : %1.</translation>
    </message>
    <message>
        <source>there is no such device. This PC has: %1. Choose the device of %2 with Setup.</source>
        <translation>ce périphérique n&apos;existe pas. Ce PC a : %1. Choisissez le périphérique de %2 dans Configuration.</translation>
    </message>
    <message>
        <source>%1 holds it (%2). Close that program and try again.</source>
        <translation>%1 l&apos;occupe (%2). Fermez ce programme et recommencez.</translation>
    </message>
    <message>
        <source>another program holds it (%1). Close that program (a terminal, another DNC program) and try again.</source>
        <translation>un autre programme l&apos;occupe (%1). Fermez ce programme (un terminal, un autre programme DNC) et recommencez.</translation>
    </message>
    <message>
        <source>the user %1 may not open it (%2). </source>
        <translation>l&apos;utilisateur %1 n&apos;en a pas le droit (%2). </translation>
    </message>
    <message>
        <source>it is open already</source>
        <translation>il est déjà ouvert</translation>
    </message>
    <message>
        <source>%1 holds it. Stop the station (systemctl stop dnc-station@%2) to use the port here.</source>
        <translation>%1 l&apos;occupe. Arrêtez la station (systemctl stop dnc-station@%2) pour utiliser le port ici.</translation>
    </message>
</context>
<context>
    <name>Settings</name>
    <message>
        <source>The settings file %1 %2: the settings can be neither read nor saved.</source>
        <translation>Le fichier de configuration %1 %2 : les réglages ne peuvent être ni lus ni enregistrés.</translation>
    </message>
    <message>
        <source>cannot be read (%1)</source>
        <translation>est illisible (%1)</translation>
    </message>
    <message>
        <source>The configuration name given with -s holds a line break, which a section of the settings file cannot hold. Start the program again with a name on one line.</source>
        <translation>Le nom de configuration donné avec -s contient un saut de ligne, impossible dans une section du fichier de configuration. Relancez le programme avec un nom sur une seule ligne.</translation>
    </message>
</context>
<context>
    <name>Setup</name>
    <message>
        <source>Device of %1</source>
        <translation>Périphérique de %1</translation>
    </message>
    <message>
        <source>Default: %1</source>
        <translation>Par défaut : %1</translation>
    </message>
    <message>
        <source>absent: %1</source>
        <translation>absent : %1</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Description</translation>
    </message>
    <message>
        <source>Maker</source>
        <translation>Fabricant</translation>
    </message>
    <message>
        <source>Serial number</source>
        <translation>Numéro de série</translation>
    </message>
    <message>
        <source>Look again</source>
        <translation>Actualiser</translation>
    </message>
    <message>
        <source>%1 is set in the environment and comes first: %2 is opened.</source>
        <translation>%1 est défini dans l&apos;environnement et passe en premier : c&apos;est %2 qui est ouvert.</translation>
    </message>
    <message>
        <source>Not present on this PC now.</source>
        <translation>Absent de ce PC pour l&apos;instant.</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1 : %2</translation>
    </message>
    <message>
        <source>Asking the device server…</source>
        <translation>Interrogation du serveur de ports série…</translation>
    </message>
    <message>
        <source>The device server answers.</source>
        <translation>Le serveur de ports série répond.</translation>
    </message>
    <message>
        <source>The device server does not answer: %1</source>
        <translation>Le serveur de ports série ne répond pas : %1</translation>
    </message>
    <message>
        <source>&quot;Look again&quot; asks the device server whether it answers.</source>
        <translation>« Actualiser » demande au serveur de ports série s&apos;il répond.</translation>
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
        <translation>Usage : dnc-station [-s SECTION] [-d BASE] [-c CODE] [-x CHAINE]...
Sert la machine d&apos;une section de dnc.ini (CN de type « XonXoff ») jusqu&apos;à l&apos;arrêt :
une demande perforée sur la CN reçoit en réponse le programme qu&apos;elle nomme, pris
dans ProgramDir ; tout autre programme perforé est rangé dans ReceiveDir.
  -s SECTION    la section de dnc.ini (par défaut : Default)
  -d BASE       compter les outils de chaque programme envoyé (fichier SQLite ou postgresql://)
  -c CODE       langue : 044 anglais, 033 français, 049 allemand
  -x CHAINE     chaîne qui coupe les noms d&apos;outils ; répéter pour chacune
SIGTERM l&apos;arrête, SIGHUP relit dnc.ini entre deux transferts.
</translation>
    </message>
    <message>
        <source>%1 takes a value that is not empty</source>
        <translation>%1 demande une valeur non vide</translation>
    </message>
    <message>
        <source>unknown argument %1</source>
        <translation>argument inconnu %1</translation>
    </message>
    <message>
        <source>cannot serve section [%1] of %2: %3</source>
        <translation>impossible de servir la section [%1] de %2 : %3</translation>
    </message>
    <message>
        <source>no free name beside %1</source>
        <translation>aucun nom libre à côté de %1</translation>
    </message>
    <message>
        <source>, cut short: the device went away</source>
        <translation>, interrompu : l&apos;interface a disparu</translation>
    </message>
    <message>
        <source>, cut short: the control fell silent before its closing %</source>
        <translation>, interrompu : la CN s&apos;est tue avant son % final</translation>
    </message>
    <message>
        <source>, cut short: the station was stopped</source>
        <translation>, interrompu : la station a été arrêtée</translation>
    </message>
    <message>
        <source>serving %1: programs from %2, punches filed in %3, requests %4</source>
        <translation>sert %1 : programmes pris dans %2, perforations rangées dans %3, demandes %4</translation>
    </message>
    <message>
        <source>settings read again: %1</source>
        <translation>réglages relus : %1</translation>
    </message>
    <message>
        <source>settings read again, not used: %1</source>
        <translation>réglages relus, non appliqués : %1</translation>
    </message>
    <message>
        <source>%1 characters before any %% ignored</source>
        <translation>%1 caractères ignorés avant le premier %%</translation>
    </message>
    <message>
        <source>%1 serves it already</source>
        <translation>%1 la sert déjà</translation>
    </message>
    <message>
        <source>%1; trying again every %2 s</source>
        <translation>%1 ; nouvel essai toutes les %2 s</translation>
    </message>
    <message>
        <source>%1 is back: listening</source>
        <translation>%1 est revenu : à l&apos;écoute</translation>
    </message>
    <message>
        <source>listening on %1</source>
        <translation>à l&apos;écoute sur %1</translation>
    </message>
    <message>
        <source>device lost: %1; waiting for it to come back</source>
        <translation>interface perdue : %1 ; attente de son retour</translation>
    </message>
    <message>
        <source>punch of %1 characters NOT filed in %2: %3</source>
        <translation>perforation de %1 caractères NON rangée dans %2 : %3</translation>
    </message>
    <message>
        <source>punch filed: %1, %2 characters, %3 lines%4</source>
        <translation>perforation rangée : %1, %2 caractères, %3 lignes%4</translation>
    </message>
    <message>
        <source>request for &quot;%1&quot; refused: %2</source>
        <translation>demande de « %1 » refusée : %2</translation>
    </message>
    <message>
        <source>no reply sent: %1</source>
        <translation>aucune réponse envoyée : %1</translation>
    </message>
    <message>
        <source>request for &quot;%1&quot;: %2</source>
        <translation>demande de « %1 » : %2</translation>
    </message>
    <message>
        <source>answer %1: %2, %3 characters, %4 lines in %5 s%6</source>
        <translation>réponse %1 : %2, %3 caractères, %4 lignes en %5 s%6</translation>
    </message>
    <message>
        <source>%1 is not set</source>
        <translation>%1 n&apos;est pas réglé</translation>
    </message>
    <message>
        <source>%1=%2 is no folder</source>
        <translation>%1=%2 n&apos;est pas un dossier</translation>
    </message>
    <message>
        <source>%1=%2 cannot be written</source>
        <translation>%1=%2 est protégé en écriture</translation>
    </message>
    <message>
        <source>a station serves a control &quot;XonXoff&quot; only: a control &quot;303&quot; or &quot;504&quot; sends a program only when the PC asks for it</source>
        <translation>une station ne sert qu&apos;une CN « XonXoff » : une CN « 303 » ou « 504 » n&apos;envoie un programme que si le PC le demande</translation>
    </message>
    <message>
        <source>%1=%2 is no program number (O and digits)</source>
        <translation>%1=%2 n&apos;est pas un numéro de programme (O et des chiffres)</translation>
    </message>
    <message>
        <source>RequestNumber and ReplyNumber are the same program</source>
        <translation>RequestNumber et ReplyNumber désignent le même programme</translation>
    </message>
    <message>
        <source>request for &quot;%1&quot; from %2: %3</source>
        <translation>demande de « %1 » à partir de %2 : %3</translation>
    </message>
    <message>
        <source>done</source>
        <translation>terminé</translation>
    </message>
    <message>
        <source>cancelled</source>
        <translation>annulé</translation>
    </message>
    <message>
        <source>sent, tools not counted</source>
        <translation>envoyé, outils non comptés</translation>
    </message>
    <message>
        <source>timed out</source>
        <translation>délai dépassé</translation>
    </message>
    <message>
        <source>not on the control</source>
        <translation>absent de la CN</translation>
    </message>
    <message>
        <source>file failure</source>
        <translation>erreur de fichier</translation>
    </message>
    <message>
        <source>port failure</source>
        <translation>erreur du port série</translation>
    </message>
    <message>
        <source>interrupted</source>
        <translation>interrompu</translation>
    </message>
    <message>
        <source>line %1</source>
        <translation>ligne %1</translation>
    </message>
    <message>
        <source>block N%1</source>
        <translation>bloc N%1</translation>
    </message>
    <message>
        <source>tool %1</source>
        <translation>outil %1</translation>
    </message>
    <message>
        <source>the station&apos;s state is not written: %1</source>
        <translation>l&apos;état du poste n&apos;est pas écrit : %1</translation>
    </message>
</context>
<context>
    <name>ToolList</name>
    <message>
        <source>The tool &quot;%1&quot; and those after it in this program were not counted: the tool database %2 is busy (another station or program holds it locked) and stayed so for %3, the longest this program waits.</source>
        <translation>L&apos;outil « %1 » et les suivants de ce programme n&apos;ont pas été comptés : la base d&apos;outils %2 est occupée (une autre station ou un autre programme la verrouille) et l&apos;est restée %3, l&apos;attente la plus longue de ce programme.</translation>
    </message>
    <message>
        <source>The tool &quot;%1&quot; has no count (util is empty).</source>
        <translation>L&apos;outil « %1 » n&apos;a pas de compteur (util est vide).</translation>
    </message>
    <message>
        <source>The count of the tool &quot;%1&quot; is not a 16-bit integer: %2</source>
        <translation>Le compteur de l&apos;outil « %1 » n&apos;est pas un entier 16 bits : %2</translation>
    </message>
    <message>
        <source>The count of the tool &quot;%1&quot; is at its highest, 32767.</source>
        <translation>Le compteur de l&apos;outil « %1 » est à son maximum, 32767.</translation>
    </message>
    <message>
        <source>The tool name &quot;%1&quot; holds a double quote (&quot;), which a tool name may not hold.</source>
        <translation>Le nom d&apos;outil « %1 » contient un guillemet (&quot;), interdit dans un nom d&apos;outil.</translation>
    </message>
    <message>
        <source>The tool database &quot;%1&quot; does not exist.</source>
        <translation>La base d&apos;outils « %1 » n&apos;existe pas.</translation>
    </message>
    <message>
        <source>The tool database &quot;%1&quot; is not a file.</source>
        <translation>La base d&apos;outils « %1 » n&apos;est pas un fichier.</translation>
    </message>
    <message>
        <source>The tool database &quot;%1&quot; cannot be opened: %2</source>
        <translation>La base d&apos;outils « %1 » ne peut pas être ouverte : %2</translation>
    </message>
    <message>
        <source>The tool database %1 is no valid PostgreSQL URI: %2.</source>
        <translation>La base d&apos;outils %1 n&apos;est pas une URI PostgreSQL valable : %2.</translation>
    </message>
    <message>
        <source>The tool database %1 cannot be used: Qt&apos;s PostgreSQL driver (QPSQL, package libqt6sql6-psql) is not installed.</source>
        <translation>La base d&apos;outils %1 est inutilisable : le pilote PostgreSQL de Qt (QPSQL, paquet libqt6sql6-psql) n&apos;est pas installé.</translation>
    </message>
    <message>
        <source>The tool database %1 cannot be opened: %2</source>
        <translation>La base d&apos;outils %1 ne peut pas être ouverte : %2</translation>
    </message>
    <message>
        <source>The tool database %1 is busy: another station or program holds it locked, and it stayed so for %2.</source>
        <translation>La base d&apos;outils %1 est occupée : une autre station ou un autre programme la verrouille, et c&apos;est resté ainsi %2.</translation>
    </message>
    <message>
        <source>%1 is not a usable %2 database: %3</source>
        <translation>%1 n&apos;est pas une base %2 utilisable : %3</translation>
    </message>
    <message>
        <source>The database %1 holds no table tool_list.</source>
        <translation>La base %1 n&apos;a pas de table tool_list.</translation>
    </message>
    <message>
        <source>The table tool_list of %1 cannot be read: %2</source>
        <translation>La table tool_list de %1 est illisible : %2</translation>
    </message>
    <message>
        <source>The table tool_list of %1 lacks the field(s) %2.</source>
        <translation>Il manque à la table tool_list de %1 le(s) champ(s) %2.</translation>
    </message>
    <message>
        <source> Until it can be used, tools are not counted and the tool list is not shown; every send tries again, and counting comes back by itself.</source>
        <translation> Tant qu&apos;elle est inutilisable, les outils ne sont pas comptés et la liste d&apos;outils n&apos;est pas affichée ; chaque envoi réessaie, et le comptage reprend tout seul.</translation>
    </message>
    <message>
        <source> Tools are not counted and the tool list is not shown until the program is started again.</source>
        <translation> Les outils ne sont pas comptés et la liste d&apos;outils n&apos;est pas affichée jusqu&apos;au prochain démarrage du programme.</translation>
    </message>
    <message>
        <source>The head of the program was not read to its end: %1.</source>
        <translation>L&apos;en-tête du programme n&apos;a pas été lu jusqu&apos;au bout : %1.</translation>
    </message>
    <message>
        <source>The tool number in the line &quot;%1&quot; is out of range.</source>
        <translation>Le numéro d&apos;outil de la ligne « %1 » est hors limites.</translation>
    </message>
    <message>
        <source>The tool line &quot;%1&quot; has no tool name after its number.</source>
        <translation>La ligne d&apos;outil « %1 » n&apos;a pas de nom d&apos;outil après son numéro.</translation>
    </message>
    <message>
        <source>The tool database is busy with another station or program: waiting up to %1 for it.</source>
        <translation>La base d&apos;outils est occupée par une autre station ou un autre programme : attente de %1 au plus.</translation>
    </message>
    <message>
        <source>The tools of %1 cannot be counted: it cannot be read (%2).</source>
        <translation>Les outils de %1 ne peuvent pas être comptés : le fichier est illisible (%2).</translation>
    </message>
    <message>
        <source>The tools of this program were not counted: the tool database %1 failed: %2</source>
        <translation>Les outils de ce programme n&apos;ont pas été comptés : la base d&apos;outils %1 a échoué : %2</translation>
    </message>
    <message>
        <source>The tool name &quot;%1&quot; holds a NUL character, which a tool name may not hold.</source>
        <translation>Le nom d&apos;outil « %1 » contient un caractère NUL, interdit dans un nom d&apos;outil.</translation>
    </message>
    <message>
        <source>The tool name &quot;%1&quot; is %2 bytes long; a tool name may hold at most %3.</source>
        <translation>Le nom d&apos;outil « %1 » fait %2 octets ; un nom d&apos;outil en compte %3 au plus.</translation>
    </message>
    <message>
        <source>the connection was lost.</source>
        <translation>la liaison a été perdue.</translation>
    </message>
    <message>
        <source>The change was not saved: the connection to the tool database %1 was lost.</source>
        <translation>La modification n&apos;a pas été enregistrée : la liaison avec la base d&apos;outils %1 a été perdue.</translation>
    </message>
</context>
<context>
    <name>Web</name>
    <message>
        <source>All machines</source>
        <translation>Toutes les machines</translation>
    </message>
    <message>
        <source>All outcomes</source>
        <translation>Tous les résultats</translation>
    </message>
    <message>
        <source>Machine</source>
        <translation>Machine</translation>
    </message>
    <message>
        <source>Day</source>
        <translation>Jour</translation>
    </message>
    <message>
        <source>Outcome</source>
        <translation>Résultat</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>Afficher</translation>
    </message>
    <message>
        <source>Download as CSV</source>
        <translation>Télécharger en CSV</translation>
    </message>
    <message>
        <source>No journal row matches.</source>
        <translation>Aucune ligne du journal ne correspond.</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Heure</translation>
    </message>
    <message>
        <source>Operation</source>
        <translation>Opération</translation>
    </message>
    <message>
        <source>Program</source>
        <translation>Programme</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Fichier</translation>
    </message>
    <message>
        <source>Bytes</source>
        <translation>Octets</translation>
    </message>
    <message>
        <source>Duration</source>
        <translation>Durée</translation>
    </message>
    <message>
        <source>← Newer</source>
        <translation>← Plus récentes</translation>
    </message>
    <message>
        <source>Page %1</source>
        <translation>Page %1</translation>
    </message>
    <message>
        <source>Older →</source>
        <translation>Plus anciennes →</translation>
    </message>
    <message>
        <source>Journal</source>
        <translation>Journal</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>Envoi</translation>
    </message>
    <message>
        <source>Receive</source>
        <translation>Réception</translation>
    </message>
    <message>
        <source>Punched at the control</source>
        <translation>Perforé sur la CN</translation>
    </message>
    <message>
        <source>Request from the control</source>
        <translation>Demande de la CN</translation>
    </message>
    <message>
        <source>List of programs</source>
        <translation>Liste des programmes</translation>
    </message>
    <message>
        <source>Change program</source>
        <translation>Changement de programme</translation>
    </message>
    <message>
        <source>Change execute</source>
        <translation>Changement du programme exécuté</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Effacement</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Terminé</translation>
    </message>
    <message>
        <source>Time-out</source>
        <translation>Délai dépassé</translation>
    </message>
    <message>
        <source>Port failure</source>
        <translation>Défaut du port</translation>
    </message>
    <message>
        <source>Interrupted</source>
        <translation>Interrompu</translation>
    </message>
    <message>
        <source>Refused</source>
        <translation>Refusé</translation>
    </message>
    <message>
        <source>Not on the control</source>
        <translation>Absent de la CN</translation>
    </message>
    <message>
        <source>File failure</source>
        <translation>Erreur de fichier</translation>
    </message>
    <message>
        <source>Sent, tools not counted</source>
        <translation>Envoyé, outils non comptés</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>Annulé</translation>
    </message>
    <message>
        <source>Journal rows lost</source>
        <translation>Lignes du journal perdues</translation>
    </message>
    <message>
        <source>No station</source>
        <translation>Pas de poste</translation>
    </message>
    <message>
        <source>Offline</source>
        <translation>Hors ligne</translation>
    </message>
    <message>
        <source>Listening</source>
        <translation>À l&apos;écoute</translation>
    </message>
    <message>
        <source>Sending, %1 %</source>
        <translation>Envoi, %1 %</translation>
    </message>
    <message>
        <source>Sending</source>
        <translation>Envoi</translation>
    </message>
    <message>
        <source>Receiving</source>
        <translation>Réception</translation>
    </message>
    <message>
        <source>Waiting out a request&apos;s delay</source>
        <translation>Attend le délai d&apos;une demande</translation>
    </message>
    <message>
        <source>Device gone</source>
        <translation>Port disparu</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Arrêté</translation>
    </message>
    <message>
        <source>No station has reported and the journal is empty.</source>
        <translation>Aucun poste ne s&apos;est signalé et le journal est vide.</translation>
    </message>
    <message>
        <source>Machines</source>
        <translation>Machines</translation>
    </message>
    <message>
        <source>Device</source>
        <translation>Port</translation>
    </message>
    <message>
        <source>State</source>
        <translation>État</translation>
    </message>
    <message>
        <source>Since</source>
        <translation>Depuis</translation>
    </message>
    <message>
        <source>Last transfer</source>
        <translation>Dernier transfert</translation>
    </message>
    <message>
        <source>Cannot listen on %1:%2: %3</source>
        <translation>Impossible d&apos;écouter sur %1:%2 : %3</translation>
    </message>
    <message>
        <source>Serving on http://%1:%2/</source>
        <translation>En service sur http://%1:%2/</translation>
    </message>
    <message>
        <source>Tools</source>
        <translation>Outils</translation>
    </message>
    <message>
        <source>Tool</source>
        <translation>Outil</translation>
    </message>
    <message>
        <source>Most used tools in the last %1 days</source>
        <translation>Outils les plus utilisés ces %1 derniers jours</translation>
    </message>
    <message>
        <source>No tool was used in this period.</source>
        <translation>Aucun outil n&apos;a servi pendant cette période.</translation>
    </message>
    <message>
        <source>Uses</source>
        <translation>Utilisations</translation>
    </message>
    <message>
        <source>Uses of %1 per day</source>
        <translation>Utilisations de %1 par jour</translation>
    </message>
    <message>
        <source>This tool was not used in this period.</source>
        <translation>Cet outil n&apos;a pas servi pendant cette période.</translation>
    </message>
    <message>
        <source>%1 takes a value</source>
        <translation>%1 attend une valeur</translation>
    </message>
    <message>
        <source>%1 is not an address and port such as 0.0.0.0:8080</source>
        <translation>%1 n&apos;est pas une adresse et un port comme 0.0.0.0:8080</translation>
    </message>
    <message>
        <source>Unknown option %1</source>
        <translation>Option inconnue %1</translation>
    </message>
    <message>
        <source>Not allowed</source>
        <translation>Non autorisé</translation>
    </message>
    <message>
        <source>These pages can only be read.</source>
        <translation>Ces pages sont en lecture seule.</translation>
    </message>
    <message>
        <source>Journal not available</source>
        <translation>Journal indisponible</translation>
    </message>
    <message>
        <source>The journal cannot be read at the moment. The page tries again by itself.</source>
        <translation>Le journal ne peut pas être lu pour le moment. La page réessaie d&apos;elle-même.</translation>
    </message>
    <message>
        <source>Not found</source>
        <translation>Introuvable</translation>
    </message>
    <message>
        <source>There is no such page.</source>
        <translation>Cette page n&apos;existe pas.</translation>
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
        <translation>Usage : dnc-web [-d BASE] [--listen ADRESSE:PORT] | --help | --version
Montre à un navigateur les machines, le journal des transferts et l&apos;usage des
outils, en lecture seule.
  -d BASE                  le journal écrit par les postes : fichier SQLite ou
                           postgresql://... ; le journal par défaut sinon
  --listen ADRESSE:PORT    où écouter (par défaut : 127.0.0.1:8080) ;
                           0.0.0.0:8080 pour tous les réseaux de la machine
</translation>
    </message>
</context>
<context>
    <name>Window</name>
    <message>
        <source> The tool list is not shown until it can be read again; every send tries again.</source>
        <translation> La liste d&apos;outils n&apos;est pas affichée tant qu&apos;elle ne peut pas être relue ; chaque envoi réessaie.</translation>
    </message>
</context>
<context>
    <name>dncctl</name>
    <message>
        <source>--baud takes a whole number above 0, not &quot;%1&quot;</source>
        <translation>--baud demande un nombre entier supérieur à 0, pas « %1 »</translation>
    </message>
    <message>
        <source>--parity takes E, O or N, not &quot;%1&quot;</source>
        <translation>--parity demande E, O ou N, pas « %1 »</translation>
    </message>
    <message>
        <source>--data takes 7 or 8, not &quot;%1&quot;</source>
        <translation>--data demande 7 ou 8, pas « %1 »</translation>
    </message>
    <message>
        <source>--stop takes 1 or 2, not &quot;%1&quot;</source>
        <translation>--stop demande 1 ou 2, pas « %1 »</translation>
    </message>
    <message>
        <source>--cnc takes 303, 504 or XonXoff, not &quot;%1&quot;</source>
        <translation>--cnc demande 303, 504 ou XonXoff, pas « %1 »</translation>
    </message>
    <message>
        <source>--wait takes seconds from 1 to 86400, not &quot;%1&quot;</source>
        <translation>--wait demande un nombre de secondes de 1 à 86400, pas « %1 »</translation>
    </message>
    <message>
        <source>--port takes a device path</source>
        <translation>--port demande le chemin d&apos;un périphérique</translation>
    </message>
    <message>
        <source>-x takes a string that is not empty</source>
        <translation>-x demande une chaîne non vide</translation>
    </message>
    <message>
        <source>unknown option %1</source>
        <translation>option inconnue %1</translation>
    </message>
    <message>
        <source>%1 needs a value</source>
        <translation>%1 demande une valeur</translation>
    </message>
    <message>
        <source>at most %1 limit strings (-x)</source>
        <translation>au plus %1 chaînes de coupure (-x)</translation>
    </message>
    <message>
        <source>no command given</source>
        <translation>aucune commande donnée</translation>
    </message>
    <message>
        <source>usage: dncctl [options] %1</source>
        <translation>usage : dncctl [options] %1</translation>
    </message>
    <message>
        <source>unknown command &quot;%1&quot;</source>
        <translation>commande inconnue « %1 »</translation>
    </message>
    <message>
        <source>read-only</source>
        <translation>lecture seule</translation>
    </message>
    <message>
        <source>no such folder</source>
        <translation>dossier introuvable</translation>
    </message>
    <message>
        <source>the folder is read-only</source>
        <translation>le dossier est en lecture seule</translation>
    </message>
    <message>
        <source>a control &quot;504&quot; sends the program named: dncctl receive NAME OUT</source>
        <translation>une CN « 504 » envoie le programme nommé : dncctl receive NOM SORTIE</translation>
    </message>
    <message>
        <source>a control &quot;%1&quot; chooses the program it sends itself: dncctl receive OUT</source>
        <translation>une CN « %1 » choisit elle-même le programme qu&apos;elle envoie : dncctl receive SORTIE</translation>
    </message>
    <message>
        <source>standard output</source>
        <translation>la sortie standard</translation>
    </message>
    <message>
        <source>%1: not offered by the control &quot;%2&quot;</source>
        <translation>%1 : non disponible sur la CN « %2 »</translation>
    </message>
    <message>
        <source>no control type in section [%1] of %2: give --cnc 303, 504 or XonXoff (a section is read only as far as its port and line settings are complete)</source>
        <translation>aucun type de CN dans la section [%1] de %2 : donnez --cnc 303, 504 ou XonXoff (une section n&apos;est lue que si son port et sa liaison sont complets)</translation>
    </message>
    <message>
        <source>no %3 in section [%1] of %2: set it with the window&apos;s Setup, or give %4</source>
        <translation>pas de %3 dans la section [%1] de %2 : réglez-le dans la Configuration de la fenêtre, ou donnez %4</translation>
    </message>
    <message>
        <source>Port=%3 in section [%1] of %2 names no serial port (COM1: to COM4:): choose one with the window&apos;s Setup, or give --port DEVICE</source>
        <translation>Port=%3 dans la section [%1] de %2 ne désigne aucun port série (COM1: à COM4:) : choisissez-en un dans la Configuration de la fenêtre, ou donnez --port PÉRIPHÉRIQUE</translation>
    </message>
    <message>
        <source>%1: no such file</source>
        <translation>%1 : fichier introuvable</translation>
    </message>
    <message>
        <source>%1: not a regular file</source>
        <translation>%1 : ce n&apos;est pas un fichier ordinaire</translation>
    </message>
    <message>
        <source>%1: cannot be read (%2)</source>
        <translation>%1 : lecture impossible (%2)</translation>
    </message>
    <message>
        <source>%1: cannot be written (%2)</source>
        <translation>%1 : écriture impossible (%2)</translation>
    </message>
    <message>
        <source>%1: no such program on the control</source>
        <translation>%1 : ce programme n&apos;est pas dans la CN</translation>
    </message>
    <message>
        <source>the control lists no programs</source>
        <translation>la CN ne liste aucun programme</translation>
    </message>
    <message>
        <source>the control sent no program</source>
        <translation>la CN n&apos;a envoyé aucun programme</translation>
    </message>
    <message>
        <source>interrupted (%1): the transfer was ended and the port closed</source>
        <translation>interrompu (%1) : transfert arrêté, port fermé</translation>
    </message>
    <message>
        <source>the %1 characters received are not saved: the reception was cut short</source>
        <translation>les %1 caractères reçus ne sont pas enregistrés : la réception a été interrompue</translation>
    </message>
    <message>
        <source>the program was sent, but its tools were not counted</source>
        <translation>le programme est parti, mais ses outils n&apos;ont pas été comptés</translation>
    </message>
    <message>
        <source>the send stopped at a blank line: the %1 lines with text behind it were not sent, the control has only the lines before it</source>
        <translation>l&apos;envoi s&apos;est arrêté à une ligne vide : les %1 lignes non vides qui la suivent ne sont pas parties, la CN n&apos;a que les lignes d&apos;avant</translation>
    </message>
    <message>
        <source>the file holds no CR: its %1 lines ended by LF went out as one line</source>
        <translation>le fichier ne contient aucun CR : ses %1 lignes terminées par LF sont parties en une seule ligne</translation>
    </message>
    <message>
        <source>%1 lines the control sent were not kept: it sent more than one line before the go-ahead, or a line together with its end</source>
        <translation>%1 lignes envoyées par la CN n&apos;ont pas été gardées : elle a envoyé plus d&apos;une ligne avant l&apos;acquittement, ou une ligne avec sa fin</translation>
    </message>
    <message>
        <source>standard output is closed</source>
        <translation>la sortie standard est fermée</translation>
    </message>
    <message>
        <source>%1 characters</source>
        <translation>%1 caractères</translation>
    </message>
    <message>
        <source>%1 characters/s</source>
        <translation>%1 caractères/s</translation>
    </message>
    <message>
        <source>%1 left</source>
        <translation>%1 restant</translation>
    </message>
    <message>
        <source>Receive : </source>
        <translation>Réception : </translation>
    </message>
    <message>
        <source>dncctl: %1
Try &apos;dncctl --help&apos;.
</source>
        <translation>dncctl : %1
Voir « dncctl --help ».
</translation>
    </message>
    <message>
        <source>%1 takes a whole number above 0, not &quot;%2&quot;</source>
        <translation>%1 demande un nombre entier supérieur à 0, pas « %2 »</translation>
    </message>
    <message>
        <source>--from-block takes a block number such as N48210, not &quot;%1&quot;</source>
        <translation>--from-block demande un numéro de bloc comme N48210, pas « %1 »</translation>
    </message>
    <message>
        <source>one place to start from, not two</source>
        <translation>un seul point de départ, pas deux</translation>
    </message>
    <message>
        <source>--from-line, --from-block and --from-tool are for send</source>
        <translation>--from-line, --from-block et --from-tool ne valent que pour send</translation>
    </message>
    <message>
        <source>the journal cannot be read: %1</source>
        <translation>le journal ne peut pas être lu : %1</translation>
    </message>
    <message>
        <source>the journal&apos;s rows cannot be removed: %1</source>
        <translation>les lignes du journal ne peuvent pas être supprimées : %1</translation>
    </message>
    <message>
        <source>%1 row(s) removed from the journal.
</source>
        <translation>%1 ligne(s) supprimée(s) du journal.
</translation>
    </message>
    <message>
        <source>standard output cannot be written</source>
        <translation>la sortie standard ne peut pas être écrite</translation>
    </message>
    <message>
        <source>%1 takes a date such as 2026-11-24 or 2026-11-24T08:30, not &quot;%2&quot;</source>
        <translation>%1 attend une date comme 2026-11-24 ou 2026-11-24T08:30, pas « %2 »</translation>
    </message>
    <message>
        <source>--format takes table, csv or json, not &quot;%1&quot;</source>
        <translation>--format attend table, csv ou json, pas « %1 »</translation>
    </message>
    <message>
        <source>--outcome takes one of %1, not &quot;%2&quot;</source>
        <translation>--outcome attend un de %1, pas « %2 »</translation>
    </message>
    <message>
        <source>--prune-before takes no other option</source>
        <translation>--prune-before ne prend aucune autre option</translation>
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
        <translation>Usage : dncctl [options] COMMANDE [arguments]

Transfère des programmes CN entre ce PC et une commande numérique par la liaison série,
avec les réglages du programme à fenêtre ($XDG_CONFIG_HOME/dnc.ini) et le même dialogue
sur la ligne.

Commandes :
  send FICHIER       envoyer un programme CN (ses outils comptés avec -d)
  receive SORTIE     recevoir le programme qu&apos;envoie une CN « 303 », l&apos;enregistrer dans SORTIE
  receive NOM SORTIE recevoir le programme NOM d&apos;une CN « 504 »
                     (« XonXoff » : attend le programme perforé sur la CN)
                     (SORTIE - écrit le programme sur la sortie standard)
  list               les programmes de la CN, un par ligne, sur la sortie standard
  change             CC, changement de programme (« 303 »)
  execute            CE, changement d&apos;exécution (« 303 »)
  delete NOM         DC, effacer le programme NOM d&apos;une CN « 504 »
  journal            le journal des transferts : une ligne par opération de la fenêtre,
                     de dncctl et des stations, dans la base -d ou sinon dans
                     $XDG_STATE_HOME/dnc/journal.db ; les plus anciennes d&apos;abord
    --since DATE     les lignes à partir de DATE (2026-11-24 ou 2026-11-24T08:30, UTC)
    --until DATE     les lignes avant DATE (un jour seul est pris en entier)
    --machine NOM    les lignes d&apos;une machine (la section)
    --outcome QUOI   done, timeout, port_failure, interrupted, refused,
                     not_on_control, file_failure, not_counted, cancelled
    --format F       table (par défaut), csv (RFC 4180, une ligne d&apos;en-tête) ou json
  journal --prune-before DATE
                     supprime les lignes et l&apos;usage des outils d&apos;avant DATE

Options, avant la commande, chaque valeur en argument séparé :
  -c CODE            langue des messages : 044 anglais, 033 français, 049 allemand ;
                     sans elle, la langue de LC_ALL, LC_MESSAGES ou LANG
  -s SECTION         la section de dnc.ini (par défaut : Default)
  -d BASE            compter les outils de chaque programme envoyé dans cette base d&apos;outils
  -x CHAINE          chaîne qui coupe les noms d&apos;outils ; répéter -x pour chacune
                     (10 au plus)
  --port PÉRIPH      le port série pour cette fois, p. ex. /dev/ttyUSB0, ou le port
                     d&apos;un serveur de ports série : tcp://HÔTE:PORT, rfc2217://HÔTE:PORT
  --baud N           vitesse pour cette fois
  --parity E|O|N     parité pour cette fois
  --data 7|8         bits de données pour cette fois
  --stop 1|2         bits de stop pour cette fois
  --cnc TYPE         type de CN pour cette fois : 303, 504 ou XonXoff
  --from-line N      send : l&apos;en-tête du programme, puis ses lignes à partir de la ligne N
  --from-block N48210  send : l&apos;en-tête, puis à partir du bloc N48210
  --from-tool T      send : l&apos;en-tête, puis à partir de la première ligne qui appelle l&apos;outil T
                     (T5, T05 ou T0505) ; un envoi partiel ne compte pas les outils
  --wait SECONDES    réception sur « XonXoff » : combien attendre le début de la
                     perforation (300 par défaut)
                     (ces réglages ponctuels ne modifient pas dnc.ini)
  -q, --quiet        pas de ligne d&apos;avancement
  -h, --help         ce texte
  --version          la version

Code de sortie :
  0    terminé : la CN a tout pris
  2    mauvais usage
  3    délai dépassé : la CN n&apos;a pas répondu, ou a cessé de répondre
  4    erreur de port : absent, occupé, réglages refusés, ou disparu
  5    erreur de fichier : le fichier à envoyer ou à écrire est inutilisable
  6    programme absent de la CN, ou la CN n&apos;en a envoyé aucun
  7    la base d&apos;outils est inutilisable ; rien n&apos;a été envoyé (journal : la
       base du journal ne peut être ni lue ni modifiée)
  8    non disponible pour ce type de CN, ou réglages incomplets
  9    envoyé, mais outils non comptés (la base d&apos;outils a échoué)
  10   terminé, mais il manque des lignes : l&apos;envoi s&apos;est arrêté à une ligne vide, le
       fichier n&apos;a pas de CR (envoyé en une ligne), ou la CN a envoyé des lignes non gardées
  130  interrompu par Ctrl-C (SIGINT) ; 143 par SIGTERM
</translation>
    </message>
</context>
</TS>
