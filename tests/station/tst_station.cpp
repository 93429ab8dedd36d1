// dnc-station run as the service runs it, against the virtual control through the real port on
// a pseudo-terminal: what the control gets back for each request, where each punch is filed,
// and how the station holds its port, ends, and waits for a device that went away.
#include "real_link_parts.h"
#include "rows.h"
#include "station_rig.h"
#include "transfer.h"

#include <QElapsedTimer>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QThread>

#include <csignal>
#include <unistd.h>

namespace {
const B Part("%\r\nO1234\r\n(PART)\r\nG0 X1\r\nM30\r\n%\r\n");
const B PartOnWire = Xon + "%\rO1234\r(PART)\rG0 X1\rM30\r%\r";
B request(const B &comment) {
    return "%\nO9999\n(" + comment + ")\nM30\n%\n";
}
B reply(const B &comment) {
    return Xon + "%\rO9998\r(" + comment + ")\rM30\r%\r";
}
} // namespace

class TstStation : public QObject {
    Q_OBJECT
private slots:
    // Nothing from outside the program folder, ever: a request that cannot be served is
    // answered with a program whose comment says why.
    void requests_data() {
        QTest::addColumn<B>("comment");
        QTest::addColumn<B>("answer"); // all the control gets back, exactly
        row("found", B("PRG=1234"), PartOnWire);
        row("not found", B("PRG=5555"), reply("DNC 5555 NOT FOUND"));
        row("ambiguous", B("TWICE"), reply("DNC TWICE AMBIGUOUS"));
        row("a way up", B("PRG=../secret"), reply("DNC ../SECRET NOT ALLOWED"));
        row("the root", B("PRG=/etc/passwd"), reply("DNC /ETC/PASSWD NOT ALLOWED"));
        row("a link out of the folder", B("PRG=OUT"), reply("DNC OUT NOT ALLOWED"));
        // Sent again from a place: the head (up to its number), then from there.
        row("from a line", B("PRG=1234 /LI 4"), Xon + "%\rO1234\rG0 X1\rM30\r%\r");
        row("from a block it does not hold", B("PRG=1234 /BL N48210"),
            reply("DNC 1234 NO BLOCK N48210"));
    }
    void requests() {
        QFETCH(B, comment);
        StationRig rig;
        QVERIFY(writeFile(rig.program("O1234.tap"), Part));
        QVERIFY(writeFile(rig.program("twice.tap"), Part) &&
                writeFile(rig.program("TWICE.nc"), Part));
        QVERIFY(writeFile(rig.path("secret"), "%\r\nO1\r\n(SECRET)\r\n%\r\n"));
        QVERIFY(QFile::link(rig.path("secret"), rig.program("out.tap")));
        QVERIFY2(rig.startControl({request(comment)}), qPrintable(rig.vc.errorString()));
        QVERIFY2(rig.startStation(), qPrintable(rig.log()));

        QFETCH(B, answer);
        QVERIFY2(rig.vc.waitForEvent("STORED", 1, 10000), qPrintable(rig.log()));
        QCOMPARE(rig.vc.rxSettled(answer.size()), answer);
        // Served after the delay the operator needs to switch the control to read, not much
        // later (the control's log stamps its reads a few milliseconds early).
        const qint64 gapMs = rig.vc.answerGapUs() / 1000;
        QVERIFY2(gapMs >= 290 && gapMs < 1300, qPrintable(QString::number(gapMs)));
        const bool refused = answer.contains("(DNC ");
        QVERIFY(rig.waitForLog(refused ? "refused" : "answer done"));

        // The request's row: the bytes and the file of what went out, or why it was refused.
        const QList<QVariantMap> rows = rig.journalRowsWhen(1);
        QCOMPARE(rows.size(), 1);
        const QVariantMap &r = rows[0];
        QCOMPARE(r["operation"].toString(), QStringLiteral("request"));
        QCOMPARE(r["machine"].toString(), QStringLiteral("Lathe1"));
        QCOMPARE(r["outcome"].toString(), refused ? QStringLiteral("refused") : "done");
        QCOMPARE(r["bytes"].toLongLong(), answer.size() - 1); // the X-on is the dialogue's
        if (refused) {
            QVERIFY(answer.contains(r["message"].toByteArray()));
            QCOMPARE(r["file"].toString(), QString());
        } else {
            QCOMPARE(r["sha256"].toByteArray(),
                     QCryptographicHash::hash(Part, QCryptographicHash::Sha256).toHex());
            QCOMPARE(r["start"].toString().isEmpty(), !comment.contains("/LI"));
        }
    }

    // Filed under its number, never over a file that is there, cut by silence all the same.
    void punches() {
        StationRig rig;
        const B one("%\nO1234\nG1 X2\n%\n"), named("%\n(MY PART)\nG1\n%\n"), cut("%\nO77\nG1 X");
        QVERIFY(rig.startControl({one, one, named, cut}, 1000, {"--punch-gap", "400"}));
        QVERIFY2(rig.startStation(), qPrintable(rig.log()));
        QVERIFY2(rig.waitForLog("punch filed", 4), qPrintable(rig.log()));
        QCOMPARE(readFile(rig.received("O1234.tap")), one);
        QCOMPARE(readFile(rig.received("O1234.1.tap")), one);
        QCOMPARE(readFile(rig.received("MY_PART.tap")), named);
        QCOMPARE(readFile(rig.received("O77.tap")), cut);
        QVERIFY(rig.log().contains("cut short: the control fell silent"));
        QCOMPARE(QDir(rig.path("received")).entryList(QDir::Files | QDir::Hidden).size(), 4);

        // A row a punch, with the bytes and the SHA-256 of the file it was filed in.
        const QList<QVariantMap> rows = rig.journalRowsWhen(4);
        QCOMPARE(rows.size(), 4);
        QStringList outcomes;
        for (const QVariantMap &r : rows) {
            QCOMPARE(r["operation"].toString(), QStringLiteral("punch"));
            const QByteArray filed = readFile(r["file"].toString());
            QCOMPARE(r["bytes"].toLongLong(), filed.size());
            QCOMPARE(r["sha256"].toByteArray(),
                     QCryptographicHash::hash(filed, QCryptographicHash::Sha256).toHex());
            outcomes << r["outcome"].toString();
        }
        QCOMPARE(outcomes, QStringList({"done", "done", "done", "timeout"}));
    }

    // A "303" speaks only when asked: nothing for a station to serve, and it says so. SIGHUP
    // reads the settings again: a section changed to "303" is not taken up.
    void settingsRefused() {
        StationRig rig;
        QVERIFY(writeFile(rig.program("O1234.tap"), Part));
        QVERIFY(rig.startControl({request("PRG=1234")}, 3000));
        QVERIFY2(rig.startStation(), qPrintable(rig.log()));
        QByteArray ini = readFile(rig.path("dnc.ini")).replace("CNC=XonXoff", "CNC=303");
        QVERIFY(writeFile(rig.path("dnc.ini"), ini));
        ::kill(pid_t(rig.station.processId()), SIGHUP);
        QVERIFY2(rig.waitForLog("settings read again, not used: a station serves a control "
                                "\"XonXoff\" only"),
                 qPrintable(rig.log()));
        QCOMPARE(rig.station.state(), QProcess::Running);
        // Still serving the machine as it was set up.
        QVERIFY2(rig.vc.waitForEvent("STORED", 1, 10000), qPrintable(rig.log()));
        QCOMPARE(rig.vc.rxSettled(PartOnWire.size()), PartOnWire);

        QProcess second;
        second.setProcessEnvironment(rig.environment());
        // Said in the language of -c, as the log of a German shop reads it.
        second.start(QStringLiteral(DNC_STATION_PATH), {"-s", "Lathe1", "-c", "049"});
        QVERIFY(second.waitForFinished(10000));
        QCOMPARE(second.exitCode(), 8);
        const QString said = QString::fromUtf8(second.readAllStandardError());
        QVERIFY2(said.contains("sendet ein Programm nur, wenn der PC es anfordert"),
                 qPrintable(said));
    }

    // Asked for the port a station holds, the window's parts and dncctl name the station.
    void portHeld() {
        StationRig rig;
        QVERIFY(rig.startControl({}));
        QVERIFY2(rig.startStation(), qPrintable(rig.log()));
        const QString holder = QStringLiteral("the station of section Lathe1 (process %1)")
                                   .arg(rig.station.processId());
        QVERIFY(writeFile(rig.path("P.tap"), Part));

        QProcess ctl;
        ctl.setProcessEnvironment(rig.environment());
        ctl.start(QStringLiteral(DNCCTL_PATH), {"-s", "Lathe1", "send", rig.path("P.tap")});
        QVERIFY(ctl.waitForFinished(20000));
        QCOMPARE(ctl.exitCode(), 4);
        const QString said = QString::fromUtf8(ctl.readAllStandardError());
        QVERIFY2(said.contains(holder), qPrintable(said));

        qputenv("DNC_LOCK_DIR", rig.path(QString()).toUtf8());
        Globals g;
        g.ComSettings = QStringLiteral("COM1:115200,N,8,1");
        g.CncType = CncXonXoff;
        OperationState state;
        RealLinkParts parts(g, state, rig.link());
        QString why;
        try {
            parts.comm.setPortOpen(true);
        } catch (const CommError &e) {
            why = e.message();
        }
        QVERIFY2(why.contains(holder), qPrintable(why));
        QVERIFY(!parts.comm.portOpen());
    }

    // dncctl on an "XonXoff" section waits for the operator to punch, and saves it as a
    // reception is saved; with nothing punched it gives up after --wait.
    void dncctlReceivesAPunch() {
        StationRig rig;
        const B one("%\nO1234\nG1 X2\n%\n");
        QVERIFY(rig.startControl({one}, 500));
        QProcess ctl;
        ctl.setProcessEnvironment(rig.settings());
        const QStringList args{"-s", "Lathe1", "--wait", "5", "receive", rig.path("got.tap")};
        ctl.start(QStringLiteral(DNCCTL_PATH), args);
        QVERIFY(ctl.waitForFinished(20000));
        QCOMPARE(ctl.exitCode(), 0);
        QCOMPARE(readFile(rig.path("got.tap")), one + "\r\n");
        ctl.start(QStringLiteral(DNCCTL_PATH), {"-s", "Lathe1", "--wait", "1", "receive", "-"});
        QVERIFY(ctl.waitForFinished(20000));
        QCOMPARE(ctl.exitCode(), 3);
    }

    // SIGTERM in the middle of an answer: the send ends, the port and the claim are let go.
    void stopDuringAnswer() {
        StationRig rig;
        B big = "%\r\nO1234\r\n";
        for (int i = 1; i <= 2000; ++i)
            big += "N" + B::number(i) + " G1 X1.5 Y2.5\r\n";
        QVERIFY(writeFile(rig.program("O1234.tap"), big + "%\r\n"));
        // A slow machine: the answer takes some 20 s.
        QVERIFY(
            rig.startControl({request("PRG=1234")}, 1000, {"--rate", "2000", "--buffer", "512"}));
        QVERIFY2(rig.startStation(), qPrintable(rig.log()));
        QVERIFY(rig.vc.waitUntil([&] { return rig.vc.rx().size() > 1000; }, 10000));
        QElapsedTimer clock;
        clock.start();
        QVERIFY(rig.stopStation(5000));
        QVERIFY2(clock.elapsed() < 3000, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(rig.station.exitCode(), 0);
        QVERIFY(rig.log().contains("answer interrupted") && rig.log().contains("stopped"));
        QVERIFY(rig.vc.rx().size() < big.size());
        QVERIFY(QDir(rig.path(QString())).entryList({"dnc-station.*"}).isEmpty());
    }

    // The device goes (the adapter pulled), the station waits; it comes back, the station
    // serves it again without being started anew.
    void deviceGoneAndBack() {
        StationRig rig;
        QVERIFY(rig.startControl({}));
        QVERIFY2(rig.startStation(), qPrintable(rig.log()));
        QVERIFY(rig.vc.stop());
        QVERIFY2(rig.waitForLog("device lost"), qPrintable(rig.log()));
        const B one("%\nO5\nG1\n%\n");
        QVERIFY(rig.startControl({one}, 5000));
        QVERIFY2(rig.waitForLog("is back", 1, 15000), qPrintable(rig.log()));
        QVERIFY2(rig.waitForLog("punch filed", 1, 15000), qPrintable(rig.log()));
        QCOMPARE(readFile(rig.received("O5.tap")), one);
        QCOMPARE(rig.station.state(), QProcess::Running);
    }

    // Eight machines at once, each served its own program.
    void eightStations() {
        std::vector<std::unique_ptr<StationRig>> rigs;
        for (int i = 1; i <= 8; ++i) {
            auto rig = std::make_unique<StationRig>();
            const B own = "%\r\nO1234\r\n(MACHINE " + B::number(i) + ")\r\nM30\r\n%\r\n";
            QVERIFY(writeFile(rig->program("O1234.tap"), own));
            QVERIFY(rig->startControl({request("PRG=1234")}, 2000));
            QVERIFY2(rig->startStation(), qPrintable(rig->log()));
            rigs.push_back(std::move(rig));
        }
        for (int i = 1; i <= 8; ++i) {
            StationRig &rig = *rigs[size_t(i - 1)];
            const B want = Xon + "%\rO1234\r(MACHINE " + B::number(i) + ")\rM30\r%\r";
            QVERIFY2(rig.vc.waitForEvent("STORED", 1, 20000), qPrintable(rig.log()));
            QCOMPARE(rig.vc.rxSettled(want.size()), want);
        }
    }

    // The station's row in the journal for dnc-web: what it does as it happens, then its
    // last word.
    void stateRow() {
        StationRig rig;
        // Long enough (about 10 kB at 115200 baud) for the send to be seen under way.
        QByteArray program = "%\r\nO1234\r\n";
        for (int i = 0; i < 800; ++i)
            program += "G1 X" + QByteArray::number(i) + "\r\n";
        QVERIFY(writeFile(rig.program("O1234.tap"), program + "M30\r\n%\r\n"));
        QVERIFY2(rig.startControl({request("PRG=1234")}, 1500), qPrintable(rig.vc.errorString()));
        QVERIFY2(rig.startStation(), qPrintable(rig.log()));
        QStringList seen;
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), "state");
            db.setDatabaseName(rig.path("dnc/journal.db"));
            QVERIFY(db.open());
            const auto state = [&db] {
                QSqlQuery q(db);
                q.exec("SELECT state, program FROM station_state WHERE machine = 'Lathe1'");
                return q.next() ? q.value(0).toString() + ':' + q.value(1).toString() : QString();
            };
            QDeadlineTimer deadline(15000);
            while (!deadline.hasExpired() && !(seen.size() >= 4 && seen.last() == "listening:")) {
                const QString now = state();
                if (!now.isEmpty() && (seen.isEmpty() || seen.last() != now))
                    seen << now;
                QThread::msleep(5);
            }
            QVERIFY2(rig.stopStation(), qPrintable(rig.log()));
            seen << state();
        }
        QSqlDatabase::removeDatabase("state");
        QCOMPARE(seen.join(u' '),
                 QString("listening: waiting:1234 sending:1234 listening: stopped:"));
    }
};

QTEST_GUILESS_MAIN(TstStation)
#include "tst_station.moc"
