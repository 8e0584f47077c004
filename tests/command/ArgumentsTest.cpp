// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "command/Arguments.h"

#include <gmock/gmock.h>

namespace
{

using testing::HasSubstr;
using testing::Not;
using Strings = std::vector<std::string>;

template <typename Command>
Command commandOf(Strings const& words)
{
    Arguments const arguments = parseArguments(words);
    EXPECT_TRUE(std::holds_alternative<Command>(arguments));
    return std::holds_alternative<Command>(arguments) ? std::get<Command>(arguments) : Command{};
}

} // namespace

TEST(Arguments, SetEachOptionOfAChart)
{
    for (bool const isShort : {false, true}) {
        auto const chart = commandOf<ChartArguments>(
            isShort ? Strings{"chart", "T", "-d", "D", "-p", "P", "-m", "M", "-s", "S", "-n", "N", "-f", "F", "-o", "O",
                              "-q"}
                    : Strings{"chart", "--device", "D", "--paper=P", "--margins", "M", "--patch", "S", "--name", "N",
                              "--format", "F", "--output", "O", "--quiet", "T"});
        EXPECT_EQ(chart.table.table, "T");
        EXPECT_EQ(chart.device, "D");
        EXPECT_EQ(chart.paper, "P");
        EXPECT_EQ(chart.margins, "M");
        EXPECT_EQ(chart.patch, "S");
        EXPECT_EQ(chart.name, "N");
        EXPECT_EQ(chart.formats, "F");
        EXPECT_EQ(chart.folder, "O");
        EXPECT_TRUE(chart.quiet);
        EXPECT_FALSE(chart.clip || chart.force || chart.lenient || chart.json);
    }
    auto const chart = commandOf<ChartArguments>(
        {"chart",   "-",   "--clip",  "--gaps", "G",       "--force", "--lenient", "--json", "--presets", "F",
         "--scale", "255", "--space", "rgb",    "--table", "2",       "--order",   "best",   "--effort",  "3"});
    EXPECT_EQ(chart.table.table, "-");
    EXPECT_TRUE(chart.clip && chart.force && chart.lenient && chart.json);
    EXPECT_EQ(chart.gaps, "G");
    EXPECT_EQ(chart.presets.path, "F");
    EXPECT_EQ(chart.table.scale, "255");
    EXPECT_EQ(chart.table.space, "rgb");
    EXPECT_EQ(chart.table.number, "2");
    EXPECT_EQ(chart.order, "best");
    EXPECT_EQ(chart.effort, "3");
}

TEST(Arguments, SetEachOptionOfTheOtherCommands)
{
    auto const list = commandOf<ListArguments>({"list", "papers", "--presets", "F", "--json"});
    EXPECT_EQ(list.what, "papers");
    EXPECT_EQ(list.presets.path, "F");
    EXPECT_TRUE(list.json);
    EXPECT_EQ(commandOf<ListArguments>({"list"}).what, "");
    auto const convert = commandOf<ConvertArguments>({"convert", "T", "-o", "O", "--ids", "I", "--force"});
    EXPECT_EQ(convert.table.table, "T");
    EXPECT_EQ(convert.output, "O");
    EXPECT_EQ(convert.ids, "I");
    EXPECT_TRUE(convert.force);
    EXPECT_TRUE(commandOf<DescribeArguments>({"describe", "T", "--json"}).json);
}

TEST(Arguments, SetEachOptionOfTable)
{
    auto const table = commandOf<PatchSetArguments>(
        {"table", "--space",          "cmyk", "--patches",  "N", "-o",      "O",     "--ink-limit", "L", "--profile",
         "P",     "--whites",         "W",    "--neutrals", "E", "--ramps", "R",     "--include",   "I", "--round",
         "S",     "--neutral-weight", "G",    "--seed",     "7", "--force", "--json"});
    EXPECT_EQ(table.space, "cmyk");
    EXPECT_EQ(table.patches, "N");
    EXPECT_EQ(table.output, "O");
    EXPECT_EQ(table.inkLimit, "L");
    EXPECT_EQ(table.profile, "P");
    EXPECT_EQ(table.whites, "W");
    EXPECT_EQ(table.neutrals, "E");
    EXPECT_EQ(table.ramps, "R");
    EXPECT_EQ(table.include, "I");
    EXPECT_EQ(table.rounding, "S");
    EXPECT_EQ(table.neutralWeight, "G");
    EXPECT_EQ(table.seed, "7");
    EXPECT_TRUE(table.force && table.json);
    auto const sheets = commandOf<PatchSetArguments>(
        {"table", "--space", "rgb", "--fit", "2", "-d", "D", "-p", "P", "-m", "M", "-s", "S", "--presets", "F"});
    EXPECT_EQ(sheets.fit, "2");
    EXPECT_EQ(sheets.device, "D");
    EXPECT_EQ(sheets.paper, "P");
    EXPECT_EQ(sheets.margins, "M");
    EXPECT_EQ(sheets.patch, "S");
    EXPECT_EQ(sheets.presets.path, "F");
}

TEST(Arguments, AreTakenLetterByLetter)
{
    for (char const* text : {"[a]", "{b}", "%%c", "\"d\"", "'e'", "a,b", "x=y", "1 2", "\xC3\xA9", "\xFF", "--", "-x"})
        EXPECT_EQ(commandOf<ChartArguments>({"chart", "T", "--name=" + std::string(text)}).name, text);
}

TEST(Arguments, GiveHelpAndVersion)
{
    for (Strings const& words : {Strings{"--help"}, Strings{"-h"}, Strings{"chart", "--help"},
                                 Strings{"chart", "--nonsense", "-h"}, Strings{"list", "-h"}})
        EXPECT_THAT(commandOf<Information>(words).text, HasSubstr(words[0][0] == '-' ? "chart" : words[0]));
    EXPECT_EQ(commandOf<Information>({"--version"}).text.rfind("patchloom-cli ", 0), 0u);
    for (char const* option : {"--device", "--paper", "--margins", "--patch", "--name", "--format", "--output",
                               "--clip", "--gaps", "--force", "--lenient", "--json", "--quiet", "--presets"})
        EXPECT_THAT(commandOf<Information>({"chart", "--help"}).text, HasSubstr(option));
}

TEST(Arguments, AreRefusedInOneLineWhereTheyMakeNoSense)
{
    for (Strings const& words :
         {Strings{}, Strings{"paint"}, Strings{"chart"}, Strings{"chart", "a", "b"}, Strings{"chart", "a", "--wrong"},
          Strings{"chart", "a", "-n"}, Strings{"chart", "a", "-n", "x", "--name", "y"},
          Strings{"chart", "a", "--force", "--force"}, Strings{"list", "inks"}, Strings{"list", "papers", "devices"},
          Strings{"describe"}, Strings{"chart", "a", "list"}, Strings{"--force"}, Strings{""}}) {
        auto const wrong = commandOf<WrongUse>(words);
        EXPECT_NE(wrong.text, "");
        EXPECT_THAT(wrong.text, Not(HasSubstr("\n")));
    }
}
