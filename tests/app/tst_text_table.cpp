#include "text_table.h"

#include <QTest>

class TestTextTable : public QObject {
    Q_OBJECT
private slots:
    void rows_data();
    void rows();
    void titleRow();
    void unusedPlacesStayEmpty();
    void accentsAreCarried();
};

namespace {

QString text(const Globals &g, int row, int column) {
    return g.TextTable[row * 5 + column];
}

} // namespace

void TestTextTable::rows_data() {
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("text");
    QTest::newRow("Reveive in column 1") << 33 << 1 << "&Reveive";
    QTest::newRow("Receive in column 4") << 33 << 4 << "&Receive";
    QTest::newRow("Setup in column 4") << 31 << 4 << "&Setup";
    QTest::newRow("Stop Bit in column 4") << 15 << 4 << "Stop Bit";
    QTest::newRow("send text ends in a blank, English") << 6 << 1 << "Send file : ";
    QTest::newRow("send text ends in a blank, German") << 6 << 3 << "Sende Datei : ";
    QTest::newRow("time-out, French") << 7 << 2 << "Dépassement du temps de réponse CNC";
    QTest::newRow("time-out, German")
        << 7 << 3 << "Wartezeit überschritten - Keine Antwort von CNC erhalten";
    QTest::newRow("CE, German") << 36 << 3 << "Produktion";
    QTest::newRow("DC, German") << 37 << 3 << "Löschen";
    QTest::newRow("parity, French") << 13 << 2 << "Controlle parité";
    QTest::newRow("parity, German") << 13 << 3 << "Paritätskontrolle";
    QTest::newRow("check 1, French") << 18 << 2 << "Attentre X-on avant l'envoi";
    QTest::newRow("setup title, German") << 10 << 3 << "Einstellungen DNC Verbindung";
}

void TestTextTable::rows() {
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(QString, text);
    Globals g;
    InitTexts(g);
    QCOMPARE(::text(g, row, column), text);
    g.Language = qint16(column);
    QCOMPARE(g.Text(row), text);
}

void TestTextTable::titleRow() {
    Globals g;
    InitTexts(g);
    for (int column = 1; column <= 4; ++column)
        QCOMPARE(text(g, 20, column), QStringLiteral("DNC VELDA - V2.6.0 - "));
}

void TestTextTable::unusedPlacesStayEmpty() {
    Globals g;
    g.Language = 3; // the table does not depend on the language
    InitTexts(g);
    const QList<int> used = {5,  6,  7,  10, 11, 12, 13, 14, 15, 16, 17,
                             18, 19, 20, 31, 32, 33, 34, 35, 36, 37, 38};
    for (int row = 0; row <= 50; ++row) {
        QVERIFY2(text(g, row, 0).isEmpty(), qPrintable(QString::number(row)));
        for (int column = 1; column <= 4; ++column)
            QVERIFY2(text(g, row, column).isEmpty() != used.contains(row),
                     qPrintable(QStringLiteral("row %1 column %2").arg(row).arg(column)));
    }
}

// Spelled by code point, so that a wrong source encoding cannot hide on both sides.
void TestTextTable::accentsAreCarried() {
    Globals g;
    InitTexts(g);
    QCOMPARE(text(g, 37, 3), QString::fromUtf16(u"L\u00f6schen"));
    QCOMPARE(text(g, 7, 3).mid(10, 1), QString::fromUtf16(u"\u00fc"));
    QCOMPARE(text(g, 7, 2).left(2), QString::fromUtf16(u"D\u00e9"));
    QCOMPARE(text(g, 14, 2).size(), 14);
}

QTEST_GUILESS_MAIN(TestTextTable)
#include "tst_text_table.moc"
