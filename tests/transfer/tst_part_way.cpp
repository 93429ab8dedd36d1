// A send that starts part-way, through the real port on a pseudo-terminal against the virtual
// control: the program's head, then the lines from the start, exactly as the control gets
// them; a start the file does not hold refused with nothing on the wire.
#include "files.h"
#include "real_link.h"
#include "rows.h"
#include "transfer.h"
#include "vcontrol_process.h"

#include <QTemporaryDir>

Q_DECLARE_METATYPE(StartKind)

namespace {
// Its number on line 2: the head is lines 1 and 2.
const B Numbered("%\r\nO1234 (PART)\r\nG90 G21\r\nN10 T0101\r\nN20 G0 X1\r\nN30 T0505 M6\r\n"
                 "N40 G1 X 2\r\nM30\r\n%\r\n");
const B Head = "%\rO1234 (PART)\r";
// No number: the head is the first line holding "%".
const B Plain("%\r\nG90\r\nN10 T5\r\nN20 X1\r\n%\r\n");
} // namespace

class TstPartWay : public QObject {
    Q_OBJECT
private slots:
    void start_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<B>("file");
        QTest::addColumn<StartKind>("kind");
        QTest::addColumn<int>("number");
        QTest::addColumn<bool>("noSpace");
        QTest::addColumn<B>("program"); // at the control, without the dialogue's own characters
        QTest::addColumn<QString>("refused"); // words of the box; empty: sent
        const B tail = "N30 T0505 M6\rN40 G1 X 2\rM30\r%\r";
        row("303 from a line", 1, Numbered, StartKind::Line, 5, false, Head + "N20 G0 X1\r" + tail,
            "");
        row("303 from a block, no blanks", 1, Numbered, StartKind::Block, 40, true,
            B("%\rO1234(PART)\rN40G1X2\rM30\r%\r"), "");
        row("XonXoff from a tool (T0505)", 3, Numbered, StartKind::Tool, 5, false, Head + tail, "");
        row("XonXoff from a tool, no number: the head to the first %", 3, Plain, StartKind::Tool, 5,
            false, B("%\rN10 T5\rN20 X1\r%\r"), "");
        row("a block it does not hold", 1, Numbered, StartKind::Block, 48210, false, B(),
            "no line of it is block N48210");
        row("a tool it does not call", 3, Numbered, StartKind::Tool, 7, false, B(),
            "no line of it calls tool 7");
        row("a line inside the head", 1, Numbered, StartKind::Line, 2, false, B(),
            "inside the program's head");
        row("a line past the end", 1, Numbered, StartKind::Line, 10, false, B(),
            "only 9 lines, no line 10");
    }
    void start() {
        QFETCH(int, type);
        QFETCH(B, file);
        QFETCH(B, program);
        QFETCH(QString, refused);
        QTemporaryDir dir;
        const QString path = dir.filePath("P.tap");
        QVERIFY(writeFile(path, file));
        VControlProcess vc;
        const QStringList control = type == 3 ? QStringList{"--type", "XonXoff", "--end-gap", "200"}
                                              : QStringList{"--type", "303"};
        QVERIFY2(vc.start(control), qPrintable(vc.errorString()));
        RealLink r(vc.device(), qint16(type));
        QFETCH(bool, noSpace);
        r.g.NoSpace = noSpace;
        QFETCH(StartKind, kind);
        QFETCH(int, number);
        r.link.startAt = {kind, number};
        SendData(r.link, path);

        const B framed =
            refused.isEmpty() ? (type == 3 ? Xon + program : "R\r" + program + Eot) : B();
        QCOMPARE(vc.rxSettled(framed.size()), framed);
        const OutcomeRecord &o = r.link.outcome;
        QCOMPARE(o.start, (StartPoint{kind, number}.text()));
        QCOMPARE(o.kind, refused.isEmpty() ? OutcomeKind::Done : OutcomeKind::FileFailure);
        if (refused.isEmpty()) {
            QCOMPARE(o.bytes, program.size());
            // The counter ends at what this send sends, not at what the file holds.
            const QString last = r.screen.captions.last();
            QVERIFY2(last.endsWith(u"%") && last.section(u' ', -1).chopped(1).toInt() > 50,
                     qPrintable(last));
        } else {
            const RecordingScreen::Box box = r.screen.takeBox();
            QVERIFY2(box.text.contains(refused) && box.text.contains("Nothing was sent"),
                     qPrintable(box.text));
        }
        QCOMPARE(r.link.startAt.kind, StartKind::Top); // the next send starts at the top
        QCOMPARE(leftOver(r), QString());
    }
};

QTEST_GUILESS_MAIN(TstPartWay)
#include "tst_part_way.moc"
