// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Arguments.h"
#include "Choices.h"

#include <string>

/// The devices and papers to choose from, as tables for people.
std::string listText(Choices const& choices, ListArguments const& arguments);

/// The same as one JSON object with the members "devices" and "papers".
std::string listJson(Choices const& choices, ListArguments const& arguments);
