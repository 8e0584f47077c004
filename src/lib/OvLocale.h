// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <clocale>

// The window's toolkit sets the process's locale from the environment. Under many locales, strtod and printf then use a
// decimal comma. Numbers in files and labels always have a decimal point, so they are read and printed with these
// helpers.

/// What atof returns for `text` under the C locale: leading blanks are skipped, and a text without a number gives 0.
double parseReal(char const* text);

/// While an object of this class lives, printf and similar functions write numbers as under the C locale. It applies to
/// the calling thread only.
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
