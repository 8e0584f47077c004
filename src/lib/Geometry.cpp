// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Geometry.h"

#include "OvError.h"

#include <cmath>

namespace
{

// A side shorter than this is treated as a mistake and reported as negative.
constexpr double shortestSide = 1.0;

// Whether the rectangle is set. Also reports a suspicious size.
bool isSet(RealRect const& rect)
{
    if (rect.x == REAL_NOPOS || rect.width == REAL_NOPOS)
        return false;
    if (rect.width < shortestSide)
        OvError("Negative width but not REAL_NOPOS.\n");
    if (rect.height < shortestSide)
        OvError("Negative height but not REAL_NOPOS.\n");
    return true;
}

} // namespace

bool RealRect::contains(RealRect const& other) const
{
    return isSet(*this) && isSet(other) && other.x >= x && x + width >= other.x + other.width && other.y >= y &&
           y + height >= other.y + other.height;
}

std::int32_t wrappedSum(std::int32_t a, std::int32_t b)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

std::int32_t wrappedDifference(std::int32_t a, std::int32_t b)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

IntRect shifted(IntRect rect, IntPos offset)
{
    return {wrappedSum(rect.x, offset.x), wrappedSum(rect.y, offset.y), rect.width, rect.height};
}

void reportNegativeSize(IntSize size)
{
    if (size.width == INT_NOPOS)
        return;
    if (size.width < 0)
        OvError("Negative width but not INT_NOPOS.\n");
    if (size.height < 0)
        OvError("Negative height but not INT_NOPOS.\n");
}

bool IntRect::contains(IntPos position) const
{
    if (x == INT_NOPOS || width == INT_NOPOS)
        return false;
    reportNegativeSize({width, height});
    if (position.x == INT_NOPOS)
        return false;
    // 64 bits, because the end of a block may lie past the largest 32-bit coordinate.
    auto const isWithin = [](std::int64_t p, std::int64_t start, std::int64_t count) {
        return start <= p && p < start + count;
    };
    return isWithin(position.x, x, width) && isWithin(position.y, y, height);
}

bool IntRect::hasPatches() const
{
    if (x == INT_NOPOS || width == INT_NOPOS)
        return false;
    reportNegativeSize({width, height});
    return width != 0 && height != 0;
}

std::int32_t wholeNumber(double value)
{
    constexpr double largest = std::numeric_limits<std::int32_t>::max();
    double const whole = std::floor(value);
    return whole >= -largest && whole <= largest ? static_cast<std::int32_t>(whole) : 0;
}
