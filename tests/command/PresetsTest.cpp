// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "command/Presets.h"

#include "command/ListCommand.h"
#include "support/DecimalCommaLocale.h"
#include "support/GeometryValues.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace
{

using testing::HasSubstr;
using testing::StartsWith;

char const* const device = R"([[device]]
name = "Lab Table"
scan = "columns"
reach = [460.5, 320]
corner = [2, 83]
smallest-patch = [6, 8]
space-above = 12.5
space-below = 6.5
gap = 1.5
within-reach = true
)";

char const* const paper = R"([[paper]]
name = "SRA3 Portrait"
size = [320, 450.5]
margins = [5, 6, 15, 7]
)";

Choices choicesWith(std::string const& text)
{
    Choices choices = builtInChoices();
    auto const fault = addPresets(choices, text, "my.toml");
    EXPECT_FALSE(fault) << fault.value_or(PresetsFault{}).text;
    return choices;
}

void expectBoth()
{
    Choices const choices = choicesWith(std::string(paper) + device);
    ASSERT_EQ(choices.devices.size(), 5u);
    DeviceChoice const& own = *choices.device("lab-table");
    EXPECT_EQ(own.name, "Lab Table");
    EXPECT_EQ(own.origin, "my.toml");
    EXPECT_EQ(own.values.scanDirection, alongY);
    EXPECT_EQ(own.values.content, (RealRect{2, 83, 460.5, 320}));
    EXPECT_EQ(own.values.minPatchSize, (RealSize{6, 8}));
    EXPECT_EQ(own.values.minMargin.top, 12.5);
    EXPECT_EQ(own.values.minMargin.bottom, 6.5);
    EXPECT_EQ(own.values.gap, (RealSize{0, 1.5}));
    EXPECT_TRUE(own.values.mustFit);
    PaperChoice const& sheet = *choices.paper("sra3 PORTRAIT");
    EXPECT_EQ(sheet.sheet.getSize(), (RealSize{320, 450.5}));
    EXPECT_EQ(sheet.sheet.getContent(), (RealRect{7, 15, 307, 430.5}));
    EXPECT_EQ(choices.papers.size(), 9u);
}

} // namespace

TEST(Presets, AddDevicesAndPapers)
{
    expectBoth();
}

TEST(Presets, AreReadTheSameUnderADecimalCommaLocale)
{
    DecimalCommaLocale const german;
    ASSERT_TRUE(german.isInForce());
    expectBoth();
}

TEST(Presets, HaveDefaults)
{
    Choices const choices = choicesWith(R"([[device]]
name = "Spots"
scan = "none"
reach = [100, 100]
smallest-patch = [6, 6]
[[device]]
name = "Rows"
scan = "rows"
reach = [100, 0]
smallest-patch = [6, 6]
[[paper]]
name = "Square"
size = [100, 100]
)");
    InstrumentPreset const& spots = choices.device("spots")->values;
    EXPECT_EQ(spots.gap, (RealSize{0, 0}));
    EXPECT_EQ(spots.minMargin.top, 0);
    EXPECT_EQ(spots.content, (RealRect{0, 0, 100, 100}));
    EXPECT_FALSE(spots.mustFit);
    EXPECT_EQ(choices.device("rows")->values.scanDirection, alongX);
    EXPECT_EQ(choices.device("rows")->values.gap, (RealSize{1, 0}));
    EXPECT_EQ(choices.paper("square")->sheet.getContent(), (RealRect{0, 0, 100, 100}));
}

TEST(Presets, TellTheFirstFaultByItsLineAndChangeNothing)
{
    std::string const deviceText = device;
    std::string const paperText = paper;
    auto const with = [](std::string text, std::string const& from, std::string const& to) {
        return text.replace(text.find(from), from.size(), to);
    };
    struct
    {
        std::string text;
        char const* fault;
    } const cases[] = {
        {"name = \n", "my.toml:1: "},
        {"[[paper]\n", "my.toml:1: "},
        {"x = 1\n", "my.toml:1: \"x\" is no name of a setting here"},
        {"\n[ink]\n", "my.toml:2: \"ink\" is no name"},
        {"[paper]\nname = \"a\"\n", "my.toml:1: write [[paper]] before each paper"},
        {"device = 3\n", "my.toml:1: write [[device]] before each device"},
        {"paper = []\n", "my.toml:1: write [[paper]]"},
        {paperText + "color = \"red\"\n", "my.toml:5: \"color\" is no name"},
        {paperText + "size = [1, 2]\n", "my.toml:5: "},
        {with(paperText, "name = \"SRA3 Portrait\"\n", ""), "my.toml:1: name is missing"},
        {with(paperText, "\"SRA3 Portrait\"", "3"), "my.toml:2: name must be a text in quotes"},
        {with(paperText, "SRA3 Portrait", "\xC3\xA9\xC3\xA9"), "my.toml:2: name must have a letter"},
        {with(paperText, "SRA3 Portrait", "a4 PORTRAIT"), "my.toml:2: \"a4 PORTRAIT\" is the name of another choice"},
        {with(paperText, "SRA3 Portrait", "A4-Portrait"), "my.toml:2: \"A4-Portrait\" is the name of another"},
        {paperText + paperText, "my.toml:6: \"SRA3 Portrait\" is the name of another choice"},
        {with(paperText, "size = [320, 450.5]\n", ""), "my.toml:1: size is missing"},
        {with(paperText, "[320, 450.5]", "320"), "my.toml:3: size must be a list of 2 numbers"},
        {with(paperText, "[320, 450.5]", "[320]"), "my.toml:3: size must be a list of 2 numbers"},
        {with(paperText, "450.5", "\"450\""), "my.toml:3: size must be a number of mm"},
        {with(paperText, "450.5", "inf"), "my.toml:3: size must be a number of mm"},
        {with(paperText, "450.5", "0"), "my.toml:3: size must be between 0.1 and 100000 mm"},
        {with(paperText, "450.5", "1e6"), "my.toml:3: size must be between"},
        {with(paperText, "[5, 6, 15, 7]", "[5, 6, 15]"), "my.toml:4: margins must be a list of 4 numbers"},
        {with(paperText, "[5, 6,", "[-5, 6,"), "my.toml:4: margins must be between 0 and 100000 mm"},
        {with(paperText, "[5, 6,", "[5, 313,"), "my.toml:4: margins leave nothing of the paper"},
        {with(deviceText, "\"columns\"", "\"down\""), "my.toml:3: scan must be \"none\", \"rows\" or \"columns\""},
        {with(deviceText, "\"columns\"", "1"), "my.toml:3: scan must be a text in quotes"},
        {with(deviceText, "[460.5, 320]", "[0, 320]"), "my.toml:4: reach must be above 0 mm"},
        {with(deviceText, "[6, 8]", "[6, 0]"), "my.toml:6: smallest-patch must be between 0.1"},
        {with(deviceText, "12.5", "\"x\""), "my.toml:7: space-above must be a number of mm"},
        {with(deviceText, "1.5", "-1"), "my.toml:9: gap must be between 0 and"},
        {with(deviceText, "true", "1"), "my.toml:10: within-reach must be true or false"},
        {with(deviceText, "name = \"Lab Table\"", "name = \"gb-spot\""), "my.toml:2: \"gb-spot\" is the name of"},
    };
    for (auto const& [text, expected] : cases) {
        Choices choices = builtInChoices();
        PresetsFault const fault = addPresets(choices, text, "my.toml").value_or(PresetsFault{});
        EXPECT_THAT(fault.text, StartsWith(expected)) << text;
        EXPECT_EQ(fault.text.find('\n'), std::string::npos);
        EXPECT_EQ(choices.devices.size() + choices.papers.size(), 12u) << text;
    }
}

TEST(Presets, TellAFileThatCannotBeRead)
{
    TemporaryFolder const folder;
    Choices choices = builtInChoices();
    std::string const path = folder.path() / "none.toml";
    PresetsFault const none = addPresetsFile(choices, path).value_or(PresetsFault{});
    EXPECT_EQ(none.text, path + ": cannot be read: No such file or directory");
    PresetsFault const isFolder = addPresetsFile(choices, folder.path()).value_or(PresetsFault{});
    EXPECT_THAT(isFolder.text, HasSubstr("Is a directory"));
    folder.write("large.toml", std::string((1 << 20) + 1, '\n'));
    PresetsFault const large = addPresetsFile(choices, folder.path() / "large.toml").value_or(PresetsFault{});
    EXPECT_THAT(large.text, HasSubstr("is larger than 1 MiB"));
}

TEST(Presets, AreListedWithWhereTheyComeFrom)
{
    Choices const choices = choicesWith(std::string(paper) + device);
    ListArguments arguments;
    std::string const all = listText(choices, arguments);
    EXPECT_THAT(all, HasSubstr("lab-table       Lab Table             columns  460.5x320  6x8    12.5   6.5    1.5  "
                               "yes           my.toml\n"));
    EXPECT_THAT(all, HasSubstr("sra3-portrait          SRA3 Portrait          320x450.5  5,6,15,7  my.toml\n"));
    EXPECT_THAT(all, HasSubstr("a4-landscape           A4 Landscape           297x210    5,15,5,5  built in\n"));
    arguments.what = "papers";
    EXPECT_EQ(listText(choices, arguments).find("lab-table"), std::string::npos);
    auto const papers = nlohmann::json::parse(listJson(choices, arguments));
    EXPECT_FALSE(papers.contains("devices"));
    EXPECT_EQ(papers["papers"][8]["id"], "sra3-portrait");
    EXPECT_EQ(papers["papers"][8]["name"], "SRA3 Portrait");
    EXPECT_EQ(papers["papers"][8]["size"], (std::vector<double>{320, 450.5}));
    EXPECT_EQ(papers["papers"][8]["margins"], (std::vector<double>{5, 6, 15, 7}));
    EXPECT_EQ(papers["papers"][8]["origin"], "my.toml");
    arguments.what = "devices";
    auto const devices = nlohmann::json::parse(listJson(choices, arguments))["devices"];
    ASSERT_EQ(devices.size(), 5u);
    EXPECT_EQ(devices[0]["origin"], "built in");
    EXPECT_EQ(devices[4], nlohmann::json::parse(R"({"id": "lab-table", "name": "Lab Table", "scan": "columns",
        "reach": [460.5, 320.0], "corner": [2.0, 83.0], "smallestPatch": [6.0, 8.0], "spaceAbove": 12.5,
        "spaceBelow": 6.5, "gap": 1.5, "withinReach": true, "origin": "my.toml"})"));
}
