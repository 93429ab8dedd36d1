#include "command_line.h"
#include "ini_file.h"
#include "port_devices.h"
#include "profile.h"
#include "rows.h"
#include "setup_form.h"

#include <QTest>

#include <csignal>
#include <sys/resource.h>

class TstSettings : public QObject {
    Q_OBJECT
private slots:
    void getProfile_data();
    void getProfile();
    void putProfile_data();
    void putProfile();
    void failedWriteLeavesTheOldFile();
    void defaultPath();
    void readSettings_data();
    void readSettings();
    void absentSectionReadsAsNoFile();
    void portDevice_data();
    void portDevice();
};

// Key "Port" of section "Default" throughout.
void TstSettings::getProfile_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("value");
    QByteArray noise; // every byte value, scrambled
    for (quint32 i = 0; i < 65536; ++i)
        noise += char((i * 2654435761u) >> 24);
    const QByteArray longLine(100000, 'x');

    row("names ignore case", QByteArray("[default]\nPORT=COM1:\n"), "COM1:");
    row("blanks around", QByteArray(" [ Default ] \n\t Port  = C 1 \t\n"), "C 1");
    row("equals sign in the value", QByteArray("[Default]\nPort=/a=b=\n"), "/a=b=");
    row("first of duplicate keys", QByteArray("[Default]\nPort=1\nPORT=2\n"), "1");
    row("repeated section", QByteArray("[Default]\n[B]\nPort=1\n[DEFAULT]\nPort=2"), "2");
    row("names are whole", QByteArray("[Default2]\nPort=1\n[Default]\nPortX=2\nPor=3"), "");
    row("cut to 254 characters", "[Default]\nPort=" + QString(300, u'\u00e9').toUtf8(),
        QString(254, u'\u00e9'));
    row("random bytes, then a section", noise + QByteArray("\n[Default]\nPort=2"), "2");
    row("NUL in a value", QByteArray("[Default]\nPort=C\0M\n", 19), QString::fromUtf8("C\0M", 3));
    row("line and value of 100 000 characters", "[Default]\n" + longLine + "\nPort=" + longLine,
        QString(254, u'x'));
}

void TstSettings::getProfile() {
    QFETCH(QByteArray, file);
    QFETCH(QString, value);
    IniFile ini;
    ini.write(file);
    QCOMPARE(GetProfile(ini.g, "Default", "Port"), value);
    // Such a file takes a write too, and keeps what it held.
    PutProfile(ini.g, "Default", "Soft", "05");
    QCOMPARE(GetProfile(ini.g, "default", "SOFT"), QStringLiteral("05"));
    QCOMPARE(GetProfile(ini.g, "Default", "Port"), value);
}

// Key "Baud" of section "Default" throughout; an empty `before` is no file at all.
void TstSettings::putProfile_data() {
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QByteArray>("after");
    const QByteArray junk("\xff\xfe\x01\x00 not \x80 UTF-8\n", 17);
    const QString longDir = QStringLiteral("/op\u00e9rateur/a=b/") + QString(300, u'd');

    row("new file and folder", QByteArray(), "300", QByteArray("[Default]\nBaud=300\n"));
    row("in place, first of two, spelling and other lines kept",
        QByteArray("; shop\n\n[B]\nBaud=1\n\n[default]\n  BAUD = 1 \njunk\nBaud=2\n"), "300",
        QByteArray("; shop\n\n[B]\nBaud=1\n\n[default]\nBAUD=300\njunk\nBaud=2\n"));
    row("at the end of its section", QByteArray("[Default]\nA=1\n\n[B]\n"), "3",
        QByteArray("[Default]\nA=1\nBaud=3\n\n[B]\n"));
    row("in an empty last section", QByteArray("[B]\n[Default]"), "3",
        QByteArray("[B]\n[Default]\nBaud=3\n"));
    row("new section behind the others, CR LF", QByteArray("[B]\r\nX=1"), "3",
        QByteArray("[B]\r\nX=1\r\n\r\n[Default]\r\nBaud=3\r\n"));
    row("CR LF kept; a value ends at a line break", QByteArray("[Default]\r\nBaud=1\r\n"),
        "3\n[Evil]", QByteArray("[Default]\r\nBaud=3\r\n"));
    row("lines that are not UTF-8 kept", junk + "[Default]\nBaud=1\n" + junk, "3",
        junk + "[Default]\nBaud=3\n" + junk);
    row("accents, the whole long value", QByteArray(), longDir,
        "[Default]\nBaud=" + longDir.toUtf8() + "\n");
}

void TstSettings::putProfile() {
    QFETCH(QByteArray, before);
    QFETCH(QString, value);
    QFETCH(QByteArray, after);
    IniFile ini;
    if (!before.isEmpty())
        ini.write(before);
    PutProfile(ini.g, "Default", "Baud", value);
    QCOMPARE(ini.read(), after);
}

// Root may write anywhere, but not beyond the file size limit.
void TstSettings::failedWriteLeavesTheOldFile() {
    IniFile ini;
    const QByteArray old = "[Default]\nPort=COM1:\n" + QByteArray(4000, ';') + "\n";
    ini.write(old);
    rlimit saved{};
    QVERIFY(getrlimit(RLIMIT_FSIZE, &saved) == 0);
    const rlimit small{1000, saved.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    QVERIFY(setrlimit(RLIMIT_FSIZE, &small) == 0);
    PutProfile(ini.g, "Default", "Port", "COM2:");
    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, handler);
    QCOMPARE(ini.read(), old);
    QCOMPARE(QDir(ini.dir.filePath("config")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries),
             QStringList{"dnc.ini"}); // no temporary file left behind
}

void TstSettings::defaultPath() {
    const EnvVar config("XDG_CONFIG_HOME", "/srv/cfg");
    QCOMPARE(defaultIniPath(), QStringLiteral("/srv/cfg/dnc.ini"));
    config.set("cfg"); // relative: the file would move with the current folder
    QCOMPARE(defaultIniPath(), QDir::homePath() + "/.config/dnc.ini");
}

namespace {

// As the setup dialog writes it.
const QByteArray Section = "[Default]\nPort=COM3:\nBaud=4800\nParity=O\nData=7\nStop=2\nCNC=504\n"
                           "Soft=05\nWait-Xon=1\nSpace=0\n";
const QString Full = QStringLiteral("COM3:4800,O,7,2");

void readRow(const char *name, const QStringList &edits, int cnc, int waitXon, int noSpace,
             const QString &com = Full, const QByteArray &file = Section) {
    row(name, file, edits, com, cnc, waitXon, noSpace);
}

} // namespace

// Each row edits the section (an empty value reads as a missing key) and reads it over
// settings left by an earlier read.
void TstSettings::readSettings_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("edits");
    QTest::addColumn<QString>("com");
    QTest::addColumn<int>("cnc");
    QTest::addColumn<int>("waitXon");
    QTest::addColumn<int>("noSpace");
    readRow("dialog's spelling of the keys", {}, 2, 1, 0);
    readRow("keys and section in other case", {}, 2, 1, 0, Full, Section.toUpper());
    readRow("Port missing: nothing read", {"Port="}, 1, 7, 7, "old");
    readRow("BAUD missing", {}, 1, 7, 7, "COM3:", QByteArray(Section).replace("Baud=4800\n", ""));
    readRow("STOP empty", {"Stop="}, 1, 7, 7, "COM3:4800,O,7,");
    readRow("CNC in other case: type kept, flags read", {"CNC=xonxoff"}, 1, 1, 0);
    readRow("Port without colon", {"Port=COM3"}, 2, 1, 0, "COM34800,O,7,2");
    readRow("XonXoff", {"CNC=XonXoff", "Wait-Xon=0", "Space=1"}, 3, 0, 1);
    // A flag is the number its value begins with, rounded to 16 bits; beyond them it is on.
    readRow("flag missing; half to even", {"Wait-Xon=", "Space=1.5"}, 2, 0, 2);
    readRow("beyond 16 bits; negative", {"Wait-Xon=99999", "Space=-1"}, 2, 1, -1);
    readRow("text behind; a comma ends", {"Wait-Xon=1 yes", "Space=1,5"}, 2, 1, 1);
    readRow("blank behind the sign; no integer part", {"Wait-Xon=- 1", "Space=.6"}, 2, 0, 1);
    readRow("exponent; e without digits", {"Wait-Xon=25e-1", "Space=1e+x"}, 2, 2, 1);
    readRow("half above the top; below", {"Wait-Xon=32767.5", "Space=-32768.5"}, 2, 1, -32768);
    readRow("overflow; underflow", {"Wait-Xon=1e99999999999999999999", "Space=1e-400"}, 2, 1, 0);
    readRow("hex; many digits", {"Wait-Xon=0x10", "Space=1" + QString(200, u'0') + "e-198"}, 2, 0,
            100);
}

void TstSettings::readSettings() {
    QFETCH(QByteArray, file);
    QFETCH(QStringList, edits);
    QFETCH(QString, com);
    IniFile ini;
    ini.write(file);
    for (const QString &e : edits)
        PutProfile(ini.g, "Default", e.section(u'=', 0, 0), e.section(u'=', 1));
    ini.g.ComSettings = "old";
    ini.g.CncType = 1;
    ini.g.WaitXon = ini.g.NoSpace = 7;
    ReadSettings(ini.g);
    QCOMPARE(ini.g.ComSettings, com);
    QTEST(int(ini.g.CncType), "cnc");
    QTEST(int(ini.g.WaitXon), "waitXon");
    QTEST(int(ini.g.NoSpace), "noSpace");
}

void TstSettings::absentSectionReadsAsNoFile() {
    IniFile ini;
    ini.write(Section);
    GetParameter(ini.g, "-s Shop");
    ReadSettings(ini.g);
    QCOMPARE(ini.g.ComSettings, QString());
    QCOMPARE(ini.g.CncType, qint16(0));
    // The dialog opens with its defaults and its button makes the section; Default stays.
    saveSetup(ini.g, loadSetup(ini.g));
    QVERIFY(ini.read().startsWith(Section));
    ReadSettings(ini.g);
    QCOMPARE(ini.g.ComSettings, QStringLiteral("COM1:300,E,7,1"));
    QCOMPARE(ini.g.CncType, qint16(1));
}

// COM2:'s device: DNC_COM2 (null: unset), then [Ports], shared by every configuration, then
// /dev/ttyS1.
void TstSettings::portDevice_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("env");
    QTest::addColumn<QString>("device");
    const QString byId = QStringLiteral("/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A50285BI-if00");
    const QByteArray ports = "[Default]\nPort=COM2:\n\n[Ports]\nCOM2=" + byId.toUtf8() + "\n";
    auto row = [](const char *name, const QByteArray &file, const QString &env,
                  const QString &device) { QTest::newRow(name) << file << env << device; };
    row("no file", "", QString(), "/dev/ttyS1");
    row("no entry", "[Default]\nPort=COM2:\n", QString(), "/dev/ttyS1");
    row("[Ports] names it", ports, QString(), byId);
    row("another port's entry", "[Ports]\nCOM1=/dev/ttyUSB0\nCOM3=/dev/ttyUSB1\n", QString(),
        "/dev/ttyS1");
    row("empty entry", "[Ports]\nCOM2=\n", QString(), "/dev/ttyS1");
    row("not in the configuration's section", "[Shop]\nCOM2=/dev/ttyUSB0\n", QString(),
        "/dev/ttyS1");
    row("environment before [Ports]", ports, "/dev/pts/7", "/dev/pts/7");
    row("empty environment counts as unset", ports, "", byId);
}

void TstSettings::portDevice() {
    QFETCH(QByteArray, file);
    QFETCH(QString, env);
    IniFile ini;
    if (!file.isEmpty())
        ini.write(file);
    GetParameter(ini.g, "-s Shop");
    const EnvVar com2("DNC_COM2", env);
    QTEST(comDevice(ini.g, 2), "device");
    QCOMPARE(comDevice(ini.g, 4), QStringLiteral("/dev/ttyS3"));
}

QTEST_GUILESS_MAIN(TstSettings)
#include "tst_settings.moc"
