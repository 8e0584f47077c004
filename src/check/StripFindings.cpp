// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "StripFindings.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace
{

// "C, F and M"
std::string listOf(std::vector<std::string> const& names)
{
    constexpr std::size_t shownNames = 12;
    std::string list;
    std::size_t const shown = names.size() > shownNames ? shownNames : names.size();
    for (std::size_t i = 0; i < shown; ++i)
        list += (i == 0 ? "" : i + 1 == names.size() ? " and " : ", ") + names[i];
    if (names.size() > shown)
        list += " and " + std::to_string(names.size() - shown) + " more";
    return list;
}

class StripNaming
{
public:
    StripNaming(ChartReference const& theChart, StripExplanation const& theExplanation)
        : chart(theChart), explanation(theExplanation), isNamed(theChart.strips.size()),
          home(theChart.strips.size(), theChart.strips.size())
    {
        for (std::size_t strip = 0; strip < chart.strips.size(); ++strip)
            home[explanation.base[strip].source] = strip;
    }

    std::vector<Finding> name()
    {
        if (!explanation.isExplained) {
            Finding finding;
            finding.kind = FindingKind::order;
            finding.certainty = certaintyOf(7);
            finding.text = "the readings fit the chart in no order that is known: they may be of another chart, or "
                           "their rows may be mixed up";
            return {finding};
        }
        if (!explanation.order.text.empty())
            nameOrder();
        nameSheets();
        nameTurnedSheets();
        for (std::size_t strip = 0; strip < chart.strips.size(); ++strip)
            if (!isNamed[strip])
                nameStrip(strip);
        return std::move(findings);
    }

private:
    StripMatch const& matchOf(std::size_t strip) const { return explanation.matches[strip]; }
    std::size_t baseOf(std::size_t strip) const { return explanation.base[strip].source; }

    bool isElsewhere(std::size_t strip) const
    {
        return matchOf(strip).isClear && matchOf(strip).source != baseOf(strip);
    }

    Finding start(FindingKind kind, std::size_t strip) const
    {
        Finding finding;
        finding.kind = kind;
        finding.columns = {chart.strips[strip].label};
        finding.sheet = chart.strips[strip].sheet + 1;
        finding.certainty = certaintyOf(matchOf(strip).logOdds);
        return finding;
    }

    void nameOrder()
    {
        Finding finding;
        finding.kind = FindingKind::order;
        finding.certainty = certaintyOf(explanation.orderLogOdds);
        finding.text = "the table is in another order: " + explanation.order.text;
        findings.push_back(std::move(finding));
    }

    // Sheets in a circle hold each other's readings. Others hold a second reading.
    void nameSheets()
    {
        std::vector<std::size_t> sources;
        for (std::size_t sheet = 0; sheet < chart.sheetCount; ++sheet)
            sources.push_back(chart.strips[baseOf(chart.stripsOf(sheet)[0])].sheet);
        std::vector<bool> isSheetNamed(chart.sheetCount);
        for (std::size_t sheet = 0; sheet < chart.sheetCount; ++sheet) {
            if (isSheetNamed[sheet] || sources[sheet] == sheet)
                continue;
            std::vector<std::size_t> circle{sheet};
            std::size_t next = sources[sheet];
            for (; next != sheet && sources[next] != next && circle.size() < chart.sheetCount; next = sources[next])
                circle.push_back(next);
            if (next == sheet)
                nameExchangedSheets(std::move(circle), isSheetNamed);
            else
                nameRepeatedSheet(sheet, sources[sheet]);
        }
    }

    Finding startSheets(std::vector<std::size_t> const& sheets) const
    {
        Finding finding;
        finding.kind = FindingKind::sheets;
        finding.certainty = certaintyOf(explanation.sheetLogOdds);
        for (std::size_t const sheet : sheets) {
            auto const [first, last] = chart.stripsOf(sheet);
            for (std::size_t strip = first; strip < last; ++strip)
                finding.columns.push_back(chart.strips[strip].label);
        }
        return finding;
    }

    void nameExchangedSheets(std::vector<std::size_t> circle, std::vector<bool>& isSheetNamed)
    {
        std::sort(circle.begin(), circle.end());
        Finding finding = startSheets(circle);
        std::vector<std::string> numbers;
        for (std::size_t const sheet : circle) {
            isSheetNamed[sheet] = true;
            numbers.push_back(std::to_string(sheet + 1));
        }
        finding.text = "the readings of sheets " + listOf(numbers) + " are exchanged";
        findings.push_back(std::move(finding));
    }

    void nameRepeatedSheet(std::size_t sheet, std::size_t source)
    {
        Finding finding = startSheets({sheet});
        finding.sheet = sheet + 1;
        finding.text =
            "the readings of sheet " + std::to_string(sheet + 1) + " are of sheet " + std::to_string(source + 1);
        findings.push_back(std::move(finding));
    }

    // A sheet that lay upside down: its last column stands in place of the first, and backwards.
    void nameTurnedSheets()
    {
        for (std::size_t sheet = 0; sheet < chart.sheetCount; ++sheet) {
            auto const [first, last] = chart.stripsOf(sheet);
            std::size_t turned = 0;
            double logOdds = 0;
            for (std::size_t strip = first; strip < last; ++strip)
                if (isTurned(strip, first, last)) {
                    ++turned;
                    logOdds += matchOf(strip).logOdds;
                }
            if (last - first < 2 || 10 * turned < 7 * (last - first))
                continue;
            Finding finding;
            finding.kind = FindingKind::order;
            finding.sheet = sheet + 1;
            finding.certainty = certaintyOf(logOdds);
            finding.text = "sheet " + std::to_string(sheet + 1) + " was read upside down";
            for (std::size_t strip = first; strip < last; ++strip)
                if (isTurned(strip, first, last)) {
                    isNamed[strip] = true;
                    finding.columns.push_back(chart.strips[strip].label);
                }
            findings.push_back(std::move(finding));
        }
    }

    bool isTurned(std::size_t strip, std::size_t first, std::size_t last) const
    {
        StripMatch const& match = matchOf(strip);
        return match.isClear && match.isReversed && match.source == baseOf(first + last - 1 - strip);
    }

    void nameStrip(std::size_t strip)
    {
        StripMatch const& match = matchOf(strip);
        if (!match.isClear)
            return;
        if (isElsewhere(strip))
            nameElsewhere(strip);
        else if (match.isReversed)
            nameReversed(strip);
        else if (match.isShifted())
            nameShifted(strip);
    }

    void nameReversed(std::size_t strip)
    {
        Finding finding = start(FindingKind::reversed, strip);
        finding.text = "column " + chart.strips[strip].label + " was read backwards";
        findings.push_back(std::move(finding));
    }

    // The last shift that is not 0 names the finding.
    void nameShifted(std::size_t strip)
    {
        Finding finding = start(FindingKind::shifted, strip);
        auto const& shifts = matchOf(strip).shifts;
        for (std::size_t row = 0; row < shifts.size(); ++row) {
            if (shifts[row] == 0)
                continue;
            finding.by = shifts[row];
            finding.patches.push_back(chart.patches[chart.strips[strip].first + row].label);
        }
        std::string const patches =
            std::abs(finding.by) == 1 ? "a patch" : std::to_string(std::abs(finding.by)) + " patches";
        finding.text = "column " + chart.strips[strip].label + ": the readings from " + finding.patches.front() +
                       " to " + finding.patches.back() + " belong " + patches +
                       (finding.by > 0 ? " before their places; a patch was counted twice"
                                       : " behind their places; a patch was lost");
        findings.push_back(std::move(finding));
    }

    // Columns in a circle hold each other's readings. Others hold a second reading.
    void nameElsewhere(std::size_t strip)
    {
        std::vector<std::size_t> circle{strip};
        for (std::size_t next = home[matchOf(strip).source];
             next < chart.strips.size() && next != strip && isElsewhere(next) && circle.size() <= chart.strips.size();
             next = home[matchOf(next).source])
            circle.push_back(next);
        bool const isClosed = circle.size() > 1 && home[matchOf(circle.back()).source] == strip;
        if (!isClosed) {
            nameRepeated(strip);
            return;
        }
        std::sort(circle.begin(), circle.end());
        Finding finding = start(FindingKind::exchanged, strip);
        finding.columns.clear();
        for (std::size_t const member : circle) {
            isNamed[member] = true;
            finding.columns.push_back(chart.strips[member].label);
            finding.certainty = std::min(finding.certainty, certaintyOf(matchOf(member).logOdds));
            if (chart.strips[member].sheet + 1 != finding.sheet)
                finding.sheet = 0;
        }
        finding.text = "the readings of columns " + listOf(finding.columns) + " are exchanged";
        std::vector<std::string> backwards;
        for (std::size_t const member : circle)
            if (matchOf(member).isReversed)
                backwards.push_back(chart.strips[member].label);
        if (!backwards.empty())
            finding.text += ", those in place of " + listOf(backwards) + " also backwards";
        findings.push_back(std::move(finding));
    }

    void nameRepeated(std::size_t strip)
    {
        Finding finding = start(FindingKind::repeated, strip);
        finding.of = chart.strips[matchOf(strip).source].label;
        finding.text = "column " + finding.columns.front() + " holds a reading of column " + finding.of +
                       (matchOf(strip).isReversed ? ", backwards" : "") + "; its own is not there";
        findings.push_back(std::move(finding));
    }

    ChartReference const& chart;
    StripExplanation const& explanation;
    std::vector<bool> isNamed;
    std::vector<std::size_t> home; // the strip whose place holds a strip's readings if nothing is wrong with the column
    std::vector<Finding> findings;
};

} // namespace

std::vector<Finding> stripFindings(ChartReference const& chart, StripExplanation const& explanation)
{
    return StripNaming(chart, explanation).name();
}

double certaintyOf(double logOdds)
{
    double const certainty = 1 / (1 + std::exp(-std::clamp(logOdds, -30.0, 30.0)));
    return std::min(0.999999, std::floor(certainty * 1e6) / 1e6);
}
