// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OvBinaryData.h"

#include <algorithm>
#include <bit>
#include <cstddef>

static_assert(std::endian::native == std::endian::little, "the byte orders are named for little-endian hosts");

namespace
{

template <std::size_t size>
void reverseEach(void* values, unsigned long long count)
{
    auto* const bytes = static_cast<std::byte*>(values);
    for (unsigned long long i = 0; i < count; ++i)
        std::reverse(bytes + i * size, bytes + (i + 1) * size);
}

} // namespace

void BinaryData::setEndianness(Endianness order)
{
    switch (order) {
    case Endianness::native:
    case Endianness::little:
        cnv8 = cnvN8, cnv16 = cnvN16, cnv32 = cnvN32, cnv64 = cnvN64, cnv128 = cnvN128;
        cnvA8 = cnvAN8, cnvA16 = cnvAN16, cnvA32 = cnvAN32, cnvA64 = cnvAN64, cnvA128 = cnvAN128;
        break;
    case Endianness::big:
        cnv8 = cnvLB8, cnv16 = cnvLB16, cnv32 = cnvLB32, cnv64 = cnvLB64, cnv128 = cnvLB128;
        cnvA8 = cnvALB8, cnvA16 = cnvALB16, cnvA32 = cnvALB32, cnvA64 = cnvALB64, cnvA128 = cnvALB128;
        break;
    default:
        return;
    }
    endianness = order;
}

void BinaryData::cnvLB16(void* value)
{
    reverseEach<2>(value, 1);
}

void BinaryData::cnvLB32(void* value)
{
    reverseEach<4>(value, 1);
}

void BinaryData::cnvLB64(void* value)
{
    reverseEach<8>(value, 1);
}

void BinaryData::cnvLB128(void* value)
{
    reverseEach<16>(value, 1);
}

void BinaryData::cnvALB16(void* values, unsigned long long count)
{
    reverseEach<2>(values, count);
}

void BinaryData::cnvALB32(void* values, unsigned long long count)
{
    reverseEach<4>(values, count);
}

void BinaryData::cnvALB64(void* values, unsigned long long count)
{
    reverseEach<8>(values, count);
}

void BinaryData::cnvALB128(void* values, unsigned long long count)
{
    reverseEach<16>(values, count);
}
