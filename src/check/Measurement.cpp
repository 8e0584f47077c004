// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Measurement.h"

#include "MeasuredColumns.h"
#include "Spectrum.h"
#include "input/ColumnNames.h"
#include "input/DecimalText.h"
#include "input/TableReader.h"

#include <algorithm>
#include <utility>

// A measurement as instruments' software writes it:
//
//     CGATS.17
//     ORIGINATOR "Some software"
//     BEGIN_DATA_FORMAT
//     SAMPLE_ID SAMPLE_LOC CMYK_C CMYK_M CMYK_Y CMYK_K LAB_L LAB_A LAB_B
//     END_DATA_FORMAT
//     BEGIN_DATA
//     1 A1 100 0 0 0 55.1 -36.8 -49.9
//     END_DATA

namespace
{

// Tristimulus values and reflectances up to this are from 0 to 1, not percent: a bright paper exceeds 1 a bit.
constexpr double highestFraction = 2;

class MeasurementReader
{
public:
    MeasurementReader(std::string bytes, std::string path)
    {
        result.path = std::move(path);
        result.source = readTables(std::move(bytes));
    }

    Measurement read()
    {
        result.faults = result.source.faults;
        if (!result.faults.isEmpty() || !chooseTable())
            return std::move(result);
        result.faults.merge(table().faults);
        result.warnings.merge(table().warnings);
        if (!result.faults.isEmpty())
            return std::move(result);
        if (table().rows.empty()) {
            result.faults.add(table().place, "the table has no rows");
            return std::move(result);
        }
        readRows();
        return std::move(result);
    }

private:
    DataTable const& table() const { return result.source.tables[result.tableIndex]; }

    bool chooseTable()
    {
        for (std::size_t i = 0; i < result.source.tables.size(); ++i) {
            MeasuredColumns columns(result.source.tables[i]);
            if (columns.kind == MeasuredKind::none)
                continue;
            result.tableIndex = i;
            measured = std::move(columns);
            return true;
        }
        result.faults.add({}, "has no measured values: export the measurement as CGATS or CSV with the columns LAB_L, "
                              "LAB_A and LAB_B, or with XYZ or spectra");
        return false;
    }

    void readRows()
    {
        ColumnNames const names(table().fields);
        auto const& device = names.cmyk ? names.cmyk : names.rgb;
        result.deviceSpace = names.cmyk ? CMYK : names.rgb ? RGB : undefined;
        readNumbers();
        std::vector<Cell> cells;
        std::size_t const width = measured.kind == MeasuredKind::spectrum ? measured.bands.size() : 3;
        for (std::size_t i = 0; i < table().rows.size(); ++i) {
            result.source.split(table(), table().rows[i], cells);
            MeasuredRow row;
            row.line = table().rows[i].number;
            if (names.location)
                row.place = cells[*names.location].content();
            if (names.name)
                row.name = cells[*names.name].content();
            if (names.id)
                row.id = cells[*names.id].content();
            for (std::size_t channel = 0; device && channel < (names.cmyk ? 4U : 3U); ++channel)
                readDevice(cells[device->columns[channel]].text, row.device[channel]);
            if (faults[i].empty() && !isEmpty[i])
                row.lab = labOf(&numbers[i * width], cells);
            row.fault = faults[i];
            result.rows.push_back(std::move(row));
        }
        tellKind();
    }

    // A device value that is no number agrees with nothing.
    static void readDevice(std::string_view text, double& value)
    {
        ParsedNumber const number = parseNumber(text);
        value = number.form == NumberForm::none ? -1 : number.value;
    }

    void readNumbers()
    {
        std::vector<std::size_t> columns(measured.columns.begin(), measured.columns.end());
        if (measured.kind == MeasuredKind::spectrum) {
            columns.clear();
            for (SpectralColumn const& band : measured.bands)
                columns.push_back(band.column);
        }
        std::vector<Cell> cells;
        double highest = 0;
        for (TextLine const& line : table().rows) {
            result.source.split(table(), line, cells);
            faults.emplace_back();
            bool hasText = false;
            for (std::size_t const column : columns) {
                std::string_view const text = cells[column].text;
                ParsedNumber const number = parseNumber(text);
                bool const isComma = number.form == NumberForm::comma && table().separation != Separation::comma;
                hasText = hasText || !text.empty();
                if (number.form != NumberForm::point && !isComma && faults.back().empty())
                    faults.back() =
                        shown(table().fields[column].name) + " is " + excerpt(text) + ", which is no number";
                numbers.push_back(number.value);
                if (measured.kind != MeasuredKind::xyz || column == measured.columns[1])
                    highest = std::max(highest, number.value);
            }
            isEmpty.push_back(!hasText);
            if (!hasText)
                faults.back().clear();
        }
        scale = measured.statedScale > 0 ? measured.statedScale : highest <= highestFraction ? 1 : 100;
    }

    LabColor labOf(double const* values, std::vector<Cell> const& cells)
    {
        if (measured.kind == MeasuredKind::lab)
            return {values[0], values[1], values[2]};
        if (measured.kind == MeasuredKind::xyz)
            return labOfXyz({values[0] / scale, values[1] / scale, values[2] / scale});
        bands.clear();
        for (std::size_t i = 0; i < measured.bands.size(); ++i) {
            SpectralColumn const& band = measured.bands[i];
            double const wavelength =
                band.wavelength > 0 ? band.wavelength : parseNumber(cells[band.wavelengthColumn].text).value;
            bands.push_back({wavelength, values[i] / scale});
        }
        auto const isBefore = [](SpectralBand const& a, SpectralBand const& b) { return a.wavelength < b.wavelength; };
        if (!std::is_sorted(bands.begin(), bands.end(), isBefore))
            std::stable_sort(bands.begin(), bands.end(), isBefore);
        return labOfXyz(xyzOfSpectrum(bands));
    }

    void tellKind()
    {
        std::string const scaleText = scale == 1 ? " from 0 to 1" : " from 0 to 100";
        if (measured.kind == MeasuredKind::lab)
            result.kind = "CIELAB";
        else if (measured.kind == MeasuredKind::xyz)
            result.kind = "XYZ" + scaleText;
        else
            result.kind = "spectra of " + std::to_string(measured.bands.size()) + " bands" + scaleText;
    }

    Measurement result;
    MeasuredColumns measured{DataTable()};
    std::vector<double> numbers; // row after row
    std::vector<std::string> faults;
    std::vector<bool> isEmpty;
    double scale = 1;
    std::vector<SpectralBand> bands;
};

} // namespace

Measurement readMeasurement(std::string bytes, std::string path)
{
    return MeasurementReader(std::move(bytes), std::move(path)).read();
}
