// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "color/ColorEntry.h"
#include "lib/ColorSpace.h"
#include "lib/OvArray.h"
#include "lib/OvString.h"

/// Takes all lines off the text and adds their patches, the same as ColorEntry::parseFromString makes. Invalid lines
/// are left out. It is faster than line by line: the values of many lines share a storage, and many colours are
/// converted at once.
///
/// \return whether there was no Invalid line
bool takeEntries(String& text, ColorSpace colorSpace, GrowingArray<ColorEntry>& entries);
