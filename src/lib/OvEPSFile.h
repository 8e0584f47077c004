// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Geometry.h"
#include "OvFile.h"

#include <string_view>

/// A one-page Encapsulated PostScript file, written one drawing call at a time. It has the same drawing operations as
/// TIFFFile, so that one function can draw into either.
///
/// Positions are PostScript user units: points until `setScale`, x to the right and y upwards from the lower-left
/// corner. Lines and outlines are stroked; everything else is filled. The colour is the one set last. Colour channels
/// run from 0 to 1 and are written as they are.
///
/// Each call writes one line that ends in the file's new-line string, a carriage return unless changed. Real numbers
/// have six digits after a decimal point, under every locale. PostScript has only finite single-precision numbers:
/// larger values are held at the largest of them, and not-a-number is written as 0.
///
/// A file that cannot be created or written is not reported. The calls then do nothing, and `hasFailed` tells so.
class EPSFile : public WFile
{
public:
    /// Opens the file `path`, replacing it, and writes the header. `size` is the page size in points.
    EPSFile(String path, RealSize size);

    /// Writes PostScript text. Each "%%" in it becomes a single "%", as in a printf format. A single "%" stays as it
    /// is; nothing is substituted.
    void writeStyle(char const* text);

    /// Writes nothing.
    void startPage(char const* label);
    void endPage();

    /// Enlarges everything that follows `factor` times.
    void setScale(double factor);
    void setLineWidth(double width);

    void drawLine(int x1, int y1, int x2, int y2);
    void drawRectangle(RealRect r);
    void drawRectangleOutline(RealRect r);
    void drawTriangle(int x1, int y1, int x2, int y2, int x3, int y3);

    /// Draws quarter arcs of the ellipse that fits the box with the given corners. `quarters` is the sum of 1 (upper
    /// right), 2 (upper left), 4 (lower left) and 8 (lower right). The arcs form one path, in this order: each starts
    /// where the one before it ended, across quarters that are left out. All four close the path. Filled arcs are
    /// stroked too.
    void drawEllipse(double x1, double y1, double x2, double y2, int quarters, bool fill);

    /// Sets the size of the next texts, in the font Courier.
    void setTextHeight(double height);

    /// Draws the first `length` bytes of `text` from the baseline position on, each one 8 units further right.
    void drawText(int x, int y, char const* text, int length);

    /// Draws `text` from the baseline position on. It may hold any bytes.
    void drawText(RealPos p, String text);

    void setCMYK(double c, double m, double y, double k);
    /// As above, from four channels.
    void setCMYK(double const* channels);
    void setRGB(double r, double g, double b);
    /// As above, from three channels.
    void setRGB(double const* channels);
    /// 0 is black, 1 is white.
    void setGray(double gray);

private:
    void put(std::string_view words);
    void putLine(std::string_view words);
    void putEscaped(char character);
    void putOutline(RealRect r, std::string_view paint);
};
