// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Any bytes as a target description.

#include "TableProperties.h"
#include "TargetDescriptionReader.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    TableFile file = fileOf(data, size);
    readTargetDescription(file);
    requireTables(file);
    return 0;
}
