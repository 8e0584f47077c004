// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PairDifference.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// Which of some patches may follow each other along the scan, a bit for each pair. It takes the square of their number
/// in bits. No patch is far from itself.
class FarPairs
{
public:
    using Word = std::uint64_t;
    static constexpr int wordBits = 64;

    /// No pair is far yet.
    ///
    /// \param difference  of the task
    /// \param patches     the patches that get a row and a column, in this order; the paper may be among them
    FarPairs(PairDifference const& difference, std::vector<int> const& patches);

    /// Finds the pairs again.
    ///
    /// \param leastDifference  squared delta E that far pairs have at least, at most furthestSquaredDeltaE
    /// \param leastLightness   squared difference in lightness that they have at least besides
    void renew(float leastDifference, float leastLightness = 0);

    int countPatches() const { return count; }
    int getWordsPerRow() const { return wordsPerRow; }

    /// A patch's row: bit j % 64 of word j / 64 says whether the patch is far from the j-th.
    Word const* row(int i) const { return &bits[static_cast<std::size_t>(i) * static_cast<std::size_t>(wordsPerRow)]; }

    bool areFar(int i, int j) const { return (row(i)[j / wordBits] >> (j % wordBits) & 1) != 0; }

private:
    Word farBits(int i, int from, float leastDifference, float leastLightness) const;

    int count;
    int wordsPerRow;
    // One array for each axis, as long as whole words: the compiler compares several colours at once.
    std::vector<float> lightness;
    std::vector<float> a;
    std::vector<float> b;
    std::vector<Word> bystanders;
    std::vector<Word> bits;
};
