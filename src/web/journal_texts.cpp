#include "journal_texts.h"

QString JournalTexts::operation(const QString &operation) {
    if (operation == QLatin1String("send"))
        return tr("Send");
    if (operation == QLatin1String("receive"))
        return tr("Receive");
    if (operation == QLatin1String("punch"))
        return tr("Punched at the control");
    if (operation == QLatin1String("request"))
        return tr("Request from the control");
    if (operation == QLatin1String("list"))
        return tr("List of programs");
    if (operation == QLatin1String("change"))
        return tr("Change program");
    if (operation == QLatin1String("execute"))
        return tr("Change execute");
    if (operation == QLatin1String("delete"))
        return tr("Delete");
    if (operation == QLatin1String("journal"))
        return tr("Journal");
    return operation;
}

QString JournalTexts::outcome(const QString &outcome) {
    if (outcome == QLatin1String("done"))
        return tr("Done");
    if (outcome == QLatin1String("timeout"))
        return tr("Time-out");
    if (outcome == QLatin1String("port_failure"))
        return tr("Port failure");
    if (outcome == QLatin1String("interrupted"))
        return tr("Interrupted");
    if (outcome == QLatin1String("refused"))
        return tr("Refused");
    if (outcome == QLatin1String("not_on_control"))
        return tr("Not on the control");
    if (outcome == QLatin1String("file_failure"))
        return tr("File failure");
    if (outcome == QLatin1String("not_counted"))
        return tr("Sent, tools not counted");
    if (outcome == QLatin1String("cancelled"))
        return tr("Cancelled");
    if (outcome == QLatin1String("rows_lost"))
        return tr("Journal rows lost");
    return outcome;
}

QString JournalTexts::state(const std::optional<StationRow> &station, const QDateTime &now,
                            QString *cssClass) {
    const auto result = [cssClass](const char *css, const QString &text) {
        if (cssClass)
            *cssClass = QLatin1String(css);
        return text;
    };
    if (!station)
        return result("none", tr("No station"));
    if (!station->updated.isValid() || station->updated.secsTo(now) > OfflineAfterSeconds)
        return result("offline", tr("Offline"));
    const QString &s = station->state;
    if (s == QLatin1String("listening"))
        return result("listening", tr("Listening"));
    if (s == QLatin1String("sending"))
        return result("sending", station->percent ? tr("Sending, %1 %").arg(*station->percent)
                                                  : tr("Sending"));
    if (s == QLatin1String("receiving"))
        return result("receiving", tr("Receiving"));
    if (s == QLatin1String("waiting"))
        return result("waiting", tr("Waiting out a request's delay"));
    if (s == QLatin1String("device_gone"))
        return result("device-gone", tr("Device gone"));
    if (s == QLatin1String("stopped"))
        return result("stopped", tr("Stopped"));
    return result("other", s);
}
