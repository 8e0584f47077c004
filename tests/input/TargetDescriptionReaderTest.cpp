// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TargetDescriptionReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

TableFile fileOf(std::string text)
{
    TableFile file;
    file.text = std::move(text);
    readTargetDescription(file);
    return file;
}

TEST(TargetDescriptionReader, IsForTextsThatBeginWithTheEnvelope)
{
    EXPECT_TRUE(isTargetDescription("\n<targetdescription>\n"));
    EXPECT_FALSE(isTargetDescription("CGATS.17\n<targetdescription>\n"));
}

TEST(TargetDescriptionReader, ReadsOnlyWhatStandsInTheDefinition)
{
    TableFile const file =
        fileOf("<targetdescription>\n\t<name>BEGIN_DATA <targetdefinition></name>\n\t<targetdefinition>\n"
               "IS12642\nBEGIN_DATA_FORMAT\nA\nEND_DATA_FORMAT\nBEGIN_DATA\n1\nEND_DATA\n"
               "\t</targetdefinition>\n\n</targetdescription>\n");
    ASSERT_EQ(file.tables.size(), 1U);
    EXPECT_EQ(file.tables[0].identifier, "IS12642");
    EXPECT_EQ(file.tables[0].rows.size(), 1U);
    EXPECT_EQ(file.tables[0].rows[0].number, 9U);
}

TEST(TargetDescriptionReader, TakesNoLineBehindTheDefinitionForARow)
{
    TableFile const file = fileOf("<targetdescription>\n<targetdefinition>\nBEGIN_DATA_FORMAT\nA\nBEGIN_DATA\n1\n"
                                  "</targetdefinition>\n</targetdescription>\n");
    ASSERT_EQ(file.tables.size(), 1U);
    EXPECT_EQ(file.tables[0].rows.size(), 1U);
}

TEST(TargetDescriptionReader, RefusesAnEnvelopeWithoutADefinition)
{
    TableFile const file = fileOf("<targetdescription>\n</targetdescription>\n");
    EXPECT_TRUE(file.tables.empty());
    EXPECT_EQ(file.faults.total(), 1U);
}

TEST(TargetDescriptionReader, ReadsACutFileWithAWarning)
{
    TableFile const file = fileOf("<targetdescription>\n<targetdefinition>\nBEGIN_DATA_FORMAT\nA\nBEGIN_DATA\n1\n");
    ASSERT_EQ(file.tables.size(), 1U);
    EXPECT_EQ(file.tables[0].warnings.total(), 1U);
}

} // namespace
