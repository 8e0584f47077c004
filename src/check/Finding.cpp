// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Finding.h"

std::string_view nameOf(FindingKind kind)
{
    constexpr std::string_view names[] = {"reversed", "shifted", "exchanged",  "repeated", "sheets", "order",  "patch",
                                          "missing",  "extra",   "impossible", "paper",    "drift",  "repeats"};
    return names[static_cast<std::size_t>(kind)];
}
