// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "LabColor.h"

#include <cstddef>
#include <limits>
#include <optional>
#include <vector>

/// The readings of a chart: one colour for each of its patches, where there is one.
using Readings = std::vector<std::optional<LabColor>>;

/// Says which patch the reading of each patch truly shows. Without errors each reading shows its own patch.
class Assignment
{
public:
    static constexpr std::size_t nothing = std::numeric_limits<std::size_t>::max();

    Assignment() = default;

    /// Every reading shows its own patch.
    explicit Assignment(std::size_t patchCount) : shown(patchCount)
    {
        for (std::size_t i = 0; i < patchCount; ++i)
            shown[i] = i;
    }

    std::size_t size() const { return shown.size(); }
    std::size_t operator[](std::size_t reading) const { return shown[reading]; }
    std::size_t& operator[](std::size_t reading) { return shown[reading]; }

    bool operator==(Assignment const&) const = default;

private:
    std::vector<std::size_t> shown;
};
