#include "setup_form.h"

#include "number_text.h"
#include "profile.h"

namespace {

// The keys as the dialog reads them, list by list.
const char *const ReadKeys[7] = {"Port", "BAUD", "PARITY", "DATA", "STOP", "CNC", "SOFT"};

template <size_t N> QStringList entriesOf(const std::array<QString, N> &choices) {
    QStringList list;
    for (size_t i = 1; i < N; ++i)
        list << choices[i];
    return list;
}

// The check box takes the number the value begins with. Only 0 and 1 are ever written; a
// value edited by hand to anything else that is not 0 (or that does not fit 16 bits) shows
// checked, as on is what every non-zero value means to the transfer.
int checkOf(const QString &text) {
    return roundToInt16(numberOf(text)).value_or(1) != 0 ? 1 : 0;
}

QString textOf(const SetupForm &form, int list) {
    return form.entries[list].value(form.selected[list]);
}

} // namespace

SetupForm loadSetup(const Globals &g) {
    SetupForm form;
    form.entries = {entriesOf(g.PortChoices), entriesOf(g.BaudChoices), entriesOf(g.ParityChoices),
                    entriesOf(g.DataChoices), entriesOf(g.StopChoices), entriesOf(g.CncChoices),
                    entriesOf(g.SoftChoices)};
    for (int list = 0; list < 7; ++list) {
        form.selected[list] = 0;
        const QString stored = GetProfile(g, g.ConfigSection, ReadKeys[list]);
        const QStringList &entries = form.entries[list];
        for (int i = 0; i < entries.size(); ++i) {
            // The file holds only the first letter of the parity.
            const QString entry = list == 2 ? entries[i].left(1) : entries[i];
            if (entry == stored)
                form.selected[list] = i;
        }
    }
    form.check1 = checkOf(GetProfile(g, g.ConfigSection, "Wait-Xon"));
    form.check2 = checkOf(GetProfile(g, g.ConfigSection, "Space"));
    for (int port = 1; port <= PortCount; ++port)
        form.devices[port - 1] = configuredDevice(g, port);
    return form;
}

void saveSetup(const Globals &g, const SetupForm &form) {
    const QString &s = g.ConfigSection;
    PutProfile(g, s, "Port", textOf(form, 0));
    PutProfile(g, s, "Baud", textOf(form, 1));
    PutProfile(g, s, "Parity", textOf(form, 2).left(1));
    PutProfile(g, s, "Data", textOf(form, 3));
    PutProfile(g, s, "Stop", textOf(form, 4));
    PutProfile(g, s, "CNC", textOf(form, 5));
    PutProfile(g, s, "Soft", textOf(form, 6));
    PutProfile(g, s, "Wait-Xon", form.check1 ? "1" : "0");
    PutProfile(g, s, "Space", form.check2 ? "1" : "0");
    for (int port = 1; port <= PortCount; ++port)
        if (form.devices[port - 1] != configuredDevice(g, port))
            PutProfile(g, PortsSection, QStringLiteral("COM%1").arg(port), form.devices[port - 1]);
}
