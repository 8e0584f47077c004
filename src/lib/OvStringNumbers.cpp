// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OvString.h"

#include "OvLocale.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <system_error>

// Numbers -------------------------------------------------------------------------------------------------------------

namespace
{

// The number of the digits at `first`, at most the largest of its type; nothing without digits.
std::optional<std::uint64_t> readDigits(char const* first, char const* end)
{
    auto number = std::numeric_limits<std::uint64_t>::max();
    auto const code = std::from_chars(first, end, number).ec;
    return code == std::errc::invalid_argument ? std::nullopt : std::optional(number);
}

template <typename Number>
Number toUnsigned(String const& text, Number max)
{
    auto const number = readDigits(text.begin(), text.end());
    return !number ? Number{0} : *number >= max ? max : static_cast<Number>(*number);
}

template <typename Number>
Number toSigned(String const& text, Number max, Number min)
{
    bool const isNegative = text.getCount() > 0 && *text.begin() == '-';
    bool const hasSign = isNegative || (text.getCount() > 0 && *text.begin() == '+');
    auto const magnitude = readDigits(text.begin() + hasSign, text.end());
    if (!magnitude)
        return 0;
    if (isNegative) {
        bool const isReached = min >= 0 || *magnitude >= 0 - static_cast<std::uint64_t>(min);
        return isReached ? min : static_cast<Number>(-static_cast<std::int64_t>(*magnitude));
    }
    bool const isReached = max <= 0 || *magnitude >= static_cast<std::uint64_t>(max);
    return isReached ? max : static_cast<Number>(*magnitude);
}

} // namespace

std::uint8_t String::toUInt8(std::uint8_t max) const
{
    return toUnsigned(*this, max);
}

std::uint16_t String::toUInt16(std::uint16_t max) const
{
    return toUnsigned(*this, max);
}

std::uint32_t String::toUInt32(std::uint32_t max) const
{
    return toUnsigned(*this, max);
}

std::uint64_t String::toUInt64(std::uint64_t max) const
{
    return toUnsigned(*this, max);
}

std::int8_t String::toInt8(std::int8_t max, std::int8_t min) const
{
    return toSigned(*this, max, min);
}

std::int16_t String::toInt16(std::int16_t max, std::int16_t min) const
{
    return toSigned(*this, max, min);
}

std::int32_t String::toInt32(std::int32_t max, std::int32_t min) const
{
    return toSigned(*this, max, min);
}

std::int64_t String::toInt64(std::int64_t max, std::int64_t min) const
{
    return toSigned(*this, max, min);
}

double String::toReal() const
{
    // from_chars is many times faster than strtod and needs no ending NUL. strtod handles the texts that the two read
    // differently: a plus or blanks in front, hexadecimal digits, infinities, not-a-number, values out of range, and
    // texts without a number.
    double number = 0;
    auto const [next, error] = std::from_chars(begin(), end(), number);
    bool const isHexadecimal = next != end() && (*next == 'x' || *next == 'X');
    bool const isDecimal = error == std::errc() && std::isfinite(number) && !isHexadecimal;
    return isDecimal ? number : parseReal(getNullTerminatedString());
}

// Hashes --------------------------------------------------------------------------------------------------------------

std::uint32_t String::hashKey(HashAlgorithm algorithm) const
{
    auto const fold = [this](std::uint32_t hash, auto step) {
        for (char const c : *this)
            hash = step(hash, static_cast<std::uint32_t>(static_cast<signed char>(c)));
        return hash;
    };
    switch (algorithm) {
    case HashAlgorithm::RS:
        return fold(0, [a = 63689U](std::uint32_t h, std::uint32_t c) mutable {
            h = h * a + c;
            a *= 378551;
            return h;
        });
    case HashAlgorithm::JS:
        return fold(1315423911, [](std::uint32_t h, std::uint32_t c) { return h ^ ((h << 5) + c + (h >> 2)); });
    case HashAlgorithm::ELF:
        return fold(0, [](std::uint32_t h, std::uint32_t c) {
            h = (h << 4) + c;
            auto const top = h & 0xF0000000;
            return (h ^ (top >> 24)) & ~top;
        });
    case HashAlgorithm::BKDR:
        return fold(0, [](std::uint32_t h, std::uint32_t c) { return h * 131 + c; });
    case HashAlgorithm::SDBM:
        return fold(0, [](std::uint32_t h, std::uint32_t c) { return c + h * 65599; });
    case HashAlgorithm::DJB:
        return fold(5381, [](std::uint32_t h, std::uint32_t c) { return h * 33 + c; });
    case HashAlgorithm::DEK:
        return fold(static_cast<std::uint32_t>(count),
                    [](std::uint32_t h, std::uint32_t c) { return std::rotl(h, 5) ^ c; });
    case HashAlgorithm::BP:
        return fold(0, [](std::uint32_t h, std::uint32_t c) { return (h << 7) ^ c; });
    case HashAlgorithm::FNV:
        return fold(0, [](std::uint32_t h, std::uint32_t c) { return (h * 0x811C9DC5) ^ c; });
    case HashAlgorithm::AP:
        return fold(0xAAAAAAAA, [isOdd = false](std::uint32_t h, std::uint32_t c) mutable {
            auto const mixed = isOdd ? ~((h << 11) + (c ^ (h >> 5))) : (h << 7) ^ (c * (h >> 3));
            isOdd = !isOdd;
            return h ^ mixed;
        });
    }
    return 0;
}
