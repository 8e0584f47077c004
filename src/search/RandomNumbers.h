// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>

/// Numbers that look random and are the same on every machine: the SplitMix64 generator (Steele, Lea, Flood 2014).
class RandomNumbers
{
public:
    explicit RandomNumbers(std::uint64_t seed) : state(seed) {}

    std::uint64_t next() { return mixed(state += 0x9e3779b97f4a7c15U); }

    /// A number from 0 to limit - 1; the limit is from 1 to 2^32.
    int below(int limit) { return static_cast<int>((next() >> 32) * static_cast<std::uint64_t>(limit) >> 32); }

    /// A number that looks random, the same for the same one.
    static std::uint64_t mixed(std::uint64_t number)
    {
        number = (number ^ (number >> 30)) * 0xbf58476d1ce4e5b9U;
        number = (number ^ (number >> 27)) * 0x94d049bb133111ebU;
        return number ^ (number >> 31);
    }

private:
    std::uint64_t state;
};
