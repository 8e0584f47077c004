// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PartnerScan.h"

#include <cstddef>
#include <cstdint>

// The search for a partner, for sources that are each compiled for another instruction set. Nothing here but what bears
// its width in its name: of an inline function that they share, the linker could keep the one that cannot run
// everywhere.

/// As many values as the name says, and what comparing them gives: all bits of those that pass.
using Floats4 = float __attribute__((vector_size(16)));
using Floats8 = float __attribute__((vector_size(32)));
using Floats16 = float __attribute__((vector_size(64)));
using Masks4 = std::int32_t __attribute__((vector_size(16)));
using Masks8 = std::int32_t __attribute__((vector_size(32)));
using Masks16 = std::int32_t __attribute__((vector_size(64)));

template <typename Floats, typename Masks>
struct Wide
{
    static constexpr std::size_t width = sizeof(Floats) / sizeof(float);

    struct Colors
    {
        Floats channels[3];
    };

    // The colours of a row of cells, counted from the row of paper before the first row.
    static Colors load(ColorRows const& rows, int from)
    {
        Colors colors;
        for (int i = 0; i < 3; ++i)
            __builtin_memcpy(&colors.channels[i], rows.channels[i] + from, sizeof(Floats));
        return colors;
    }

    // A lightness difference of 5 lets the instrument find the edge, whatever the difference in hue and chroma.
    static Masks areFurther(Colors const& colors, Lab const& other, float key)
    {
        Floats const dL = colors.channels[0] - other.values[0];
        Floats const da = colors.channels[1] - other.values[1];
        Floats const db = colors.channels[2] - other.values[2];
        Floats const squaredLightness = dL * dL;
        return ((squaredLightness + da * da) + db * db > key) & (squaredLightness >= 25.0f);
    }

    // The first mask that is set; -1 where none is.
    static int firstSet(Masks const& masks)
    {
        std::int64_t pairs[width / 2];
        __builtin_memcpy(pairs, &masks, sizeof masks);
        std::int64_t any = 0;
        for (std::int64_t pair : pairs)
            any |= pair;
        if (any == 0)
            return -1;
        std::int32_t each[width];
        __builtin_memcpy(each, &masks, sizeof masks);
        int first = 0;
        while (each[first] == 0)
            ++first;
        return first;
    }

    static int findPartner(ColorRows const& rows, PoorPlace const& place)
    {
        for (int cell = 0; cell < rows.cells; cell += static_cast<int>(width)) {
            Colors const candidates = load(rows, cell + rows.columns);
            Masks const fit = areFurther(candidates, place.above, place.key) &
                              areFurther(candidates, place.below, place.key) &
                              areFurther(load(rows, cell), place.patch, place.key) &
                              areFurther(load(rows, cell + 2 * rows.columns), place.patch, place.key);
            if (int const first = firstSet(fit); first >= 0)
                return cell + first < rows.cells ? cell + first : -1;
        }
        return -1;
    }
};
