// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Makes a CMYK output profile from measurements: make_cmyk_profile <characterisation data> <output file>

#include "ProfileFile.h"
#include "ProfileTables.h"
#include "Separation.h"
#include "Spline.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <utility>

namespace
{

cmsCIEXYZ toXyz(Lab const& lab)
{
    cmsCIELab const source{lab[0], lab[1], lab[2]};
    cmsCIEXYZ xyz;
    cmsLab2XYZ(nullptr, &xyz, &source);
    return xyz;
}

/// The colour as seen by an eye that takes the paper for white.
Lab relativeTo(cmsCIEXYZ const& paper, Lab const& absolute)
{
    cmsCIEXYZ const& d50 = *cmsD50_XYZ();
    cmsCIEXYZ xyz = toXyz(absolute);
    xyz.X *= d50.X / paper.X;
    xyz.Y *= d50.Y / paper.Y;
    xyz.Z *= d50.Z / paper.Z;
    cmsCIELab lab;
    cmsXYZ2Lab(nullptr, &lab, &xyz);
    return {lab.L, lab.a, lab.b};
}

std::vector<MeasuredPatch> withoutRepeats(std::vector<MeasuredPatch> patches)
{
    std::ranges::stable_sort(patches, {}, &MeasuredPatch::device);
    auto const repeats = std::ranges::unique(patches, {}, &MeasuredPatch::device);
    patches.erase(repeats.begin(), repeats.end());
    return patches;
}

/// The colours on a grid with a node at every level of the data's own grids, and one more beside paper and solid.
PrintTable tabulate(std::vector<MeasuredPatch> const& patches)
{
    Axis const chromatic({0, 5, 10, 20, 30, 40, 55, 70, 85, 92, 100});
    Axis const black({0, 10, 20, 30, 40, 50, 60, 70, 80, 90, 100});
    Spline const spline(patches);
    return PrintTable({chromatic, chromatic, chromatic, black}, [&spline](Cmyk const& device) {
        Lab lab = spline.at(device);
        lab[0] = std::min(lab[0], 100.0);
        return lab;
    });
}

/// \param darkest  the L* that becomes 0, the others giving way
Pipeline makeDeviceToLab(PrintTable const& table, double darkest)
{
    constexpr unsigned wholePercents = 101;
    Curves curves;
    for (Axis const& axis : table.getAxes())
        curves.push_back(makeCurve(axis, 0, 100, wholePercents));
    Table16 colours;
    for (Lab const& lab : table.getColours()) {
        double const lightness = (lab[0] - darkest) * 100 / (100 - darkest);
        std::ranges::copy(encode(Lab{lightness, lab[1], lab[2]}), std::back_inserter(colours));
    }
    return makePipeline(curves, table.getAxes()[0].getCount(), colours, straightCurves(3));
}

/// The grid of colours to separate: white and the greys are on it, and few nodes are spent where nothing prints.
class LabGrid
{
public:
    std::size_t getCount() const { return m_lightness.getCount(); }

    Curves makeCurves() const
    {
        constexpr unsigned entries = 258; // L* = 100 is the last but one
        return {makeCurve(m_lightness, 0, greatestLightness, entries),
                makeCurve(m_chroma, leastChroma, greatestChroma, entries),
                makeCurve(m_chroma, leastChroma, greatestChroma, entries)};
    }

    /// All colours of the grid, b* changing fastest and L* slowest.
    std::vector<Lab> getColours() const
    {
        std::vector<Lab> colours;
        for (std::size_t l = 0; l < getCount(); ++l)
            for (std::size_t a = 0; a < getCount(); ++a)
                for (std::size_t b = 0; b < getCount(); ++b)
                    colours.push_back({m_lightness[l], m_chroma[a], m_chroma[b]});
        return colours;
    }

private:
    static constexpr int intervals = 32;

    static Axis makeLightness()
    {
        std::vector<double> nodes;
        for (int i = 0; i <= intervals; ++i)
            nodes.push_back(100.0 * i / intervals);
        return Axis(nodes);
    }

    static Axis makeChroma()
    {
        constexpr double spacing = 6.5;
        std::vector<double> nodes{leastChroma};
        constexpr int middle = intervals / 2;
        for (int i = 1; i < intervals; ++i)
            nodes.push_back(spacing * (i - middle));
        nodes.push_back(greatestChroma);
        return Axis(nodes);
    }

    Axis m_lightness = makeLightness();
    Axis m_chroma = makeChroma();
};

/// \param darkest  the L* that 0 becomes, the others giving way
std::vector<Separated> separateAll(PrintTable const& table, LabGrid const& grid, double darkest, double lightnessWeight)
{
    std::vector<Separated> separations;
    for (Lab const& lab : grid.getColours()) {
        double const lightness = darkest + lab[0] * (100 - darkest) / 100;
        separations.push_back(separate(table, {lightness, lab[1], lab[2]}, lightnessWeight));
    }
    return separations;
}

Pipeline makeLabToDevice(LabGrid const& grid, std::vector<Separated> const& separations)
{
    Table16 inks;
    for (Separated const& separation : separations)
        for (double const percent : separation.device)
            inks.push_back(encode(percent / 100));
    return makePipeline(grid.makeCurves(), grid.getCount(), inks, straightCurves(4));
}

/// 0 for colours that can be printed, 1 for others.
Pipeline makeGamut(LabGrid const& grid, std::vector<Separated> const& separations)
{
    constexpr int fullScale = 64; // delta E
    constexpr int tolerance = 2;
    Table16 distances;
    for (Separated const& separation : separations)
        distances.push_back(encode(separation.deltaE / fullScale));
    Table16 threshold;
    for (int deltaE = 0; deltaE <= fullScale; ++deltaE)
        threshold.push_back(deltaE <= tolerance ? 0 : 0xffff);
    return makePipeline(grid.makeCurves(), grid.getCount(), distances,
                        {cmsBuildTabulatedToneCurve16(nullptr, fullScale + 1, threshold.data())});
}

bool writeTables(cmsHPROFILE profile, PrintTable const& table)
{
    LabGrid const grid;
    PrintTable::Slopes slopes;
    double const printedBlack = table.at(separate(table, {0, 0, 0}, 1).device, slopes)[0];

    // For the perceptual and the saturation intent the darkest print stands for black, so that shadows keep apart. Out
    // of gamut the first keeps lightness, which carries a picture, and the other keeps colours strong.
    std::vector<Separated> const colorimetric = separateAll(table, grid, 0, 1);
    std::vector<Separated> const perceptual = separateAll(table, grid, printedBlack, 2);
    std::vector<Separated> const saturation = separateAll(table, grid, printedBlack, 0.5);
    return cmsWriteTag(profile, cmsSigAToB0Tag, makeDeviceToLab(table, printedBlack).get()) &&
           cmsWriteTag(profile, cmsSigAToB1Tag, makeDeviceToLab(table, 0).get()) &&
           cmsLinkTag(profile, cmsSigAToB2Tag, cmsSigAToB0Tag) &&
           cmsWriteTag(profile, cmsSigBToA0Tag, makeLabToDevice(grid, perceptual).get()) &&
           cmsWriteTag(profile, cmsSigBToA1Tag, makeLabToDevice(grid, colorimetric).get()) &&
           cmsWriteTag(profile, cmsSigBToA2Tag, makeLabToDevice(grid, saturation).get()) &&
           cmsWriteTag(profile, cmsSigGamutTag, makeGamut(grid, colorimetric).get());
}

bool writeProfile(std::vector<MeasuredPatch> patches, char const* file)
{
    auto const paper = std::ranges::find(patches, Cmyk{0, 0, 0, 0}, &MeasuredPatch::device);
    if (paper == patches.end())
        return false;
    cmsCIEXYZ const mediaWhite = toXyz(paper->lab);
    for (MeasuredPatch& patch : patches)
        patch.lab = relativeTo(mediaWhite, patch.lab);

    cmsHPROFILE const profile = cmsCreateProfilePlaceholder(nullptr);
    cmsSetProfileVersion(profile, 2.4);
    cmsSetDeviceClass(profile, cmsSigOutputClass);
    cmsSetColorSpace(profile, cmsSigCmykData);
    cmsSetPCS(profile, cmsSigLabData);
    bool const written = setTexts(profile, "Coated offset, FOGRA39L",
                                  "Characterisation data: copyright Kai-Uwe Behrmann, zlib/libpng licence") &&
                         cmsWriteTag(profile, cmsSigMediaWhitePointTag, &mediaWhite) &&
                         writeTables(profile, tabulate(withoutRepeats(std::move(patches)))) &&
                         saveProfile(profile, file);
    cmsCloseProfile(profile);
    return written;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::cerr << "usage: make_cmyk_profile <characterisation data> <output file>\n";
        return EXIT_FAILURE;
    }
    std::vector<MeasuredPatch> patches = readCharacterisationData(argv[1]);
    if (patches.empty()) {
        std::cerr << "Cannot read " << argv[1] << '\n';
        return EXIT_FAILURE;
    }
    if (!writeProfile(std::move(patches), argv[2])) {
        std::cerr << "Cannot make " << argv[2] << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
