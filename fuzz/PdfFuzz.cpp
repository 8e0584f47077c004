// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Any title, pages of any size and any drawing as PDF: the document is read back without a warning, or there is none.

#include "Fuzzing.h"
#include "lib/OvPDFFile.h"
#include "lib/OvPDFLibrary.h"
#include "support/TemporaryFolder.h"

#include <bit>
#include <filesystem>
#include <fuzzer/FuzzedDataProvider.h>
#include <vector>

namespace
{

double takeNumber(FuzzedDataProvider& input)
{
    switch (input.ConsumeIntegralInRange(0, 3)) {
    case 0:
        return input.ConsumeIntegral<std::uint8_t>();
    case 1:
        return input.ConsumeIntegral<std::int16_t>() / 4.0;
    case 2:
        return input.ConsumeProbability<double>();
    default:
        return std::bit_cast<double>(input.ConsumeIntegral<std::uint64_t>());
    }
}

String takeText(FuzzedDataProvider& input)
{
    std::string const text = input.ConsumeRandomLengthString(100);
    return String(String(), text.data(), text.size());
}

// Whether a text is UTF-8 of characters that exist.
bool isUTF8(std::string const& text)
{
    for (std::size_t i = 0; i < text.size();) {
        auto const first = static_cast<unsigned char>(text[i++]);
        int const more = first < 0x80   ? 0
                         : first < 0xc2 ? -1
                         : first < 0xe0 ? 1
                         : first < 0xf0 ? 2
                         : first < 0xf5 ? 3
                                        : -1;
        if (more < 0)
            return false;
        unsigned code = more == 0 ? first : first & (0x3fU >> static_cast<unsigned>(more));
        for (int k = 0; k < more; ++k, ++i) {
            if (i == text.size() || (static_cast<unsigned char>(text[i]) & 0xc0) != 0x80)
                return false;
            code = code << 6 | (static_cast<unsigned char>(text[i]) & 0x3fU);
        }
        constexpr unsigned least[] = {0, 0x80, 0x800, 0x10000};
        if (code < least[more] || code > 0x10ffff || (code >= 0xd800 && code < 0xe000))
            return false;
    }
    return true;
}

// What a document should be when it is closed.
struct Expected
{
    std::string title;
    std::vector<int> rectangles; // on each page
    bool hasPage = false;
    bool hasFailed = false;
};

void startPage(FuzzedDataProvider& input, PDFFile& file, Expected& expected)
{
    RealSize const size{takeNumber(input), takeNumber(input)};
    file.startPage(size);
    if (expected.hasPage)
        expected.rectangles.pop_back();
    expected.hasPage = size.width > 0 && size.width <= 5080 && size.height > 0 && size.height <= 5080;
    if (expected.hasPage)
        expected.rectangles.push_back(0);
    else
        expected.hasFailed = true;
}

void draw(FuzzedDataProvider& input, PDFFile& file, Expected& expected)
{
    double const numbers[] = {takeNumber(input), takeNumber(input), takeNumber(input), takeNumber(input)};
    switch (input.ConsumeIntegralInRange(0, 6)) {
    case 0:
        return file.setCMYK(numbers);
    case 1:
        return file.setRGB(numbers);
    case 2:
        return file.setTextHeight(numbers[0]);
    case 3:
        return file.drawText({numbers[0], numbers[1]}, takeText(input));
    case 4:
        return startPage(input, file, expected);
    case 5:
        file.endPage();
        expected.hasPage = false;
        return;
    default:
        file.drawRectangle({numbers[0], numbers[1], numbers[2], numbers[3]});
        if (expected.hasPage)
            ++expected.rectangles.back();
    }
}

class CountRectangles : public QPDFObjectHandle::ParserCallbacks
{
public:
    void handleObject(QPDFObjectHandle object) override
    {
        if (object.isOperator())
            count += object.getOperatorValue() == "re";
    }
    void handleEOF() override {}

    int count = 0;
};

void requireDocument(std::filesystem::path const& path, Expected const& expected)
{
    QPDF pdf;
    pdf.setSuppressWarnings(true);
    pdf.setAttemptRecovery(false);
    pdf.processFile(path.c_str());
    auto const pages = pdf.getAllPages();
    require(pages.size() == expected.rectangles.size(), "each page that was ended is a page");
    for (std::size_t i = 0; i < pages.size(); ++i) {
        CountRectangles counter;
        QPDFObjectHandle(pages[i]).parsePageContents(&counter);
        require(counter.count == expected.rectangles[i], "each rectangle is on its page");
    }
    std::string const title = pdf.getTrailer().getKey("/Info").getKey("/Title").getUTF8Value();
    require(!isUTF8(expected.title) || title == expected.title, "a title in UTF-8 stays as it is");
    require(pdf.getWarnings().empty(), "the reader has no warning");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    respath = String(PATCHLOOM_RESOURCES);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static TemporaryFolder const folder;
    std::filesystem::path const path = folder.path() / "drawing.pdf";
    FuzzedDataProvider input(data, size);
    String const title = takeText(input);
    Expected expected;
    expected.title.assign(title.begin(), title.end());
    PDFFile file(folder.pathOf("drawing.pdf"), title);
    startPage(input, file, expected);
    while (input.remaining_bytes() > 0)
        draw(input, file, expected);
    if (input.ConsumeBool() || expected.rectangles.size() % 2 == 1) {
        file.endPage();
        expected.hasPage = false;
    }
    file.Close();
    bool const hasFailed = expected.hasFailed || expected.hasPage || expected.rectangles.empty();
    require(file.hasFailed() == hasFailed, "a document fails only for its pages");
    require(std::filesystem::exists(path) != hasFailed, "a failed document is no file");
    if (!hasFailed)
        requireDocument(path, expected);
    return 0;
}
