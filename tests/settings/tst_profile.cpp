#include "ini_file.h"
#include "profile.h"

#include <QDir>
#include <QRandomGenerator>
#include <QTest>

#include <csignal>
#include <sys/resource.h>

class TestProfile : public QObject {
    Q_OBJECT
private slots:
    void read_data();
    void read();
    void missingFileReadsEmpty();
    void garbage_data();
    void garbage();
    void write_data();
    void write();
    void writeKeepsBinaryLines();
    void writtenValueComesBack();
    void createsParentFolder();
    void parentIsAFile();
    void failedWriteKeepsOldFile();
    void defaultPath_data();
    void defaultPath();
};

void TestProfile::read_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("section");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");

    QTest::newRow("names ignore case") << QByteArray("[default]\nBAUD=9600\n") << "Default"
                                       << "Baud"
                                       << "9600";
    QTest::newRow("blanks around names and value")
        << QByteArray("  [ Default ]  \n\t Baud  =  9600 \t\n") << "Default"
        << "Baud"
        << "9600";
    QTest::newRow("blanks inside a value stay")
        << QByteArray("[Default]\nTapeDir=/home/my nc files\n") << "Default"
        << "TapeDir"
        << "/home/my nc files";
    QTest::newRow("equals sign in the value")
        << QByteArray("[Default]\nTapeDir=/a=b/c=\n") << "Default"
        << "TapeDir"
        << "/a=b/c=";
    QTest::newRow("first of duplicate keys")
        << QByteArray("[Default]\nPort=COM1:\nPORT=COM2:\n") << "Default"
        << "Port"
        << "COM1:";
    QTest::newRow("key in a repeated section")
        << QByteArray("[Default]\nData=7\n[Other]\nPort=COM3:\n[DEFAULT]\nPort=COM2:\n")
        << "Default"
        << "Port"
        << "COM2:";
    QTest::newRow("other section only") << QByteArray("[Other]\nPort=COM1:\n") << "Default"
                                        << "Port"
                                        << "";
    QTest::newRow("section name is whole")
        << QByteArray("[Default2]\nPort=COM1:\n[Def]\nPort=COM2:\n") << "Default"
        << "Port"
        << "";
    QTest::newRow("key name is whole")
        << QByteArray("[Default]\nPortX=COM1:\nPor=COM2:\n") << "Default"
        << "Port"
        << "";
    QTest::newRow("entries before any section")
        << QByteArray("Port=COM1:\n[Default]\nBaud=300\n") << "Default"
        << "Port"
        << "";
    QTest::newRow("comment is no entry")
        << QByteArray("[Default]\n;Port=COM9:\nPort=COM1:\n") << "Default"
        << "Port"
        << "COM1:";
    QTest::newRow("line without equals sign")
        << QByteArray("[Default]\nPort\nPort=COM2:\n") << "Default"
        << "Port"
        << "COM2:";
    QTest::newRow("empty value") << QByteArray("[Default]\nPort=\nPort=COM2:\n") << "Default"
                                 << "Port"
                                 << "";
    QTest::newRow("no end on the last line") << QByteArray("[Default]\nPort=COM1:") << "Default"
                                             << "Port"
                                             << "COM1:";
    QTest::newRow("accents") << QByteArray("[Défaut]\nTapeDir=/home/données\n") << "DÉFAUT"
                             << "TapeDir"
                             << "/home/données";
    QTest::newRow("255 cut to 254") << "[Default]\nTapeDir=" + QByteArray(254, 'a') + "b\n"
                                    << "Default"
                                    << "TapeDir" << QString(254, u'a');
    QTest::newRow("cut counts characters, not bytes")
        << "[Default]\nTapeDir=" + QString(300, u'é').toUtf8() + "\n"
        << "Default"
        << "TapeDir" << QString(254, u'é');
}

void TestProfile::read() {
    QFETCH(QByteArray, file);
    QFETCH(QString, section);
    QFETCH(QString, key);
    QFETCH(QString, value);
    IniFile ini;
    Globals g;
    ini.useIn(g);
    ini.write(file);
    QCOMPARE(GetProfile(g, section, key), value);
}

void TestProfile::missingFileReadsEmpty() {
    IniFile ini;
    Globals g;
    ini.useIn(g);
    QCOMPARE(GetProfile(g, "Default", "Port"), QString());
    QVERIFY(!ini.exists());
}

void TestProfile::garbage_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("port"); // what Default/Port reads

    QByteArray allBytes;
    for (int i = 0; i < 256; ++i)
        allBytes += char(i);
    QByteArray noise(64 * 1024, Qt::Uninitialized);
    QRandomGenerator rng(13);
    for (char &c : noise)
        c = char(rng.bounded(256));

    QTest::newRow("every byte value") << allBytes + allBytes << "";
    QTest::newRow("random bytes") << noise << "";
    QTest::newRow("random bytes, then a section") << noise + "\n[Default]\nPort=COM2:\n"
                                                  << "COM2:";
    QTest::newRow("NUL inside a value")
        << QByteArray("[Default]\nPort=CO\0M1:\n", 22) << QString::fromUtf8("CO\0M1:", 6);
    QTest::newRow("invalid UTF-8 value")
        << QByteArray("[Default]\nPort=\xff\xfe\n") << QString(2, QChar::ReplacementCharacter);
    QTest::newRow("line of 100 000 characters")
        << "[Default]\n" + QByteArray(100000, 'x') + "\nPort=COM1:\n"
        << "COM1:";
    QTest::newRow("value of 100 000 characters")
        << "[Default]\nPort=" + QByteArray(100000, 'x') + "\n"
        << QString(254, u'x');
    QTest::newRow("no sections at all") << QByteArray("Port=COM1:\nBaud=9600\n") << "";
    QTest::newRow("unclosed section") << QByteArray("[Default\nPort=COM1:\n") << "";
}

void TestProfile::garbage() {
    QFETCH(QByteArray, file);
    QFETCH(QString, port);
    IniFile ini;
    Globals g;
    ini.useIn(g);
    ini.write(file);
    QCOMPARE(GetProfile(g, "Default", "Port"), port);
    // Writing into such a file works too and then reads back.
    PutProfile(g, "Default", "Baud", "9600");
    QCOMPARE(GetProfile(g, "Default", "Baud"), QStringLiteral("9600"));
    QCOMPARE(GetProfile(g, "Default", "Port"), port);
}

void TestProfile::write_data() {
    QTest::addColumn<QByteArray>("before"); // "<none>": no file
    QTest::addColumn<QString>("section");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QByteArray>("after");

    QTest::newRow("new file") << QByteArray("<none>") << "Default"
                              << "Port"
                              << "COM1:" << QByteArray("[Default]\nPort=COM1:\n");
    QTest::newRow("replace in place, keep every other line")
        << QByteArray("; my shop\n\n[Other]\nBaud=300\n\n[default]\n  BAUD = 300 \n"
                      "junk line\nData=7\n")
        << "Default"
        << "Baud"
        << "9600"
        << QByteArray("; my shop\n\n[Other]\nBaud=300\n\n[default]\nBAUD=9600\n"
                      "junk line\nData=7\n");
    QTest::newRow("new key at the end of its section")
        << QByteArray("[Default]\nPort=COM1:\n\n[Other]\nX=1\n") << "DEFAULT"
        << "Baud"
        << "300" << QByteArray("[Default]\nPort=COM1:\nBaud=300\n\n[Other]\nX=1\n");
    QTest::newRow("new key in an empty last section")
        << QByteArray("[Other]\nX=1\n[Default]") << "Default"
        << "Baud"
        << "300" << QByteArray("[Other]\nX=1\n[Default]\nBaud=300\n");
    QTest::newRow("new section behind the others")
        << QByteArray("[Other]\nX=1") << "Default"
        << "Port"
        << "COM1:" << QByteArray("[Other]\nX=1\n\n[Default]\nPort=COM1:\n");
    QTest::newRow("CR LF file stays CR LF")
        << QByteArray("[Default]\r\nPort=COM1:\r\n") << "Default"
        << "Baud"
        << "300" << QByteArray("[Default]\r\nPort=COM1:\r\nBaud=300\r\n");
    QTest::newRow("CR LF line replaced")
        << QByteArray("[Default]\r\nPort=COM1:\r\nData=7\r\n") << "Default"
        << "port"
        << "COM2:" << QByteArray("[Default]\r\nPort=COM2:\r\nData=7\r\n");
    QTest::newRow("first of duplicate keys replaced")
        << QByteArray("[Default]\nPort=COM1:\nPort=COM2:\n") << "Default"
        << "Port"
        << "COM3:" << QByteArray("[Default]\nPort=COM3:\nPort=COM2:\n");
    QTest::newRow("empty value") << QByteArray("[Default]\nPort=COM1:\n") << "Default"
                                 << "Port"
                                 << "" << QByteArray("[Default]\nPort=\n");
    QTest::newRow("value ends at a line break")
        << QByteArray("[Default]\n") << "Default"
        << "TapeDir"
        << "/a\n[Evil]\nX=1" << QByteArray("[Default]\nTapeDir=/a\n");
}

void TestProfile::write() {
    QFETCH(QByteArray, before);
    QFETCH(QString, section);
    QFETCH(QString, key);
    QFETCH(QString, value);
    QFETCH(QByteArray, after);
    IniFile ini;
    Globals g;
    ini.useIn(g);
    if (before != "<none>")
        ini.write(before);
    PutProfile(g, section, key, value);
    QCOMPARE(ini.read(), after);
}

void TestProfile::writeKeepsBinaryLines() {
    IniFile ini;
    Globals g;
    ini.useIn(g);
    const QByteArray junk("\xff\xfe\x01\x00 not \x80 UTF-8\n", 17);
    ini.write(junk + "[Default]\nPort=COM1:\n" + junk);
    PutProfile(g, "Default", "Port", "COM2:");
    QCOMPARE(ini.read(), junk + "[Default]\nPort=COM2:\n" + junk);
}

void TestProfile::writtenValueComesBack() {
    IniFile ini;
    Globals g;
    ini.useIn(g);
    const QString dir = QStringLiteral("/home/opérateur/a=b/Größe");
    PutProfile(g, "Default", "TapeDir", dir);
    QCOMPARE(GetProfile(g, "default", "tapedir"), dir);

    // The whole value is stored; only the read is cut.
    const QString longDir = QStringLiteral("/") + QString(299, u'd');
    PutProfile(g, "Default", "CNCDir", longDir);
    QVERIFY(ini.read().contains(longDir.toUtf8()));
    QCOMPARE(GetProfile(g, "Default", "CNCDir"), longDir.left(254));
}

void TestProfile::createsParentFolder() {
    QTemporaryDir dir;
    Globals g;
    g.IniPath = dir.filePath("a/b/dnc.ini");
    PutProfile(g, "Default", "Port", "COM1:");
    QCOMPARE(GetProfile(g, "Default", "Port"), QStringLiteral("COM1:"));
}

void TestProfile::parentIsAFile() {
    QTemporaryDir dir;
    const QString blocker = dir.filePath("config");
    {
        QFile f(blocker);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("a file where the folder should be\n");
    }
    Globals g;
    g.IniPath = blocker + "/dnc.ini";
    PutProfile(g, "Default", "Port", "COM1:");
    QCOMPARE(GetProfile(g, "Default", "Port"), QString());
    QFile f(blocker);
    QVERIFY(f.open(QIODevice::ReadOnly));
    QCOMPARE(f.readAll(), QByteArray("a file where the folder should be\n"));
    QCOMPARE(QDir(dir.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries),
             QStringList{"config"});
}

// Root may write anywhere, but not beyond the file size limit: a write that cannot finish
// must leave the old file whole and no temporary file behind.
void TestProfile::failedWriteKeepsOldFile() {
    IniFile ini;
    Globals g;
    ini.useIn(g);
    const QByteArray old = "[Default]\nPort=COM1:\n" + QByteArray(4000, ';') + "\n";
    ini.write(old);

    rlimit saved{};
    QVERIFY(getrlimit(RLIMIT_FSIZE, &saved) == 0);
    rlimit small = saved;
    small.rlim_cur = 1000;
    auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    QVERIFY(setrlimit(RLIMIT_FSIZE, &small) == 0);
    PutProfile(g, "Default", "Port", "COM2:");
    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, oldHandler);

    QCOMPARE(ini.read(), old);
    QCOMPARE(QDir(ini.dir.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries),
             QStringList{"dnc.ini"});
    // Once the file can be written again, the write goes through.
    PutProfile(g, "Default", "Port", "COM2:");
    QCOMPARE(GetProfile(g, "Default", "Port"), QStringLiteral("COM2:"));
}

void TestProfile::defaultPath_data() {
    QTest::addColumn<QByteArray>("xdg"); // "<unset>": not in the environment
    QTest::addColumn<QString>("path");
    const QString home = QDir::homePath() + "/.config/dnc.ini";
    QTest::newRow("XDG_CONFIG_HOME set") << QByteArray("/srv/cfg") << "/srv/cfg/dnc.ini";
    QTest::newRow("unset") << QByteArray("<unset>") << home;
    QTest::newRow("empty") << QByteArray("") << home;
    QTest::newRow("relative is ignored") << QByteArray("cfg") << home;
}

void TestProfile::defaultPath() {
    QFETCH(QByteArray, xdg);
    QFETCH(QString, path);
    const QByteArray saved = qgetenv("XDG_CONFIG_HOME");
    const bool wasSet = qEnvironmentVariableIsSet("XDG_CONFIG_HOME");
    if (xdg == "<unset>")
        qunsetenv("XDG_CONFIG_HOME");
    else
        qputenv("XDG_CONFIG_HOME", xdg);
    const QString got = DefaultIniPath();
    if (wasSet)
        qputenv("XDG_CONFIG_HOME", saved);
    else
        qunsetenv("XDG_CONFIG_HOME");
    QCOMPARE(got, path);
}

QTEST_GUILESS_MAIN(TestProfile)
#include "tst_profile.moc"
