// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "InputFile.h"

#include "EntryLines.h"
#include "lib/OvFile.h"

#include <cstdlib>

namespace
{

ColorSpace colorSpaceOf(String columnName)
{
    String name;
    columnName.getToken(name, '_', true);
    for (ColorSpace colorSpace : {CMYK, RGB})
        if (name == colorspace_names[colorSpace])
            return colorSpace;
    return undefined;
}

} // namespace

void InputFile::takeName(String& header)
{
    String name;
    header.getToken(name);
    if (name.getCount() > 0)
        headerNames.add(name);
}

bool InputFile::init(String path)
{
    return initFromText(RFile::readContents(path));
}

bool InputFile::initFromText(String text)
{
    headerNames.init(1);
    entries.init(1);
    colorSpace = undefined;

    if (text.getCount() == 0)
        return false;

    String header;
    text.getLine(header, true);
    header.skipWhitespaces();
    takeName(header);
    colorSpace = colorSpaceOf(headerNames[0]);
    if (colorSpace == undefined)
        return false;
    while (header.getCount() > 0)
        takeName(header);

    bool const isComplete = takeEntries(text, colorSpace, entries);
    srand(0);
    entries.shuffle();
    return isComplete;
}
