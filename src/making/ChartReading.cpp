// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartReading.h"

#include "ChartMaking.h"
#include "SheetMeasures.h"
#include "input/ChartDescription.h"
#include "output/SheetDrawing.h"
#include "output/SheetFiles.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <fstream>
#include <map>
#include <set>
#include <string_view>
#include <utility>
#include <variant>

namespace
{

namespace fs = std::filesystem;

constexpr std::size_t mostDescriptionBytes = std::size_t{512} << 20;
constexpr std::size_t sheetStartBytes = std::size_t{1} << 20; // the labels before the crosses take less

// The first bytes of a file; nothing if it cannot be read.
std::optional<std::string> readStart(fs::path const& path, std::size_t most)
{
    std::error_code failure;
    if (!fs::is_regular_file(path, failure))
        return std::nullopt;
    auto const size = std::min<std::uintmax_t>(fs::file_size(path, failure), most);
    std::ifstream file(path, std::ios::binary);
    if (failure || !file)
        return std::nullopt;
    std::string bytes(static_cast<std::size_t>(size), '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

// The numbered files of a chart's sheets.
struct SheetFiles
{
    std::size_t count = 0; // of sheets; 0 if there are no files
    std::map<int, SheetMeasures> measures;
};

// "Name_012.eps" is sheet 12.
std::optional<int> sheetNumberOf(std::string_view name, std::string_view chartName)
{
    std::size_t const dot = name.rfind('.');
    if (dot == std::string_view::npos || !name.starts_with(chartName))
        return std::nullopt;
    name = name.substr(chartName.size(), dot - chartName.size());
    constexpr std::size_t mostDigits = 8;
    bool const isNumber = name.size() > 3 && name.size() <= mostDigits && name[0] == '_' &&
                          std::all_of(name.begin() + 1, name.end(), [](unsigned char c) { return std::isdigit(c); });
    return isNumber ? std::optional(std::stoi(std::string(name.substr(1)))) : std::nullopt;
}

SheetFiles findSheetFiles(fs::path const& folder, std::string const& chartName)
{
    SheetFiles files;
    std::set<int> numbers;
    std::error_code failure;
    for (fs::directory_iterator next(folder, failure), end; !failure && next != end; next.increment(failure)) {
        auto const number = sheetNumberOf(next->path().filename().string(), chartName);
        if (!number)
            continue;
        numbers.insert(*number);
        if (next->path().extension() != epsImages.suffix)
            continue;
        auto const bytes = readStart(next->path(), sheetStartBytes);
        if (auto const measures = bytes ? sheetMeasures(*bytes) : std::nullopt)
            files.measures.emplace(*number, *measures);
    }
    files.count = numbers.size();
    return files;
}

// Lengths in the files have six decimals, and points are converted to mm.
bool isNear(double a, double b)
{
    constexpr double tolerance = 0.005;
    return std::abs(a - b) <= tolerance;
}

bool areNear(SheetMeasures const& measures, SheetFrame const& frame)
{
    return isNear(measures.size.width, frame.size.width) && isNear(measures.size.height, frame.size.height) &&
           isNear(measures.block.x, frame.content.x) && isNear(measures.block.y, frame.content.y) &&
           isNear(measures.block.width, frame.content.width) && isNear(measures.block.height, frame.content.height);
}

// Lays the described chart out for devices and papers.
class Reconstruction
{
public:
    Reconstruction(ChartDescription const& description, SheetFiles const& sheetFiles)
        : described(description), files(sheetFiles),
          patches(static_cast<std::size_t>(std::count_if(described.cells.begin(), described.cells.end(),
                                                         [](DescribedCell const& cell) { return cell.isOfTable; })))
    {
        trialEntries.Array<ColorEntry>::init(patches);
        for (ColorEntry& entry : trialEntries)
            entry.initAsWhite(described.colorSpace, false);
        findPatchSize();
    }

    // Whether the chart comes out as described. The chart is laid out, with white patches.
    bool fits(ChartLayout& chart, DeviceCandidate const& device, PaperCandidate const& paper, bool isClipped)
    {
        MeasurementLayout instrument;
        instrument.init(device.values);
        if (instrument.getScanDirection() != alongY && !(isNear(instrument.getGap().width, described.gap.width) &&
                                                         isNear(instrument.getGap().height, described.gap.height)))
            return false;
        lay(chart, instrument, paper, trialEntries);
        chart.setClipToContent(isClipped);
        return hasGrid(chart) && hasSheets(chart);
    }

    // Lays the chart out again, with the patches in the places of the description.
    bool fill(ChartLayout& chart, DeviceCandidate const& device, PaperCandidate const& paper,
              GrowingArray<ColorEntry>& entries)
    {
        std::size_t next = 0;
        entries.init(described.cells.size());
        for (int x = chart.getPatchesX() - 1; x >= 0; --x)
            for (int y = chart.getPatchesY() - 1; y >= 0; --y) {
                DescribedCell const& cell = described.cells[next++];
                String const label = chart.getCoordinateXString(x) + chart.getCoordinateYString(y);
                if (std::string_view(label.begin(), label.getCount()) != cell.label)
                    return false;
                ColorEntry const* const placed = chart.getColorEntry({x, y});
                bool const isVisible = placed && placed->getStatus() != Hidden;
                if (isVisible)
                    entries.add(entryOf(cell));
                else if (cell.isOfTable)
                    return false;
            }
        for (ColorEntry const& entry : entries)
            if (entry.getStatus() == Invalid)
                return false;
        bool const isClipped = chart.getClipToContent();
        MeasurementLayout instrument;
        instrument.init(device.values);
        lay(chart, instrument, paper, entries);
        chart.setClipToContent(isClipped);
        return hasGrid(chart);
    }

    // Papers on which the block would lie where the file of the first sheet has it. The room around the block is what
    // the device and the labels need. On a table of several sheets a part of a patch may be left over on each.
    std::vector<PaperCandidate> customPapers(DeviceCandidate const& device) const
    {
        std::vector<PaperCandidate> papers;
        if (files.measures.empty())
            return papers;
        auto const& [size, block] = files.measures.rbegin()->second;
        RealRect const content = contentAround(block, device);
        bool const isSwept = device.values.scanDirection != none;
        constexpr double spare = 0.001; // mm, so that rounding takes no column away
        constexpr double parts[] = {0, 0.25, 0.5, 0.75};
        for (double const partX : parts)
            for (double const partY : parts) {
                PaperCandidate paper{pagelayoutpreset_strings[custom], {}};
                paper.sheet.setSize(size);
                paper.sheet.setContent({content.x, content.y, content.width + spare + partX * patch.width,
                                        content.height + spare + partY * patch.height});
                papers.push_back(paper);
                if (isSwept)
                    return papers;
            }
        return papers;
    }

    // Whether the order of the patches is one for a sweep along the columns: neighbours differ, or have gaps between
    // them.
    bool isOrderedForScan() const
    {
        if (described.gap.height > 0)
            return true;
        constexpr float enough = deltaEWithoutGaps * deltaEWithoutGaps;
        Lab const paper = ColorEntry::whitePatch.getColor();
        auto const rows = static_cast<std::size_t>(described.grid.height);
        Lab last = paper;
        for (std::size_t i = 0; i < described.cells.size(); ++i) {
            Lab const color = entryOf(described.cells[i]).getColor();
            bool const isTop = i % rows == 0;
            bool const isBottom = i % rows == rows - 1;
            if (squaredDeltaE(isTop ? paper : last, color) < enough ||
                (isBottom && squaredDeltaE(color, paper) < enough))
                return false;
            last = color;
        }
        return true;
    }

private:
    // The description rounds the patch to hundredths of a millimetre. An EPS file has four decimals more.
    void findPatchSize()
    {
        patch = described.patch;
        if (files.measures.empty())
            return;
        RealRect const block = files.measures.begin()->second.block;
        auto const refined = [](double extent, double rounded, double gap) {
            double const step = rounded + gap;
            double const count = std::round(extent / step);
            double const found = count > 0 ? extent / count - gap : rounded;
            // The rounded number where it is exact.
            return isNear(count * step, extent) ? rounded : std::abs(found - rounded) <= 0.0051 ? found : rounded;
        };
        patch = {refined(block.width, patch.width, described.gap.width),
                 refined(block.height, patch.height, described.gap.height)};
    }

    // The printable area of a sheet whose patches fill the block.
    RealRect contentAround(RealRect const& block, DeviceCandidate const& device) const
    {
        MeasurementLayout instrument;
        instrument.init(device.values);
        RealBorder margin = instrument.getMinMargin();
        if (instrument.getScanDirection() == alongY)
            margin.left = margin.right = 0;
        instrument.setGap(static_cast<float>(described.gap.width), static_cast<float>(described.gap.height));
        ChartLayout borders;
        borders.setMeasurementLayout(instrument);
        RealBorder const border = borders.getBorderForAdditionalInfo();
        return {block.x - border.left - margin.left, block.y - border.bottom - margin.bottom,
                block.width + border.left + border.right + margin.left + margin.right,
                block.height + border.bottom + border.top + margin.bottom + margin.top};
    }

    void lay(ChartLayout& chart, MeasurementLayout const& instrument, PaperCandidate const& paper,
             GrowingArray<ColorEntry>& entries) const
    {
        chart.setDirection(mirrored);
        chart.setMeasurementLayout(instrument);
        chart.setPageLayout(paper.sheet);
        chart.setPatchSize(patch);
        chart.setColorSpace(described.colorSpace);
        chart.setOriginalEntries(&entries);
        chart.setOrderMethod({OrderMethod::given, 1, {}});
        chart.computeLayout(static_cast<float>(described.gap.height), 0);
    }

    bool hasGrid(ChartLayout const& chart) const
    {
        if (!chart.hasSomethingToOutpot() || chart.getChartPagesCount() != described.pages)
            return false;
        IntRect const block = (*chart.getChartPages())[0].getCoordRect();
        return block.width == described.grid.width && block.height == described.grid.height &&
               static_cast<std::size_t>(chart.getPatchesX()) * static_cast<std::size_t>(chart.getPatchesY()) ==
                   described.cells.size();
    }

    bool hasSheets(ChartLayout const& chart) const
    {
        if (files.count == 0)
            return true;
        int number = chart.countOutputPages();
        if (files.count != static_cast<std::size_t>(number))
            return false;
        for (ChartPage const& chartPage : *chart.getChartPages())
            for (OutputPage const& page : *chartPage.getOutputPages()) {
                if (!page.hasPatches())
                    continue;
                auto const found = files.measures.find(number--);
                if (found != files.measures.end() && !areNear(found->second, frameOf(page, chart)))
                    return false;
            }
        return true;
    }

    ColorEntry entryOf(DescribedCell const& cell) const
    {
        ColorEntry entry;
        if (!cell.isOfTable) {
            entry.initAsWhite(described.colorSpace, false);
            return entry;
        }
        Array<String> values(cell.values.size());
        for (std::size_t i = 0; i < cell.values.size(); ++i)
            values[i].init(cell.values[i].data(), cell.values[i].size());
        entry.setValues(described.colorSpace, values);
        return entry;
    }

    ChartDescription const& described;
    SheetFiles const& files;
    std::size_t patches;
    RealSize patch;
    GrowingArray<ColorEntry> trialEntries;
};

void addOnce(std::vector<std::string>& names, std::string const& name)
{
    if (std::find(names.begin(), names.end(), name) == names.end())
        names.push_back(name);
}

// The target description of a folder: the one that has the folder's name, or else the only one.
std::optional<fs::path> findDescription(fs::path const& folder)
{
    std::error_code failure;
    fs::path const whole = fs::weakly_canonical(folder, failure);
    fs::path const own = folder / (whole.filename().string() + ".xml");
    if (fs::is_regular_file(own, failure))
        return own;
    std::vector<fs::path> found;
    for (fs::directory_iterator next(folder, failure), end; !failure && next != end; next.increment(failure))
        if (next->path().extension() == ".xml")
            found.push_back(next->path());
    return found.size() == 1 ? std::optional(found.front()) : std::nullopt;
}

} // namespace

std::optional<std::string> ReadChart::read(fs::path const& folder, std::vector<DeviceCandidate> const& devices,
                                           std::vector<PaperCandidate> const& papers, bool isPaperKnown)
{
    auto const path = findDescription(folder);
    if (!path)
        return folder.string() + ": has no target description, a file that ends in .xml; give the folder of a chart";
    auto bytes = readStart(*path, mostDescriptionBytes);
    if (!bytes)
        return path->string() + ": cannot be read";
    auto const result = readChartDescription(std::move(*bytes));
    if (auto const* fault = std::get_if<std::string>(&result))
        return path->string() + ": " + *fault + "; make the chart again";
    auto const& described = std::get<ChartDescription>(result);
    SheetFiles const files = findSheetFiles(folder, path->stem().string());

    Reconstruction reconstruction(described, files);
    std::optional<std::pair<DeviceCandidate, PaperCandidate>> taken;
    auto const tryAll = [&](bool areCustom, bool areScanned) {
        for (DeviceCandidate const& device : devices) {
            if ((device.values.scanDirection == alongY) != areScanned)
                continue;
            for (PaperCandidate const& paper : areCustom ? reconstruction.customPapers(device) : papers)
                for (bool const isClipped : {false, true}) {
                    ChartLayout trial;
                    if (!reconstruction.fits(trial, device, paper, isClipped))
                        continue;
                    if (!taken) {
                        taken = {device, paper};
                        chart = trial;
                    }
                    addOnce(deviceNames, device.name);
                    addOnce(paperNames, paper.name);
                }
        }
    };
    bool const isScanOrder = reconstruction.isOrderedForScan();
    for (bool const areCustom : {false, true})
        for (bool const areScanned : {isScanOrder, !isScanOrder})
            if (!taken && !(areCustom && isPaperKnown))
                tryAll(areCustom, areScanned);
    if (!taken)
        return folder.string() +
               ": no device and paper give this chart; look for missing sheets, or name device and paper with --device, "
               "--paper and --margins";
    if (!reconstruction.fill(chart, taken->first, taken->second, entries))
        return path->string() + ": its rows are not those of a chart; make the chart again";
    chart.setName(String(described.name.c_str()));
    return std::nullopt;
}
