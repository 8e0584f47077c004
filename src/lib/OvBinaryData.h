// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/// The byte order of numbers in a file.
enum class Endianness : int {
    native = 0, ///< the host's order
    little = 1, ///< the same as native: the program runs on little-endian hosts only
    big = 2     ///< most significant byte first
};

/// Converts numbers in place between the host's byte order and a file's. The same conversion works both ways.
class BinaryData
{
public:
    /// Converts the one value at `value`, which need not be aligned.
    using Conversion = void (*)(void* value);
    /// Converts each of `count` consecutive values at `values`, which need not be aligned.
    using ArrayConversion = void (*)(void* values, unsigned long long count);

    /// Starts with the native order.
    BinaryData() { setEndianness(Endianness::native); }

    /// Fills the table of conversions below. An unknown value leaves the table as it is.
    void setEndianness(Endianness order);

    Endianness getEndianness() const { return endianness; }

    /// Converts one number of 8 to 64 bits.
    template <typename Number>
    void convert(Number& number) const
    {
        static_assert(sizeof(Number) <= 8);
        auto const conversion = sizeof(Number) == 1   ? cnv8
                                : sizeof(Number) == 2 ? cnv16
                                : sizeof(Number) == 4 ? cnv32
                                                      : cnv64;
        conversion(&number);
    }

    /// Converts `count` consecutive numbers of 8 to 64 bits, which need not be aligned.
    template <typename Number>
    void convertEach(void* numbers, unsigned long long count) const
    {
        static_assert(sizeof(Number) <= 8);
        auto const conversion = sizeof(Number) == 1   ? cnvA8
                                : sizeof(Number) == 2 ? cnvA16
                                : sizeof(Number) == 4 ? cnvA32
                                                      : cnvA64;
        conversion(numbers, count);
    }

    Conversion cnv8;
    Conversion cnv16;
    Conversion cnv32;
    Conversion cnv64;
    Conversion cnv128;
    ArrayConversion cnvA8;
    ArrayConversion cnvA16;
    ArrayConversion cnvA32;
    ArrayConversion cnvA64;
    ArrayConversion cnvA128;

    // The identity family, for values of 8 to 128 bits.
    static void cnvN8(void*) {}
    static void cnvN16(void*) {}
    static void cnvN32(void*) {}
    static void cnvN64(void*) {}
    static void cnvN128(void*) {}
    static void cnvAN8(void*, unsigned long long) {}
    static void cnvAN16(void*, unsigned long long) {}
    static void cnvAN32(void*, unsigned long long) {}
    static void cnvAN64(void*, unsigned long long) {}
    static void cnvAN128(void*, unsigned long long) {}

    // The swapping family: the bytes of each value are reversed.
    static void cnvLB8(void*) {}
    static void cnvLB16(void* value);
    static void cnvLB32(void* value);
    static void cnvLB64(void* value);
    static void cnvLB128(void* value);
    static void cnvALB8(void*, unsigned long long) {}
    static void cnvALB16(void* values, unsigned long long count);
    static void cnvALB32(void* values, unsigned long long count);
    static void cnvALB64(void* values, unsigned long long count);
    static void cnvALB128(void* values, unsigned long long count);

private:
    Endianness endianness = Endianness::native;
};
