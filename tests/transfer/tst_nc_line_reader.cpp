// Lines of an NC program read block by block: every block size must give the same lines.
#include "nc_line_reader.h"

#include <QTemporaryDir>
#include <QTest>

class TestNcLineReader : public QObject {
    Q_OBJECT
private slots:
    void lines_data();
    void lines();
};

void TestNcLineReader::lines_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QList<QByteArray>>("expected");
    using L = QList<QByteArray>;
    QTest::newRow("CR LF") << QByteArray("AB\r\nC\r\n") << L{"AB", "C"};
    QTest::newRow("CR alone") << QByteArray("AB\rC\r") << L{"AB", "C"};
    QTest::newRow("no end on the last line") << QByteArray("AB\r\nC") << L{"AB", "C"};
    QTest::newRow("lone LF stays") << QByteArray("A\nB\r\nC\n") << L{"A\nB", "C\n"};
    QTest::newRow("LF CR is LF in line, then end") << QByteArray("A\n\rB") << L{"A\n", "B"};
    QTest::newRow("CR CR LF: a blank line") << QByteArray("A\r\r\nB") << L{"A", "", "B"};
    QTest::newRow("blank lines") << QByteArray("\r\n\r\nA") << L{"", "", "A"};
    QTest::newRow("one line end only") << QByteArray("\r\n") << L{""};
    QTest::newRow("CR LF LF") << QByteArray("A\r\n\nB") << L{"A", "\nB"};
    QTest::newRow("zero bytes") << QByteArray("A\0B\r\n", 5) << L{QByteArray("A\0B", 3)};
}

void TestNcLineReader::lines() {
    QFETCH(QByteArray, file);
    QFETCH(QList<QByteArray>, expected);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("p.nc"));
    QFile out(path);
    QVERIFY(out.open(QIODevice::WriteOnly));
    out.write(file);
    out.close();

    // Small blocks put every CR LF across a block boundary somewhere.
    for (qint64 block : {1, 2, 3, 4, 7, 65536}) {
        NcLineReader reader(path, block);
        QVERIFY(reader.open());
        QCOMPARE(reader.size(), qint64(file.size()));
        QList<QByteArray> lines;
        while (!reader.atEnd() && lines.size() <= expected.size())
            lines << reader.readLine();
        QVERIFY2(lines == expected, qPrintable(QStringLiteral("block size %1").arg(block)));
    }
}

QTEST_GUILESS_MAIN(TestNcLineReader)
#include "tst_nc_line_reader.moc"
