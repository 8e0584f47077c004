// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/TemporaryFolder.h"

/// While the object lives, the process has the locale de_DE.UTF-8, which is built for the test. printf and strtod use a
/// decimal comma there.
class DecimalCommaLocale
{
public:
    DecimalCommaLocale();
    ~DecimalCommaLocale();
    DecimalCommaLocale(DecimalCommaLocale const&) = delete;
    DecimalCommaLocale& operator=(DecimalCommaLocale const&) = delete;

    /// Whether the locale exists and has a decimal comma. Without it a test proves nothing, so a test asserts it.
    bool isInForce() const;

private:
    TemporaryFolder folder;
};
