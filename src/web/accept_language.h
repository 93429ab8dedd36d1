#pragma once
// The reader's language from the browser's Accept-Language, and the translations that go with
// it, switched for the length of one request.

#include <QByteArray>
#include <QTranslator>

#include <array>
#include <memory>

// 1 English, 2 French, 3 German: the first of them by the browser's weights; English when the
// header names none of them.
qint16 languageOfAcceptLanguage(const QByteArray &header);

// Holds the French and German translations loaded once, and installs the one a page is built
// in; the server builds one page at a time on one thread.
class PageTranslations {
public:
    PageTranslations();
    ~PageTranslations();
    void use(qint16 language);

private:
    std::array<std::unique_ptr<QTranslator>, 4> m_translators; // by language number
    QTranslator *m_installed = nullptr;
};
