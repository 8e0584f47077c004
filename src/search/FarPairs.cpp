// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "FarPairs.h"

#include <array>

namespace
{

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

} // namespace

FarPairs::FarPairs(PairDifference const& difference, std::vector<int> const& patches)
    : count(static_cast<int>(patches.size())), wordsPerRow((count + wordBits - 1) / wordBits),
      lightness(at(wordsPerRow * wordBits)), a(lightness.size()), b(lightness.size()), bystanders(at(wordsPerRow)),
      bits(at(wordsPerRow) * at(count))
{
    for (int i = 0; i < count; ++i) {
        Lab const& color = difference.colorOf(patches[at(i)]);
        lightness[at(i)] = color.values[0];
        a[at(i)] = color.values[1];
        b[at(i)] = color.values[2];
        if (!difference.takesPart(patches[at(i)]))
            bystanders[at(i / wordBits)] |= Word{1} << (i % wordBits);
    }
}

// The same operations in the same order as squaredDeltaE. What is not below the threshold is far, not-a-number too.
FarPairs::Word FarPairs::farBits(int i, int from, float leastDifference, float leastLightness) const
{
    std::array<std::uint8_t, wordBits> isFar; // NOLINT: filled below
    for (int j = 0; j < wordBits; ++j) {
        float const dL = lightness[at(i)] - lightness[at(from + j)];
        float const da = a[at(i)] - a[at(from + j)];
        float const db = b[at(i)] - b[at(from + j)];
        float const squaredLightness = dL * dL;
        float const squared = (squaredLightness + da * da) + db * db;
        isFar[at(j)] = static_cast<std::uint8_t>(!(squared < leastDifference) & !(squaredLightness < leastLightness));
    }
    Word word = 0;
    for (int j = 0; j < wordBits; j += 8) {
        // Gathers the lowest bits of eight bytes.
        Word bytes = 0;
        for (int k = 0; k < 8; ++k)
            bytes |= Word{isFar[at(j + k)]} << (8 * k);
        word |= (bytes * 0x0102040810204080U >> 56) << j;
    }
    return word;
}

void FarPairs::renew(float leastDifference, float leastLightness)
{
    int const inLastWord = count - (wordsPerRow - 1) * wordBits;
    Word const lastWord = inLastWord < wordBits ? (Word{1} << inLastWord) - 1 : ~Word{0};
    for (int i = 0; i < count; ++i) {
        Word* const words = &bits[at(i) * at(wordsPerRow)];
        bool const isBystander = (bystanders[at(i / wordBits)] >> (i % wordBits) & 1) != 0;
        for (int word = 0; word < wordsPerRow; ++word) {
            words[word] = farBits(i, word * wordBits, leastDifference, leastLightness);
            if (isBystander)
                words[word] |= bystanders[at(word)];
        }
        words[wordsPerRow - 1] &= lastWord;
        words[i / wordBits] &= ~(Word{1} << (i % wordBits));
    }
}
