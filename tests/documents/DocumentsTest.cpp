// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "MeasurementLayout.h"
#include "PageLayout.h"
#include "support/ChartCase.h"
#include "support/TestChart.h"

#include <gmock/gmock.h>

#include <cctype>
#include <filesystem>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace
{

namespace fs = std::filesystem;

using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Not;

using Row = std::vector<std::string>;

fs::path const source = PATCHLOOM_SOURCE;
std::string const reference = bytesOf(source / "docs/reference.md");

std::vector<std::string> linesOf(std::string const& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

/// All that the expression's group matches.
std::vector<std::string> matches(std::string const& text, std::regex const& expression)
{
    std::vector<std::string> found;
    for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end; ++match)
        found.push_back((*match)[1]);
    return found;
}

/// What stands between a heading of the second level and the next.
std::string section(std::string const& text, std::string const& heading)
{
    std::size_t const begin = text.find("\n## " + heading + "\n");
    return begin == std::string::npos ? "" : text.substr(begin, text.find("\n## ", begin + 1) - begin);
}

/// The rows of all tables in a text, without their heads.
std::vector<Row> tableRows(std::string const& text)
{
    std::vector<Row> rows;
    bool isBody = false;
    for (std::string const& line : linesOf(text)) {
        if (!line.starts_with("|")) {
            isBody = false;
        } else if (line.starts_with("|---")) {
            isBody = true;
        } else if (isBody) {
            rows.push_back(matches(line, std::regex(R"( (.*?) (?=\|))")));
        }
    }
    return rows;
}

std::string number(double value)
{
    std::ostringstream text;
    text << value;
    return text.str();
}

std::string sides(RealSize size)
{
    return number(size.width) + " x " + number(size.height);
}

/// The documents for people, wherever they lie.
std::vector<fs::path> documents()
{
    std::vector<fs::path> found;
    for (char const* folder : {"", "docs", "examples", "fuzz", "packaging"}) {
        for (fs::directory_entry const& file : fs::directory_iterator(source / folder)) {
            if (file.path().extension() == ".md")
                found.push_back(file.path());
        }
    }
    return found;
}

/// What a heading is linked by.
std::string anchorOf(std::string const& heading)
{
    std::string anchor;
    for (char const c : heading) {
        if (std::isalnum(static_cast<unsigned char>(c)))
            anchor += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        else if (c == ' ' || c == '-')
            anchor += '-';
    }
    return anchor;
}

std::set<std::string> anchorsOf(fs::path const& document)
{
    std::set<std::string> anchors;
    for (std::string const& heading : matches(bytesOf(document), std::regex("(?:^|\n)#+ (.*)")))
        anchors.insert(anchorOf(heading));
    return anchors;
}

} // namespace

TEST(Reference, HasARowForEveryDevice)
{
    std::vector<Row> expected;
    for (int preset = 0; preset < std::ssize(measurementlayout_strings); ++preset) {
        MeasurementLayout const device = instrument(static_cast<MeasurementLayoutPreset>(preset));
        RealRect const reach = device.getContent();
        expected.push_back(
            {measurementlayout_strings[preset], device.getScanDirection() == none ? "patch by patch" : "along columns",
             (reach.width > 0 ? number(reach.width) : "any width") + " x " + number(reach.height),
             sides(device.getMinPatchSize()), number(device.getMinMargin().top), number(device.getMinMargin().bottom)});
    }
    EXPECT_THAT(tableRows(section(reference, "Devices")), ElementsAreArray(expected));
}

TEST(Reference, HasARowForEveryPaper)
{
    std::vector<Row> expected;
    for (int preset = 0; preset < custom; ++preset) {
        PageLayout const sheet = paper(static_cast<PageLayoutPreset>(preset));
        RealSize const size = sheet.getSize();
        RealRect const content = sheet.getContent();
        expected.push_back({pagelayoutpreset_strings[preset], sides(size),
                            number(size.height - content.y - content.height),
                            number(size.width - content.x - content.width), number(content.y), number(content.x)});
    }
    EXPECT_THAT(tableRows(section(reference, "Papers")), ElementsAreArray(expected));
}

TEST(Reference, ShowsATargetDescriptionAsItIsWritten)
{
    std::string expected = bytesOf(source / "tests/data/charts/scan-cmyk-gaps/expected.xml");
    std::string const now = "{now}";
    ASSERT_NE(expected.find(now), std::string::npos);
    expected.replace(expected.find(now), now.size(), "2026-11-15T12:49:45+01:00");
    EXPECT_THAT(section(reference, "The target description"), testing::HasSubstr("\n```\n" + expected + "```\n"));
}

TEST(Reference, ExplainsEveryMessageOfTheProgram)
{
    std::set<std::string> reported;
    for (fs::directory_entry const& file : fs::recursive_directory_iterator(source / "src")) {
        if (!file.is_regular_file())
            continue;
        for (std::string const& message : matches(bytesOf(file.path()), std::regex(R"re(OvError\(\s*"([^"\\]*))re")))
            reported.insert(message);
    }
    std::set<std::string> explained;
    for (Row const& row : tableRows(section(reference, "Messages"))) {
        ASSERT_THAT(row, Not(IsEmpty()));
        for (std::string const& message : matches(row[0], std::regex("`([^`]*)`")))
            explained.insert(message);
    }
    EXPECT_THAT(reported, Not(IsEmpty()));
    EXPECT_EQ(explained, reported);
}

TEST(Documents, LinkToWhatIsThere)
{
    std::regex const link(R"(\]\(([^)\s]*)\))");
    int followed = 0;
    for (fs::path const& document : documents()) {
        for (std::string const& target : matches(bytesOf(document), link)) {
            if (target.starts_with("http"))
                continue;
            ++followed;
            std::size_t const hash = target.find('#');
            fs::path const file = hash == 0 ? document : document.parent_path() / target.substr(0, hash);
            EXPECT_TRUE(fs::exists(file)) << document << " links to " << target;
            if (hash != std::string::npos) {
                EXPECT_THAT(anchorsOf(file), testing::Contains(target.substr(hash + 1))) << "in " << document;
            }
        }
    }
    EXPECT_GT(followed, 20);
}

TEST(Documents, NameFilesThatAreThere)
{
    std::regex const name(R"(`((?:bench|cmake|docs|examples|fuzz|packaging|res|src|tests|tools)/[^`*<>\s]*)`)");
    int named = 0;
    for (fs::path const& document : documents()) {
        for (std::string const& file : matches(bytesOf(document), name)) {
            ++named;
            EXPECT_TRUE(fs::exists(source / file)) << document << " names " << file;
        }
    }
    EXPECT_GT(named, 10);
}

TEST(Documents, TellOfTheSameRelease)
{
    auto const newest = [](char const* file, char const* expression) {
        std::vector<std::string> const all = matches(bytesOf(source / file), std::regex(expression));
        return all.empty() ? "none" : all.front();
    };
    EXPECT_EQ(newest("CHANGELOG.md", R"(\n## ([0-9.]+))"), PATCHLOOM_VERSION);
    EXPECT_EQ(newest("res/org.patchloom.Patchloom.metainfo.xml.in", R"(<release version="([0-9.]+)\")"),
              PATCHLOOM_VERSION);
    EXPECT_EQ(newest("packaging/debian/changelog", R"(\(([0-9.]+)-[0-9]+\))"), PATCHLOOM_VERSION);
}
