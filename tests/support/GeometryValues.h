// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Geometry.h"

#include <concepts>
#include <ostream>
#include <tuple>

// Lets tests compare whole geometry values, and read them when they differ. Equal means exactly the same numbers.

template <typename Value>
concept GeometryValue = std::same_as<Value, RealPos> || std::same_as<Value, RealSize> ||
    std::same_as<Value, RealRect> || std::same_as<Value, RealBorder> || std::same_as<Value, IntPos> ||
    std::same_as<Value, IntSize> || std::same_as<Value, IntRect>;

/// The fields of a geometry value, in their order.
template <GeometryValue Value>
auto fieldsOf(Value const& value)
{
    if constexpr (requires { value.top; })
        return std::tuple(value.top, value.right, value.bottom, value.left);
    else if constexpr (requires { value.x + value.width; })
        return std::tuple(value.x, value.y, value.width, value.height);
    else if constexpr (requires { value.x; })
        return std::tuple(value.x, value.y);
    else
        return std::tuple(value.width, value.height);
}

template <GeometryValue Value>
bool operator==(Value const& a, Value const& b)
{
    return fieldsOf(a) == fieldsOf(b);
}

template <GeometryValue Value>
void PrintTo(Value const& value, std::ostream* stream)
{
    auto const precision = stream->precision(17);
    std::apply([stream](auto... fields) { ((*stream << ' ' << fields), ...); }, fieldsOf(value));
    stream->precision(precision);
}
