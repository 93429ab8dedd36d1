#include "command_line.h"
#include "dnc_window.h"
#include "journal_thread.h"
#include "profile.h"
#include "real_link_parts.h"
#include "serial_devices.h"

#include <QApplication>
#include <QIcon>
#include <QTimer>

#include <cstdio>

// How long the window is left to show and paint itself before its picture is taken.
constexpr int ScreenshotDelayMs = 1500;

int main(int argc, char *argv[]) {
    QApplication app(argc, argv);
    app.setWindowIcon(QIcon(QStringLiteral(":/dnc/dnc.png")));
    app.setDesktopFileName(QStringLiteral("dnc"));
    Globals g;
    g.iniPath = defaultIniPath();
    OperationState state;
    RealLinkParts parts(g, state);
    DncWindow window(g, state, parts.comm, parts.timer, parts.yield,
                     commandLineFromArgs(app.arguments().mid(1)));
    if (window.startRefused())
        return 2;
    window.setSerialDeviceScan([] { return presentSerialDevices(); });

    // The journal says nothing in the window: a failure goes to standard error, once.
    JournalThread journal(journalTarget(g.DatabasePath), [](const QString &text) {
        std::fputs(("dnc: " + text + '\n').toLocal8Bit().constData(), stderr);
    });
    window.setJournal([&journal, &g, &parts](const OutcomeRecord &r) {
        if (!journalEnabled(g))
            return;
        journal.add([r, context = journalContext(g, parts.comm.devicePath()), g] {
            return journalRow(r, context, g);
        });
    });
    window.show();

    // For a machine without a screen: a picture of the window, then the end.
    const QString shot = qEnvironmentVariable("DNC_SCREENSHOT");
    if (!shot.isEmpty()) {
        QTimer::singleShot(ScreenshotDelayMs, &window, [&window, shot] {
            window.grab().save(shot);
            window.close();
        });
    }
    return app.exec();
}
