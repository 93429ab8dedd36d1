#include "line_settings.h"

#include <QCoreApplication>

#include <QStringList>

int LineSettings::bitsPerCharacter() const {
    return 1 + int(dataBits) + (parity == QSerialPort::NoParity ? 0 : 1) +
           (stopBits == QSerialPort::TwoStop ? 2 : 1);
}

namespace {

int wholeNumber(const QString &field, bool *ok) {
    // Digits only: "+9600" or " 96 00" are typing errors, not numbers to guess at.
    for (const QChar c : field)
        if (!c.isDigit()) {
            *ok = false;
            return 0;
        }
    return field.toInt(ok);
}

} // namespace

LineSettings parseLineSettings(const QString &text) {
    const QStringList f = text.split(QLatin1Char(','));
    if (f.size() != 4)
        throw LineSettingsError{
            QCoreApplication::translate("Port", "expected four values separated by commas: "
                                                "baud, parity, data bits, stop bits")};
    LineSettings s;
    bool ok = false;

    const QString baud = f[0].trimmed();
    s.baud = wholeNumber(baud, &ok);
    if (!ok || s.baud <= 0)
        throw LineSettingsError{
            QCoreApplication::translate("Port", "the baud rate must be a whole number above 0, "
                                                "not \"%1\"")
                .arg(baud)};

    const QString parity = f[1].trimmed().toUpper();
    if (parity == QLatin1String("E"))
        s.parity = QSerialPort::EvenParity;
    else if (parity == QLatin1String("O"))
        s.parity = QSerialPort::OddParity;
    else if (parity == QLatin1String("N"))
        s.parity = QSerialPort::NoParity;
    else
        throw LineSettingsError{
            QCoreApplication::translate("Port", "the parity must be E, O or N, not \"%1\"")
                .arg(f[1].trimmed())};

    const QString data = f[2].trimmed();
    const int bits = wholeNumber(data, &ok);
    if (!ok || bits < 5 || bits > 8)
        throw LineSettingsError{
            QCoreApplication::translate("Port", "the data bits must be 5, 6, 7 or 8, not \"%1\"")
                .arg(data)};
    s.dataBits = QSerialPort::DataBits(bits);

    const QString stop = f[3].trimmed();
    if (stop == QLatin1String("1"))
        s.stopBits = QSerialPort::OneStop;
    else if (stop == QLatin1String("2"))
        s.stopBits = QSerialPort::TwoStop;
    else if (stop == QLatin1String("1.5"))
        // Linux serial drivers offer one or two stop bits only.
        throw LineSettingsError{
            QCoreApplication::translate("Port", "1.5 stop bits cannot be set on this system; "
                                                "use 1 or 2")};
    else
        throw LineSettingsError{
            QCoreApplication::translate("Port", "the stop bits must be 1 or 2, not \"%1\"")
                .arg(stop)};
    return s;
}
