#include "number_text.h"

#include <QTest>

#include <cmath>
#include <limits>

class TestNumberText : public QObject {
    Q_OBJECT
private slots:
    void numberOf_data();
    void numberOf();
    void roundToInt16_data();
    void roundToInt16();
};

void TestNumberText::numberOf_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");
    const double inf = std::numeric_limits<double>::infinity();

    QTest::newRow("empty") << "" << 0.0;
    QTest::newRow("leading blanks") << "   12" << 12.0;
    QTest::newRow("tab is not skipped") << "\t12" << 0.0;
    QTest::newRow("stops at a letter") << "12abc" << 12.0;
    QTest::newRow("stops at a comma") << "1,5" << 1.0;
    QTest::newRow("second point") << "1.5.3" << 1.5;
    QTest::newRow("negative fraction") << "-3.25" << -3.25;
    QTest::newRow("plus sign") << "+7" << 7.0;
    QTest::newRow("blank behind the sign") << "- 1" << 0.0;
    QTest::newRow("point alone") << "." << 0.0;
    QTest::newRow("no integer part") << ".5" << 0.5;
    QTest::newRow("point at the end") << "5." << 5.0;
    QTest::newRow("exponent") << "1e3" << 1000.0;
    QTest::newRow("exponent, capital, plus") << "1E+2" << 100.0;
    QTest::newRow("negative exponent") << "25e-1" << 2.5;
    QTest::newRow("e without digits") << "1e" << 1.0;
    QTest::newRow("e and sign without digits") << "1e+x" << 1.0;
    QTest::newRow("hex is not read") << "0x10" << 0.0;
    QTest::newRow("letters") << "abc" << 0.0;
    QTest::newRow("overflow") << "1e400" << inf;
    QTest::newRow("huge exponent") << "1e99999999999999999999" << inf;
    QTest::newRow("underflow") << "1e-400" << 0.0;
    QTest::newRow("many digits") << "1" + QString(400, u'0') << inf;
    QTest::newRow("many zeros behind the point") << "0." + QString(400, u'0') + "1" << 0.0;
    QTest::newRow("many digits, small exponent") << "1" + QString(400, u'0') + "e-398" << 100.0;
}

void TestNumberText::numberOf() {
    QFETCH(QString, text);
    QFETCH(double, value);
    QCOMPARE(NumberOf(text), value);
}

void TestNumberText::roundToInt16_data() {
    QTest::addColumn<double>("value");
    QTest::addColumn<bool>("fits");
    QTest::addColumn<int>("rounded");

    QTest::newRow("0.5 to 0") << 0.5 << true << 0;
    QTest::newRow("1.5 to 2") << 1.5 << true << 2;
    QTest::newRow("2.5 to 2") << 2.5 << true << 2;
    QTest::newRow("-1.5 to -2") << -1.5 << true << -2;
    QTest::newRow("-2.5 to -2") << -2.5 << true << -2;
    QTest::newRow("below a half") << 2.4999 << true << 2;
    QTest::newRow("above a half") << 2.5001 << true << 3;
    QTest::newRow("rounds down to the top") << 32767.4 << true << 32767;
    QTest::newRow("half above the top goes to the even 32768") << 32767.5 << false << 0;
    QTest::newRow("one above the top") << 32768.0 << false << 0;
    QTest::newRow("bottom") << -32768.0 << true << -32768;
    QTest::newRow("half below the bottom goes to the even -32768") << -32768.5 << true << -32768;
    QTest::newRow("rounds below the bottom") << -32768.6 << false << 0;
    QTest::newRow("infinity") << std::numeric_limits<double>::infinity() << false << 0;
    QTest::newRow("not a number") << std::nan("") << false << 0;
}

void TestNumberText::roundToInt16() {
    QFETCH(double, value);
    QFETCH(bool, fits);
    QFETCH(int, rounded);
    const std::optional<qint16> r = RoundToInt16(value);
    QCOMPARE(r.has_value(), fits);
    if (fits)
        QCOMPARE(int(*r), rounded);
}

QTEST_GUILESS_MAIN(TestNumberText)
#include "tst_number_text.moc"
