// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Any bytes as a table of any kind, made into patches. The first byte chooses the options.

#include "PatchImport.h"
#include "TableProperties.h"
#include "TableSummary.h"

namespace
{

ImportOptions optionsOf(std::uint8_t bits)
{
    constexpr DeviceScale scales[] = {DeviceScale::unknown,  DeviceScale::unknown,   DeviceScale::one,
                                      DeviceScale::percent,  DeviceScale::eightBit,  DeviceScale::sixteenBit,
                                      DeviceScale::eightBit, DeviceScale::sixteenBit};
    constexpr ColorSpace spaces[] = {undefined, undefined, CMYK, RGB};
    ImportOptions options;
    options.scale = scales[bits & 7U];
    options.space = spaces[(bits >> 3U) & 3U];
    options.tableNumber = (bits >> 5U) & 3U;
    options.allowsCommaInPlainTable = (bits & 128U) != 0;
    return options;
}

void requirePatches(PatchTable const& patches)
{
    require(patches.count() > 0 && patches.colorSpace != undefined, "a good table has patches");
    std::string const plain = plainTableOf(patches);
    TableImport const again = importTable(plain);
    require(again.isGood(), "a plain table that was written is good");
    require(plainTableOf(again.patches) == plain, "a plain table that was written is read as it is");
    require(again.patches.count() == patches.count(), "a plain table has all patches");

    TableSummary const summary = summaryOf(patches);
    require(summary.patches == patches.count(), "a summary counts the patches");
    require(summary.distinctColors + summary.repeats == summary.patches, "repeats are no distinct colours");
    require(summary.whites <= summary.patches, "white patches are patches");
    for (ChannelRange const& range : summary.ranges)
        require(range.lowest >= 0 && range.highest <= 255 && range.lowest <= range.highest, "values are in range");
    requireLine(patches.scale.reason);
    std::string const ids = idTableOf(patches);
    require(static_cast<std::size_t>(std::count(ids.begin(), ids.end(), '\n')) > patches.count(),
            "there is an id for each patch");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    if (size == 0)
        return 0;
    TableImport const table = importTable({reinterpret_cast<char const*>(data + 1), size - 1}, optionsOf(data[0]));
    requireMessages(table.faults);
    requireMessages(table.warnings);
    for (std::string const& note : table.patches.notes)
        requireLine(note);
    if (table.isGood())
        requirePatches(table.patches);
    return 0;
}
