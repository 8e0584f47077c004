// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string_view>

/// What a spreadsheet has made of a cell that held a number: "a date", "an error value", "grouped digits",
/// "a formula", "a number hidden by a narrow column". Empty for cells that show no such thing.
std::string_view spreadsheetDamageIn(std::string_view cell);
