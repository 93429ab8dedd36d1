#include "command_line.h"
#include "ini_file.h"
#include "profile.h"
#include "settings.h"
#include "setup_form.h"

#include <QTest>

class TestSettings : public QObject {
    Q_OBJECT
private slots:
    void fileFromSetupIsReadInFull();
    void anyCaseOfKeys_data();
    void anyCaseOfKeys();
    void firstMissingKey_data();
    void firstMissingKey();
    void noFile();
    void cncComparedExactly();
    void secondReadRebuilds();
    void flags_data();
    void flags();
    void absentSectionBehavesAsNoFile();
};

namespace {

Globals freshGlobals(const IniFile &ini) {
    Globals g;
    ini.useIn(g);
    InitChoices(g);
    return g;
}

} // namespace

void TestSettings::fileFromSetupIsReadInFull() {
    IniFile ini;
    Globals g = freshGlobals(ini);
    SetupForm form = LoadSetup(g);
    form.selected = {1, 5, 2, 1, 1, 2, 2}; // COM2: 9600 None 8 2 XonXoff 10
    form.check1 = 1;
    form.check2 = 1;
    SaveSetup(g, form);

    ReadSettings(g);
    QCOMPARE(g.ComSettings, QStringLiteral("COM2:9600,N,8,2"));
    QCOMPARE(g.CncType, qint16(3));
    QCOMPARE(g.WaitXon, qint16(1));
    QCOMPARE(g.NoSpace, qint16(1));
}

void TestSettings::anyCaseOfKeys_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("as the dialog writes")
        << QByteArray("[Default]\nPort=COM3:\nBaud=4800\nParity=O\nData=7\nStop=2\nCNC=504\n"
                      "Wait-Xon=1\nSpace=0\n");
    QTest::newRow("as the reader asks")
        << QByteArray("[Default]\nPort=COM3:\nBAUD=4800\nPARITY=O\nDATA=7\nSTOP=2\nCNC=504\n"
                      "wait-xon=1\nSpace=0\n");
    QTest::newRow("by hand, any case")
        << QByteArray("[DEFAULT]\nport=COM3:\nbAuD=4800\nparity=O\ndata=7\nsToP=2\ncnc=504\n"
                      "WAIT-XON=1\nSPACE=0\n");
}

void TestSettings::anyCaseOfKeys() {
    QFETCH(QByteArray, file);
    IniFile ini;
    ini.write(file);
    Globals g = freshGlobals(ini);
    ReadSettings(g);
    QCOMPARE(g.ComSettings, QStringLiteral("COM3:4800,O,7,2"));
    QCOMPARE(g.CncType, qint16(2));
    QCOMPARE(g.WaitXon, qint16(1));
    QCOMPARE(g.NoSpace, qint16(0));
}

void TestSettings::firstMissingKey_data() {
    QTest::addColumn<QString>("missing");
    QTest::addColumn<QString>("comSettings");
    // Port missing: nothing is read, the old string stays.
    QTest::newRow("Port") << "Port"
                          << "COM4:300,E,7,1";
    QTest::newRow("BAUD") << "Baud"
                          << "COM1:";
    QTest::newRow("PARITY") << "Parity"
                            << "COM1:9600,";
    QTest::newRow("DATA") << "Data"
                          << "COM1:9600,E,";
    QTest::newRow("STOP") << "Stop"
                          << "COM1:9600,E,8,";
}

void TestSettings::firstMissingKey() {
    QFETCH(QString, missing);
    QFETCH(QString, comSettings);
    const QStringList keys = {"Port", "Baud", "Parity", "Data", "Stop", "CNC", "Wait-Xon", "Space"};
    const QStringList values = {"COM1:", "9600", "E", "8", "1", "XonXoff", "0", "0"};
    for (const bool emptyValue : {false, true}) {
        IniFile ini;
        Globals g = freshGlobals(ini);
        for (qsizetype i = 0; i < keys.size(); ++i) {
            if (keys[i] != missing)
                PutProfile(g, "Default", keys[i], values[i]);
            else if (emptyValue) // an empty value reads as a missing key
                PutProfile(g, "Default", keys[i], QString());
        }
        g.ComSettings = "COM4:300,E,7,1";
        g.CncType = 1;
        g.WaitXon = 1;
        g.NoSpace = 1;
        ReadSettings(g);
        QCOMPARE(g.ComSettings, comSettings);
        QCOMPARE(g.CncType, qint16(1));
        QCOMPARE(g.WaitXon, qint16(1));
        QCOMPARE(g.NoSpace, qint16(1));
    }
}

void TestSettings::noFile() {
    IniFile ini;
    Globals g = freshGlobals(ini);
    ReadSettings(g);
    QCOMPARE(g.ComSettings, QString());
    QCOMPARE(g.CncType, qint16(0));
    QCOMPARE(g.WaitXon, qint16(0));
    QCOMPARE(g.NoSpace, qint16(0));
    QVERIFY(!ini.exists());
}

void TestSettings::cncComparedExactly() {
    IniFile ini;
    ini.write("[Default]\nPort=COM1:\nBaud=9600\nParity=E\nData=7\nStop=2\nCNC=xonxoff\n"
              "Wait-Xon=1\nSpace=1\n");
    Globals g = freshGlobals(ini);
    g.CncType = 1;
    ReadSettings(g);
    QCOMPARE(g.CncType, qint16(1));
    QCOMPARE(g.ComSettings, QStringLiteral("COM1:9600,E,7,2"));
    QCOMPARE(g.WaitXon, qint16(1));
    QCOMPARE(g.NoSpace, qint16(1));

    PutProfile(g, "Default", "CNC", "XonXoff");
    ReadSettings(g);
    QCOMPARE(g.CncType, qint16(3));
}

void TestSettings::secondReadRebuilds() {
    IniFile ini;
    ini.write("[Default]\nPort=COM1\nBaud=9600\nParity=E\nData=7\nStop=2\nCNC=504\n");
    Globals g = freshGlobals(ini);
    ReadSettings(g);
    QCOMPARE(g.ComSettings, QStringLiteral("COM19600,E,7,2")); // no colon without one in Port
    QCOMPARE(g.CncType, qint16(2));

    PutProfile(g, "Default", "Port", "COM2:");
    PutProfile(g, "Default", "Baud", "300");
    ReadSettings(g);
    QCOMPARE(g.ComSettings, QStringLiteral("COM2:300,E,7,2"));
}

void TestSettings::flags_data() {
    QTest::addColumn<QString>("value"); // "<none>": key missing
    QTest::addColumn<int>("flag");
    QTest::newRow("missing") << "<none>" << 0;
    QTest::newRow("empty") << "" << 0;
    QTest::newRow("0") << "0" << 0;
    QTest::newRow("1") << "1" << 1;
    QTest::newRow("blank before") << "  1" << 1;
    QTest::newRow("text after") << "1 yes" << 1;
    QTest::newRow("not a number") << "yes" << 0;
    QTest::newRow("half to even 0") << "0.5" << 0;
    QTest::newRow("half to even 2") << "1.5" << 2;
    QTest::newRow("negative") << "-1" << -1;
    QTest::newRow("beyond 16 bits is on") << "99999" << 1;
    QTest::newRow("far below 16 bits is on") << "-1e30" << 1;
}

void TestSettings::flags() {
    QFETCH(QString, value);
    QFETCH(int, flag);
    IniFile ini;
    ini.write("[Default]\nPort=COM1:\nBaud=9600\nParity=E\nData=7\nStop=2\nCNC=303\n");
    Globals g = freshGlobals(ini);
    g.WaitXon = 7;
    g.NoSpace = 7;
    if (value != "<none>") {
        PutProfile(g, "Default", "Wait-Xon", value);
        PutProfile(g, "Default", "SPACE", value);
    }
    ReadSettings(g);
    QCOMPARE(int(g.WaitXon), flag);
    QCOMPARE(int(g.NoSpace), flag);
}

void TestSettings::absentSectionBehavesAsNoFile() {
    IniFile ini;
    ini.write("[Default]\nPort=COM1:\nBaud=9600\nParity=E\nData=7\nStop=2\nCNC=303\n"
              "Wait-Xon=1\nSpace=1\n");
    const QByteArray before = ini.read();
    Globals g = freshGlobals(ini);
    GetParameter(g, "-s Shop");
    ReadSettings(g);
    QCOMPARE(g.ComSettings, QString());
    QCOMPARE(g.CncType, qint16(0));
    QCOMPARE(g.WaitXon, qint16(0));

    // The dialog opens with its defaults and its button creates the section; Default stays.
    const SetupForm form = LoadSetup(g);
    QCOMPARE(form.selected, (std::array<int, 7>{}));
    SaveSetup(g, form);
    QVERIFY(ini.read().startsWith(before));
    ReadSettings(g);
    QCOMPARE(g.ComSettings, QStringLiteral("COM1:300,E,7,1"));
    QCOMPARE(g.CncType, qint16(1));
}

QTEST_GUILESS_MAIN(TestSettings)
#include "tst_settings.moc"
