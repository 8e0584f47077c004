// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvBinaryData.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace
{

using testing::ElementsAreArray;
using Bytes = std::array<unsigned char, 48>;

// The bytes 1 to 48.
Bytes counting()
{
    Bytes bytes;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(i + 1);
    return bytes;
}

// The same with the bytes of each of `count` values of `size` bytes reversed.
Bytes reversed(std::size_t size, std::size_t count)
{
    Bytes bytes = counting();
    for (std::size_t i = 0; i < count * size; ++i)
        bytes[i] = static_cast<unsigned char>(i / size * size + (size - i % size));
    return bytes;
}

Bytes converted(BinaryData::Conversion conversion)
{
    Bytes bytes = counting();
    conversion(bytes.data());
    return bytes;
}

Bytes converted(BinaryData::ArrayConversion conversion, unsigned long long count)
{
    Bytes bytes = counting();
    conversion(bytes.data(), count);
    return bytes;
}

// Three numbers, converted to big-endian order.
template <typename Number>
Bytes eachConverted()
{
    BinaryData data;
    data.setEndianness(Endianness::big);
    Bytes bytes = counting();
    data.convertEach<Number>(bytes.data(), 3);
    return bytes;
}

void expectIdentity(BinaryData const& data)
{
    for (auto const conversion : {data.cnv8, data.cnv16, data.cnv32, data.cnv64, data.cnv128})
        EXPECT_THAT(converted(conversion), ElementsAreArray(counting()));
    for (auto const conversion : {data.cnvA8, data.cnvA16, data.cnvA32, data.cnvA64, data.cnvA128})
        EXPECT_THAT(converted(conversion, 3), ElementsAreArray(counting()));
}

void expectSwapping(BinaryData const& data)
{
    EXPECT_THAT(converted(data.cnv8), ElementsAreArray(counting()));
    EXPECT_THAT(converted(data.cnv16), ElementsAreArray(reversed(2, 1)));
    EXPECT_THAT(converted(data.cnv32), ElementsAreArray(reversed(4, 1)));
    EXPECT_THAT(converted(data.cnv64), ElementsAreArray(reversed(8, 1)));
    EXPECT_THAT(converted(data.cnv128), ElementsAreArray(reversed(16, 1)));
    EXPECT_THAT(converted(data.cnvA8, 3), ElementsAreArray(counting()));
    EXPECT_THAT(converted(data.cnvA16, 3), ElementsAreArray(reversed(2, 3)));
    EXPECT_THAT(converted(data.cnvA32, 3), ElementsAreArray(reversed(4, 3)));
    EXPECT_THAT(converted(data.cnvA64, 3), ElementsAreArray(reversed(8, 3)));
    EXPECT_THAT(converted(data.cnvA128, 3), ElementsAreArray(reversed(16, 3)));
}

} // namespace

TEST(BinaryData, ReversesTheBytesOfOneValue)
{
    unsigned char bytes[] = {0x12, 0x34, 0x56, 0x78, 0x9a};
    BinaryData::cnvLB32(bytes);
    EXPECT_THAT(bytes, testing::ElementsAre(0x78, 0x56, 0x34, 0x12, 0x9a));
}

TEST(BinaryData, ReversesTheBytesOfEachOfManyValues)
{
    unsigned char bytes[] = {0x12, 0x34, 0x56, 0x78, 0x9a, 0xbc, 0xde, 0xf0};
    BinaryData::cnvALB16(bytes, 3);
    EXPECT_THAT(bytes, testing::ElementsAre(0x34, 0x12, 0x78, 0x56, 0xbc, 0x9a, 0xde, 0xf0));
}

TEST(BinaryData, ChangesNothingForACountOf0)
{
    BinaryData big;
    big.setEndianness(Endianness::big);
    for (auto const conversion : {big.cnvA8, big.cnvA16, big.cnvA32, big.cnvA64, big.cnvA128})
        EXPECT_THAT(converted(conversion, 0), ElementsAreArray(counting()));
}

TEST(BinaryData, ConvertsValuesThatAreNotAligned)
{
    alignas(8) unsigned char bytes[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    BinaryData::cnvLB64(bytes + 1);
    EXPECT_THAT(bytes, testing::ElementsAre(0, 8, 7, 6, 5, 4, 3, 2, 1, 9));
}

TEST(BinaryData, StartsWithTheNativeOrder)
{
    BinaryData const data;
    EXPECT_EQ(data.getEndianness(), static_cast<Endianness>(0));
    expectIdentity(data);
}

TEST(BinaryData, ChangesNothingInOrders0And1)
{
    for (int const order : {0, 1}) {
        BinaryData data;
        data.setEndianness(Endianness::big);
        data.setEndianness(static_cast<Endianness>(order));
        EXPECT_EQ(data.getEndianness(), static_cast<Endianness>(order));
        expectIdentity(data);
    }
}

TEST(BinaryData, SwapsBytesInOrder2)
{
    BinaryData data;
    data.setEndianness(static_cast<Endianness>(2));
    EXPECT_EQ(data.getEndianness(), Endianness::big);
    expectSwapping(data);
}

TEST(BinaryData, KeepsItsTableWhenTheOrderIsUnknown)
{
    for (int const order : {-1, 3, 1000}) {
        BinaryData big;
        big.setEndianness(Endianness::big);
        big.setEndianness(static_cast<Endianness>(order));
        EXPECT_EQ(big.getEndianness(), Endianness::big);
        expectSwapping(big);

        BinaryData native;
        native.setEndianness(static_cast<Endianness>(order));
        expectIdentity(native);
    }
}

TEST(BinaryData, InstallsTheNamedFunctions)
{
    BinaryData data;
    EXPECT_EQ(data.cnv16, &BinaryData::cnvN16);
    EXPECT_EQ(data.cnvA128, &BinaryData::cnvAN128);
    data.setEndianness(Endianness::big);
    EXPECT_EQ(data.cnv16, &BinaryData::cnvLB16);
    EXPECT_EQ(data.cnvA128, &BinaryData::cnvALB128);
}

TEST(BinaryData, ConvertsANumberByItsSize)
{
    BinaryData data;
    data.setEndianness(Endianness::big);
    std::uint8_t byte = 0x12;
    std::uint16_t word = 0x1234;
    std::uint32_t doubleWord = 0x12345678;
    std::uint64_t quadWord = 0x123456789abcdef0;
    data.convert(byte);
    data.convert(word);
    data.convert(doubleWord);
    data.convert(quadWord);
    EXPECT_EQ(byte, 0x12);
    EXPECT_EQ(word, 0x3412);
    EXPECT_EQ(doubleWord, 0x78563412U);
    EXPECT_EQ(quadWord, 0xf0debc9a78563412U);
}

TEST(BinaryData, ConvertsConsecutiveNumbersByTheirSize)
{
    EXPECT_THAT(eachConverted<std::uint8_t>(), ElementsAreArray(counting()));
    EXPECT_THAT(eachConverted<std::uint16_t>(), ElementsAreArray(reversed(2, 3)));
    EXPECT_THAT(eachConverted<std::uint32_t>(), ElementsAreArray(reversed(4, 3)));
    EXPECT_THAT(eachConverted<std::uint64_t>(), ElementsAreArray(reversed(8, 3)));
}
