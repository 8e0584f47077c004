// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

/// A number with a decimal point under every locale, rounded to at most so many decimals, without zeros at its end:
/// "12.5", "-3", "0".
std::string shortNumber(double number, int decimals);

/// A number with exactly so many decimals: "12.50".
std::string fixedNumber(double number, int decimals);

/// A count with its noun: "1 sheet", "2 sheets", "1,617 patches".
std::string countOf(long long count, std::string const& one, std::string const& many);
std::string countOf(long long count, std::string const& one);

/// A whole number with a comma after each three digits: "1,617".
std::string groupedNumber(long long number);
