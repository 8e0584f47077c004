// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Printer.h"

#include "color/ColorEngine.h"

#include <algorithm>
#include <cmath>

namespace
{

float rounded(float number)
{
    constexpr float unit = 256;
    constexpr float furthest = 500;
    if (!(number >= -furthest))
        return number < -furthest ? -furthest : 0;
    return std::floor(std::min(number, furthest) * unit + 0.5f) / unit;
}

} // namespace

void Printer::computeColors(std::vector<PrinterColor>& colors) const
{
    std::size_t const channels = getChannels();
    std::vector<float> percents(colors.size() * channels);
    std::vector<float> labs(colors.size() * 3);
    for (std::size_t i = 0; i < colors.size(); ++i)
        std::copy_n(colors[i].device.begin(), channels, &percents[i * channels]);
    if (!colors.empty())
        toLab(percents.data(), labs.data(), colors.size());
    for (std::size_t i = 0; i < colors.size(); ++i)
        for (std::size_t c = 0; c < 3; ++c)
            colors[i].lab.values[c] = rounded(labs[3 * i + c]);
}

PrinterColor Printer::colorOf(DevicePercent const& device) const
{
    std::vector<PrinterColor> color{{device, {}}};
    computeColors(color);
    return color.front();
}

DevicePercent Printer::paper() const
{
    return space == CMYK ? DevicePercent{} : DevicePercent{100, 100, 100, 0};
}

Printer ownPrinter(ColorSpace colorSpace)
{
    return {colorSpace, [colorSpace](float const* percents, float* labs, std::size_t count) {
                if (colorSpace == CMYK)
                    return colorEngine().toLab(CMYK, percents, labs, count);
                std::vector<float> shares(percents, percents + 3 * count);
                for (float& share : shares)
                    share /= 100;
                colorEngine().toLab(RGB, shares.data(), labs, count);
            }};
}

Printer printerOf(ColorSpace colorSpace, std::shared_ptr<PrinterProfile const> profile)
{
    return {colorSpace, [profile = std::move(profile)](float const* percents, float* labs, std::size_t count) {
                profile->toLab(percents, labs, count);
            }};
}
