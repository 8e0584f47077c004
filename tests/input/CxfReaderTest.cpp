// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "CxfReader.h"

#include "TableReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace
{

TableFile fileOf(std::string text)
{
    TableFile file;
    file.text = std::move(text);
    readCxf(file);
    return file;
}

std::string document(std::string const& objects)
{
    return "<CxF xmlns=\"http://colorexchangeformat.com/CxF3-core\"><Resources><ObjectCollection>\n" + objects +
           "</ObjectCollection></Resources></CxF>";
}

// An object on a line of its own.
std::string object(std::string const& attributes, std::string const& deviceValues)
{
    return "<Object " + attributes + "><DeviceColorValues>" + deviceValues + "</DeviceColorValues></Object>\n";
}

std::string const red = "<ColorRGB><R>255</R><G>0</G><B>0</B></ColorRGB>";

std::vector<std::string> namesOf(TableFile const& file)
{
    std::vector<std::string> names;
    for (Field const& field : file.tables[0].fields)
        names.push_back(field.name);
    return names;
}

std::vector<std::string> contentsOf(TableFile const& file, std::size_t row)
{
    std::vector<Cell> cells;
    file.split(file.tables[0], file.tables[0].rows[row], cells);
    std::vector<std::string> contents;
    for (Cell const& cell : cells)
        contents.push_back(cell.content());
    return contents;
}

TEST(CxfReader, IsForXmlWhoseRootIsCalledCxf)
{
    EXPECT_TRUE(isCxf("<CxF>"));
    EXPECT_TRUE(isCxf("\n<cc:CxF xmlns:cc=\"x\">"));
    EXPECT_TRUE(isCxf("<?xml version=\"1.0\"?><!-- <a> --><!DOCTYPE CXF [ <!ENTITY b \"c\"> ]>\n<CXF/>"));
    EXPECT_FALSE(isCxf("<html>CxF</html>"));
    EXPECT_FALSE(isCxf("<CxFile/>"));
    EXPECT_FALSE(isCxf("<!-- <CxF>"));
    EXPECT_FALSE(isCxf("CxF"));
    EXPECT_FALSE(isCxf(""));
}

TEST(CxfReader, IsChosenBeforeTheReaderOfTextTables)
{
    TableFile const file = readTables("<!--\nBEGIN_DATA_FORMAT\n-->\n" + document(object("Id=\"1\"", red)));
    EXPECT_EQ(file.kind, TableKind::cxf);
    EXPECT_EQ(nameOf(file.kind), "CxF3");
}

TEST(CxfReader, ReadsIdNameAndValuesOfAnObject)
{
    TableFile const file = fileOf(document(object("Name=\"A1\" Id=\"007\"", red)));
    ASSERT_EQ(file.tables.size(), 1U);
    EXPECT_THAT(namesOf(file), ElementsAre("Id", "Name", "R", "G", "B"));
    EXPECT_THAT(contentsOf(file, 0), ElementsAre("007", "A1", "255", "0", "0"));
}

TEST(CxfReader, HasNoColumnOfIdsWhereThereAreNone)
{
    TableFile const file = fileOf(document(object("Name=\"A1\"", red)));
    ASSERT_EQ(file.tables.size(), 1U);
    EXPECT_THAT(contentsOf(file, 0), ElementsAre("A1", "255", "0", "0"));
}

TEST(CxfReader, KeepsTabsLineEndsAndQuotesOfAName)
{
    TableFile const file = fileOf(document(object("Name=\"&#9;a&#10;&quot;b&quot; \"", red)));
    ASSERT_EQ(file.tables.size(), 1U);
    EXPECT_EQ(contentsOf(file, 0)[0], "\ta\n\"b\" ");
}

TEST(CxfReader, LeavesColumnsEmptyWhereAnObjectHasNoSuchValues)
{
    std::string const black =
        "<ColorCMYK><Cyan>0</Cyan><Magenta>0</Magenta><Yellow>0</Yellow><Black>1</Black></ColorCMYK>";
    TableFile const file = fileOf(document(object("Name=\"a\"", red) + object("Name=\"b\"", black)));
    ASSERT_EQ(file.tables.size(), 1U);
    EXPECT_THAT(contentsOf(file, 0), ElementsAre("a", "", "", "", "", "255", "0", "0"));
    EXPECT_THAT(contentsOf(file, 1), ElementsAre("b", "0", "0", "0", "1", "", "", ""));
}

TEST(CxfReader, CountsNoObjectsOutsideTheCollection)
{
    TableFile const file = fileOf("<CxF><Object/><Resources><Object/><A><Object/></A></Resources></CxF>");
    EXPECT_TRUE(file.tables.empty());
    ASSERT_EQ(file.faults.total(), 1U);
    EXPECT_THAT(file.faults.kept()[0].text, StartsWith("a CxF file without an Object"));
}

TEST(CxfReader, TellsTheLineOfEachObjectAndThePlaceOfEachValue)
{
    TableFile const file = fileOf(document(object("Name=\"\xC3\x9F\"", red) + "\n<Object Name=\"b\">\n" +
                                           "<DeviceColorValues>\r\n<ColorRGB>\r<R>1</R> <G> 2 </G>\n"
                                           "</ColorRGB></DeviceColorValues></Object>\n"));
    ASSERT_EQ(file.tables.size(), 1U);
    DataTable const& table = file.tables[0];
    EXPECT_EQ(table.place, (TextPlace{2, 1}));
    EXPECT_EQ(table.lastLine, 4U);
    ASSERT_EQ(table.rows.size(), 2U);
    EXPECT_EQ(table.rows[0].number, 2U);
    EXPECT_EQ(table.rows[1].number, 4U);
    std::vector<Cell> cells;
    file.split(table, table.rows[0], cells);
    EXPECT_EQ(file.placeOf(cells[0].text, table.rows[0]), (TextPlace{2, 1}));
    // <Object Name="s"><DeviceColorValues><ColorRGB><R>255
    EXPECT_EQ(file.placeOf(cells[1].text, table.rows[0]), (TextPlace{2, 50}));
    file.split(table, table.rows[1], cells);
    EXPECT_EQ(file.placeOf(cells[1].text, table.rows[1]), (TextPlace{7, 4}));
    EXPECT_EQ(file.placeOf(cells[2].text, table.rows[1]), (TextPlace{7, 14}));
    EXPECT_EQ(file.placeOf(cells[3].text, table.rows[1]), (TextPlace{6, 1}));
}

TEST(CxfReader, StatesTheRangeOfEachSpace)
{
    TableFile const file = fileOf(document(object("", "<ColorRGB MaxRange=\"1\"/><ColorCMYK/>")));
    ASSERT_EQ(file.tables.size(), 1U);
    ASSERT_EQ(file.tables[0].keywords.size(), 1U);
    EXPECT_EQ(file.tables[0].keywords[0].name, "MaxRange of ColorRGB");
    EXPECT_EQ(file.tables[0].keywords[0].value, "1");
}

TEST(CxfReader, TakesAMissingRangeForTheUsualOne)
{
    std::string const stated = "<ColorRGB MaxRange=\"255\"><R>1</R><G>0</G><B>0</B></ColorRGB>";
    TableFile const file = fileOf(document(object("", red) + object("", stated)));
    ASSERT_EQ(file.tables.size(), 1U);
    EXPECT_TRUE(file.tables[0].faults.isEmpty());
}

TEST(CxfReader, RefusesOtherXmlErrorsAtTheirPlace)
{
    TableFile const file = fileOf("<CxF>\n<a>\n</b></CxF>");
    ASSERT_EQ(file.faults.total(), 1U);
    EXPECT_EQ(file.faults.kept()[0].place.line, 3U);
    EXPECT_THAT(file.faults.kept()[0].text, HasSubstr("make sure that the file is whole"));
}

TEST(CxfReader, RefusesReferencesToNoCharacter)
{
    for (char const* reference : {"&#0;", "&#x0;", "&#xD800;", "&#57343;", "&#x110000;", "&#4294967296;", "&#;"})
        EXPECT_EQ(fileOf(document(object("Name=\"" + std::string(reference) + "\"", red))).faults.total(), 1U)
            << reference;
    for (char const* reference : {"&#1;", "&#xD7FF;", "&#57344;", "&#x10FFFF;"})
        EXPECT_THAT(fileOf(document(object("Name=\"" + std::string(reference) + "\"", red))).faults.kept(), IsEmpty())
            << reference;
}

TEST(CxfReader, ReadsADeeplyNestedDocument)
{
    std::string nested;
    for (int i = 0; i < 1'000'000; ++i)
        nested += "<a>";
    for (int i = 0; i < 1'000'000; ++i)
        nested += "</a>";
    TableFile const file = fileOf(document(object("Id=\"1\"", nested + red)));
    ASSERT_EQ(file.tables.size(), 1U) << file.faults.kept()[0].text;
}

TEST(CxfReader, RefusesMoreMarkupThanMemoryIsSpentOn)
{
    std::string text = "<CxF>";
    for (int i = 0; i < 5'000'000; ++i)
        text += "<a/>";
    TableFile const file = fileOf(text + "</CxF>");
    ASSERT_EQ(file.faults.total(), 1U);
    EXPECT_THAT(file.faults.kept()[0].text, HasSubstr("more than 5 million tags and attributes"));
}

} // namespace
