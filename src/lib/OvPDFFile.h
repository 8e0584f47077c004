// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Geometry.h"
#include "OvString.h"
#include "OvWholeFile.h"

#include <memory>
#include <string>

/// A PDF document, written one page after the other. It has the same drawing operations as EPSFile and TIFFFile.
///
/// Order of use: construct, then for each page `startPage`, draw, `endPage`, and at last `Close`. Drawing without a
/// page does nothing.
///
/// Positions are mm, x to the right and y upwards from the page's lower-left corner. Colours are device colours: the
/// file has no profile, no output intent, no transparency. Channels run from 0 to 1. Values outside are held at the
/// limits, and not-a-number is written as 0. Colours have ten digits after the decimal point, lengths six.
///
/// A document that cannot be written to its end, one without pages, and one that is destroyed before `Close`, leave no
/// file. `hasFailed` tells so.
class PDFFile
{
public:
    /// The longest side of a page, mm: 14,400 units of 1/72 inch.
    static constexpr double longestSide = 5080;

    /// The font of the labels: "labels.ttf" in the resources folder.
    static String fontPath();

    /// Opens the file `path`, replacing it, and reads the font. Without the font, the document fails.
    ///
    /// \param title  UTF-8; other bytes become replacement characters
    PDFFile(String path, String const& title);
    ~PDFFile();
    PDFFile(PDFFile const&) = delete;
    PDFFile& operator=(PDFFile const&) = delete;

    /// Starts a page with sides of at most `longestSide`; a longer one fails the document.
    void startPage(RealSize sizeMm);
    void endPage();

    /// Writes the document and closes the file. Its date of creation is the environment's SOURCE_DATE_EPOCH, seconds
    /// since 1970, or else the present time.
    void Close();

    /// Whether the document could not be written. The answer is final after `Close`.
    bool hasFailed() const { return file.hasFailed(); }

    /// The system's error number of the first failed write; 0 without one.
    int getError() const { return file.getError(); }

    void setCMYK(double c, double m, double y, double k);
    void setCMYK(double const* values) { setCMYK(values[0], values[1], values[2], values[3]); }
    void setRGB(double r, double g, double b);
    void setRGB(double const* values) { setRGB(values[0], values[1], values[2]); }

    void drawRectangle(RealRect r);

    /// Sets the size of the next texts, mm. At first it is 6 on each page.
    void setTextHeight(double height) { textHeight = height; }

    /// Draws `text` from the baseline position on, in a font of fixed pitch: 0.602 of its size a character. Bytes other
    /// than printable ASCII have no picture.
    void drawText(RealPos p, String text);

private:
    struct Document;

    WholeFile file;
    std::unique_ptr<Document> document;
    RealSize pageSize;
    bool hasPage = false;
    double textHeight = 6;
    std::string content;
};
