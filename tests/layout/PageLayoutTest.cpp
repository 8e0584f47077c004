// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PageLayout.h"

#include "support/CapturedOutput.h"
#include "support/GeometryValues.h"
#include "support/TestChart.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

struct Paper
{
    char const* name;
    RealSize size;
    RealRect content;
    RealBorder margins; // top, right, bottom, left
};

constexpr Paper papers[] = {
    {"A4 Portrait", {210, 297}, {5, 15, 200, 277}, {5, 5, 15, 5}},
    {"A4 Landscape", {297, 210}, {5, 5, 277, 200}, {5, 15, 5, 5}},
    {"A3 Portrait", {297, 420}, {5, 15, 287, 400}, {5, 5, 15, 5}},
    {"A3 Landscape", {420, 297}, {5, 5, 400, 287}, {5, 15, 5, 5}},
    {"Letter Portrait", {216, 279}, {5, 15, 206, 259}, {5, 5, 15, 5}},
    {"Letter Landscape", {279, 216}, {5, 5, 259, 206}, {5, 15, 5, 5}},
    {"Credit Card Portrait", {54, 85}, {0, 0, 54, 85}, {0, 0, 0, 0}},
    {"Credit Card Landscape", {85, 54}, {0, 0, 85, 54}, {0, 0, 0, 0}},
};

struct Steps
{
    double position;
    int count;
    bool operator==(Steps const&) const = default;
};

void PrintTo(Steps const& steps, std::ostream* stream)
{
    *stream << steps.count << " steps, then at " << steps.position;
}

Steps stepAlongX(PageLayout const& layout, double position, double step, double margin)
{
    Steps steps{position, -1};
    layout.getXSpace(steps.position, steps.count, step, margin);
    return steps;
}

Steps stepAlongY(PageLayout const& layout, double position, double step, double margin)
{
    Steps steps{position, -1};
    layout.getYSpace(steps.position, steps.count, step, margin);
    return steps;
}

} // namespace

TEST(PageLayout, OffersEightPapersAndACustomOneByNameAndNumber)
{
    ASSERT_EQ(std::size(pagelayoutpreset_strings), 9U);
    for (int i = 0; i < 8; ++i) {
        SCOPED_TRACE(papers[i].name);
        EXPECT_STREQ(pagelayoutpreset_strings[i], papers[i].name);
        PageLayout const layout = paper(static_cast<PageLayoutPreset>(i));
        EXPECT_EQ(layout.getSize(), papers[i].size);
        EXPECT_EQ(layout.getContent(), papers[i].content);
    }
    EXPECT_STREQ(pagelayoutpreset_strings[8], "Custom");
}

TEST(PageLayout, TheWideMarginIsAtThePortraitBottomAndTheLandscapeRight)
{
    for (int i = 0; i < 8; ++i) {
        SCOPED_TRACE(papers[i].name);
        PageLayout const layout = paper(static_cast<PageLayoutPreset>(i));
        RealSize const size = layout.getSize();
        RealRect const content = layout.getContent();
        EXPECT_EQ((RealBorder{size.height - content.y - content.height, size.width - content.x - content.width,
                              content.y, content.x}),
                  papers[i].margins);
    }
}

TEST(PageLayout, ACustomOrUnknownPaperLeavesANewLayoutUnset)
{
    for (int const number : {8, 9, -1}) {
        PageLayout const layout = paper(static_cast<PageLayoutPreset>(number));
        EXPECT_EQ(layout.getSize(), RealSize());
        EXPECT_EQ(layout.getContent(), RealRect());
    }
}

TEST(PageLayout, ACustomPaperKeepsTheSheetAsItWasSet)
{
    PageLayout layout = sheetOf({123, 456}, {1, 2, 3, 4});
    layout.initWithPreset(custom);
    EXPECT_EQ(layout.getSize(), (RealSize{123, 456}));
    EXPECT_EQ(layout.getContent(), (RealRect{1, 2, 3, 4}));
}

TEST(PageLayout, HoldsOnePatchLessEachWayThanWouldFit)
{
    // 200 / 10 = 20 and 277 / 10 = 27.7, minus one each.
    EXPECT_EQ(paper(a4Portrait).canHoldPatches({10, 10}, {0, 0}), (IntSize{19, 26}));
    EXPECT_EQ(paper(a4Portrait).canHoldPatches({10, 10}, {}), (IntSize{19, 26}));
    // 54 / 6 = 9 and 85 / 8 = 10.6.
    EXPECT_EQ(paper(creditCardPortrait).canHoldPatches({6, 8}, {0, 0}), (IntSize{8, 9}));
}

TEST(PageLayout, AWiderMarginIsSubtractedOnBothSides)
{
    // 12 mm instead of 5 on the left and on the right: 200 - 14 = 186 mm.
    EXPECT_EQ(paper(a4Portrait).canHoldPatches({10, 10}, {12, 0}), (IntSize{17, 26}));
    EXPECT_EQ(paper(a4Portrait).canHoldPatches({186, 10}, {12, 0}), (IntSize{0, 26}));
    EXPECT_EQ(paper(a4Portrait).canHoldPatches({93, 10}, {12, 0}), (IntSize{1, 26}));
}

TEST(PageLayout, AWiderMarginIsSubtractedOnlyOnSidesThatHaveLess)
{
    // 12 mm: the bottom's 15 stay, the top's 5 become 12: 277 - 7 = 270 mm.
    EXPECT_EQ(paper(a4Portrait).canHoldPatches({10, 135}, {0, 12}), (IntSize{19, 1}));
    // 20 mm: 5 more at the bottom and 15 at the top: 257 mm.
    EXPECT_EQ(paper(a4Portrait).canHoldPatches({10, 257}, {0, 20}), (IntSize{19, 0}));
    EXPECT_EQ(paper(a4Portrait).canHoldPatches({10, 10}, {0, 20}), (IntSize{19, 24}));
    // Landscape has its 15 mm on the right, so only the left side changes.
    EXPECT_EQ(paper(a4Landscape).canHoldPatches({135, 10}, {12, 0}), (IntSize{1, 19}));
}

TEST(PageLayout, AnAreaSmallerThanOnePatchHoldsMinusOne)
{
    // (200 - 300) / 300 rounded down.
    EXPECT_EQ(paper(a4Portrait).canHoldPatches({300, 10}, {0, 0}), (IntSize{-1, 26}));
}

TEST(PageLayout, HoldsNoPatchesIf32BitsCannotCountThem)
{
    for (double const size : {0.0, 1e-9, 1e-300, notANumber, infinity, -infinity})
        EXPECT_EQ(paper(a4Portrait).canHoldPatches({size, size}, {0, 0}), (IntSize{0, 0})) << size;
    EXPECT_EQ(sheetOf({1e300, infinity}, {0, 0, 1e300, infinity}).canHoldPatches({10, 10}, {0, 0}), (IntSize{0, 0}));
}

TEST(PageLayout, StepsFromTheFirstPositionOnTheSheetToTheFarMargin)
{
    // -25 -> -15 -> -5 -> 5 = the margin; 20 steps of 10 to 205 = 210 - 5.
    EXPECT_EQ(stepAlongX(paper(a4Portrait), -25, 10, 5), (Steps{-5, 20}));
    // 0 -> 10 -> 20, past the margin of 12; 18 steps to 200, past 198.
    EXPECT_EQ(stepAlongX(paper(a4Portrait), 0, 10, 12), (Steps{-10, 18}));
    EXPECT_EQ(stepAlongX(paper(a4Portrait), 0, 30, 0), (Steps{0, 7}));
}

TEST(PageLayout, StepsAlongYOverTheSheetsHeight)
{
    // -1 -> 49; 99, 149, 199, 249, 299: 2 mm over the edge of 297.
    EXPECT_EQ(stepAlongY(paper(a4Portrait), -1, 50, 0), (Steps{2, 5}));
    EXPECT_EQ(stepAlongY(paper(a4Landscape), -25, 10, 5), (Steps{-5, 20}));
}

TEST(PageLayout, TakesNoStepFromBeyondTheFarMargin)
{
    EXPECT_EQ(stepAlongX(paper(a4Portrait), 300, 10, 5), (Steps{90, 0}));
    EXPECT_EQ(stepAlongX(paper(a4Portrait), 205, 10, 5), (Steps{-5, 0}));
}

TEST(PageLayout, TakesNoStepsIfTheyLeadNowhereOrCannotBeCounted)
{
    for (double const step : {0.0, -10.0, -infinity, notANumber, 1e-9, 1e-300}) {
        EXPECT_EQ(stepAlongX(paper(a4Portrait), 0, step, 5).count, 0) << step;
        EXPECT_EQ(stepAlongY(paper(a4Portrait), -100, step, 0).count, 0) << step;
    }
    EXPECT_EQ(stepAlongX(paper(a4Portrait), -infinity, 10, 5).count, 0);
    EXPECT_EQ(stepAlongX(paper(a4Portrait), -1e300, 10, 5).count, 0);
    EXPECT_EQ(stepAlongX(paper(a4Portrait), notANumber, 10, 5).count, 0);
    EXPECT_EQ(stepAlongX(paper(a4Portrait), 0, 10, infinity).count, 0);
    EXPECT_EQ(stepAlongX(sheetOf({infinity, 1e300}, {}), 0, 10, 5).count, 0);
    EXPECT_EQ(stepAlongY(sheetOf({infinity, 1e300}, {}), 0, 10, 5).count, 0);
}

TEST(PageLayout, ARectangleFitsIfItLiesInThePrintableAreaSeenFromAnOrigin)
{
    PageLayout const layout = paper(a4Portrait);
    EXPECT_TRUE(layout.fits({5, 15, 200, 277}, {0, 0}));
    EXPECT_FALSE(layout.fits({4, 15, 200, 277}, {0, 0}));
    EXPECT_TRUE(layout.fits({4, 25, 200, 277}, {-1, 10}));
    EXPECT_FALSE(layout.fits({5, 15, 200, 277}, {0.5, 0}));
}

TEST(PageLayout, FittingUsesTheRectanglesRuleWithItsReports)
{
    bool isFitting = false;
    EXPECT_EQ(errorsOf([&] {
                  isFitting = paper(a4Portrait).fits({50, 50, 0.5, 10}, {0, 0});
              }),
              "Negative width but not REAL_NOPOS.\n\r");
    EXPECT_TRUE(isFitting);
    EXPECT_EQ(errorsOf([&] { isFitting = PageLayout().fits({50, 50, 10, 10}, {0, 0}); }), "");
    EXPECT_FALSE(isFitting);
}
