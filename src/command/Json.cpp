// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Json.h"

#include <charconv>
#include <iterator>

Json numberOf(float value)
{
    char text[32];
    char const* const end = std::to_chars(text, std::end(text), value).ptr;
    double number = 0;
    std::from_chars(text, end, number);
    return number;
}

std::string textOf(Json const& json)
{
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}
