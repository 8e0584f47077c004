// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "MeasuredColumns.h"

#include "input/ColumnNames.h"
#include "input/DecimalText.h"

#include <algorithm>
#include <string_view>

namespace
{

constexpr std::string_view bandStarts[] = {"SPECTRALNM", "SPECTRAL", "SPEC", "NM", "R"};

// From 300 to 1100 nm; 0 for what is no wavelength.
double wavelengthOf(std::string_view digits)
{
    if (digits.empty() || digits.find_first_not_of("0123456789.") != std::string_view::npos)
        return 0;
    ParsedNumber const number = parseNumber(digits);
    bool const isWavelength = number.form == NumberForm::point && number.value >= 300 && number.value <= 1100;
    return isWavelength ? number.value : 0;
}

double bandOf(std::string_view name)
{
    for (std::string_view const start : bandStarts)
        if (name.starts_with(start))
            if (double const wavelength = wavelengthOf(name.substr(start.size())); wavelength > 0)
                return wavelength;
    return name.ends_with("NM") ? wavelengthOf(name.substr(0, name.size() - 2)) : 0;
}

bool findThree(std::vector<std::string> const& names, std::array<std::string_view, 3> const& wanted,
               std::array<std::size_t, 3>& columns)
{
    for (std::size_t k = 0; k < 3; ++k) {
        auto const found = std::find(names.begin(), names.end(), wanted[k]);
        if (found == names.end())
            return false;
        columns[k] = static_cast<std::size_t>(found - names.begin());
    }
    return true;
}

} // namespace

MeasuredColumns::MeasuredColumns(DataTable const& table)
{
    std::vector<std::string> names;
    names.reserve(table.fields.size());
    for (Field const& field : table.fields)
        names.push_back(comparableName(field.name));
    if (findThree(names, {"LABL", "LABA", "LABB"}, columns)) {
        kind = MeasuredKind::lab;
        return;
    }
    if (findThree(names, {"XYZX", "XYZY", "XYZZ"}, columns)) {
        kind = MeasuredKind::xyz;
        return;
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (double const wavelength = bandOf(names[i]); wavelength > 0)
            bands.push_back({i, wavelength, 0});
        bool const isPair = i > 0 && names[i - 1] == "SPECTRALNM";
        if (isPair && (names[i] == "SPECTRALDEC" || names[i] == "SPECTRALPCT")) {
            bands.push_back({i, 0, i - 1});
            statedScale = names[i] == "SPECTRALDEC" ? 1 : 100;
        }
    }
    std::stable_sort(bands.begin(), bands.end(),
                     [](SpectralColumn const& a, SpectralColumn const& b) { return a.wavelength < b.wavelength; });
    constexpr std::size_t fewestBands = 5;
    if (bands.size() >= fewestBands)
        kind = MeasuredKind::spectrum;
    if (Keyword const* const norm = table.findKeyword("SPECTRAL_NORM")) {
        double const value = parseNumber(norm->value).value;
        if (value == 1 || value == 100)
            statedScale = value;
    }
}
