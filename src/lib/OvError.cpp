// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OvError.h"

#include "OvSystemCall.h"

#include <algorithm>
#include <cstring>

namespace
{

bool isShown = true;

} // namespace

void showOvErrors(bool areShown)
{
    isShown = areShown;
}

void OvError(char const* format, ...)
{
    if (!isShown)
        return;
    char const* const message = format ? format : "";
    auto const length = std::strlen(message);
    // A short message goes out in one write, so that no other program's output can get in between.
    char line[4096];
    if (length < sizeof line) {
        std::copy_n(message, length, line);
        line[length] = '\r';
        writeAll(STDERR_FILENO, line, length + 1);
    } else if (writeAll(STDERR_FILENO, message, length))
        writeAll(STDERR_FILENO, "\r", 1);
}
