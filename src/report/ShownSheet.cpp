// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ShownSheet.h"

#include "NumberText.h"
#include "output/SheetDrawing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

namespace
{

constexpr int decimals = 3;            // of a length in mm
constexpr double characterWidth = 3.6; // of the labels' type, mm
constexpr double discRadius = 2.4;     // mm
constexpr double pixelsPerMillimetre = 96 / 25.4;

std::string textOf(String const& string)
{
    return {string.begin(), string.end()};
}

// A drawing for SheetDrawing that collects a picture.
class SheetPainter
{
public:
    ShownSheet picture;

    void setCMYK(double c, double m, double y, double k) { setColor(CMYK, {c, m, y, k}); }
    void setCMYK(double const* channels) { setCMYK(channels[0], channels[1], channels[2], channels[3]); }
    void setRGB(double r, double g, double b) { setColor(RGB, {r, g, b, 0}); }
    void setRGB(double const* channels) { setRGB(channels[0], channels[1], channels[2]); }

    void drawText(RealPos place, String const& text) { picture.texts.push_back({place, textOf(text), color}); }

    // Neighbours draw the gap between them twice. The later rectangle covers the earlier one.
    void drawRectangle(RealRect const& place)
    {
        if (place.width <= 0 || place.height <= 0)
            return;
        auto const [known, isNew] = latest.try_emplace(keyOf(place), picture.rectangles.size());
        if (!isNew) {
            picture.rectangles[known->second].place.width = 0;
            known->second = picture.rectangles.size();
        }
        picture.rectangles.push_back({place, color, {}});
    }

    void finishPatch(IntPos cell)
    {
        if (!picture.rectangles.empty())
            picture.rectangles.back().cell = cell;
    }

    // Drops the covered rectangles, and notes where the patches are.
    void finish()
    {
        std::erase_if(picture.rectangles, [](auto const& rectangle) { return rectangle.place.width == 0; });
        for (std::size_t i = 0; i < picture.rectangles.size(); ++i)
            if (IntPos const cell = picture.rectangles[i].cell; cell.x != INT_NOPOS)
                picture.patchAt[{cell.x, cell.y}] = i;
    }

private:
    using Key = std::array<long long, 4>;

    static Key keyOf(RealRect const& rect)
    {
        constexpr double thousandth = 1000;
        return {std::llround(rect.x * thousandth), std::llround(rect.y * thousandth),
                std::llround(rect.width * thousandth), std::llround(rect.height * thousandth)};
    }

    void setColor(ColorSpace space, std::array<double, 4> const& channels)
    {
        color = displayColorOf(space, channels.data());
    }

    DisplayColor color;
    std::map<Key, std::size_t> latest;
};

// Turns from the sheet's lower-left corner to the drawing's upper-left one.
class Axes
{
public:
    explicit Axes(double sheetHeight) : height(sheetHeight) {}

    void set(TemplateValues& values, RealRect const& rect) const
    {
        values.set("X", shortNumber(rect.x, decimals));
        values.set("Y", shortNumber(height - rect.y - rect.height, decimals));
        values.set("W", shortNumber(rect.width, decimals));
        values.set("H", shortNumber(rect.height, decimals));
    }

    std::string down(double y) const { return shortNumber(height - y, decimals); }

private:
    double height;
};

void addMark(TemplateValues& values, ShownSheet::Mark const& mark, Axes const& axes)
{
    double const typeSize = mark.text.size() < 2 ? 3.4 : mark.text.size() < 3 ? 2.9 : 2.1;
    double const baselineShift = typeSize * 0.36;
    TemplateValues one = values.add("MARK");
    axes.set(one, mark.frame);
    one.set("CX", shortNumber(mark.disc.x, decimals));
    one.set("CY", axes.down(mark.disc.y));
    one.set("R", shortNumber(discRadius, decimals));
    one.set("BASELINE", axes.down(mark.disc.y - baselineShift));
    one.set("SIZE", shortNumber(typeSize, decimals));
    one.set("ID", mark.id);
    one.set("TITLE", mark.title);
    one.set("TEXT", mark.text);
}

} // namespace

ShownSheet::Rectangle const* ShownSheet::findPatch(IntPos cell) const
{
    auto const found = patchAt.find({cell.x, cell.y});
    return found != patchAt.end() ? &rectangles[found->second] : nullptr;
}

std::vector<NumberedSheet> numberedSheets(ChartLayout const& layout)
{
    std::vector<NumberedSheet> sheets;
    int number = layout.countOutputPages();
    for (ChartPage const& chartPage : *layout.getChartPages())
        for (OutputPage const& page : *chartPage.getOutputPages())
            if (page.hasPatches())
                sheets.push_back({&page, number--});
    std::reverse(sheets.begin(), sheets.end());
    return sheets;
}

ShownSheet pictureOf(NumberedSheet const& sheet, ChartLayout const& layout)
{
    SheetFrame const frame = frameOf(*sheet.page, layout);
    SheetPainter painter;
    SheetDrawing<SheetPainter>(painter, frame, layout).draw(sheet.number);
    painter.finish();
    painter.picture.size = frame.size;
    painter.picture.paper = displayColorOf(ColorEntry::whitePatch.getColor());
    return std::move(painter.picture);
}

std::string labelOf(ChartLayout const& layout, IntPos cell)
{
    return textOf(layout.getCoordinateXString(cell.x)) + textOf(layout.getCoordinateYString(cell.y));
}

void fillSheet(TemplateValues values, ShownSheet const& picture, ChartLayout const& layout, std::string const& id,
               std::string const& title, std::string const& description)
{
    Axes const axes(picture.size.height);
    values.set("WIDTH", shortNumber(picture.size.width, decimals));
    values.set("HEIGHT", shortNumber(picture.size.height, decimals));
    values.set("PIXELS", shortNumber(picture.size.width * pixelsPerMillimetre, 0));
    values.set("ID", id);
    values.set("TITLE", title);
    values.set("DESCRIPTION", description);
    values.set("PAPER", htmlColor(picture.paper));
    for (ShownSheet::Rectangle const& rectangle : picture.rectangles) {
        TemplateValues one = values.add("RECTANGLE");
        axes.set(one, rectangle.place);
        one.set("FILL", htmlColor(rectangle.color));
        if (rectangle.cell.x != INT_NOPOS)
            one.add("PATCH").set("LABEL", labelOf(layout, rectangle.cell));
    }
    for (ShownSheet::Text const& text : picture.texts) {
        TemplateValues one = values.add("TEXT");
        one.set("X", shortNumber(text.place.x, decimals));
        one.set("Y", axes.down(text.place.y));
        one.set("W", shortNumber(characterWidth * static_cast<double>(text.text.size()), decimals));
        one.set("FILL", htmlColor(text.color));
        one.set("TEXT", text.text);
    }
    for (ShownSheet::Mark const& mark : picture.marks)
        addMark(values, mark, axes);
}
