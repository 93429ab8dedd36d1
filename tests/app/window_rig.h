#pragma once
// The main window over the scripted port and the fake clock, with a dnc.ini of its own; the
// guard answers the modals a test expects and fails it on anything left over.

#include "dnc_window.h"
#include "fake_link.h"
#include "files.h"
#include "window_guard.h"

#include <QtWidgets>

struct WindowRig {
    QTemporaryDir dir;
    FakeLink f;
    OperationState state; // the window's own; f's is for operations run without a window
    WindowGuard guard;
    std::unique_ptr<DncWindow> w;

    // A null `cnc`: no settings file; `more` adds lines to its section.
    explicit WindowRig(const QString &cnc, const QByteArray &more = {}) {
        f.g.iniPath = dir.filePath(QStringLiteral("dnc.ini"));
        if (!cnc.isNull())
            writeFile(f.g.iniPath,
                      "[Default]\nPort=COM1:\nBaud=9600\nParity=E\nData=7\nStop=2\nCNC=" +
                          cnc.toUtf8() + "\n" + more);
    }
    ~WindowRig() { guard.check(); } // while the window still stands
    void open(const QString &commandLine = QString()) {
        w = std::make_unique<DncWindow>(f.g, state, f.comm, f.timer, f.yield, commandLine);
        w->show();
    }
    // The enabled Command1 indices, and Q for Command2.
    QString enabled() const {
        QString s;
        for (int i = 0; i < 8; ++i)
            s += w->Command1[i]->isEnabled() ? QString::number(i) : QString();
        return w->Command2->isEnabled() ? s + u'Q' : s;
    }
    // The next message box is accepted and its text added to `texts`.
    void takeBox(QStringList &texts) {
        guard.expect<QMessageBox>([&texts](QMessageBox *box) {
            texts << box->text();
            box->accept();
        });
    }
};
