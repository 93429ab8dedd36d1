#include "command_line.h"
#include "dnc_window.h"
#include "event_loop_yield.h"
#include "port_devices.h"
#include "profile.h"
#include "qt_link_timer.h"
#include "serial_comm.h"
#include "serial_devices.h"

#include <QApplication>
#include <QIcon>
#include <QTimer>

int main(int argc, char *argv[]) {
    QApplication app(argc, argv);
    app.setWindowIcon(QIcon(QStringLiteral(":/dnc/dnc.png")));
    app.setDesktopFileName(QStringLiteral("dnc"));
    Globals g;
    g.iniPath = defaultIniPath();
    OperationState state;
    SerialComm comm;
    comm.setConfiguredDevices([&g](int port) { return configuredDevice(g, port); });
    // A write held up by a control that stopped reading must not keep the window from closing.
    comm.setOperationState(&state);
    QtLinkTimer timer(g);
    EventLoopYield yield(comm, timer);
    DncWindow window(g, state, comm, timer, yield, commandLineFromArgs(app.arguments().mid(1)));
    if (window.startRefused())
        return 2;
    window.setSerialDeviceScan([] { return presentSerialDevices(); });
    window.show();

    // For a machine without a screen: a picture of the window, then the end.
    const QString shot = qEnvironmentVariable("DNC_SCREENSHOT");
    if (!shot.isEmpty()) {
        QTimer::singleShot(1500, &window, [&window, shot] {
            window.grab().save(shot);
            window.close();
        });
    }
    return app.exec();
}
