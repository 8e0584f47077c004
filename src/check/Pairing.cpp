// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Pairing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

namespace
{

// Noise can take the reading of a dark patch a little below 0. Whether the patch is dark is judged later.
constexpr double lowestLightness = -5;
constexpr double highestLightness = 110;

// Device values agree within half a code of 8 bits, a bit more than half a percent of rounding.
constexpr double deviceTolerance = 0.006;

bool isLetter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

std::string_view withoutZeros(std::string_view digits)
{
    std::size_t const start = digits.find_first_not_of('0');
    return start == std::string_view::npos ? digits.substr(digits.size() - std::min<std::size_t>(1, digits.size()))
                                           : digits.substr(start);
}

// "A1" of "A01" and of "1A"; other texts stay.
std::string placeOf(std::string_view text)
{
    auto const part = [&](bool (*isPart)(char), std::size_t from) {
        std::size_t end = from;
        while (end < text.size() && isPart(text[end]))
            ++end;
        return text.substr(from, end - from);
    };
    bool const isLetterFirst = !text.empty() && isLetter(text[0]);
    std::string_view const first = part(isLetterFirst ? isLetter : isDigit, 0);
    std::string_view const second = part(isLetterFirst ? isDigit : isLetter, first.size());
    if (first.empty() || second.empty() || first.size() + second.size() != text.size())
        return std::string(text);
    std::string_view const letters = isLetterFirst ? first : second;
    return std::string(letters) + std::string(withoutZeros(isLetterFirst ? second : first));
}

bool isPossible(LabColor const& lab)
{
    return lab[0] >= lowestLightness && lab[0] <= highestLightness && std::isfinite(lab[1]) && std::isfinite(lab[2]);
}

// The patches of the rows of a file; Assignment::nothing for none.
using RowPatches = std::vector<std::size_t>;

std::size_t countFound(RowPatches const& patches)
{
    return patches.size() - static_cast<std::size_t>(std::count(patches.begin(), patches.end(), Assignment::nothing));
}

class FilePairing
{
public:
    FilePairing(ChartReference const& theChart, Measurement const& theFile) : chart(theChart), file(theFile)
    {
        for (std::size_t i = 0; i < chart.patches.size(); ++i)
            byId.emplace(std::string(withoutZeros(chart.patches[i].id)), i);
    }

    // Returns the fault.
    std::string pair()
    {
        std::string const byKey = pairByKey();
        bool const hasDevice = file.deviceSpace == chart.colorSpace;
        if (!hasDevice)
            return byKey.empty() ? "the rows have neither places such as C12 nor ids nor device values of this chart"
                                 : "";
        if (!byKey.empty()) {
            std::vector<std::size_t> const wrong = contradictions();
            if (wrong.empty())
                return "";
            if (RowPatches const byDevice = pairByDevice(); isComplete(byDevice)) {
                patches = byDevice;
                orderText = "the " + byKey + " contradict the device values in " + std::to_string(wrong.size()) +
                            " rows: the rows are taken by their device values";
                return "";
            }
            return contradictionText(wrong);
        }
        patches = pairByDevice();
        return isComplete(patches) ? ""
                                   : "the rows have no places or ids of this chart, and their device values are not "
                                     "its either: take the measurement of this chart";
    }

    RowPatches patches;
    std::string orderText; // why the places of the rows do not count

private:
    // Most of the rows have a patch.
    bool isComplete(RowPatches const& rows) const { return 10 * countFound(rows) >= 9 * rows.size(); }

    template <typename Find>
    RowPatches rowsBy(Find find) const
    {
        RowPatches rows;
        rows.reserve(file.rows.size());
        for (MeasuredRow const& row : file.rows)
            rows.push_back(find(row).value_or(Assignment::nothing));
        return rows;
    }

    // Returns what the patches were found by.
    std::string pairByKey()
    {
        auto const isUsable = [](RowPatches const& rows) { return 2 * countFound(rows) >= rows.size(); };
        patches = rowsBy([&](MeasuredRow const& row) { return chart.findLabel(placeOf(row.place)); });
        if (isUsable(patches))
            return "places";
        patches = rowsBy([&](MeasuredRow const& row) { return chart.findLabel(placeOf(row.name)); });
        if (isUsable(patches))
            return "names";
        patches = rowsBy([&](MeasuredRow const& row) { return chart.findLabel(placeOf(row.id)); });
        if (isUsable(patches))
            return "ids";
        patches = rowsBy([&](MeasuredRow const& row) -> std::optional<std::size_t> {
            auto const found = byId.find(std::string(withoutZeros(row.id)));
            return found == byId.end() ? std::nullopt : std::optional(found->second);
        });
        return isUsable(patches) ? "ids" : "";
    }

    double fullStrength() const
    {
        double highest = 0;
        for (MeasuredRow const& row : file.rows)
            for (std::size_t channel = 0; channel < chart.channels(); ++channel)
                highest = std::max(highest, row.device[channel]);
        for (double const full : {1.0, 100.0, 255.0, 65535.0})
            if (highest <= full * 1.01)
                return full;
        return highest;
    }

    bool agrees(MeasuredRow const& row, std::size_t patch, double full) const
    {
        for (std::size_t channel = 0; channel < chart.channels(); ++channel)
            if (std::fabs(row.device[channel] / full - chart.patches[patch].device[channel]) > deviceTolerance)
                return false;
        return true;
    }

    // A dark chart may use only a part of its scale.
    double bestScale() const
    {
        double const least = fullStrength();
        double best = least;
        std::size_t most = 0;
        for (double const full : {1.0, 100.0, 255.0, 65535.0}) {
            if (full < least)
                continue;
            std::size_t agreeing = 0;
            for (std::size_t i = 0; i < file.rows.size(); ++i)
                if (patches[i] != Assignment::nothing && agrees(file.rows[i], patches[i], full))
                    ++agreeing;
            if (agreeing > most) {
                most = agreeing;
                best = full;
            }
        }
        return best;
    }

    std::vector<std::size_t> contradictions() const
    {
        double const full = bestScale();
        std::vector<std::size_t> wrong;
        for (std::size_t i = 0; i < file.rows.size(); ++i)
            if (patches[i] != Assignment::nothing && !agrees(file.rows[i], patches[i], full))
                wrong.push_back(i);
        return wrong;
    }

    std::string contradictionText(std::vector<std::size_t> const& wrong) const
    {
        constexpr std::size_t named = 3;
        std::string places;
        for (std::size_t i = 0; i < std::min(named, wrong.size()); ++i)
            places += (i > 0 ? ", " : "") + chart.patches[patches[wrong[i]]].label + " (line " +
                      std::to_string(file.rows[wrong[i]].line) + ")";
        return "the device values of " + std::to_string(wrong.size()) +
               " rows are not those of the chart's patches: " + places + (wrong.size() > named ? " and more" : "") +
               "; take the chart that this is a measurement of";
    }

    // Patches of equal device values get their rows in order.
    RowPatches pairByDevice() const
    {
        std::map<std::array<long, 4>, std::vector<std::size_t>> waiting;
        auto const keyOf = [&](std::array<double, 4> const& device, double full) {
            std::array<long, 4> key{};
            for (std::size_t channel = 0; channel < chart.channels(); ++channel)
                key[channel] = std::lround(device[channel] / full * 255);
            return key;
        };
        for (std::size_t i = chart.patches.size(); i-- > 0;)
            waiting[keyOf(chart.patches[i].device, 1)].push_back(i);
        RowPatches best(file.rows.size(), Assignment::nothing);
        for (double const full : {1.0, 100.0, 255.0, 65535.0}) {
            if (full < fullStrength())
                continue;
            auto left = waiting;
            RowPatches rows = rowsBy([&](MeasuredRow const& row) -> std::optional<std::size_t> {
                auto const found = left.find(keyOf(row.device, full));
                if (found == left.end() || found->second.empty())
                    return std::nullopt;
                std::size_t const patch = found->second.back();
                found->second.pop_back();
                return patch;
            });
            if (countFound(rows) > countFound(best))
                best = std::move(rows);
        }
        return best;
    }

    ChartReference const& chart;
    Measurement const& file;
    std::map<std::string, std::size_t> byId;
};

class MeasurementPairing
{
public:
    MeasurementPairing(ChartReference const& theChart, std::vector<Measurement> const& theFiles)
        : chart(theChart), files(theFiles)
    {
    }

    Pairing pair()
    {
        for (std::size_t i = 0; i < files.size(); ++i) {
            FilePairing filePairing(chart, files[i]);
            std::string const fault = filePairing.pair();
            if (!fault.empty()) {
                result.fault = files[i].path + ": " + fault;
                return std::move(result);
            }
            take(i, filePairing);
        }
        return std::move(result);
    }

private:
    void take(std::size_t file, FilePairing const& filePairing)
    {
        PairedMeasurement& target = measurementFor(filePairing.patches);
        auto const index = static_cast<std::size_t>(&target - result.measurements.data());
        target.files.push_back(file);
        if (!filePairing.orderText.empty()) {
            Finding finding;
            finding.kind = FindingKind::order;
            finding.measurement = index;
            finding.text = nameInText(file) + filePairing.orderText;
            target.findings.push_back(std::move(finding));
        }
        for (std::size_t i = 0; i < files[file].rows.size(); ++i)
            takeRow(file, i, filePairing.patches[i], target, index);
    }

    std::string nameInText(std::size_t file) const { return files.size() > 1 ? files[file].path + ": " : ""; }

    // The first measurement that has no readings of most of these patches.
    PairedMeasurement& measurementFor(RowPatches const& patches)
    {
        for (PairedMeasurement& measurement : result.measurements) {
            std::size_t taken = 0;
            for (std::size_t const patch : patches)
                taken += patch != Assignment::nothing && measurement.rows[patch].file != RowPlace::none ? 1U : 0U;
            if (10 * taken < countFound(patches))
                return measurement;
        }
        PairedMeasurement& measurement = result.measurements.emplace_back();
        measurement.readings.resize(chart.patches.size());
        measurement.rows.resize(chart.patches.size());
        measurement.isImpossible.resize(chart.patches.size());
        return measurement;
    }

    void takeRow(std::size_t file, std::size_t index, std::size_t patch, PairedMeasurement& target,
                 std::size_t measurement)
    {
        MeasuredRow const& row = files[file].rows[index];
        if (patch == Assignment::nothing) {
            bool const isHidden = chart.isHidden(placeOf(row.place)) || chart.isHidden(placeOf(row.name));
            if (!isHidden)
                addExtra(file, row, labelOf(row), "no patch of the chart", target, measurement);
            return;
        }
        if (target.rows[patch].file != RowPlace::none) {
            addExtra(file, row, chart.patches[patch].label, "a patch that has a reading already", target, measurement);
            return;
        }
        target.rows[patch] = {file, index};
        std::string fault = row.fault;
        if (row.lab && isPossible(*row.lab))
            target.readings[patch] = row.lab;
        else if (row.lab)
            fault = impossibleLightness((*row.lab)[0]);
        if (fault.empty())
            return;
        target.isImpossible[patch] = true;
        Finding finding;
        finding.kind = FindingKind::impossible;
        finding.patches = {chart.patches[patch].label};
        finding.sheet = chart.stripOf(patch).sheet + 1;
        finding.measurement = measurement;
        finding.text = nameInText(file) + "line " + std::to_string(row.line) + ", patch " + chart.patches[patch].label +
                       ": " + fault;
        target.findings.push_back(std::move(finding));
    }

    static std::string labelOf(MeasuredRow const& row)
    {
        return !row.place.empty() ? row.place : !row.name.empty() ? row.name : row.id;
    }

    void addExtra(std::size_t file, MeasuredRow const& row, std::string const& label, std::string const& what,
                  PairedMeasurement& target, std::size_t measurement) const
    {
        Finding finding;
        finding.kind = FindingKind::extra;
        finding.patches = {label};
        finding.measurement = measurement;
        finding.text = nameInText(file) + "line " + std::to_string(row.line) + ": " + excerpt(label) + " is " + what;
        target.findings.push_back(std::move(finding));
    }

    ChartReference const& chart;
    std::vector<Measurement> const& files;
    Pairing result;
};

} // namespace

Pairing pairMeasurements(ChartReference const& chart, std::vector<Measurement> const& files)
{
    return MeasurementPairing(chart, files).pair();
}
