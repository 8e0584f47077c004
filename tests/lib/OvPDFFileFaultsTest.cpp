// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Documents that cannot be written, and their limits.

#include "lib/OvPDFFile.h"

#include "support/CapturedOutput.h"
#include "support/FailingSystem.h"
#include "support/PDFFileTest.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <filesystem>
#include <limits>

namespace
{

namespace fs = std::filesystem;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

class PDFFileFaultsTest : public PDFFileTest
{
protected:
    ~PDFFileFaultsTest() override { systemFaults = {}; }
};

} // namespace

TEST_F(PDFFileFaultsTest, DrawsNothingWithoutAPage)
{
    PDFFile file(path, String("title"));
    auto const draw = [&file] {
        file.setCMYK(1, 1, 1, 1);
        file.setRGB(1, 1, 1);
        file.drawRectangle({0, 0, 1, 1});
        file.drawText({0, 0}, String("a"));
    };
    draw();
    file.endPage();
    file.startPage({100, 100});
    file.endPage();
    draw();
    file.endPage();
    file.Close();
    draw();
    ReadPDF read(onDiskPath());
    ASSERT_EQ(read.countPages(), 1u);
    EXPECT_EQ(read.content(0), lengthsInMillimetres);
}

TEST_F(PDFFileFaultsTest, IsNoFileWithoutPages)
{
    PDFFile file(path, String("title"));
    EXPECT_TRUE(fs::exists(onDiskPath()));
    file.Close();
    EXPECT_TRUE(file.hasFailed());
    EXPECT_FALSE(fs::exists(onDiskPath()));
}

TEST_F(PDFFileFaultsTest, IsNoFileIfItsLastPageWasNotEnded)
{
    PDFFile file(path, String("title"));
    file.startPage({100, 100});
    file.endPage();
    file.startPage({100, 100});
    file.Close();
    EXPECT_TRUE(file.hasFailed());
    EXPECT_FALSE(fs::exists(onDiskPath()));
}

TEST_F(PDFFileFaultsTest, IsNoFileIfItIsDestroyedBeforeItIsClosed)
{
    {
        PDFFile file(path, String("title"));
        file.startPage({100, 100});
        file.endPage();
    }
    EXPECT_FALSE(fs::exists(onDiskPath()));
}

TEST_F(PDFFileFaultsTest, StaysWhenItIsClosedTwiceAndDestroyed)
{
    {
        PDFFile file(path, String("title"));
        file.startPage({100, 100});
        file.endPage();
        file.Close();
        file.Close();
        EXPECT_FALSE(file.hasFailed());
        EXPECT_EQ(file.getError(), 0);
    }
    EXPECT_EQ(ReadPDF(onDiskPath()).countPages(), 1u);
}

TEST_F(PDFFileFaultsTest, HasPagesOfAtMostFiveMetresAndEightCentimetres)
{
    for (RealSize const size : {RealSize{5080, 5080}, RealSize{5080, 1}, RealSize{0.001, 5080}}) {
        PDFFile file(path, String("title"));
        file.startPage(size);
        file.endPage();
        file.Close();
        EXPECT_FALSE(file.hasFailed());
        EXPECT_EQ(ReadPDF(onDiskPath()).countPages(), 1u);
    }
    for (RealSize const size : {RealSize{5080.001, 100}, RealSize{100, 5080.001}, RealSize{0, 100}, RealSize{100, -1},
                                RealSize{notANumber, 1}, RealSize{1, notANumber}, RealSize{infinity, 1}}) {
        PDFFile file(path, String("title"));
        file.startPage({100, 100});
        file.endPage();
        file.startPage(size);
        file.drawRectangle({0, 0, 1, 1});
        file.endPage();
        file.startPage({100, 100});
        file.endPage();
        file.Close();
        EXPECT_TRUE(file.hasFailed());
        EXPECT_FALSE(fs::exists(onDiskPath()));
    }
}

TEST_F(PDFFileFaultsTest, IsNoFileWithoutItsFont)
{
    TemporaryFolder const bare;
    respath = bare.pathWithSlash();
    PDFFile file(path, String("title"));
    file.startPage({100, 100});
    file.drawText({0, 0}, String("a"));
    file.endPage();
    file.Close();
    EXPECT_TRUE(file.hasFailed());
    EXPECT_FALSE(fs::exists(onDiskPath()));
}

TEST_F(PDFFileFaultsTest, IsNoFileWithAnEmptyFontOrAFolderInItsPlace)
{
    TemporaryFolder const empty;
    empty.write("labels.ttf", "");
    TemporaryFolder const strange;
    fs::create_directory(strange.path() / "labels.ttf");
    for (TemporaryFolder const* bad : {&empty, &strange}) {
        respath = bad->pathWithSlash();
        std::string const ignored = errorsOf([&] {
            PDFFile file(path, String("title"));
            file.startPage({100, 100});
            file.endPage();
            file.Close();
            EXPECT_TRUE(file.hasFailed());
        });
        EXPECT_FALSE(fs::exists(onDiskPath()));
    }
}

TEST_F(PDFFileFaultsTest, IsReadableWithAnyBytesAsItsFont)
{
    TemporaryFolder const damaged;
    damaged.write("labels.ttf", "endstream\nendobj\n%%EOF\n" + countingBytes(5000));
    respath = damaged.pathWithSlash();
    drawPage([](PDFFile& file) { file.drawRectangle({0, 0, 1, 1}); });
    EXPECT_EQ(ReadPDF(onDiskPath()).content(0), lengthsInMillimetres + "0 0 1 1 re f\n");
}

TEST_F(PDFFileFaultsTest, TellsThatItCannotBeCreated)
{
    fs::create_directory(onDiskPath());
    PDFFile file(path, String("title"));
    file.startPage({100, 100});
    file.drawRectangle({0, 0, 1, 1});
    file.endPage();
    file.Close();
    EXPECT_TRUE(file.hasFailed());
    EXPECT_EQ(file.getError(), EISDIR);
}

TEST_F(PDFFileFaultsTest, IsNoFileWhereverTheDiskIsFull)
{
    auto const write = [this](std::size_t freeBytes) {
        systemFaults.freeBytes = freeBytes;
        PDFFile file(path, String("title"));
        file.startPage({100, 100});
        file.endPage();
        file.Close();
        systemFaults = {};
        return file.getError();
    };
    ASSERT_EQ(write(1'000'000), 0);
    std::size_t const size = fs::file_size(onDiskPath());
    for (std::size_t const room : {std::size_t{0}, std::size_t{1}, size / 2, size - 1}) {
        EXPECT_EQ(write(room), ENOSPC);
        EXPECT_FALSE(fs::exists(onDiskPath()));
    }
    EXPECT_EQ(write(size), 0);
    EXPECT_TRUE(fs::exists(onDiskPath()));
}

TEST_F(PDFFileFaultsTest, IsNoFileIfTheDiskFailsAtTheEnd)
{
    PDFFile file(path, String("title"));
    file.startPage({100, 100});
    file.endPage();
    systemFaults.closingError = EIO;
    file.Close();
    EXPECT_TRUE(file.hasFailed());
    EXPECT_EQ(file.getError(), EIO);
    EXPECT_FALSE(fs::exists(onDiskPath()));
}

TEST_F(PDFFileFaultsTest, ReplacesAFileThatIsThere)
{
    holding(std::string(1'000'000, 'x'));
    drawPage([](PDFFile&) {});
    EXPECT_EQ(ReadPDF(onDiskPath()).countPages(), 1u);
    EXPECT_LT(onDisk().size(), 20'000u);
}
