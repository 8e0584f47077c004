// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ScaleRules.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace
{

ValueStatistics statisticsOf(std::initializer_list<double> values)
{
    ValueStatistics statistics;
    for (double const value : values)
        statistics.add(value);
    return statistics;
}

ScaleEvidence rgb(std::initializer_list<double> values)
{
    ScaleEvidence evidence;
    evidence.space = RGB;
    evidence.values = statisticsOf(values);
    return evidence;
}

ScaleEvidence cmyk(std::initializer_list<double> values)
{
    ScaleEvidence evidence = rgb(values);
    evidence.space = CMYK;
    return evidence;
}

void expectDecision(ScaleDecision const& decision, DeviceScale scale, ScaleRule rule)
{
    EXPECT_EQ(decision.scale, scale) << decision.refusal;
    EXPECT_EQ(decision.rule, rule);
    EXPECT_TRUE(decision.refusal.empty());
    EXPECT_FALSE(decision.reason.empty());
}

void expectRefusal(ScaleDecision const& decision)
{
    EXPECT_EQ(decision.scale, DeviceScale::unknown);
    EXPECT_NE(decision.refusal.find("--scale"), std::string::npos) << decision.refusal;
}

TEST(ScaleRules, PutTheOptionBeforeAllElse)
{
    ScaleEvidence evidence = rgb({0, 0.5, 1});
    evidence.option = DeviceScale::percent;
    evidence.statement = "255";
    evidence.percentDialect = "CTI1";
    evidence.isPlain = true;
    expectDecision(decideScale(evidence), DeviceScale::percent, ScaleRule::option);
}

TEST(ScaleRules, PutWhatTheFileStatesBeforeItsKind)
{
    ScaleEvidence evidence = rgb({0, 50});
    evidence.statement = "255.0";
    evidence.percentDialect = "CTI3";
    expectDecision(decideScale(evidence), DeviceScale::eightBit, ScaleRule::statement);

    evidence = rgb({0, 50});
    evidence.hasPercentSigns = true;
    evidence.isPlain = true;
    expectDecision(decideScale(evidence), DeviceScale::percent, ScaleRule::statement);
}

TEST(ScaleRules, KnowFourStatements)
{
    ScaleEvidence evidence = cmyk({0, 1});
    for (DeviceScale const scale :
         {DeviceScale::one, DeviceScale::percent, DeviceScale::eightBit, DeviceScale::sixteenBit}) {
        evidence.statement = std::to_string(static_cast<unsigned>(scale));
        expectDecision(decideScale(evidence), scale, ScaleRule::statement);
    }
    for (char const* statement : {"1023", "many", "2"}) {
        evidence.statement = statement;
        expectRefusal(decideScale(evidence));
    }
}

TEST(ScaleRules, PutTheKindBeforeTheValues)
{
    ScaleEvidence evidence = rgb({0, 0.5, 1});
    evidence.isPlain = true;
    expectDecision(decideScale(evidence), DeviceScale::eightBit, ScaleRule::dialect);
    evidence = cmyk({0, 1});
    evidence.isPlain = true;
    expectDecision(decideScale(evidence), DeviceScale::percent, ScaleRule::dialect);
    evidence = rgb({0, 0.5, 1});
    evidence.percentDialect = "CTI1";
    expectDecision(decideScale(evidence), DeviceScale::percent, ScaleRule::dialect);
    expectDecision(decideScale(cmyk({0, 0.5, 12})), DeviceScale::percent, ScaleRule::dialect);
}

TEST(ScaleRules, OverruleAKindInPercentForRgbAbove100WithAWarning)
{
    ScaleEvidence evidence = rgb({0, 56.474, 221.96});
    evidence.percentDialect = "CTI2";
    ScaleDecision decision = decideScale(evidence);
    expectDecision(decision, DeviceScale::eightBit, ScaleRule::values);
    EXPECT_FALSE(decision.warning.empty());

    evidence.values = statisticsOf({0, 300, 65535});
    decision = decideScale(evidence);
    expectDecision(decision, DeviceScale::sixteenBit, ScaleRule::values);
    EXPECT_FALSE(decision.warning.empty());

    evidence.values = statisticsOf({0, 300.5});
    expectRefusal(decideScale(evidence));
}

TEST(ScaleRules, TakeRoundedPercentForPercent)
{
    ScaleEvidence evidence = rgb({0, 100.01});
    evidence.percentDialect = "CTI2";
    expectDecision(decideScale(evidence), DeviceScale::percent, ScaleRule::dialect);
}

TEST(ScaleRules, NeverOverruleCmyk)
{
    expectDecision(decideScale(cmyk({0, 255})), DeviceScale::percent, ScaleRule::dialect);
}

TEST(ScaleRules, DoubtCmykOfAtMostOnePercent)
{
    EXPECT_FALSE(decideScale(cmyk({0, 0.25, 1})).warning.empty());
    EXPECT_TRUE(decideScale(cmyk({0, 0.25, 1.5})).warning.empty());
    EXPECT_TRUE(decideScale(cmyk({0, 0})).warning.empty());
}

TEST(ScaleRules, ReadRgbValuesThatLeaveOneReading)
{
    expectDecision(decideScale(rgb({0, 100.5})), DeviceScale::eightBit, ScaleRule::values);
    expectDecision(decideScale(rgb({0, 255})), DeviceScale::eightBit, ScaleRule::values);
    expectDecision(decideScale(rgb({0, 256})), DeviceScale::sixteenBit, ScaleRule::values);
    expectDecision(decideScale(rgb({0, 65535})), DeviceScale::sixteenBit, ScaleRule::values);
    expectDecision(decideScale(rgb({0, 0.41, 1})), DeviceScale::one, ScaleRule::values);
    expectDecision(decideScale(rgb({0, 0.41})), DeviceScale::one, ScaleRule::values);
    expectDecision(decideScale(rgb({0, 33.5, 100})), DeviceScale::percent, ScaleRule::values);
    expectDecision(decideScale(rgb({0, 33.5, 99.99})), DeviceScale::percent, ScaleRule::values);
}

TEST(ScaleRules, RefuseRgbValuesThatLeaveSeveralReadings)
{
    expectRefusal(decideScale(rgb({5, 80, 72})));
    expectRefusal(decideScale(rgb({5, 80.5, 72})));
    expectRefusal(decideScale(rgb({0, 50, 100})));
    expectRefusal(decideScale(rgb({0, 1, 1})));
    expectRefusal(decideScale(rgb({0, 0, 0})));
    expectRefusal(decideScale(rgb({0, 65536})));
    expectRefusal(decideScale(rgb({0, 300.5})));
}

TEST(ScaleRules, RefuseCmykOfZerosAndOnesButNotOfZeros)
{
    expectRefusal(decideScale(cmyk({0, 1, 1})));
    expectDecision(decideScale(cmyk({0, 0})), DeviceScale::percent, ScaleRule::dialect);
}

TEST(ScaleRules, HaveNamesForTheScales)
{
    EXPECT_EQ(nameOf(DeviceScale::one), "0 to 1");
    EXPECT_EQ(nameOf(DeviceScale::percent), "percent");
    EXPECT_EQ(nameOf(DeviceScale::eightBit), "0 to 255");
    EXPECT_EQ(nameOf(DeviceScale::sixteenBit), "0 to 65535");
}

} // namespace
