// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <clocale>

// The window's toolkit sets the process's locale from the environment, and under many locales strtod and printf then
// take a comma for the decimal point. Numbers in files and labels keep the point: they go through here.

/// What atof makes of `text` under the C locale: leading blanks skipped, 0 where no number stands.
double parseReal(char const* text);

/// For its lifetime, printf and its kin write numbers as under the C locale. Binds the calling thread only.
class PointedNumbers
{
public:
    PointedNumbers();
    ~PointedNumbers();
    PointedNumbers(PointedNumbers const&) = delete;
    PointedNumbers& operator=(PointedNumbers const&) = delete;

private:
    locale_t const previous;
};
