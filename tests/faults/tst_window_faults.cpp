// The window closed during a wait, through the whole window, the real port, clock and event
// loop against the virtual control: what came is offered for saving, then the window closes
// with nothing left running. The same fault on each operation: the other tables here. And the
// faults an operator meets first, told in the language of -c.

#include "commands_by_type.h"
#include "dnc_window.h"
#include "fault_support.h"
#include "real_link_parts.h"
#include "window_guard.h"

#include <QRegularExpression>
#include <QtWidgets>

#include <sys/stat.h>

namespace {

// The box that an absent port ("map") or a FIFO picked for sending ("send") brings up.
QString faultBox(const QString &fault, const QString &line, const QString &device,
                 const QString &fifo) {
    Globals g;
    QTemporaryDir dir;
    g.iniPath = dir.filePath(QStringLiteral("dnc.ini"));
    writeFile(g.iniPath, "[Default]\nPort=COM1:\nBaud=9600\nParity=N\nData=8\nStop=1\nCNC=303\n");
    qputenv("DNC_COM1", QFile::encodeName(device));
    OperationState state;
    RealLinkParts parts(g, state);
    DncWindow w(g, state, parts.comm, parts.timer, parts.yield, line);
    w.show();
    WindowGuard guard;
    if (fault == u"send") {
        guard.expect<QFileDialog>([&](QFileDialog *files) {
            // Typed, as the operator would: the folder's listing, loaded meanwhile, may clear a
            // selection, and the dialog's own accept refuses what is no file.
            files->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(fifo);
            static_cast<QDialog *>(files)->done(QDialog::Accepted);
        });
    }
    QString text;
    guard.expect<QMessageBox>([&](QMessageBox *box) {
        text = box->text();
        box->accept();
    });
    w.Command1_Click(fault == u"send" ? SendCommand : MapCommand);
    guard.check();
    return text;
}

// The words of an English text, without those of `names`, and without acronyms (FIFO, PC).
QStringList englishWords(QString text, const QStringList &names) {
    for (const QString &n : names)
        text.remove(n);
    QStringList words;
    static const QRegularExpression word(QStringLiteral("\\b[a-z][a-zA-Z]{3,}\\b"));
    for (auto m = word.globalMatch(text); m.hasNext();)
        words << m.next().captured();
    return words;
}

} // namespace

class TstWindowFaults : public QObject {
    Q_OBJECT
private slots:
    void closedInTheReceptionWait() {
        QTemporaryDir dir;
        const QString savePath = dir.filePath(QStringLiteral("GOT.tap"));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("P.NC")), numberedLines(5, "\r")));
        const QString link = dir.filePath(QStringLiteral("ttyUSB0"));
        VControlProcess vc;
        QVERIFY2(vc.start({"--type", "303", "--stall-mid-line", "2", "--dir", dir.path(), "--link",
                           link, "--pc-program", "P.NC"}),
                 qPrintable(vc.errorString()));
        qputenv("DNC_COM1", QFile::encodeName(link));

        Globals g;
        g.iniPath = dir.filePath(QStringLiteral("dnc.ini"));
        QVERIFY(writeFile(g.iniPath, "[Default]\nPort=COM1:\nBaud=115200\nParity=N\nData=8\n"
                                     "Stop=1\nCNC=303\n"));
        OperationState state;
        RealLinkParts parts(g, state, QString(), 5);
        DncWindow w(g, state, parts.comm, parts.timer, parts.yield, QString());
        w.show();
        WindowGuard guard;
        guard.expect<QFileDialog>([&](QFileDialog *files) {
            files->selectFile(savePath);
            static_cast<QDialog *>(files)->accept();
        });
        Trigger trigger;
        armFault(trigger, QStringLiteral("close at STALLED"), vc, link, [&] { w.close(); });
        const qint64 ms = msTaken([&] { w.Command1_Click(ReceiveCommand); });

        guard.check();
        const B saved("L1\r\nL\r\n"), inFile = readFile(savePath);
        QCOMPARE(inFile, saved);
        QVERIFY(!w.isVisible() && !parts.comm.portOpen() && !parts.timer.enabled() &&
                !w.Label1->isVisible());
        QCOMPARE(openDescriptors(savePath), 0);
        QVERIFY2(ms < 20000, qPrintable(QString::number(ms)));

        recordFault(QStringLiteral("window: receive: window closed in the reception wait"),
                    QStringLiteral("no box, window closed"), bytesLost(saved, inFile), ms);
    }

    void toldInTheLanguage_data() {
        QTest::addColumn<QString>("fault"); // map: the port is absent; send: a FIFO
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("says"); // a part of the translation
        QTest::newRow("absent port, French") << "map"
                                             << "-c 033"
                                             << "Impossible d'ouvrir le port";
        QTest::newRow("absent port, German") << "map"
                                             << "-c 049"
                                             << "dieses Gerät gibt es nicht";
        QTest::newRow("FIFO, French") << "send"
                                      << "-c 033"
                                      << "pas un fichier ordinaire";
        QTest::newRow("FIFO, German") << "send"
                                      << "-c 049"
                                      << "keine normale Datei";
    }
    void toldInTheLanguage() {
        QFETCH(QString, fault);
        QFETCH(QString, line);
        QTemporaryDir dir;
        const QString device = dir.filePath(QStringLiteral("ttyDNCGONE"));
        const QString fifo = dir.filePath(QStringLiteral("PART.tap"));
        QVERIFY(::mkfifo(QFile::encodeName(fifo).constData(), 0600) == 0);
        const QString named = fault == u"send" ? fifo : device;

        const QString english = faultBox(fault, QString(), device, fifo);
        const QString text = faultBox(fault, line, device, fifo);
        QVERIFY2(english.contains(named) && text.contains(named), qPrintable(text));
        QFETCH(QString, says);
        QVERIFY2(text.contains(says), qPrintable(text));
        // "port" is French as well.
        for (const QString &w :
             englishWords(english, {named, QStringLiteral("COM1"), QStringLiteral("port")}))
            QVERIFY2(!text.contains(QRegularExpression("\\b" + w + "\\b")),
                     qPrintable(w + " in: " + text));
    }
};

QTEST_MAIN(TstWindowFaults)
#include "tst_window_faults.moc"
