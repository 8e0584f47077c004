// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OutputFile.h"

#include "ChartLayout.h"

#include <gtest/gtest.h>

TEST(OutputFile, StartsWithItsDefaultNameAndPointsToNothing)
{
    OutputFile const file;
    EXPECT_TRUE(file.getName() == "Sheetbridge Output File");
    EXPECT_EQ(file.getLabels(), nullptr);
    EXPECT_EQ(file.getEntries(), nullptr);
    EXPECT_EQ(file.getChartLayout(), nullptr);
}

TEST(OutputFile, KeepsItsSettings)
{
    Array<String> const labels;
    Array<ColorEntry> const entries;
    ChartLayout const layout;
    OutputFile file;
    file.setName(String("Chart"));
    file.setLabels(&labels);
    file.setEntries(&entries);
    file.setChartLayout(&layout);
    EXPECT_TRUE(file.getName() == "Chart");
    EXPECT_EQ(file.getLabels(), &labels);
    EXPECT_EQ(file.getEntries(), &entries);
    EXPECT_EQ(file.getChartLayout(), &layout);
}

TEST(OutputFile, BorrowsWhatItPointsTo)
{
    Array<String> labels(1);
    labels[0] = String("A");
    {
        OutputFile file;
        file.setLabels(&labels);
    }
    EXPECT_TRUE(labels[0] == "A");
}
