// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ReportFile.h"

#include "lib/OvWholeFile.h"

#include <cerrno>

ReportSubject subjectOf(TableChart const& chart, ChartSettings const& settings, std::vector<std::string> const& notes)
{
    MadeChart const& made = chart.made();
    std::optional<float> withoutGaps;
    if (made.hasGaps && settings.gaps == GapRule::automatic)
        withoutGaps = made.withoutGaps;
    return {.chart = chart.layout(),
            .devices = {settings.device.name},
            .paper = settings.paperName,
            .withoutGaps = withoutGaps,
            .bound = chart.layout().getOrderBound(),
            .isBoundLoose = chart.layout().isOrderBoundLoose(),
            .notes = notes};
}

bool isMade(PageText const& page, Console const& console)
{
    if (auto const* fault = std::get_if<PageFault>(&page)) {
        console.error(fault->text);
        return false;
    }
    return true;
}

std::optional<FileFault> writePage(std::string const& page, std::filesystem::path const& path)
{
    String const name(path.c_str());
    WholeFile file(name);
    if (file.isOpen() && file.write(page.data(), page.size()) && file.close())
        return std::nullopt;
    return FileFault{name, file.getError() != 0 ? file.getError() : EIO};
}
