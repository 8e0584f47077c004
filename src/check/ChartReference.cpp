// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartReference.h"

#include "color/ColorEngine.h"
#include "input/DataTable.h"
#include "input/DecimalText.h"
#include "input/TableChoice.h"
#include "input/TableReader.h"

#include <algorithm>
#include <charconv>
#include <numeric>
#include <utility>

namespace
{

// A cell of the patch grid as the target description tells it.
struct GridCell
{
    ChartPatch patch;
    std::size_t column = 0; // from 0, in the order of the labels
    std::size_t row = 0;
};

// "C12" is column 2, row 11. Columns are A to Z, a to z, AA and so on.
std::optional<std::array<std::size_t, 2>> positionOf(std::string_view label)
{
    constexpr std::size_t letters = 52;
    constexpr std::size_t most = std::size_t{1} << 24;
    std::size_t column = 0;
    std::size_t length = 0;
    for (; length < label.size(); ++length) {
        char const c = label[length];
        bool const isCapital = c >= 'A' && c <= 'Z';
        if (!isCapital && (c < 'a' || c > 'z'))
            break;
        column = column * letters + static_cast<std::size_t>(isCapital ? c - 'A' + 1 : c - 'a' + 27);
        if (column > most)
            return {};
    }
    std::size_t row = 0;
    char const* const end = label.data() + label.size();
    auto const [rest, error] = std::from_chars(label.data() + length, end, row);
    if (length == 0 || error != std::errc() || rest != end || row == 0 || row > most)
        return {};
    return std::array{column - 1, row - 1};
}

std::string columnLabelOf(std::string_view label)
{
    return std::string(label.substr(0, label.find_first_of("0123456789")));
}

// The text of an element such as <pages>2</pages>; empty where there is none.
std::string_view elementOf(std::string_view text, std::string const& name)
{
    std::string const start = "<" + name + ">";
    std::size_t const begin = text.find(start);
    if (begin == std::string_view::npos)
        return {};
    std::size_t const end = text.find("</" + name + ">", begin);
    return end == std::string_view::npos ? std::string_view()
                                         : text.substr(begin + start.size(), end - begin - start.size());
}

std::size_t countIn(std::string_view text, std::string const& name)
{
    std::string_view const number = elementOf(text, name);
    std::size_t count = 0;
    auto const [rest, error] = std::from_chars(number.data(), number.data() + number.size(), count);
    return error == std::errc() && rest == number.data() + number.size() ? count : 0;
}

// Which band each line of a block lies in. Lines without a printed patch divide bands; the ones at the far end fill up
// the last band, and so do those at the near end with the first.
std::vector<std::size_t> bandsOf(std::vector<bool> const& isPrinted)
{
    std::vector<std::size_t> bands(isPrinted.size());
    std::size_t band = 0;
    std::size_t last = isPrinted.size(); // the last printed line so far
    for (std::size_t i = 0; i < isPrinted.size(); ++i) {
        if (isPrinted[i]) {
            bool const isGap = last < i && last + 1 < i;
            band += isGap ? 1U : 0U;
            last = i;
        }
        bands[i] = band;
    }
    return bands;
}

class ReferenceReader
{
public:
    explicit ReferenceReader(std::string bytes) : file(readTables(std::move(bytes))) {}

    ReferenceReading read()
    {
        if (!file.faults.isEmpty())
            return fault(file.faults.kept().front().text);
        if (file.kind != TableKind::targetDescription)
            return fault("is no target description: name the chart's folder, or the .xml file in it");
        ChoiceMessages messages;
        auto const chosen = chooseTable(file, {}, messages);
        if (!chosen)
            return fault(messages.faults.kept().front().text);
        table = &file.tables[chosen->index];
        if (!table->faults.isEmpty())
            return fault(table->faults.kept().front().text);
        if (!chosen->names.location || !chosen->names.id || !chosen->names.control)
            return fault("has no columns SAMPLE_ID, SAMPLE_LOC and CONTROL: take the target description as it was "
                         "written with the chart");
        if (table->rows.size() > mostCheckedPatches)
            return fault("has more than " + std::to_string(mostCheckedPatches) +
                         " patches, more than can be checked: divide the chart");
        chart.colorSpace = chosen->space;
        chart.name = std::string(elementOf(file.text, "name"));
        std::string const badRow = readCells(*chosen);
        if (!badRow.empty())
            return fault(badRow);
        if (cells.empty())
            return fault("has no patches");
        placeStrips();
        chart.finish();
        addColors();
        return {std::move(chart), ""};
    }

private:
    static ReferenceReading fault(std::string text) { return {{}, std::move(text)}; }

    // Returns what is wrong with a row.
    std::string readCells(TableChoice const& choice)
    {
        double const full = chart.colorSpace == CMYK ? 100 : 255;
        std::vector<Cell> row;
        for (TextLine const& line : table->rows) {
            file.split(*table, line, row);
            GridCell cell;
            cell.patch.label = std::string(row[choice.names.location.value_or(0)].text);
            cell.patch.id = std::string(row[choice.names.id.value_or(0)].text);
            cell.patch.isFiller = row[choice.names.control.value_or(0)].text == "I";
            auto const position = positionOf(cell.patch.label);
            if (!position)
                return "line " + std::to_string(line.number) + ": " + excerpt(cell.patch.label) +
                       " is no place such as C12";
            cell.column = (*position)[0];
            cell.row = (*position)[1];
            for (std::size_t channel = 0; channel < chart.channels(); ++channel) {
                std::string_view const text = row[choice.device.columns[channel]].text;
                ParsedNumber const number = parseNumber(text);
                if (number.form != NumberForm::point)
                    return "line " + std::to_string(line.number) + ": " + excerpt(text) + " is no device value";
                cell.patch.values[channel] = std::string(text);
                cell.patch.device[channel] = std::clamp(number.value / full, 0.0, 1.0);
            }
            cells.push_back(std::move(cell));
        }
        std::sort(cells.begin(), cells.end(), [](GridCell const& a, GridCell const& b) {
            return std::pair(a.column, a.row) < std::pair(b.column, b.row);
        });
        auto const same = std::adjacent_find(cells.begin(), cells.end(), [](GridCell const& a, GridCell const& b) {
            return a.column == b.column && a.row == b.row;
        });
        return same == cells.end() ? "" : "the place " + excerpt(same->patch.label) + " is there twice";
    }

    // A block is a chart page: what the instrument measures in one go.
    void placeStrips()
    {
        std::size_t const pages = std::max<std::size_t>(1, countIn(file.text, "pages"));
        std::size_t columns = 0;
        std::size_t rows = 0;
        for (GridCell const& cell : cells) {
            columns = std::max(columns, cell.column + 1);
            rows = std::max(rows, cell.row + 1);
        }
        std::size_t const columnsOfPage = countIn(file.text, "columns");
        std::size_t const rowsOfPage = countIn(file.text, "rows");
        bool const isAcross = columnsOfPage > 0 && columnsOfPage * pages == columns;
        bool const isDown = !isAcross && rowsOfPage > 0 && rowsOfPage * pages == rows;
        for (std::size_t page = 0; page < pages && (isAcross || isDown); ++page) {
            if (isAcross)
                placeBlock([&](GridCell const& cell) { return cell.column / columnsOfPage == page; });
            else
                placeBlock([&](GridCell const& cell) { return cell.row / rowsOfPage == page; });
        }
        if (!isAcross && !isDown)
            placeBlock([](GridCell const&) { return true; });
    }

    template <typename IsInBlock>
    void placeBlock(IsInBlock isInBlock)
    {
        std::vector<GridCell*> block;
        for (GridCell& cell : cells)
            if (isInBlock(cell))
                block.push_back(&cell);
        if (block.empty())
            return;
        auto const bandsAlong = [&](std::size_t GridCell::*place) {
            std::size_t least = block.front()->*place;
            std::size_t most = least;
            for (GridCell const* cell : block) {
                least = std::min(least, cell->*place);
                most = std::max(most, cell->*place);
            }
            std::vector<bool> isPrinted(most - least + 1);
            for (GridCell const* cell : block)
                if (!cell->patch.isFiller)
                    isPrinted[cell->*place - least] = true;
            return std::pair{least, std::pair{isPrinted, bandsOf(isPrinted)}};
        };
        auto const [left, acrossBands] = bandsAlong(&GridCell::column);
        auto const [top, downBands] = bandsAlong(&GridCell::row);
        std::vector<bool> const& isColumnPrinted = acrossBands.first;
        std::vector<bool> const& isRowPrinted = downBands.first;
        bool const isTiled = acrossBands.second.back() > 0 || downBands.second.back() > 0;
        // Sheets are counted along the first row of sheets, then along the next.
        std::vector<std::pair<std::array<std::size_t, 4>, GridCell*>> placed;
        for (GridCell* cell : block) {
            std::size_t const x = cell->column - left;
            std::size_t const y = cell->row - top;
            if (isTiled && cell->patch.isFiller && (!isColumnPrinted[x] || !isRowPrinted[y])) {
                chart.hiddenLabels.push_back(cell->patch.label);
                continue;
            }
            placed.push_back({{downBands.second[y], acrossBands.second[x], cell->column, cell->row}, cell});
        }
        std::sort(placed.begin(), placed.end());
        for (std::size_t i = 0; i < placed.size(); ++i) {
            auto const& key = placed[i].first;
            bool const isNewSheet = i == 0 || key[0] != placed[i - 1].first[0] || key[1] != placed[i - 1].first[1];
            if (isNewSheet)
                ++chart.sheetCount;
            if (isNewSheet || key[2] != placed[i - 1].first[2])
                chart.strips.push_back(
                    {columnLabelOf(placed[i].second->patch.label), chart.sheetCount - 1, chart.patches.size(), 0});
            ++chart.strips.back().count;
            placed[i].second->patch.strip = chart.strips.size() - 1;
            chart.patches.push_back(std::move(placed[i].second->patch));
        }
    }

    void addColors()
    {
        std::size_t const channels = chart.channels();
        double const scale = chart.colorSpace == CMYK ? 100 : 1;
        std::vector<float> device;
        for (ChartPatch const& patch : chart.patches)
            for (std::size_t channel = 0; channel < channels; ++channel)
                device.push_back(static_cast<float>(patch.device[channel] * scale));
        std::vector<float> labs(3 * chart.patches.size());
        colorEngine().toLab(chart.colorSpace, device.data(), labs.data(), chart.patches.size());
        for (std::size_t i = 0; i < chart.patches.size(); ++i)
            for (std::size_t k = 0; k < 3; ++k)
                chart.patches[i].lab[k] = static_cast<double>(labs[3 * i + k]);
    }

    TableFile file;
    DataTable const* table = nullptr;
    ChartReference chart;
    std::vector<GridCell> cells;
};

} // namespace

bool ChartReference::isWhite(std::size_t patch) const
{
    double const white = colorSpace == CMYK ? 0 : 1;
    auto const& device = patches[patch].device;
    return std::all_of(device.begin(), device.begin() + static_cast<std::ptrdiff_t>(channels()),
                       [white](double value) { return value == white; });
}

std::array<std::size_t, 2> ChartReference::stripsOf(std::size_t sheet) const
{
    auto const begin =
        std::find_if(strips.begin(), strips.end(), [=](ChartStrip const& s) { return s.sheet == sheet; });
    auto const end = std::find_if(begin, strips.end(), [=](ChartStrip const& s) { return s.sheet != sheet; });
    return {static_cast<std::size_t>(begin - strips.begin()), static_cast<std::size_t>(end - strips.begin())};
}

void ChartReference::finish()
{
    byLabel.resize(patches.size());
    std::iota(byLabel.begin(), byLabel.end(), std::size_t{0});
    std::sort(byLabel.begin(), byLabel.end(),
              [this](std::size_t a, std::size_t b) { return patches[a].label < patches[b].label; });
    std::sort(hiddenLabels.begin(), hiddenLabels.end());
}

std::optional<std::size_t> ChartReference::findLabel(std::string_view label) const
{
    auto const found =
        std::lower_bound(byLabel.begin(), byLabel.end(), label,
                         [this](std::size_t i, std::string_view text) { return patches[i].label < text; });
    if (found == byLabel.end() || patches[*found].label != label)
        return {};
    return *found;
}

bool ChartReference::isHidden(std::string_view label) const
{
    return std::binary_search(hiddenLabels.begin(), hiddenLabels.end(), label);
}

ReferenceReading readReference(std::string bytes)
{
    return ReferenceReader(std::move(bytes)).read();
}
