// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// How a number is written.
enum class NumberForm {
    none,    // no number, or one beyond the range of double
    point,   // 12, +12, 012.50, .5, 5., 1e2
    comma,   // 12,5
    percent, // 12.5%, 12.5 %
    percentWithComma
};

/// A number of a table.
struct ParsedNumber
{
    NumberForm form = NumberForm::none;
    double value = 0;
};

/// The number that a whole text is. Words such as nan and inf, hexadecimal numbers, and digits in groups are none.
ParsedNumber parseNumber(std::string_view text);

/// A number as the plain table writes it: a comma becomes a point, a percent sign goes, the rest keeps its spelling.
void appendPlainSpelling(std::string& target, std::string_view number);

/// A factor between two scales.
struct Ratio
{
    std::uint32_t multiplier = 1;
    std::uint32_t divisor = 1;
};

/// A number times a ratio, computed in decimal digits: exact where a decimal fraction of at most forty decimals is,
/// else rounded to nine decimals. Without exponent, without needless zeros.
///
/// \param number  not negative, in the spelling of NumberForm::point
std::string rescaled(std::string_view number, Ratio ratio);
