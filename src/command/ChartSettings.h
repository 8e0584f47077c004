// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Arguments.h"
#include "Choices.h"
#include "making/ChartMaking.h"
#include "output/SheetFiles.h"

#include <string>
#include <variant>
#include <vector>

/// What a chart is made with. Lengths in mm.
struct ChartSettings
{
    DeviceChoice device;
    std::string paperName;
    PageLayout sheet;
    RealSize patch;
    std::string name;
    std::vector<ImageKind const*> kinds; ///< in the order of imageKinds, each once
    SheetOptions sheets;
    std::string parentFolder;
    GapRule gaps = GapRule::automatic;
    OrderMethod order;
    bool clipsToContent = false;
};

/// Reads the settings from the arguments' texts.
std::variant<ChartSettings, WrongUse> chartSettings(ChartArguments const& arguments, Choices const& choices);

/// A number in mm as people write it: "7.5".
std::string millimetres(double length);
