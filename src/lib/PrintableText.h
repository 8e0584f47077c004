// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>

/// A text on one line, without control characters and in valid UTF-8: other bytes become "?".
std::string printable(std::string_view text);
