#include "accept_language.h"

#include "languages.h"

#include <QCoreApplication>
#include <QList>

qint16 languageOfAcceptLanguage(const QByteArray &header) {
    qint16 best = 1;
    double bestWeight = 0;
    for (const QByteArray &item : header.split(',')) {
        const QList<QByteArray> parts = item.split(';');
        const QByteArray tag = parts.value(0).trimmed().toLower();
        double weight = 1;
        for (qsizetype i = 1; i < parts.size(); ++i) {
            const QByteArray p = parts.at(i).trimmed();
            if (p.startsWith("q=")) {
                bool ok = false;
                weight = p.mid(2).toDouble(&ok);
                if (!ok || weight < 0 || weight > 1)
                    weight = 0;
            }
        }
        const QByteArray primary = tag.split('-').value(0);
        const qint16 language = primary == "fr" ? 2 : primary == "de" ? 3 : primary == "en" ? 1 : 0;
        // Equal weights keep the browser's order.
        if (language && weight > bestWeight) {
            best = language;
            bestWeight = weight;
        }
    }
    return best;
}

PageTranslations::PageTranslations() {
    for (qint16 language : {2, 3}) {
        auto translator = std::make_unique<QTranslator>();
        if (translator->load(languageLocale(language), QStringLiteral("dnc"), QStringLiteral("_"),
                             QStringLiteral(":/i18n")))
            m_translators[language] = std::move(translator);
    }
}

PageTranslations::~PageTranslations() {
    use(1);
}

void PageTranslations::use(qint16 language) {
    QTranslator *wanted = language >= 0 && language < 4 ? m_translators[language].get() : nullptr;
    if (wanted == m_installed)
        return;
    if (m_installed)
        QCoreApplication::removeTranslator(m_installed);
    m_installed = wanted && QCoreApplication::installTranslator(wanted) ? wanted : nullptr;
}
