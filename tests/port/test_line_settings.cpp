// The settings string and the device a port number stands for; no device is opened.
#include "line_settings.h"
#include "serial_comm.h"

#include <QtTest>

class TestLineSettings : public QObject {
    Q_OBJECT
private slots:
    void accepted_data();
    void accepted();
    void refused_data();
    void refused();
    void refusalNamesStringAndDevice();
    void deviceLookup_data();
    void deviceLookup();
};

void TestLineSettings::accepted_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("baud");
    QTest::addColumn<int>("parity");
    QTest::addColumn<int>("data");
    QTest::addColumn<int>("stop");
    QTest::addColumn<int>("bits"); // on the wire per character

    QTest::newRow("9600,E,7,2") << "9600,E,7,2" << 9600 << int(QSerialPort::EvenParity) << 7
                                << int(QSerialPort::TwoStop) << 11;
    QTest::newRow("9600,E,7,1") << "9600,E,7,1" << 9600 << int(QSerialPort::EvenParity) << 7
                                << int(QSerialPort::OneStop) << 10;
    QTest::newRow("odd, five bits")
        << "300,O,5,1" << 300 << int(QSerialPort::OddParity) << 5 << int(QSerialPort::OneStop) << 8;
    QTest::newRow("lower-case none") << "19200,n,8,1" << 19200 << int(QSerialPort::NoParity) << 8
                                     << int(QSerialPort::OneStop) << 10;
    QTest::newRow("blanks around values")
        << " 4800 , E , 6 , 2 " << 4800 << int(QSerialPort::EvenParity) << 6
        << int(QSerialPort::TwoStop) << 10;
}

void TestLineSettings::accepted() {
    QFETCH(QString, text);
    const LineSettings s = ParseLineSettings(text);
    QTEST(s.baud, "baud");
    QTEST(int(s.parity), "parity");
    QTEST(int(s.dataBits), "data");
    QTEST(int(s.stopBits), "stop");
    QTEST(s.bitsPerCharacter(), "bits");
}

void TestLineSettings::refused_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("why"); // a word the reason must hold

    QTest::newRow("empty") << ""
                           << "four values";
    QTest::newRow("three values") << "9600,E,7"
                                  << "four values";
    QTest::newRow("baud not a number") << "fast,E,7,2"
                                       << "baud";
    QTest::newRow("baud zero") << "0,E,7,2"
                               << "baud";
    QTest::newRow("parity X") << "9600,X,7,2"
                              << "parity";
    QTest::newRow("nine data bits") << "9600,E,9,2"
                                    << "data bits";
    QTest::newRow("three stop bits") << "9600,E,7,3"
                                     << "stop bits";
    QTest::newRow("one and a half") << "9600,E,7,1.5"
                                    << "1.5";
}

void TestLineSettings::refused() {
    QFETCH(QString, text);
    QFETCH(QString, why);
    try {
        ParseLineSettings(text);
        QFAIL("accepted");
    } catch (const LineSettingsError &e) {
        QVERIFY2(e.why.contains(why), qPrintable(e.why));
    }
}

void TestLineSettings::refusalNamesStringAndDevice() {
    SerialComm comm(QStringLiteral("/dev/ttyUSB7"));
    comm.setCommPort(2);
    comm.setSettings(QStringLiteral("4800,O,8,1"));
    try {
        comm.setSettings(QStringLiteral("9600,X,7,2"));
        QFAIL("accepted");
    } catch (const CommError &e) {
        QCOMPARE(e.device, QStringLiteral("COM2: (/dev/ttyUSB7)"));
        QVERIFY2(e.reason.contains(QLatin1String("\"9600,X,7,2\"")), qPrintable(e.reason));
        QVERIFY2(e.reason.contains(QLatin1String("parity")), qPrintable(e.reason));
    }
}

void TestLineSettings::deviceLookup_data() {
    QTest::addColumn<int>("port");
    QTest::addColumn<QString>("env");      // DNC_COM<port>, empty: unset
    QTest::addColumn<QString>("override"); // named directly, empty: none
    QTest::addColumn<QString>("path");

    QTest::newRow("COM1 default") << 1 << ""
                                  << ""
                                  << "/dev/ttyS0";
    QTest::newRow("COM4 default") << 4 << ""
                                  << ""
                                  << "/dev/ttyS3";
    QTest::newRow("COM1 from environment") << 1 << "/dev/ttyUSB0"
                                           << ""
                                           << "/dev/ttyUSB0";
    QTest::newRow("COM3 from environment") << 3 << "/tmp/vc"
                                           << ""
                                           << "/tmp/vc";
    QTest::newRow("named directly wins") << 2 << "/dev/ttyUSB0"
                                         << "/dev/pts/9"
                                         << "/dev/pts/9";
}

void TestLineSettings::deviceLookup() {
    QFETCH(int, port);
    QFETCH(QString, env);
    QFETCH(QString, override);
    QFETCH(QString, path);
    const QByteArray var = "DNC_COM" + QByteArray::number(port);
    if (env.isEmpty())
        qunsetenv(var.constData());
    else
        qputenv(var.constData(), env.toLocal8Bit());
    // Another port's variable must not count.
    qputenv(port == 1 ? "DNC_COM2" : "DNC_COM1", "/dev/wrong");

    SerialComm comm(override);
    comm.setCommPort(port);
    QCOMPARE(comm.devicePath(), path);
    QCOMPARE(comm.deviceName(), QStringLiteral("COM%1: (%2)").arg(port).arg(path));
    qunsetenv(var.constData());
    qunsetenv("DNC_COM1");
    qunsetenv("DNC_COM2");
}

QTEST_GUILESS_MAIN(TestLineSettings)
#include "test_line_settings.moc"
