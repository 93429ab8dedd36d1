#include "ini_file.h"
#include "profile.h"
#include "settings.h"
#include "setup_form.h"

#include <QTest>

class TestSetupForm : public QObject {
    Q_OBJECT
private slots:
    void noFileWritesTheDefaults();
    void storedValueSurvives_data();
    void storedValueSurvives();
    void unknownValueReplaced_data();
    void unknownValueReplaced();
    void checkBoxes_data();
    void checkBoxes();
};

namespace {

Globals freshGlobals(const IniFile &ini) {
    Globals g;
    ini.useIn(g);
    InitChoices(g);
    return g;
}

const QByteArray FullSection = "[Default]\nPort=COM1:\nBaud=9600\nParity=E\nData=7\nStop=1\n"
                               "CNC=303\nSoft=04\nWait-Xon=0\nSpace=0\n";

} // namespace

void TestSetupForm::noFileWritesTheDefaults() {
    IniFile ini;
    Globals g = freshGlobals(ini);
    const SetupForm form = LoadSetup(g);
    QCOMPARE(form.selected, (std::array<int, 7>{}));
    QCOMPARE(form.check1, 0);
    QCOMPARE(form.check2, 0);
    SaveSetup(g, form);
    // The nine writes in their order, with the keys as the dialog spells them.
    QCOMPARE(ini.read(), QByteArray("[Default]\nPort=COM1:\nBaud=300\nParity=E\nData=7\nStop=1\n"
                                    "CNC=303\nSoft=04\nWait-Xon=0\nSpace=0\n"));
}

void TestSetupForm::storedValueSurvives_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("list");
    QTest::addColumn<int>("selected");
    QTest::newRow("Parity N") << "Parity"
                              << "N" << 2 << 2;
    QTest::newRow("Data 8") << "Data"
                            << "8" << 3 << 1;
    QTest::newRow("CNC XonXoff") << "CNC"
                                 << "XonXoff" << 5 << 2;
    QTest::newRow("Soft 10") << "Soft"
                             << "10" << 6 << 2;
}

void TestSetupForm::storedValueSurvives() {
    QFETCH(QString, key);
    QFETCH(QString, value);
    QFETCH(int, list);
    QFETCH(int, selected);
    IniFile ini;
    ini.write(FullSection);
    Globals g = freshGlobals(ini);
    PutProfile(g, "Default", key.toUpper(), value);

    const SetupForm form = LoadSetup(g);
    QCOMPARE(form.selected[list], selected);
    SaveSetup(g, form);
    QCOMPARE(GetProfile(g, "Default", key), value);
    QCOMPARE(ini.read().count('\n'), FullSection.count('\n')); // replaced, not added
}

void TestSetupForm::unknownValueReplaced_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("written");
    QTest::newRow("baud rate typed by hand") << "Baud"
                                             << "19200"
                                             << "300";
    QTest::newRow("parity as a word") << "Parity"
                                      << "None"
                                      << "E";
    QTest::newRow("control type in other case") << "CNC"
                                                << "xonxoff"
                                                << "303";
    QTest::newRow("port without colon") << "Port"
                                        << "COM2"
                                        << "COM1:";
}

void TestSetupForm::unknownValueReplaced() {
    QFETCH(QString, key);
    QFETCH(QString, stored);
    QFETCH(QString, written);
    IniFile ini;
    ini.write(FullSection);
    Globals g = freshGlobals(ini);
    PutProfile(g, "Default", key, stored);
    SaveSetup(g, LoadSetup(g));
    QCOMPARE(GetProfile(g, "Default", key), written);
}

void TestSetupForm::checkBoxes_data() {
    QTest::addColumn<QString>("stored"); // "<none>": key missing
    QTest::addColumn<int>("checked");
    QTest::newRow("missing") << "<none>" << 0;
    QTest::newRow("0") << "0" << 0;
    QTest::newRow("1") << "1" << 1;
    QTest::newRow("2 by hand") << "2" << 1;
    QTest::newRow("-1 by hand") << "-1" << 1;
    QTest::newRow("0.4 rounds to 0") << "0.4" << 0;
    QTest::newRow("text") << "yes" << 0;
    QTest::newRow("beyond 16 bits") << "70000" << 1;
}

void TestSetupForm::checkBoxes() {
    QFETCH(QString, stored);
    QFETCH(int, checked);
    IniFile ini;
    Globals g = freshGlobals(ini);
    if (stored != "<none>") {
        PutProfile(g, "Default", "wait-xon", stored);
        PutProfile(g, "Default", "Space", stored);
    }
    const SetupForm form = LoadSetup(g);
    QCOMPARE(form.check1, checked);
    QCOMPARE(form.check2, checked);
    SaveSetup(g, form);
    const QString written = checked ? "1" : "0";
    QCOMPARE(GetProfile(g, "Default", "Wait-Xon"), written);
    QCOMPARE(GetProfile(g, "Default", "Space"), written);
}

QTEST_GUILESS_MAIN(TestSetupForm)
#include "tst_setup_form.moc"
