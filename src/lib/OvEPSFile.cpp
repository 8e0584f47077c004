// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OvEPSFile.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <concepts>
#include <limits>
#include <type_traits>

// The file of a page of 20 x 10 points with a red rectangle, with visible line ends:
//
//     %!PS-Adobe-3.0 EPSF-3.0\n
//     %%BoundingBox: 0 0 20.000000 10.000000\n\r
//     1.000000 0.000000 0.000000 setrgbcolor\r
//     newpath 1.000000 2.000000 moveto 4.000000 2.000000 lineto ... 1.000000 2.000000 lineto fill\r
//     \nshowpage\n\r

namespace
{

// Distance of a Bezier curve's control points from the ends of a quarter circle, as a share of the radius.
constexpr double kappa = 0.5522847498307935;

constexpr long long fixedPitch = 8;
constexpr mode_t filePermissions = 0644;

double toPostScriptReal(double value)
{
    constexpr auto largest = static_cast<double>(std::numeric_limits<float>::max());
    return std::isnan(value) ? 0 : std::clamp(value, -largest, largest);
}

// Each writes a number to `text` and returns where it ends.

char* print(char* text, char* end, std::integral auto value)
{
    return std::to_chars(text, end, value).ptr;
}

char* print(char* text, char* end, double value)
{
    constexpr int digits = 6;
    constexpr unsigned one = 1'000'000;
    double const real = toPostScriptReal(value);
    double const scaled = std::abs(real) * one;
    // NOLINTNEXTLINE(bugprone-incorrect-roundings): `scaled` is not negative, and halves are handled below
    auto const millionths = scaled < 1e12 ? static_cast<unsigned long long>(scaled + 0.5) : 0;
    // to_chars is exact but takes ten times as long. The product is off by less than 0.0001. That matters only half way
    // between two texts, so only such values go to to_chars.
    if (std::abs(scaled - static_cast<double>(millionths)) > 0.499)
        return std::to_chars(text, end, real, std::chars_format::fixed, digits).ptr;
    if (std::signbit(real))
        *text++ = '-';
    text = print(text, end, millionths / one);
    *text = '.';
    auto fraction = static_cast<unsigned>(millionths % one);
    for (int i = digits; i > 0; --i) {
        text[i] = static_cast<char>('0' + fraction % 10);
        fraction /= 10;
    }
    return text + 1 + digits;
}

// A piece of PostScript to be written: up to ten numbers, each followed by a blank, and the words between them.
class Words
{
public:
    Words& operator<<(std::string_view words)
    {
        end = std::copy(words.begin(), words.end(), end);
        return *this;
    }

    template <typename Number>
    requires std::is_arithmetic_v<Number> Words& operator<<(Number number)
    {
        end = print(end, std::end(text), number);
        *end++ = ' ';
        return *this;
    }

    operator std::string_view() const { return {text, end}; }

private:
    static constexpr std::size_t longestNumber = 48;

    char text[12 * longestNumber];
    char* end = text;
};

} // namespace

EPSFile::EPSFile(String path, RealSize size) : WFile(path, false, filePermissions)
{
    writeLine("%%!PS-Adobe-3.0 EPSF-3.0\n%%%%BoundingBox: 0 0 %f %f\n", toPostScriptReal(size.width),
              toPostScriptReal(size.height));
}

void EPSFile::writeStyle(char const* text)
{
    for (char const* next = text; *next; ++next) {
        if (next[0] == '%' && next[1] == '%')
            ++next;
        writeBytes(next, 1);
    }
    writeNewLine();
}

void EPSFile::startPage(char const*) {}

void EPSFile::endPage()
{
    putLine("\nshowpage\n");
}

void EPSFile::setScale(double factor)
{
    putLine(Words() << factor << factor << "scale");
}

void EPSFile::setLineWidth(double width)
{
    putLine(Words() << width << "setlinewidth");
}

void EPSFile::drawLine(int x1, int y1, int x2, int y2)
{
    putLine(Words() << "newpath " << x1 << y1 << "moveto " << x2 << y2 << "lineto stroke");
}

void EPSFile::drawRectangle(RealRect r)
{
    putOutline(r, "fill");
}

void EPSFile::drawRectangleOutline(RealRect r)
{
    putOutline(r, "stroke");
}

void EPSFile::drawTriangle(int x1, int y1, int x2, int y2, int x3, int y3)
{
    putLine(Words() << "newpath " << x1 << y1 << "moveto " << x2 << y2 << "lineto " << x3 << y3
                    << "lineto closepath gsave stroke grestore fill");
}

void EPSFile::drawEllipse(double x1, double y1, double x2, double y2, int quarters, bool fill)
{
    double const cx = (x1 + x2) * 0.5;
    double const cy = (y1 + y2) * 0.5;
    double const kx = (x2 - cx) * kappa;
    double const ky = (y2 - cy) * kappa;

    // In the order of the bits: each arc's start, two control points and end.
    struct
    {
        double start[2];
        double curve[6];
    } const arcs[] = {
        {{x2, cy}, {x2, cy + ky, cx + kx, y2, cx, y2}},
        {{cx, y2}, {cx - kx, y2, x1, cy + ky, x1, cy}},
        {{x1, cy}, {x1, cy - ky, cx - kx, y1, cx, y1}},
        {{cx, y1}, {cx + kx, y1, x2, cy - ky, x2, cy}},
    };

    bool hasStarted = false;
    for (int i = 0; i < 4; ++i) {
        if ((quarters & 1 << i) == 0)
            continue;
        if (!hasStarted) {
            put(Words() << "newpath " << arcs[i].start[0] << arcs[i].start[1] << "moveto ");
            hasStarted = true;
        }
        Words words;
        for (double const coordinate : arcs[i].curve)
            words << coordinate;
        put(words << "curveto ");
    }
    if (quarters == 15)
        put("closepath ");
    putLine(fill ? "gsave stroke grestore fill " : "stroke ");
}

void EPSFile::setTextHeight(double height)
{
    putLine(Words() << "/Courier findfont " << height << "scalefont setfont");
}

void EPSFile::drawText(int x, int y, char const* text, int length)
{
    for (int i = 0; i < length; ++i) {
        put(Words() << x + fixedPitch * i << y << "moveto (");
        putEscaped(text[i]);
        put(") show ");
    }
    put("\n");
}

void EPSFile::drawText(RealPos p, String text)
{
    put(Words() << p.x << p.y << "moveto (");
    for (unsigned long long i = 0; i < text.getCount(); ++i)
        putEscaped(text.Char(i));
    putLine(") show");
}

void EPSFile::setCMYK(double c, double m, double y, double k)
{
    putLine(Words() << c << m << y << k << "setcmykcolor");
}

void EPSFile::setCMYK(double const* channels)
{
    setCMYK(channels[0], channels[1], channels[2], channels[3]);
}

void EPSFile::setRGB(double r, double g, double b)
{
    putLine(Words() << r << g << b << "setrgbcolor");
}

void EPSFile::setRGB(double const* channels)
{
    setRGB(channels[0], channels[1], channels[2]);
}

void EPSFile::setGray(double gray)
{
    putLine(Words() << gray << "setgray");
}

void EPSFile::put(std::string_view words)
{
    writeBytes(words.data(), static_cast<long long>(words.size()));
}

void EPSFile::putLine(std::string_view words)
{
    put(words);
    writeNewLine();
}

void EPSFile::putEscaped(char character)
{
    if (character == '(' || character == ')' || character == '\\')
        put("\\");
    put({&character, 1});
}

// Writes the rectangle's outline and the operator that paints it.
void EPSFile::putOutline(RealRect r, std::string_view paint)
{
    Words left, right, bottom, top;
    left << r.x;
    right << r.x + r.width;
    bottom << r.y;
    top << r.y + r.height;
    putLine(Words() << "newpath " << left << bottom << "moveto " << right << bottom << "lineto " << right << top
                    << "lineto " << left << top << "lineto " << left << bottom << "lineto " << paint);
}
