// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TableReader.h"

#include "CgatsReader.h"
#include "CxfReader.h"
#include "PlainTable.h"
#include "SeparatedValuesReader.h"
#include "TargetDescriptionReader.h"

#include <utility>

TableFile readTables(std::string bytes, ColorSpace space)
{
    TableFile file;
    DecodedText decoded = decodeText(std::move(bytes));
    file.text = std::move(decoded.text);
    file.encoding = decoded.encoding;
    file.faults = decoded.faults;
    if (!file.faults.isEmpty())
        return file;

    if (isTargetDescription(file.text)) {
        readTargetDescription(file);
    } else if (isCxf(file.text)) {
        readCxf(file);
    } else if (isCgats(file.text)) {
        file.kind = TableKind::cgats;
        readCgats(file, {0, 0, 1}, file.text.size());
    } else if (isPlainTable(file.text)) {
        readPlainTable(file);
    } else if (trimmed(std::string_view(file.text).substr(0, 1024)).starts_with('<')) {
        file.faults.add({1, 1}, "is an XML or HTML file but no target description: save the table as text or CSV");
    } else {
        readSeparatedValues(file, space);
        if (!file.tables.empty() && hasReorderedPlainHeader(file.text))
            file.tables[0].warnings.add(file.tables[0].place,
                                        "the columns are taken by their names; the window takes them in the order "
                                        "C M Y K or R G B, whatever their names");
    }
    return file;
}
