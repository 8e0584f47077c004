// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OvLocale.h"

#include <cstdlib>

namespace
{

locale_t pointedLocale()
{
    static locale_t const locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

} // namespace

double parseReal(char const* text)
{
    return strtod_l(text, nullptr, pointedLocale());
}

PointedNumbers::PointedNumbers() : previous(uselocale(pointedLocale())) {}

PointedNumbers::~PointedNumbers()
{
    uselocale(previous);
}
