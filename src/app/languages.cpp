#include "languages.h"

#include <QCoreApplication>
#include <QTranslator>

#include <memory>

QLocale languageLocale(qint16 language) {
    switch (language) {
    case 2:
        return QLocale(QLocale::French, QLocale::France);
    case 3:
        return QLocale(QLocale::German, QLocale::Germany);
    default:
        return QLocale(QLocale::English, QLocale::UnitedKingdom);
    }
}

qint16 languageOfLocaleName(const QString &name) {
    const QLocale::Language l = QLocale(name.section(u'.', 0, 0)).language();
    if (l == QLocale::French)
        return 2;
    if (l == QLocale::German)
        return 3;
    return 1;
}

qint16 languageOfEnvironment() {
    for (const char *variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const QString value = qEnvironmentVariable(variable);
        if (!value.isEmpty())
            return languageOfLocaleName(value);
    }
    return 1;
}

void loadTranslations(qint16 language) {
    // One translator for the process; a test that starts windows in several languages swaps it.
    static std::unique_ptr<QTranslator> installed;
    if (installed) {
        QCoreApplication::removeTranslator(installed.get());
        installed.reset();
    }
    auto translator = std::make_unique<QTranslator>();
    if (translator->load(languageLocale(language), QStringLiteral("dnc"), QStringLiteral("_"),
                         QStringLiteral(":/i18n")) &&
        QCoreApplication::installTranslator(translator.get()))
        installed = std::move(translator);
}
