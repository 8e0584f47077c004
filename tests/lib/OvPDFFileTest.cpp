// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvPDFFile.h"

#include "support/ChartCase.h"
#include "support/DecimalCommaLocale.h"
#include "support/PDFFileTest.h"
#include "support/StringText.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <ctime>
#include <limits>
#include <set>

namespace
{

using testing::DoubleNear;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Pointwise;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

} // namespace

TEST_F(PDFFileTest, WritesWhatIsDrawnAsOperators)
{
    drawPage([](PDFFile& file) {
        file.setCMYK(0, 0, 0, 1);
        file.drawText({12.5, 32}, String("A"));
        file.setCMYK(0.1, 0.555, 0, 0);
        file.drawRectangle({20, 30, 8, 8});
        file.setRGB(1, 0.25, 0);
        file.drawRectangle({-1.5, 0, 0.001, 5080});
    });
    EXPECT_EQ(ReadPDF(onDiskPath()).content(0), "2.8346456693 0 0 2.8346456693 0 0 cm\n"
                                                "0 0 0 1 k\n"
                                                "BT /F 6 Tf 12.5 32 Td (A) Tj ET\n"
                                                "0.1 0.555 0 0 k\n"
                                                "20 30 8 8 re f\n"
                                                "1 0.25 0 rg\n"
                                                "-1.5 0 0.001 5080 re f\n");
}

TEST_F(PDFFileTest, RoundsColoursToTenDigitsAndLengthsToSix)
{
    // 1/3 and 2/3, and 123/255 = 0.48235294117...
    EXPECT_EQ(operatorsOf([](PDFFile& file) { file.setRGB(1.0 / 3, 2.0 / 3, 123.0 / 255); }),
              "0.3333333333 0.6666666667 0.4823529412 rg\n");
    EXPECT_EQ(operatorsOf([](PDFFile& file) {
                  file.drawRectangle({1.0 / 3, 2.0 / 3, 0.0000014, 0.0000016});
              }),
              "0.333333 0.666667 0.000001 0.000002 re f\n");
}

TEST_F(PDFFileTest, WritesNoMinusBeforeZero)
{
    EXPECT_EQ(operatorsOf([](PDFFile& file) {
                  file.setRGB(-0.0, -1e-12, 0);
                  file.drawRectangle({-0.0, -0.0000001, 0, 100});
              }),
              "0 0 0 rg\n0 0 0 100 re f\n");
}

TEST_F(PDFFileTest, TakesColoursAsArrays)
{
    double const channels[] = {0.5, 0.25, 0.125, 1};
    EXPECT_EQ(operatorsOf([&](PDFFile& file) {
                  file.setCMYK(channels);
                  file.setRGB(channels);
              }),
              "0.5 0.25 0.125 1 k\n0.5 0.25 0.125 rg\n");
}

TEST_F(PDFFileTest, HoldsColoursWithinTheirLimits)
{
    EXPECT_EQ(operatorsOf([](PDFFile& file) {
                  file.setCMYK(-0.5, 1.0000001, infinity, notANumber);
                  file.setRGB(-infinity, 1e300, -notANumber);
              }),
              "0 1 1 0 k\n0 1 0 rg\n");
}

TEST_F(PDFFileTest, HoldsLengthsWithinWhatReadersTake)
{
    EXPECT_EQ(operatorsOf([](PDFFile& file) {
                  file.drawRectangle({notANumber, infinity, -infinity, -1e300});
                  file.setTextHeight(notANumber);
                  file.drawText({1e10, -1e10}, String("a"));
              }),
              "0 1000000000 -1000000000 -1000000000 re f\n"
              "BT /F 0 Tf 1000000000 -1000000000 Td (a) Tj ET\n");
}

TEST_F(PDFFileTest, WritesTheSameUnderADecimalCommaLocale)
{
    auto const draw = [](PDFFile& file) {
        file.setRGB(0.5, 0.25, 0.1);
        file.drawRectangle({1.5, 1234.5, 0.25, 8});
    };
    drawPage(draw);
    std::string const plain = onDisk();
    DecimalCommaLocale const german;
    ASSERT_TRUE(german.isInForce());
    drawPage(draw);
    EXPECT_EQ(onDisk(), plain);
}

TEST_F(PDFFileTest, EscapesTextsSoThatTheyEndWhereTheyShould)
{
    EXPECT_EQ(operatorsOf([](PDFFile& file) {
                  file.drawText({0, 0}, String("a(b)c\\d"));
              }),
              "BT /F 6 Tf 0 0 Td (a\\(b\\)c\\\\d) Tj ET\n");
    // Any bytes, unbalanced parentheses among them, leave a page that a reader understands to its end.
    std::string const bytes = countingBytes(256) + "((\\";
    drawPage([&](PDFFile& file) {
        file.drawText({0, 0}, String(String(), bytes.data(), bytes.size()));
        file.drawRectangle({1, 2, 3, 4});
    });
    auto tokens = ReadPDF(onDiskPath()).page(0).getPageContents();
    ASSERT_EQ(tokens.size(), 1u);
    std::string const content = ReadPDF(onDiskPath()).content(0);
    std::size_t const start = content.find(" Td ") + 4;
    auto text = QPDFObjectHandle::parse(content.substr(start, content.rfind(" Tj ET") - start));
    EXPECT_EQ(text.getStringValue(), bytes);
    EXPECT_THAT(content, testing::EndsWith(" Tj ET\n1 2 3 4 re f\n"));
}

TEST_F(PDFFileTest, DrawsTextsInTheHeightThatWasSetLast)
{
    EXPECT_EQ(operatorsOf([](PDFFile& file) {
                  file.setTextHeight(3);
                  file.drawText({1, 2}, String("100 mm"));
              }),
              "BT /F 3 Tf 1 2 Td (100 mm) Tj ET\n");
}

TEST_F(PDFFileTest, StartsEachPageWithTextsOfSixMillimetres)
{
    PDFFile file(path, String("title"));
    for (int i = 0; i < 2; ++i) {
        file.startPage({100, 100});
        file.drawText({0, 0}, String("a"));
        file.setTextHeight(3);
        file.endPage();
    }
    file.Close();
    ReadPDF read(onDiskPath());
    EXPECT_EQ(read.content(1), read.content(0));
    EXPECT_THAT(read.content(1), HasSubstr("BT /F 6 Tf"));
}

TEST_F(PDFFileTest, HasBoxesOfThePagesSize)
{
    // 210 mm are 210 / 25.4 x 72 = 595.275590551... points.
    struct
    {
        RealSize size;
        double width;
        double height;
    } const cases[] = {{{210, 297}, 595.275591, 841.889764},
                       {{25.4, 50.8}, 72, 144},
                       {{53.98, 85.6}, 153.014173, 242.645669},
                       {{5080, 0.3528}, 14400, 1.000063}};
    for (auto const& [size, width, height] : cases) {
        PDFFile file(path, String("title"));
        file.startPage(size);
        file.endPage();
        file.Close();
        ReadPDF read(onDiskPath());
        for (char const* const box : {"/MediaBox", "/CropBox", "/TrimBox"})
            EXPECT_THAT(numbersOf(read.page(0).getKey(box)),
                        Pointwise(DoubleNear(0.0000005), std::vector<double>{0, 0, width, height}))
                << box;
        EXPECT_FALSE(read.page(0).hasKey("/Rotate"));
    }
}

TEST_F(PDFFileTest, AsksViewersNotToScaleAndForTheTrayOfThePagesSize)
{
    drawPage([](PDFFile&) {});
    ReadPDF read(onDiskPath());
    auto wishes = read.root().getKey("/ViewerPreferences");
    EXPECT_EQ(wishes.getKey("/PrintScaling").getName(), "/None");
    EXPECT_TRUE(wishes.getKey("/PickTrayByPDFSize").getBoolValue());
    // PickTrayByPDFSize came with this version.
    EXPECT_TRUE(onDisk().starts_with("%PDF-1.7\n"));
}

TEST_F(PDFFileTest, HasNoProfileNoOutputIntentAndNoTransparency)
{
    drawPage([](PDFFile& file) {
        file.setCMYK(1, 0, 0, 0);
        file.drawRectangle({0, 0, 10, 10});
    });
    ReadPDF read(onDiskPath());
    EXPECT_FALSE(read.root().hasKey("/OutputIntents"));
    EXPECT_FALSE(read.page(0).hasKey("/Group"));
    EXPECT_EQ(read.page(0).getKey("/Resources").getKeys(), std::set<std::string>{"/Font"});
}

TEST_F(PDFFileTest, LabelsItsPagesWithNumbersFromOneOn)
{
    drawPage([](PDFFile&) {});
    ReadPDF read(onDiskPath());
    auto labels = read.root().getKey("/PageLabels").getKey("/Nums");
    ASSERT_EQ(labels.getArrayNItems(), 2);
    EXPECT_EQ(labels.getArrayItem(0).getIntValue(), 0);
    EXPECT_EQ(labels.getArrayItem(1).getKey("/S").getName(), "/D");
    EXPECT_FALSE(labels.getArrayItem(1).hasKey("/St"));
}

TEST_F(PDFFileTest, TellsTitleAndProgram)
{
    EXPECT_EQ(titleOf("My chart"), "My chart");
    EXPECT_EQ(ReadPDF(onDiskPath()).infoText("/Creator"), "Patchloom");
}

TEST_F(PDFFileTest, KeepsTitlesInAnyScript)
{
    for (std::string const title : {"",
                                    "f(1)",
                                    "((((",
                                    "))",
                                    "\\",
                                    "\\)",
                                    "a\nb\r\tc",
                                    "<</Title (x)>>",
                                    "endobj\nstream",
                                    "%comment",
                                    "Größe Œuvre",
                                    "Жёлтый",
                                    "色票 テスト",
                                    "مخطط الألوان",
                                    "צבע",
                                    "सारणी",
                                    "🎨🖨",
                                    "\u00fe\u00ffab",
                                    "\u00ef\u00bb\u00bf",
                                    "\x18\x1f\x7f"})
        EXPECT_EQ(titleOf(title), title);
    std::string const longTitle(100'000, '(');
    EXPECT_EQ(titleOf(longTitle), longTitle);
}

TEST_F(PDFFileTest, ReplacesBytesOfATitleThatAreNotUTF8)
{
    std::string const replacement = "\uFFFD";
    EXPECT_EQ(titleOf("a\xff"
                      "b"),
              "a" + replacement + "b");
    EXPECT_EQ(titleOf("\xe4"), replacement);
    // Cut, overlong, half a pair, beyond the last character: none is an exception, and the rest stays.
    for (std::string const broken : {"x\xc3", "x\xe2\x82", "x\xf0\x9f\x8e", "x\xc0\xaf", "x\xed\xa0\x80",
                                     "x\xf4\x90\x80\x80", "x\xf8\x88\x80\x80\x80", "x\x80\x80\x80"})
        EXPECT_EQ(titleOf(broken).front(), 'x');
}

TEST_F(PDFFileTest, KeepsNULsInItsTitle)
{
    EXPECT_EQ(titleOf(std::string("a\0b", 3)), std::string("a\0b", 3));
}

TEST_F(PDFFileTest, TakesItsDateFromTheEnvironment)
{
    struct
    {
        char const* seconds;
        char const* date;
    } const cases[] = {{"0", "D:19700101000000Z"},
                       {"951782399", "D:20000228235959Z"},
                       {"951782400", "D:20000229000000Z"},
                       {"1795340096", "D:20261122093456Z"},
                       {"253402300799", "D:99991231235959Z"}};
    for (auto const& [seconds, date] : cases) {
        setenv("SOURCE_DATE_EPOCH", seconds, 1);
        EXPECT_EQ(creationDate(), date);
    }
}

TEST_F(PDFFileTest, TakesThePresentTimeInsteadOfNonsense)
{
    auto const now = [] {
        std::time_t const seconds = std::time(nullptr);
        std::tm parts = {};
        gmtime_r(&seconds, &parts);
        char text[32];
        std::size_t const size = std::strftime(text, sizeof text, "D:%Y%m%d%H%M%SZ", &parts);
        return std::string(text, size);
    };
    for (char const* const nonsense : {static_cast<char const*>(nullptr), "", "-1", "+1", " 1", "1 ", "1.5", "0x10",
                                       "yesterday", "253402300800", "99999999999999999999"}) {
        if (nonsense)
            setenv("SOURCE_DATE_EPOCH", nonsense, 1);
        else
            unsetenv("SOURCE_DATE_EPOCH");
        std::string const before = now();
        std::string const date = creationDate();
        EXPECT_LE(before, date);
        EXPECT_LE(date, now());
    }
}

TEST_F(PDFFileTest, HasTheSameBytesAtTheSameTime)
{
    auto const draw = [](PDFFile& file) {
        for (int i = 0; i < 100; ++i) {
            file.setRGB(i / 100.0, 0, 1);
            file.drawRectangle({1.0 * i, 0, 1, 1});
        }
    };
    drawPage(draw);
    std::string const first = onDisk();
    drawPage(draw);
    EXPECT_EQ(onDisk(), first);
    setenv("SOURCE_DATE_EPOCH", "2", 1);
    drawPage(draw);
    EXPECT_NE(onDisk(), first);
}

TEST_F(PDFFileTest, HasAnIdentityThatTellsItsContents)
{
    auto const identityOf = [this](double red) {
        drawPage([red](PDFFile& file) { file.setRGB(red, 0, 0); });
        QPDF pdf;
        pdf.processFile(onDiskPath().c_str());
        return pdf.getTrailer().getKey("/ID").unparse();
    };
    std::string const one = identityOf(1);
    EXPECT_EQ(one.size(), 2 * 34 + 5u) << one;
    EXPECT_EQ(identityOf(1), one);
    EXPECT_NE(identityOf(0), one);
}

TEST_F(PDFFileTest, EmbedsTheFontOfTheResources)
{
    drawPage([](PDFFile& file) { file.drawText({0, 0}, String("1")); });
    ReadPDF read(onDiskPath());
    auto font = read.page(0).getKey("/Resources").getKey("/Font").getKey("/F");
    EXPECT_EQ(font.getKey("/Subtype").getName(), "/TrueType");
    EXPECT_THAT(font.getKey("/BaseFont").getName(), MatchesRegex("/[A-Z]{6}[+]DejaVuSansMono"));
    EXPECT_EQ(font.getKey("/Encoding").getName(), "/WinAnsiEncoding");
    EXPECT_EQ(font.getKey("/FirstChar").getIntValue(), ' ');
    EXPECT_EQ(font.getKey("/LastChar").getIntValue(), '~');
    EXPECT_EQ(font.getKey("/Widths").getArrayNItems(), '~' - ' ' + 1);
    auto program = font.getKey("/FontDescriptor").getKey("/FontFile2");
    std::string const bytes = bytesOf(textOf(PDFFile::fontPath()));
    EXPECT_GT(bytes.size(), 1000u);
    auto const data = program.getStreamData();
    EXPECT_TRUE(std::string(data->getBuffer(), data->getBuffer() + data->getSize()) == bytes);
    EXPECT_EQ(program.getDict().getKey("/Length1").getIntValue(), static_cast<long long>(bytes.size()));
}

TEST_F(PDFFileTest, SharesOneFontBetweenItsPages)
{
    PDFFile file(path, String("title"));
    for (int i = 0; i < 3; ++i) {
        file.startPage({100, 100});
        file.endPage();
    }
    file.Close();
    ReadPDF read(onDiskPath());
    auto const fontOf = [&](std::size_t index) {
        return read.page(index).getKey("/Resources").getKey("/Font").getKey("/F").getObjectID();
    };
    EXPECT_GT(fontOf(0), 0);
    EXPECT_EQ(fontOf(1), fontOf(0));
    EXPECT_EQ(fontOf(2), fontOf(0));
}

TEST_F(PDFFileTest, HasPagesInTheOrderInWhichTheyWereDrawn)
{
    for (int const count : {1, 2, 10, 200}) {
        PDFFile file(path, String("title"));
        for (int i = 1; i <= count; ++i) {
            file.startPage({100.0 + i, 100});
            file.drawRectangle({0, 0, 1.0 * i, 1});
            file.endPage();
        }
        file.Close();
        ReadPDF read(onDiskPath());
        ASSERT_EQ(read.countPages(), static_cast<std::size_t>(count));
        for (int i = 1; i <= count; ++i) {
            auto const index = static_cast<std::size_t>(i - 1);
            EXPECT_EQ(read.content(index), lengthsInMillimetres + "0 0 " + std::to_string(i) + " 1 re f\n");
            EXPECT_NEAR(numbersOf(read.page(index).getKey("/MediaBox"))[2], (100.0 + i) / 25.4 * 72, 0.000001);
        }
    }
}
