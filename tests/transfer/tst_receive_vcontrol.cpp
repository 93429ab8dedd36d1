// ReceiveFile and SaveFile through the real port against the virtual control: the exact bytes
// that reach the control, and the saved file byte for byte.
#include "real_link.h"
#include "transfer.h"
#include "vcontrol_process.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace {
const QByteArray Prompt("\x10\x37");

// Every byte value but CR and EOT, the only two the reception gives a meaning to.
QByteArray AllBytesButCrAndEot() {
    QByteArray all;
    for (int c = 0; c <= 255; ++c)
        if (c != '\r' && c != 4)
            all += char(c);
    return all;
}
} // namespace

class TestReceiveVControl : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        if (VControlProcess::program().isEmpty())
            QFAIL("DNC_VCONTROL is not set");
    }

    void receiveAndSave_data() {
        QTest::addColumn<QStringList>("control");
        QTest::addColumn<QByteArray>("program"); // as the control holds it, lines end CR
        QTest::addColumn<QByteArray>("rx");
        QTest::addColumn<QByteArray>("saved");

        const QStringList c303{"--type", "303"}, c504{"--type", "504"};
        const QByteArray all = AllBytesButCrAndEot();
        QTest::newRow("303") << c303 << QByteArray("N1 G0 X0\rN2 M30\r")
                             << "PC\r" + Prompt + Prompt + Prompt
                             << QByteArray("N1 G0 X0\r\nN2 M30\r\n\r\n");
        // The operator picks the second of the control's programs, PROG.NC.
        QTest::newRow("504") << c504 << QByteArray("N1 G0 X0\rN2 M30\r")
                             << "MC,/ISO\r" + Prompt + Prompt + Prompt + "PC,/ISO/PROG.NC\r" +
                                    Prompt + Prompt + Prompt
                             << QByteArray("N1 G0 X0\r\nN2 M30\r\n\r\n");
        QTest::newRow("303, every byte value")
            << c303 << all + "\rN2\r"
            << "PC\r" + Prompt + Prompt + Prompt << all + "\r\nN2\r\n\r\n";
        // Half of line 2 comes, then silence: the clock ends the wait and what came is kept.
        QTest::newRow("303, silence in the middle of a line")
            << c303 + QStringList{"--stall-mid-line", "2"} << QByteArray("N1 AAAA\rN2 BBBBBB\r")
            << "PC\r" + Prompt + Prompt << QByteArray("N1 AAAA\r\nN2 BB\r\n");
    }
    void receiveAndSave() {
        QFETCH(QStringList, control);
        QFETCH(QByteArray, program);
        QFETCH(QByteArray, rx);
        QFETCH(QByteArray, saved);

        QTemporaryDir store;
        for (const char *name : {"A.NC", "PROG.NC"}) {
            QFile f(store.filePath(name));
            QVERIFY(f.open(QIODevice::WriteOnly) && f.write(program) == program.size());
        }
        VControlProcess vc;
        QVERIFY2(vc.start(control + QStringList{"--dir", store.path(), "--pc-program", "PROG.NC"}),
                 qPrintable(vc.errorString()));

        const bool is504 = control.contains("504");
        RealLink r(vc.device(), is504 ? 2 : 1);
        QTemporaryDir out;
        r.g.IniPath = out.filePath("dnc.ini");
        r.screen.pick = 1;
        r.screen.saveAnswers.push_back(out.filePath("got.tap"));
        ReceiveFile(r.link);

        vc.waitUntil([&] { return vc.rx().size() >= rx.size(); }, 3000);
        QTest::qWait(50);
        vc.refresh();
        QCOMPARE(vc.rx(), rx);

        QFile file(out.filePath("got.tap"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), saved);
        const QByteArray received = saved.chopped(2);
        QCOMPARE(r.screen.text1, QString::fromLatin1(received));
        QCOMPARE(r.screen.captions.last(), QString::number(received.size()));
        QVERIFY(r.screen.boxes.isEmpty());
        QVERIFY(!r.comm.portOpen());
        QVERIFY(!r.screen.label1Visible);
        QCOMPARE(r.screen.pointer, 0);
    }
};

QTEST_GUILESS_MAIN(TestReceiveVControl)
#include "tst_receive_vcontrol.moc"
