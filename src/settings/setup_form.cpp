#include "setup_form.h"

#include "number_text.h"
#include "profile.h"
#include "settings_keys.h"

namespace {

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

constexpr int ListCount = int(SettingsKey::Lists.size());
static_assert(std::tuple_size_v<decltype(SetupForm::entries)> == ListCount);

QLatin1String keyOf(int list) {
    return SettingsKey::Lists[size_t(list)];
}

// An entry as the file holds it: of the parity, only its first letter.
QString storedForm(int list, const QString &entry) {
    return keyOf(list) == SettingsKey::Parity ? entry.left(1) : entry;
}

} // namespace

SetupForm loadSetup(const Globals &g) {
    SetupForm form;
    form.entries = {entriesOf(g.PortChoices), entriesOf(g.BaudChoices), entriesOf(g.ParityChoices),
                    entriesOf(g.DataChoices), entriesOf(g.StopChoices), entriesOf(g.CncChoices),
                    entriesOf(g.SoftChoices)};
    for (int list = 0; list < ListCount; ++list) {
        form.selected[list] = 0;
        const QString stored = GetProfile(g, g.ConfigSection, keyOf(list));
        const QStringList &entries = form.entries[list];
        for (int i = 0; i < entries.size(); ++i)
            if (storedForm(list, entries[i]) == stored)
                form.selected[list] = i;
    }
    form.check1 = checkOf(GetProfile(g, g.ConfigSection, SettingsKey::WaitXon));
    form.check2 = checkOf(GetProfile(g, g.ConfigSection, SettingsKey::Space));
    for (int port = 1; port <= PortCount; ++port)
        form.devices[port - 1] = configuredDevice(g, port);
    return form;
}

void saveSetup(const Globals &g, const SetupForm &form) {
    const QString &s = g.ConfigSection;
    for (int list = 0; list < ListCount; ++list)
        PutProfile(g, s, keyOf(list),
                   storedForm(list, form.entries[list].value(form.selected[list])));
    PutProfile(g, s, SettingsKey::WaitXon, form.check1 ? SettingsKey::On : SettingsKey::Off);
    PutProfile(g, s, SettingsKey::Space, form.check2 ? SettingsKey::On : SettingsKey::Off);
    for (int port = 1; port <= PortCount; ++port)
        if (form.devices[port - 1] != configuredDevice(g, port))
            PutProfile(g, PortsSection, portsKey(port), form.devices[port - 1]);
}
