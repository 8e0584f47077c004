// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/TemporaryFolder.h"

/// Puts the process under de_DE.UTF-8, made for the occasion, as long as the object lives: there printf and strtod
/// take a comma for the decimal point.
class DecimalCommaLocale
{
public:
    DecimalCommaLocale();
    ~DecimalCommaLocale();
    DecimalCommaLocale(DecimalCommaLocale const&) = delete;
    DecimalCommaLocale& operator=(DecimalCommaLocale const&) = delete;

    /// Whether the locale is there and has its comma; a test asserts it, else it would show nothing.
    bool isInForce() const;

private:
    TemporaryFolder folder;
};
