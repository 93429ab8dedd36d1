#include "command_line.h"
#include "dnc_window.h"
#include "event_loop_yield.h"
#include "profile.h"
#include "qt_link_timer.h"
#include "serial_comm.h"

#include <QApplication>
#include <QTimer>

int main(int argc, char *argv[]) {
    QApplication app(argc, argv);
    Globals g;
    g.iniPath = defaultIniPath();
    OperationState state;
    SerialComm comm;
    // A write held up by a control that stopped reading must not keep the window from closing.
    comm.setOperationState(&state);
    QtLinkTimer timer(g);
    EventLoopYield yield(comm, timer);
    DncWindow window(g, state, comm, timer, yield, commandLineFromArgs(app.arguments().mid(1)));
    window.show();

    // For the demo on a machine without a screen: a picture of the window, then the end.
    const QString shot = qEnvironmentVariable("DNC_SCREENSHOT");
    if (!shot.isEmpty()) {
        QTimer::singleShot(1500, &window, [&window, shot] {
            window.grab().save(shot);
            window.close();
        });
    }
    return app.exec();
}
