// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TargetDescriptionReader.h"

#include "CgatsReader.h"

bool isTargetDescription(std::string_view text)
{
    return trimmed(text.substr(0, 1024)).starts_with("<targetdescription>");
}

void readTargetDescription(TableFile& file)
{
    file.kind = TableKind::targetDescription;
    TextLine start;
    std::size_t end = file.text.size();
    TextLines lines(file.text);
    for (TextLine line; lines.next(line);) {
        std::string_view const text = trimmed(file.textOf(line));
        if (text == "<targetdefinition>" && start.number == 0) {
            start = {line.offset + line.length, 0, line.number};
        } else if (text == "</targetdefinition>" && start.number > 0) {
            end = line.offset;
            break;
        }
    }
    if (start.number == 0)
        file.faults.add({1, 1}, "a target description without <targetdefinition>; make sure that the file is whole");
    else
        readCgats(file, start, end);
}
