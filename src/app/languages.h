#pragma once
// The language numbers of -c as locales, and the translations of every text outside the
// window's text table, loaded for one of them.

#include <QLocale>
#include <QString>

// 1 and 4 English, 2 French, 3 German.
QLocale languageLocale(qint16 language);

// The language number of a locale name such as "fr_FR.UTF-8"; 1 for any other.
qint16 languageOfLocaleName(const QString &name);

// The language of the environment as a program of the shell reads it: LC_ALL, else
// LC_MESSAGES, else LANG; English when none names French or German.
qint16 languageOfEnvironment();

// Installs the translations of `language` in the application, in place of any installed
// before; English needs none.
void loadTranslations(qint16 language);
