// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ColorPlots.h"

#include "ChartFigures.h"
#include "DisplayColor.h"
#include "GamutOutline.h"
#include "NumberText.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace
{

constexpr double dotRadius = 2.5;
constexpr double smallDotRadius = 1.6;
constexpr std::size_t manyDots = 2500; // get smaller dots

struct Dot
{
    double lightness;
    double a;
    double b;
    DisplayColor color;

    double chroma() const { return std::hypot(a, b); }
};

// The patches of the table. Values that no colour has are left out.
std::vector<Dot> dotsOf(ChartLayout const& chart)
{
    constexpr double largest = 1000;
    std::vector<Dot> dots;
    for (IntPos const cell : tableCells(chart)) {
        ColorEntry const& entry = *chart.getColorEntry(cell);
        float const* const lab = entry.getLab();
        bool const isColor = std::all_of(lab, lab + 3, [](float value) {
            return std::abs(static_cast<double>(value)) <= largest; // false for not-a-number
        });
        if (isColor)
            dots.push_back({static_cast<double>(lab[0]), static_cast<double>(lab[1]), static_cast<double>(lab[2]),
                            displayColorOf(entry.getDisplayColor())});
    }
    return dots;
}

std::string place(double length)
{
    return shortNumber(length, 1);
}

void addDot(TemplateValues& values, double x, double y, DisplayColor color, std::size_t count)
{
    TemplateValues one = values.add("DOT");
    one.set("X", place(x));
    one.set("Y", place(y));
    one.set("R", place(count > manyDots ? smallDotRadius : dotRadius));
    one.set("FILL", htmlColor(color));
}

// The drawing of the plane: square, with a* = b* = 0 in the middle.
class Plane
{
public:
    static constexpr double size = 600;

    Plane(std::vector<Dot> const& dots, std::vector<PlanePoint> const& outline)
    {
        double furthest = 0;
        for (Dot const& dot : dots)
            furthest = std::max({furthest, std::abs(dot.a), std::abs(dot.b)});
        for (PlanePoint const& point : outline)
            furthest = std::max({furthest, std::abs(point.a), std::abs(point.b)});
        reach = tickStep * (std::floor(furthest / tickStep) + 1);
    }

    double x(double a) const { return size / 2 * (1 + a / reach); }
    double y(double b) const { return size / 2 * (1 - b / reach); }
    double largest() const { return reach; }

    static constexpr double tickStep = 20;

private:
    double reach;
};

std::string pathOf(Plane const& plane, std::vector<PlanePoint> const& outline)
{
    std::string path;
    for (PlanePoint const& point : outline)
        path += (path.empty() ? "M" : "L") + place(plane.x(point.a)) + " " + place(plane.y(point.b));
    return path.empty() ? "" : path + "Z";
}

std::string rangeText(std::vector<Dot> const& dots, double Dot::*axis)
{
    if (dots.empty())
        return "nowhere";
    auto const [least, most] =
        std::minmax_element(dots.begin(), dots.end(), [axis](Dot const& p, Dot const& q) { return p.*axis < q.*axis; });
    return "from " + shortNumber((*least).*axis, 0) + " to " + shortNumber((*most).*axis, 0);
}

void addPlaneTicks(TemplateValues& values, Plane const& plane)
{
    constexpr double space = 4;
    for (double at = -plane.largest() + Plane::tickStep; at < plane.largest(); at += Plane::tickStep) {
        if (std::abs(at) < 1)
            continue;
        TemplateValues tick = values.add("TICK");
        tick.set("AT", place(plane.x(at)));
        tick.set("A_BASELINE", place(Plane::size - space));
        tick.set("A", shortNumber(at, 0));
        tick.set("B_START", place(space));
        tick.set("AT_BASELINE", place(plane.x(at) + space));
        // The axis of b* runs upwards, positions run downwards.
        tick.set("B", shortNumber(-at, 0));
    }
}

} // namespace

void fillPlane(TemplateValues values, ChartLayout const& chart)
{
    std::vector<Dot> const dots = dotsOf(chart);
    std::vector<PlanePoint> const outline = gamutOutline(chart.getColorSpace());
    Plane const plane(dots, outline);
    std::string const profile = chart.getColorSpace() == CMYK ? "CMYK" : "RGB";
    values.set("CAPTION",
               "Each dot is a patch of the table in its own colour. a* runs from green to red, b* from blue to "
               "yellow. The dashed line is the outline of what the program’s " +
                   profile + " profile reaches.");
    values.set("DESCRIPTION", countOf(static_cast<long long>(dots.size()), "patch", "patches") + ", a* " +
                                  rangeText(dots, &Dot::a) + ", b* " + rangeText(dots, &Dot::b) +
                                  ". The tables of the sheets list all values.");
    values.set("SIZE", place(Plane::size));
    values.set("ZERO", place(Plane::size / 2));
    values.set("A_NAME", place(Plane::size - 24));
    values.set("A_NAME_BASELINE", place(Plane::size / 2 - 6));
    values.set("B_NAME", place(Plane::size / 2 + 6));
    values.set("OUTLINE", pathOf(plane, outline));
    addPlaneTicks(values, plane);
    for (Dot const& dot : dots)
        addDot(values, plane.x(dot.a), plane.y(dot.b), dot.color, dots.size());
}

void fillLightness(TemplateValues values, ChartLayout const& chart)
{
    constexpr double width = 720;
    constexpr double height = 180;
    constexpr double left = 16;
    constexpr double right = width - 16;
    constexpr double top = 24;
    constexpr double bottom = height - 40;
    constexpr double tickStep = 10;
    constexpr double lightest = 100;

    std::vector<Dot> const dots = dotsOf(chart);
    double largest = 1;
    for (Dot const& dot : dots)
        largest = std::max(largest, dot.chroma());
    auto const xOf = [](double lightness) { return left + (right - left) * lightness / lightest; };
    values.set("CAPTION",
               "The same patches by lightness, from black at the left to white at the right. Neutral patches "
               "lie at the bottom of the strip.");
    values.set("DESCRIPTION", countOf(static_cast<long long>(dots.size()), "patch", "patches") + ", L* " +
                                  rangeText(dots, &Dot::lightness) + ", chroma to " + shortNumber(largest, 0) + ".");
    values.set("WIDTH", place(width));
    values.set("HEIGHT", place(height));
    values.set("LEFT", place(left));
    values.set("RIGHT", place(right));
    values.set("TOP", place(top));
    values.set("BOTTOM", place(bottom));
    values.set("LARGEST", shortNumber(largest, 0));
    values.set("BASELINE", place(bottom + 16));
    values.set("NAME_BASELINE", place(bottom + 34));
    for (double at = 0; at <= lightest; at += tickStep) {
        TemplateValues tick = values.add("TICK");
        tick.set("X", place(xOf(at)));
        tick.set("TEXT", shortNumber(at, 0));
    }
    for (Dot const& dot : dots)
        addDot(values, xOf(dot.lightness), bottom - (bottom - top) * dot.chroma() / largest, dot.color, dots.size());
}
