// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/DecimalCommaLocale.h"

#include <clocale>
#include <cstdlib>
#include <string>

DecimalCommaLocale::DecimalCommaLocale()
{
    auto const locale = (folder.path() / "de_DE.UTF-8").string();
    // Warnings about the locale's source give the exit code 1, although the locale is made. isInForce checks it.
    [[maybe_unused]] int const code =
        std::system(("localedef -i de_DE -f UTF-8 '" + locale + "' >/dev/null 2>&1").c_str());
    setenv("LOCPATH", folder.path().c_str(), 1);
    std::setlocale(LC_ALL, "de_DE.UTF-8");
}

DecimalCommaLocale::~DecimalCommaLocale()
{
    std::setlocale(LC_ALL, "C");
    unsetenv("LOCPATH");
}

bool DecimalCommaLocale::isInForce() const
{
    return std::localeconv()->decimal_point[0] == ',';
}
