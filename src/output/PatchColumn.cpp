// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PatchColumn.h"

#include "color/ColorEntry.h"
#include "layout/ChartLayout.h"

namespace
{

// Prefetches an object. Any pointer is allowed.
template <typename Object>
void fetch(Object const* object)
{
    constexpr std::size_t cacheLine = 64;
    for (std::size_t offset = 0; offset < sizeof(Object); offset += cacheLine)
        __builtin_prefetch(reinterpret_cast<char const*>(object) + offset);
}

} // namespace

std::vector<ColorEntry const*> columnOf(ChartLayout const& layout, IntPos first, int count)
{
    std::vector<ColorEntry const*> column;
    for (int i = 0; i < count; ++i) {
        column.push_back(layout.getColorEntry({first.x, first.y + i}));
        fetch(column.back());
    }
    // Each loop finds in the cache what the loop before it prefetched.
    for (ColorEntry const* entry : column)
        if (entry)
            for (String const& value : entry->getValues())
                fetch(&value);
    for (ColorEntry const* entry : column)
        if (entry)
            for (String const& value : entry->getValues())
                fetch(value.begin());
    return column;
}
