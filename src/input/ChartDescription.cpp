// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartDescription.h"

#include "TableReader.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>

namespace
{

constexpr double longest = 100000;       // mm; longer than any sheet
constexpr int mostCellsAcross = 1 << 22; // more than a chart has

class DescriptionReader
{
public:
    explicit DescriptionReader(TableFile const& tableFile) : file(tableFile) {}

    std::variant<ChartDescription, std::string> read()
    {
        if (file.kind != TableKind::targetDescription)
            return "is no target description";
        if (!file.faults.isEmpty())
            return file.faults.kept().front().text;
        if (file.tables.empty() || !file.tables.front().faults.isEmpty())
            return "its table of patches is damaged";
        readEnvelope();
        readCells();
        if (!fault.empty())
            return fault;
        return std::move(chart);
    }

private:
    void fail(std::string text)
    {
        if (fault.empty())
            fault = std::move(text);
    }

    // The text of an element on a line of its own. The name is not escaped: it ends at the line's last end tag.
    std::optional<std::string_view> textOf(std::string_view element) const
    {
        std::string const start = "<" + std::string(element) + ">";
        std::string const end = "</" + std::string(element) + ">";
        std::string_view const text = std::string_view(file.text).substr(0, file.text.find("<targetdefinition>"));
        std::size_t const first = text.find("\t" + start);
        if (first == std::string_view::npos)
            return std::nullopt;
        std::size_t const lineEnd = text.find('\n', first);
        std::string_view const line = text.substr(first, lineEnd == std::string_view::npos ? lineEnd : lineEnd - first);
        std::size_t const last = line.rfind(end);
        if (last == std::string_view::npos)
            return std::nullopt;
        return line.substr(1 + start.size(), last - 1 - start.size());
    }

    int countOf(std::string_view element)
    {
        std::string_view const text = textOf(element).value_or("");
        int count = 0;
        auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
        if (error != std::errc() || end != text.data() + text.size() || count < 1 || count > mostCellsAcross)
            fail("its <" + std::string(element) + "> is no count");
        return count;
    }

    double lengthOf(std::string_view element)
    {
        std::string_view const text = textOf(element).value_or("");
        double length = 0;
        auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), length);
        bool const isLength = error == std::errc() && std::string_view(end, text.data() + text.size()) == "mm" &&
                              std::isfinite(length) && length >= 0 && length <= longest;
        if (!isLength)
            fail("its <" + std::string(element) + "> is no length in mm");
        return isLength ? length : 0;
    }

    void readEnvelope()
    {
        chart.name = textOf("name").value_or("");
        chart.pages = countOf("pages");
        chart.grid = {countOf("columns"), countOf("rows")};
        chart.patch = {lengthOf("patchWidth"), lengthOf("patchHeight")};
        chart.gap = {lengthOf("horizontalGap"), lengthOf("verticalGap")};
        if (chart.patch.width <= 0 || chart.patch.height <= 0)
            fail("its patches have no size");
        std::string_view const space = textOf("colorSpace").value_or("");
        for (ColorSpace const known : {CMYK, RGB})
            if (space == colorspace_names[known])
                chart.colorSpace = known;
        if (chart.colorSpace == undefined)
            fail("its <colorSpace> is neither CMYK nor RGB");
    }

    void readCells()
    {
        constexpr std::size_t labels = 3; // SAMPLE_ID, SAMPLE_LOC, CONTROL
        DataTable const& table = file.tables.front();
        auto const channels = static_cast<std::size_t>(colorspace_nof_channels[chart.colorSpace]);
        bool const hasColumns = table.fields.size() == labels + channels && table.fields[1].name == "SAMPLE_LOC" &&
                                table.fields[2].name == "CONTROL";
        if (!hasColumns)
            return fail("its table has other columns than a chart's");
        auto const cells = std::int64_t{chart.grid.width} * chart.grid.height;
        if (cells > mostCellsAcross || cells * chart.pages != static_cast<std::int64_t>(table.rows.size()))
            return fail("its table has another number of rows than the chart has cells");
        std::vector<Cell> row;
        for (TextLine const& line : table.rows) {
            file.split(table, line, row);
            DescribedCell cell{std::string(row[1].text), row[2].text == "N", {}};
            for (std::size_t i = 0; i < channels; ++i)
                cell.values.emplace_back(row[labels + i].text);
            chart.cells.push_back(std::move(cell));
        }
    }

    TableFile const& file;
    ChartDescription chart;
    std::string fault;
};

} // namespace

std::variant<ChartDescription, std::string> readChartDescription(std::string bytes)
{
    TableFile const file = readTables(std::move(bytes));
    return DescriptionReader(file).read();
}
