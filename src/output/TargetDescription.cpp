// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TargetDescription.h"

#include "PatchColumn.h"
#include "layout/ChartLayout.h"
#include "lib/OvDateTime.h"
#include "lib/OvFile.h"

#include <charconv>
#include <iterator>

namespace
{

constexpr char const* channelColumns[] = {"", "\tCMYK_C\tCMYK_M\tCMYK_Y\tCMYK_K", "\tRGB_R\tRGB_G\tRGB_B"};

char const* controlLetter(int status)
{
    return status == Data ? "N" : "I";
}

// Writes a text between two others, unchanged. It is never used as a format.
void writeAround(WFile& file, char const* before, String const& text, char const* after)
{
    file.writeString(String(before));
    file.writeString(text);
    file.writeLine(String(after));
}

// All chart pages have the size of the first one.
IntSize pageGrid(ChartLayout const& layout)
{
    IntRect const block = (*layout.getChartPages())[0].getCoordRect();
    return {block.width, block.height};
}

int countPatches(ChartLayout const& layout)
{
    IntSize const grid = pageGrid(layout);
    return grid.width * grid.height * static_cast<int>(layout.getChartPages()->getCount());
}

void writeGeometry(WFile& file, ChartLayout const& layout)
{
    IntSize const grid = pageGrid(layout);
    RealSize const patch = layout.getPatchSize();
    RealSize const gap = layout.getMeasurementLayout().getGap();
    file.writeLine("\t<patches>%d</patches>", countPatches(layout));
    file.writeLine("\t<pages>%d</pages>", static_cast<int>(layout.getChartPages()->getCount()));
    file.writeLine("\t<rows>%d</rows>", grid.height);
    file.writeLine("\t<columns>%d</columns>", grid.width);
    file.writeLine("\t<linearizable>false</linearizable>");
    file.writeLine("\t<width>%1.2fmm</width>", grid.width * (patch.width + gap.width) + gap.width);
    file.writeLine("\t<height>%1.2fmm</height>", grid.height * (patch.height + gap.height) + gap.height);
    file.writeLine("\t<size>51</size>");
    file.writeLine("\t<type>PROF</type>");
    file.writeLine("\t<extension>.CIE</extension>");
    file.writeLine("\t<header>46mm</header>");
    file.writeLine("\t<footer>35mm</footer>");
    file.writeLine("\t<patchWidth>%1.2fmm</patchWidth>", patch.width);
    file.writeLine("\t<patchHeight>%1.2fmm</patchHeight>", patch.height);
    file.writeLine("\t<horizontalGap>%1.2fmm</horizontalGap>", gap.width);
    file.writeLine("\t<verticalGap>%1.2fmm</verticalGap>", gap.height);
}

void writeTableHead(WFile& file, ChartLayout const& layout)
{
    constexpr int labelColumns = 3;
    file.writeLine("IS12642");
    file.writeLine("ORIGINATOR\t\"Ardelion Metrics\"");
    writeAround(file, "DESCRIPTOR\t\"", layout.getName(), "\"");
    writeAround(file, "CREATED\t\"", DateTime(true).getString(AscISO8601), "\"");
    file.writeNewLine();
    file.writeLine("KEYWORD CONTROL");
    file.writeNewLine();
    file.writeLine("NUMBER_OF_FIELDS\t%d", colorspace_nof_channels[layout.getColorSpace()] + labelColumns);
    file.writeNewLine();
    file.writeLine("BEGIN_DATA_FORMAT");
    file.writeString("SAMPLE_ID\tSAMPLE_LOC\tCONTROL");
    file.writeLine(String(channelColumns[layout.getColorSpace()]));
    file.writeLine("END_DATA_FORMAT");
    file.writeNewLine();
    file.writeLine("NUMBER_OF_SETS\t%d", countPatches(layout));
    file.writeNewLine();
}

void writeRows(WFile& file, ChartLayout const& layout)
{
    int const rows = layout.getPatchesY();
    GrowingArray<String> rowLabels;
    for (int y = 0; y < rows; ++y)
        rowLabels.add(layout.getCoordinateYString(y));
    int sampleId = 1;
    for (int x = layout.getPatchesX() - 1; x >= 0; --x) {
        String const columnLabel = layout.getCoordinateXString(x);
        auto const entries = columnOf(layout, {x, 0}, rows);
        for (int y = rows - 1; y >= 0; --y) {
            String location(columnLabel, rowLabels[y]);
            if (ColorEntry const* entry = entries[static_cast<std::size_t>(y)])
                entry->printToOutFile(&file, sampleId++, location);
        }
    }
}

bool hasTargetDescription(ChartLayout const& layout)
{
    return layout.getColorSpace() != undefined && layout.getChartPages()->getCount() > 0;
}

} // namespace

bool ChartLayout::writeOutputFile(String path) const
{
    bool const canBeWritten = hasTargetDescription(*this);
    writeTargetDescription(*this, path);
    return canBeWritten;
}

String ColorEntry::getControlString() const
{
    return String(controlLetter(status));
}

void ColorEntry::printToOutFile(WFile* file, int sampleId, String& location) const
{
    char number[12];
    file->writeBytes(number, std::to_chars(number, std::end(number), sampleId).ptr - number);
    file->writeTab();
    file->writeString(location);
    file->writeTab();
    file->writeBytes(controlLetter(status), 1);
    for (String const& value : values) {
        file->writeTab();
        file->writeString(value);
    }
    file->writeNewLine();
}

void ChartPage::writeToOutputFile(WFile*, int&, ChartLayout const*) const {}

std::optional<FileFault> writeTargetDescription(ChartLayout const& layout, String const& path)
{
    if (!hasTargetDescription(layout))
        return std::nullopt;

    WFile file(path, false, 0644);
    file.setNewLine(String("\n"));
    file.writeLine("<targetdescription>");
    file.writeNewLine();
    writeAround(file, "\t<name>", layout.getName(), "</name>");
    file.writeLine("\t<colorSpace>%s</colorSpace>", colorspace_names[layout.getColorSpace()]);
    file.writeLine("\t<devices>vt-20,vt-30,glidebedplusvt-30,glidebedplusvt-20</devices>");
    writeGeometry(file, layout);
    file.writeNewLine();
    file.writeLine("\t<targetdefinition>");
    writeTableHead(file, layout);
    file.writeLine("BEGIN_DATA");
    writeRows(file, layout);
    file.writeLine("END_DATA");
    file.writeLine("\t</targetdefinition>");
    file.writeNewLine();
    file.writeLine("</targetdescription>");
    file.writeNewLine();
    return closeFile(file, path);
}
