// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include <nlohmann/json.hpp>

/// An object keeps its members in the order that they are set in.
using Json = nlohmann::ordered_json;

/// A single-precision number with the digits that tell it from others: 58.91, not 58.90999984741211.
Json numberOf(float value);

/// The JSON text, indented, with a line end. Bytes that are not UTF-8 become U+FFFD.
std::string textOf(Json const& json);
