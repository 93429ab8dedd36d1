// dncctl: the window's operations from a shell, a script or a CAM post-processor.
#include "app_info.h"
#include "ctl_journal.h"
#include "ctl_options.h"
#include "ctl_outcome.h"
#include "ctl_run.h"
#include "languages.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

int main(int argc, char *argv[]) {
    // A closed standard output would be taken by the next open, the port's perhaps: hold it
    // with /dev/null, so that nothing meant for the terminal goes down the line.
    const bool stdoutClosed = ::fcntl(STDOUT_FILENO, F_GETFD) < 0;
    if (stdoutClosed && ::open("/dev/null", O_WRONLY | O_CLOEXEC) != STDOUT_FILENO)
        return ExitFile;
    QCoreApplication app(argc, argv);
    // A reader that went away (dncctl list | head -1) is a failed write, not a crash.
    std::signal(SIGPIPE, SIG_IGN);

    const QStringList args = app.arguments().mid(1);
    loadTranslations(ctlLanguage(args));
    const CtlParse parse = parseCtlArguments(args);
    if (!parse.error.isEmpty()) {
        const QString text =
            QCoreApplication::translate("dncctl", "dncctl: %1\nTry 'dncctl --help'.\n")
                .arg(parse.error);
        std::fputs(text.toLocal8Bit().constData(), stderr);
        return ExitUsage;
    }
    if (parse.options.help) {
        std::fputs(ctlUsage().toLocal8Bit().constData(), stdout);
        return ExitOk;
    }
    if (parse.options.version) {
        std::printf("dncctl (%s) %d.%d.%d\n", AppTitle, AppMajor, AppMinor, AppRevision);
        return ExitOk;
    }
    CtlOptions options = parse.options;
    options.stdoutClosed = stdoutClosed;
    if (options.command == CtlCommand::Journal)
        return runJournalCommand(options);
    return runDncctl(options);
}
