// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Geometry.h"

#include "support/CapturedOutput.h"
#include "support/GeometryValues.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{

constexpr RealRect sheet{10, 20, 100, 50};

// A message and its line end.
constexpr char const* realWidthReport = "Negative width but not REAL_NOPOS.\n\r";
constexpr char const* realHeightReport = "Negative height but not REAL_NOPOS.\n\r";
constexpr char const* intWidthReport = "Negative width but not INT_NOPOS.\n\r";
constexpr char const* intHeightReport = "Negative height but not INT_NOPOS.\n\r";

struct Answer
{
    bool isInside;
    std::string errors;
    bool operator==(Answer const&) const = default;
};

void PrintTo(Answer const& answer, std::ostream* stream)
{
    *stream << answer.isInside << ' ' << testing::PrintToString(answer.errors);
}

template <typename Block, typename Content>
Answer ask(Block const& block, Content const& content)
{
    Answer answer{};
    answer.errors = errorsOf([&] { answer.isInside = block.contains(content); });
    return answer;
}

Answer askForPatches(IntRect const& block)
{
    Answer answer{};
    answer.errors = errorsOf([&] { answer.isInside = block.hasPatches(); });
    return answer;
}

} // namespace

TEST(Geometry, UnsetFieldsHoldTheNoPositionValues)
{
    EXPECT_EQ(REAL_NOPOS, -std::numeric_limits<double>::infinity());
    EXPECT_EQ(INT_NOPOS, -2147483647 - 1);
    EXPECT_EQ(RealPos(), (RealPos{REAL_NOPOS, REAL_NOPOS}));
    EXPECT_EQ(RealSize(), (RealSize{REAL_NOPOS, REAL_NOPOS}));
    EXPECT_EQ(RealRect(), (RealRect{REAL_NOPOS, REAL_NOPOS, REAL_NOPOS, REAL_NOPOS}));
    EXPECT_EQ(RealBorder(), (RealBorder{REAL_NOPOS, REAL_NOPOS, REAL_NOPOS, REAL_NOPOS}));
    EXPECT_EQ(IntPos(), (IntPos{INT_NOPOS, INT_NOPOS}));
    EXPECT_EQ(IntSize(), (IntSize{INT_NOPOS, INT_NOPOS}));
    EXPECT_EQ(IntRect(), (IntRect{INT_NOPOS, INT_NOPOS, INT_NOPOS, INT_NOPOS}));
}

TEST(Geometry, BorderFieldsStandInTheOrderTopRightBottomLeft)
{
    RealBorder const border{1, 2, 3, 4};
    EXPECT_EQ(border.top, 1);
    EXPECT_EQ(border.right, 2);
    EXPECT_EQ(border.bottom, 3);
    EXPECT_EQ(border.left, 4);
}

TEST(RealRect, ContainsItselfAndWhatSharesAnEdgeWithIt)
{
    EXPECT_EQ(ask(sheet, sheet), (Answer{true, ""}));
    EXPECT_EQ(ask(sheet, RealRect{10, 30, 5, 5}), (Answer{true, ""}));
    EXPECT_EQ(ask(sheet, RealRect{105, 30, 5, 5}), (Answer{true, ""}));
    EXPECT_EQ(ask(sheet, RealRect{50, 20, 5, 5}), (Answer{true, ""}));
    EXPECT_EQ(ask(sheet, RealRect{50, 65, 5, 5}), (Answer{true, ""}));
}

TEST(RealRect, DoesNotContainWhatReachesOverAnyEdge)
{
    EXPECT_EQ(ask(sheet, RealRect{9.5, 30, 5, 5}), (Answer{false, ""}));
    EXPECT_EQ(ask(sheet, RealRect{105.5, 30, 5, 5}), (Answer{false, ""}));
    EXPECT_EQ(ask(sheet, RealRect{50, 19.5, 5, 5}), (Answer{false, ""}));
    EXPECT_EQ(ask(sheet, RealRect{50, 65.5, 5, 5}), (Answer{false, ""}));
}

TEST(RealRect, WithoutAnXContainsNothingAndLiesInNothingWithoutAReport)
{
    EXPECT_EQ(ask(RealRect{}, sheet), (Answer{false, ""}));
    EXPECT_EQ(ask(sheet, RealRect{}), (Answer{false, ""}));
    EXPECT_EQ(ask(RealRect{REAL_NOPOS, 20, -5, -5}, sheet), (Answer{false, ""}));
    EXPECT_EQ(ask(sheet, RealRect{REAL_NOPOS, 20, -5, -5}), (Answer{false, ""}));
}

TEST(RealRect, WithoutAWidthContainsNothingAndLiesInNothingWithoutAReport)
{
    EXPECT_EQ(ask(RealRect{10, 20, REAL_NOPOS, -5}, sheet), (Answer{false, ""}));
    EXPECT_EQ(ask(sheet, RealRect{10, 20, REAL_NOPOS, -5}), (Answer{false, ""}));
}

TEST(RealRect, NarrowerThanAMillimetreIsReportedAndStillAnswersByItsCoordinates)
{
    EXPECT_EQ(ask(sheet, RealRect{50, 30, 0.5, 5}), (Answer{true, realWidthReport}));
    EXPECT_EQ(ask(sheet, RealRect{200, 30, 0.5, 5}), (Answer{false, realWidthReport}));
    EXPECT_EQ(ask(RealRect{10, 20, 0.5, 50}, RealRect{10, 20, 0.5, 50}),
              (Answer{true, std::string(realWidthReport) + realWidthReport}));
}

TEST(RealRect, LowerThanAMillimetreIsReportedAndStillAnswersByItsCoordinates)
{
    EXPECT_EQ(ask(sheet, RealRect{50, 30, 5, 0}), (Answer{true, realHeightReport}));
    EXPECT_EQ(ask(sheet, RealRect{50, 30, -1, -1}), (Answer{true, std::string(realWidthReport) + realHeightReport}));
}

TEST(RealRect, OfExactlyOneMillimetreIsNotReported)
{
    EXPECT_EQ(ask(sheet, RealRect{50, 30, 1, 1}), (Answer{true, ""}));
}

TEST(RealRect, ReportsItsOwnSizeBeforeItLooksAtTheOther)
{
    EXPECT_EQ(ask(RealRect{10, 20, 0.5, 0.5}, RealRect{}),
              (Answer{false, std::string(realWidthReport) + realHeightReport}));
}

TEST(RealRect, ComparesYAndHeightAsPlainNumbers)
{
    // An unset height is below 1 mm, so it is reported. Minus infinity lies inside wherever x does.
    EXPECT_EQ(ask(sheet, RealRect{50, 30, 5, REAL_NOPOS}), (Answer{true, realHeightReport}));
    EXPECT_EQ(ask(sheet, RealRect{50, REAL_NOPOS, 5, 5}), (Answer{false, ""}));
    EXPECT_EQ(ask(RealRect{10, REAL_NOPOS, 100, 50}, RealRect{50, 30, 5, 5}), (Answer{false, ""}));
}

TEST(RealRect, DoesNotContainNotANumber)
{
    double const nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(ask(sheet, RealRect{nan, 30, 5, 5}), (Answer{false, ""}));
    EXPECT_EQ(ask(RealRect{10, 20, nan, 50}, RealRect{50, 30, 5, 5}), (Answer{false, ""}));
}

TEST(IntRect, ContainsItsFirstColumnAndNotTheOnePastItsLast)
{
    IntRect const block{2, 0, 3, 1};
    EXPECT_FALSE(block.contains({1, 0}));
    EXPECT_TRUE(block.contains({2, 0}));
    EXPECT_TRUE(block.contains({3, 0}));
    EXPECT_TRUE(block.contains({4, 0}));
    EXPECT_FALSE(block.contains({5, 0}));
}

TEST(IntRect, ContainsItsFirstRowAndNotTheOnePastItsLast)
{
    IntRect const block{0, -1, 1, 3};
    EXPECT_FALSE(block.contains({0, -2}));
    EXPECT_TRUE(block.contains({0, -1}));
    EXPECT_TRUE(block.contains({0, 1}));
    EXPECT_FALSE(block.contains({0, 2}));
}

TEST(IntRect, WithoutAnXOrAWidthContainsNothingWithoutAReport)
{
    EXPECT_EQ(ask(IntRect{}, IntPos{0, 0}), (Answer{false, ""}));
    EXPECT_EQ(ask(IntRect{INT_NOPOS, 0, -1, -1}, IntPos{0, 0}), (Answer{false, ""}));
    EXPECT_EQ(ask(IntRect{0, 0, INT_NOPOS, -1}, IntPos{0, 0}), (Answer{false, ""}));
}

TEST(IntRect, ReportsANegativeSizeAndGoesOn)
{
    EXPECT_EQ(ask(IntRect{0, 0, -1, 4}, IntPos{0, 0}), (Answer{false, intWidthReport}));
    EXPECT_EQ(ask(IntRect{0, 0, 4, -1}, IntPos{0, 0}), (Answer{false, intHeightReport}));
    EXPECT_EQ(ask(IntRect{0, 0, -1, -1}, IntPos{}), (Answer{false, std::string(intWidthReport) + intHeightReport}));
    EXPECT_EQ(ask(IntRect{0, 0, 0, 0}, IntPos{0, 0}), (Answer{false, ""}));
}

TEST(IntRect, DoesNotContainAPositionWithoutAnX)
{
    IntRect const block{INT_NOPOS + 1, 0, 5, 5};
    EXPECT_FALSE(block.contains({INT_NOPOS, 0}));
    EXPECT_TRUE(block.contains({INT_NOPOS + 1, 0}));
}

TEST(IntRect, ContainsTheLowestRowSinceOnlyTheColumnCanBeUnset)
{
    IntRect const block{0, INT_NOPOS, 5, 5};
    EXPECT_TRUE(block.contains({0, INT_NOPOS}));
    EXPECT_FALSE(block.contains({0, INT_NOPOS + 5}));
}

TEST(IntRect, ReachesTheLastColumnThat32BitsHold)
{
    constexpr std::int32_t last = std::numeric_limits<std::int32_t>::max();
    IntRect const block{last - 1, last - 1, 2, 2};
    EXPECT_TRUE(block.contains({last, last}));
    EXPECT_FALSE(block.contains({last - 2, last}));
    EXPECT_TRUE((IntRect{5, 5, last, last}.contains({last, last})));
}

TEST(IntRect, HasPatchesWithColumnsAndRows)
{
    EXPECT_EQ(askForPatches({0, 0, 1, 1}), (Answer{true, ""}));
    EXPECT_EQ(askForPatches({-7, 3, 18, 25}), (Answer{true, ""}));
}

TEST(IntRect, HasNoPatchesWithoutColumnsOrRows)
{
    EXPECT_EQ(askForPatches({}), (Answer{false, ""}));
    EXPECT_EQ(askForPatches({INT_NOPOS, 0, 3, 3}), (Answer{false, ""}));
    EXPECT_EQ(askForPatches({0, 0, INT_NOPOS, 3}), (Answer{false, ""}));
    EXPECT_EQ(askForPatches({0, 0, 0, 3}), (Answer{false, ""}));
    EXPECT_EQ(askForPatches({0, 0, 3, 0}), (Answer{false, ""}));
    EXPECT_EQ(askForPatches({0, 0, 0, 0}), (Answer{false, ""}));
}

TEST(IntRect, ReportsANegativeSizeAndStillHasPatches)
{
    EXPECT_EQ(askForPatches({0, 0, -1, 3}), (Answer{true, intWidthReport}));
    EXPECT_EQ(askForPatches({0, 0, 3, -1}), (Answer{true, intHeightReport}));
    EXPECT_EQ(askForPatches({0, 0, -1, 0}), (Answer{false, intWidthReport}));
}

TEST(Geometry, ShiftingMovesABlockAndKeepsItsSize)
{
    EXPECT_EQ(shifted({1, 2, 3, 4}, {10, -20}), (IntRect{11, -18, 3, 4}));
}

TEST(Geometry, WholeNumbersAreRoundedDownAndAre0Beyond32Bits)
{
    EXPECT_EQ(wholeNumber(0), 0);
    EXPECT_EQ(wholeNumber(18.2), 18);
    EXPECT_EQ(wholeNumber(-0.5), -1);
    EXPECT_EQ(wholeNumber(2147483647.0), 2147483647);
    EXPECT_EQ(wholeNumber(2147483648.0), 0);
    EXPECT_EQ(wholeNumber(1e300), 0);
    EXPECT_EQ(wholeNumber(std::nan("")), 0);
    EXPECT_EQ(wholeNumber(std::numeric_limits<double>::infinity()), 0);
    EXPECT_EQ(wholeNumber(REAL_NOPOS), 0);
}

TEST(Coordinates, WrapAroundAtTheLimitsOf32Bits)
{
    constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(wrappedSum(2, -5), -3);
    EXPECT_EQ(wrappedSum(largest, 1), INT_NOPOS);
    EXPECT_EQ(wrappedSum(INT_NOPOS, INT_NOPOS), 0);
    EXPECT_EQ(wrappedDifference(2, 5), -3);
    EXPECT_EQ(wrappedDifference(INT_NOPOS, 1), largest);
    EXPECT_EQ(wrappedDifference(0, INT_NOPOS), INT_NOPOS);
}
