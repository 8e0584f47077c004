// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/OvString.h"

#include <QString>

/// Qt's text as UTF-8.
inline String toString(QString const& text)
{
    return String(text.toUtf8().constData());
}

/// UTF-8 as Qt's text.
inline QString toQString(String const& text)
{
    return QString::fromUtf8(text.getNullTerminatedString());
}
