// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OvPDFFile.h"

#include "Folders.h"
#include "OvArray.h"
#include "OvFile.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <iterator>
#include <string_view>

#define POINTERHOLDER_TRANSITION 4
#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFWriter.hh>

// The content of a page with a label and a patch of 10 % cyan and 55.5 % magenta, 8 mm wide, 20 mm right of the sheet's
// lower-left corner and 30 mm above it:
//
//     2.8346456693 0 0 2.8346456693 0 0 cm     from here on, lengths are mm
//     0 0 0 1 k                                the fill colour, here black
//     BT /F 6 Tf 12.5 32 Td (A) Tj ET
//     0.1 0.555 0 0 k
//     20 30 8 8 re f

namespace
{

constexpr double pointsPerMillimetre = 72 / 25.4;
constexpr int colorDigits = 10;
constexpr int lengthDigits = 6;

// Appends a number in its shortest form with at most so many digits after the decimal point, and a blank.
void put(std::string& text, double value, int digits)
{
    constexpr double largest = 1e9;
    char number[32];
    double const real = std::isnan(value) ? 0 : std::clamp(value, -largest, largest);
    char* end = std::to_chars(number, std::end(number), real, std::chars_format::fixed, digits).ptr;
    while (end[-1] == '0')
        --end;
    if (end[-1] == '.')
        --end;
    std::string_view const shortest(number, end);
    text.append(shortest == "-0" ? "0" : shortest).append(1, ' ');
}

void putLengths(std::string& text, std::initializer_list<double> lengths)
{
    for (double const length : lengths)
        put(text, length, lengthDigits);
}

void putColor(std::string& text, std::initializer_list<double> channels, char const* operation)
{
    for (double const channel : channels)
        put(text, std::isnan(channel) ? 0 : std::clamp(channel, 0.0, 1.0), colorDigits);
    text.append(operation);
}

QPDFObjectHandle nameOf(char const* name)
{
    return QPDFObjectHandle::newName(name);
}

QPDFObjectHandle lengthOf(double points)
{
    std::string text;
    put(text, points, lengthDigits);
    text.pop_back();
    return QPDFObjectHandle::newReal(text);
}

// Seconds since 1970: those that the environment asks for, so that a document can be made again to the byte, or now.
std::chrono::seconds creationTime()
{
    constexpr long long endOfYear9999 = 253402300799;
    if (char const* const epoch = std::getenv("SOURCE_DATE_EPOCH")) {
        std::string_view const text = epoch;
        long long seconds = 0;
        auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
        if (error == std::errc() && end == text.data() + text.size() && seconds >= 0 && seconds <= endOfYear9999)
            return std::chrono::seconds(seconds);
    }
    return std::chrono::seconds(std::time(nullptr));
}

// "D:20261122093000Z"
std::string pdfDate(std::chrono::seconds sinceEpoch)
{
    std::chrono::sys_seconds const time(sinceEpoch);
    auto const day = std::chrono::floor<std::chrono::days>(time);
    std::chrono::year_month_day const date(day);
    std::chrono::hh_mm_ss const clock(time - day);
    String const text =
        String::format("D:%04d%02d%02d%02d%02d%02dZ", static_cast<int>(date.year()),
                       static_cast<int>(static_cast<unsigned>(date.month())),
                       static_cast<int>(static_cast<unsigned>(date.day())), static_cast<int>(clock.hours().count()),
                       static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()));
    return {text.begin(), text.end()};
}

std::string readFont()
{
    RFile file(PDFFile::fontPath());
    std::string bytes(static_cast<std::size_t>(std::max(file.getFileSize(), 0LL)), '\0');
    bytes.resize(
        static_cast<std::size_t>(std::max(file.readBytes(bytes.data(), static_cast<long long>(bytes.size())), 0LL)));
    return bytes;
}

// The font's own measures in thousandths of its size, from its tables head, hhea and hmtx. The name's prefix marks it
// as a subset: it has the characters of printable ASCII.
QPDFObjectHandle makeFont(QPDF& pdf, std::string const& bytes)
{
    constexpr int first = 32;
    constexpr int last = 126;
    constexpr int advance = 602;
    auto program = QPDFObjectHandle::newStream(&pdf, bytes);
    program.getDict().replaceKey("/Length1", QPDFObjectHandle::newInteger(static_cast<long long>(bytes.size())));
    auto descriptor = QPDFObjectHandle::parse("<< /Type /FontDescriptor /FontName /PTCHLM+DejaVuSansMono /Flags 33"
                                              " /FontBBox [-559 -375 718 1028] /ItalicAngle 0 /Ascent 928"
                                              " /Descent -236 /CapHeight 729 /StemV 100 >>");
    descriptor.replaceKey("/FontFile2", program);
    auto widths = QPDFObjectHandle::newArray();
    for (int i = first; i <= last; ++i)
        widths.appendItem(QPDFObjectHandle::newInteger(advance));
    auto font = QPDFObjectHandle::parse("<< /Type /Font /Subtype /TrueType /BaseFont /PTCHLM+DejaVuSansMono"
                                        " /Encoding /WinAnsiEncoding /FirstChar 32 /LastChar 126 >>");
    font.replaceKey("/FontDescriptor", pdf.makeIndirectObject(descriptor));
    font.replaceKey("/Widths", widths);
    return pdf.makeIndirectObject(font);
}

} // namespace

// The library reports failures by exceptions. They end here: the document then fails.
struct PDFFile::Document
{
    explicit Document(String const& title)
    {
        pdf.emptyPDF();
        std::string const fontProgram = readFont();
        hasFont = !fontProgram.empty();
        font = makeFont(pdf, fontProgram);
        auto info = QPDFObjectHandle::newDictionary();
        info.replaceKey("/Title", QPDFObjectHandle::newUnicodeString({title.begin(), title.end()}));
        info.replaceKey("/Creator", QPDFObjectHandle::newString("Patchloom"));
        info.replaceKey("/CreationDate", QPDFObjectHandle::newString(pdfDate(creationTime())));
        pdf.getTrailer().replaceKey("/Info", pdf.makeIndirectObject(info));
        auto root = pdf.getRoot();
        root.replaceKey("/ViewerPreferences",
                        QPDFObjectHandle::parse("<< /PrintScaling /None /PickTrayByPDFSize true >>"));
        root.replaceKey("/PageLabels", QPDFObjectHandle::parse("<< /Nums [0 << /S /D >>] >>"));
    }

    void addPage(RealSize size, std::string const& content)
    {
        auto const box =
            QPDFObjectHandle::newArray({lengthOf(0), lengthOf(0), lengthOf(size.width * pointsPerMillimetre),
                                        lengthOf(size.height * pointsPerMillimetre)});
        auto page = QPDFObjectHandle::newDictionary();
        page.replaceKey("/Type", nameOf("/Page"));
        for (char const* const name : {"/MediaBox", "/CropBox", "/TrimBox"})
            page.replaceKey(name, QPDFObjectHandle(box).shallowCopy());
        page.replaceKey("/Resources", QPDFObjectHandle::parse("<< /Font << >> >>"));
        page.getKey("/Resources").getKey("/Font").replaceKey("/F", font);
        page.replaceKey("/Contents", QPDFObjectHandle::newStream(&pdf, content));
        pages.addPage(pdf.makeIndirectObject(page), false);
        hasPages = true;
    }

    // The whole file's bytes. The same document gives the same bytes.
    std::string bytes()
    {
        QPDFWriter writer(pdf);
        writer.setOutputMemory();
        writer.setMinimumPDFVersion("1.7");
        writer.setDeterministicID(true);
        writer.setCompressStreams(true);
        writer.write();
        auto const buffer = writer.getBufferSharedPointer();
        auto const* const start = buffer->getBuffer();
        return {start, start + buffer->getSize()};
    }

    QPDF pdf;
    QPDFPageDocumentHelper pages{pdf};
    QPDFObjectHandle font;
    bool hasFont = false;
    bool hasPages = false;
};

String PDFFile::fontPath()
{
    return String(respath, "labels.ttf");
}

PDFFile::PDFFile(String path, String const& title) : file(path)
{
    if (!file.isOpen())
        return;
    try {
        document = std::make_unique<Document>(title);
        if (!document->hasFont)
            document.reset();
    } catch (std::exception const&) {
        document.reset();
    }
    if (!document)
        file.giveUp();
}

PDFFile::~PDFFile()
{
    file.giveUp();
}

void PDFFile::startPage(RealSize sizeMm)
{
    bool const fits = sizeMm.width > 0 && sizeMm.height > 0 && std::max(sizeMm.width, sizeMm.height) <= longestSide;
    if (!fits)
        file.giveUp();
    hasPage = fits && document;
    pageSize = sizeMm;
    textHeight = 6;
    content.clear();
    put(content, pointsPerMillimetre, colorDigits);
    content += "0 0 ";
    put(content, pointsPerMillimetre, colorDigits);
    content += "0 0 cm\n";
}

void PDFFile::endPage()
{
    if (!hasPage)
        return;
    hasPage = false;
    try {
        document->addPage(pageSize, content);
    } catch (std::exception const&) {
        file.giveUp();
    }
}

void PDFFile::Close()
{
    if (!file.isOpen())
        return;
    if (hasPage || !document || !document->hasPages)
        file.giveUp();
    if (!file.hasFailed()) {
        try {
            std::string const bytes = document->bytes();
            file.write(bytes.data(), bytes.size());
        } catch (std::exception const&) {
            file.giveUp();
        }
    }
    document.reset();
    file.close();
}

void PDFFile::setCMYK(double c, double m, double y, double k)
{
    if (hasPage)
        putColor(content, {c, m, y, k}, "k\n");
}

void PDFFile::setRGB(double r, double g, double b)
{
    if (hasPage)
        putColor(content, {r, g, b}, "rg\n");
}

void PDFFile::drawRectangle(RealRect r)
{
    if (!hasPage)
        return;
    putLengths(content, {r.x, r.y, r.width, r.height});
    content += "re f\n";
}

void PDFFile::drawText(RealPos p, String text)
{
    if (!hasPage)
        return;
    content += "BT /F ";
    putLengths(content, {textHeight});
    content += "Tf ";
    putLengths(content, {p.x, p.y});
    content += "Td " + QPDFObjectHandle::newString({text.begin(), text.end()}).unparse() + " Tj ET\n";
}
