// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Printer.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// What makes one squared distance of that in CIELAB and a part of that in device values: their sum, or the larger one.
enum class DistanceRule { sum, larger };

/// Chooses colours one after another, each as far as possible from all before, in CIELAB and in device values at once.
/// The nearest colour in CIELAB and the nearest one in device values can be different ones.
class FarthestColors
{
public:
    /// \param candidates  to choose from; at least one
    /// \param weights     of the candidates: factors on their squared distances
    /// \param devicePart  of a squared distance in percent, against a squared delta E
    FarthestColors(std::vector<PrinterColor> const& candidates, std::vector<float> const& weights, float devicePart,
                   DistanceRule rule);

    /// Takes a colour into account, whether it is a candidate or not.
    void add(PrinterColor const& color);

    /// The number of the candidate that is farthest from the colours so far; the first of several.
    std::uint32_t farthest() const;

private:
    struct Candidate
    {
        PrinterColor color;
        std::uint32_t number;
        float weight;
        float squaredDeltaE;
        float squaredDevice;
    };

    // Candidates that lie together. The box holds them, and the rest tells the largest of their distances.
    struct Box
    {
        std::uint32_t first;
        std::uint32_t end;
        PrinterColor low;
        PrinterColor high;
        float squaredDeltaE;
        float squaredDevice;
        float bestScore;
        std::uint32_t bestNumber;
    };

    float scoreOf(Candidate const& candidate) const;
    void divide(std::uint32_t first, std::uint32_t end);
    void update(Box& box, PrinterColor const& color);
    void takeBest(Box& box) const;
    Box boxOf(std::uint32_t first, std::uint32_t end) const;

    std::vector<Candidate> candidates;
    std::vector<Box> boxes;
    float part;
    DistanceRule rule;
};
