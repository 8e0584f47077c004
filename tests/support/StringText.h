// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/OvString.h"

#include <string>

/// The bytes of a string, including NULs, in a type that tests can print.
inline std::string textOf(Array<char> const& string)
{
    return {string.begin(), string.end()};
}

/// A string with NULs in it.
template <std::size_t size>
String stringOf(char const (&bytes)[size])
{
    return String(String(), bytes, size - 1);
}
