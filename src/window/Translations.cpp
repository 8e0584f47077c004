// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>

#include <tuple>

namespace
{

void install(QTranslator& texts, char const* catalogue, QString const& folder)
{
    // A translator without a file is installed too. It translates nothing.
    std::ignore = texts.load(QLatin1String(catalogue) + QLocale::system().name(), folder);
    QCoreApplication::installTranslator(&texts);
}

} // namespace

Translations::Translations()
{
    install(toolkitTexts, "qt_", QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    install(ownTexts, "myapp_", QString());
}
