// The station's pieces on their own: what a punch says of itself, where a requested program is
// found and where it is never looked for, the reply to a refusal, the name a punch is filed
// under, and the punch read off the scripted port chunk by chunk.
#include "chunk_script.h"
#include "files.h"
#include "program_lookup.h"
#include "punch.h"
#include "punch_filing.h"
#include "punch_reader.h"
#include "reply_program.h"
#include "rows.h"

#include <QDir>
#include <QTemporaryDir>

#include <sys/stat.h>

using Chunks = QList<QByteArray>;

class TstStationParts : public QObject {
    Q_OBJECT
private slots:
    void request_data() {
        QTest::addColumn<B>("punch");
        QTest::addColumn<bool>("isRequest");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("place");
        row("PRG=", B("%\nO9999\n(PRG=1234)\nM30\n%\n"), true, "1234", "");
        row("bare name, colon number, zeros", B("%\r\n:09999 (O1234.tap)\r\n%"), true, "O1234.tap",
            "");
        row("a place behind the name", B("%\nO9999(PRG=1234 /BL N48210)\n%"), true, "1234",
            "/BL N48210");
        row("an O in a comment first", B("%\n(TOOL O9999)\nO1234\n%"), false, "", "");
        row("another number", B("%\nO9998\n(PRG=1)\n%"), false, "", "");
        row("no comment: names nothing", B("%\nO9999\nM30\n%"), true, "", "");
        row("a path in the name", B("%\nO9999 (PRG=../etc/passwd)\n%"), true, "../etc/passwd", "");
    }
    void request() {
        QFETCH(B, punch);
        const std::optional<ProgramRequest> r = requestOf(punch, "O9999");
        QTEST(r.has_value(), "isRequest");
        if (r) {
            QTEST(r->name, "name");
            QTEST(r->place, "place");
        }
    }

    // Found only inside the folder, by one name, case-insensitive, with or without its
    // extension and its O.
    void lookup_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("found"); // the file, or the refusal's words
        row("as given", "O1234.tap", "O1234.tap");
        row("case and extension", "o1234", "O1234.tap");
        row("digits find the O", "1234", "O1234.tap");
        row("the O finds the digits", "O77", "77.NC");
        row(".LCC", "sheet", "SHEET.LCC");
        row("two fit", "twice", "AMBIGUOUS");
        row("nothing fits", "5555", "NOT FOUND");
        row("a way up", "..", "NOT ALLOWED");
        row("a path", "sub/O1234.tap", "NOT ALLOWED");
        row("the root", "/etc/passwd", "NOT ALLOWED");
        row("a link out of the folder", "out", "NOT ALLOWED");
        row("a link inside it", "inside", "O1234.tap");
        row("unreadable: a FIFO", "fifo", "READ ERROR");
    }
    void lookup() {
        QTemporaryDir dir, elsewhere;
        const QDir d(dir.path());
        QVERIFY(d.mkdir("sub"));
        for (const char *f :
             {"O1234.tap", "77.NC", "SHEET.LCC", "twice.tap", "TWICE.nc", "sub/O1234.tap"})
            QVERIFY(writeFile(d.filePath(f), "%\r\n"));
        QVERIFY(writeFile(elsewhere.filePath("secret"), "secret"));
        QVERIFY(QFile::link(elsewhere.filePath("secret"), d.filePath("out.tap")));
        QVERIFY(QFile::link("O1234.tap", d.filePath("inside.nc")));
        QVERIFY(::mkfifo(QFile::encodeName(d.filePath("fifo.tap")).constData(), 0600) == 0);
        QFETCH(QString, name);
        const ProgramLookup r = findProgram(dir.path(), name);
        QTEST(r.refusal == LookupRefusal::None ? QFileInfo(r.path).fileName()
                                               : QString::fromLatin1(refusalWords(r.refusal)),
              "found");
        // Whatever is sent lies in the folder.
        QVERIFY(r.path.isEmpty() || r.path.startsWith(QFileInfo(dir.path()).canonicalFilePath()));
    }

    void replyAndFiling() {
        QCOMPARE(replyProgram("O9998", "1234(x)", "NOT FOUND"),
                 B("%\r\nO9998\r\n(DNC 1234?X? NOT FOUND)\r\nM30\r\n%\r\n"));
        const QDateTime at(QDate(2026, 11, 24), QTime(20, 5, 9), Qt::UTC);
        QCOMPARE(punchFileName("%\n:0012\n%", at), "O0012.tap");
        QCOMPARE(punchFileName("%\n(PART 7/A)\n%", at), "PART_7_A.tap");
        QCOMPARE(punchFileName("%\nG0 X1\n%", at), "20261124-200509.tap");
        // Never over a file that is there: the next free name.
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath("O1.tap"), "old"));
        QVERIFY(writeFile(dir.filePath("O1.1.tap"), "old"));
        const FiledPunch f = filePunch(dir.path(), "%\nO1\n%\n", at);
        QCOMPARE(QFileInfo(f.path).fileName(), "O1.2.tap");
        QCOMPARE(readFile(f.path), B("%\nO1\n%\n"));
        QCOMPARE(readFile(dir.filePath("O1.tap")), B("old"));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden).size(), 3);
    }

    // Chunks as they come; once spent, the control is silent and the clock ticks.
    void reader_data() {
        QTest::addColumn<Chunks>("chunks");
        QTest::addColumn<B>("punch");
        QTest::addColumn<bool>("complete");
        QTest::addColumn<B>("next"); // the punch read after it
        QTest::addColumn<int>("ignored");
        const B dc2(1, 0x12), dc4(1, 0x14), nul(3, '\0');
        row("leader, punch on and off, X-on",
            Chunks{"xx\n" + nul + dc2 + "%\r\nO1 ", "(A)" + Xon + "\r\nM30\r\n%\r", "\n" + dc4},
            B("%\r\nO1 (A)\r\nM30\r\n%\r\n"), true, B(), 3);
        row("two in one chunk", Chunks{"%\nO1\n%\n%\nO2\n%\n"}, B("%\nO1\n%\n"), true,
            B("%\nO2\n%\n"), 0);
        row("cut by silence", Chunks{"%\nO1\nG0"}, B("%\nO1\nG0"), false, B(), 0);
        row("a % in the first line only", Chunks{"(50%)\nO1\n", "%\n"}, B("(50%)\nO1\n%\n"), true,
            B(), 0);
    }
    void reader() {
        QFETCH(Chunks, chunks);
        FakeLink f;
        f.comm.open = true;
        deliverChunks(f, chunks);
        PunchReader reader;
        const Punch p = reader.read(f.link, -1, 10000);
        QTEST(p.bytes, "punch");
        QTEST(p.complete, "complete");
        QCOMPARE(p.cutBySilence, !p.complete);
        QTEST(int(reader.ignored()), "ignored");
        QFETCH(B, next);
        if (!next.isEmpty()) // what came behind the first is not lost
            QCOMPARE(reader.read(f.link, 0, 10000).bytes, next);
        QVERIFY(!f.timer.on);
    }
};

QTEST_GUILESS_MAIN(TstStationParts)
#include "tst_station_parts.moc"
