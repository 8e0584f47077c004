// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Folders.h"
#include "lib/OvPDFFile.h"
#include "support/FileTest.h"
#include "support/ReadPDF.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>

/// The first line of each page.
inline std::string const lengthsInMillimetres = "2.8346456693 0 0 2.8346456693 0 0 cm\n";

/// A test of a PDF document at `path`. Its time is the first second of 1970.
class PDFFileTest : public FileTest
{
protected:
    PDFFileTest() { setenv("SOURCE_DATE_EPOCH", "1", 1); }
    ~PDFFileTest() override
    {
        unsetenv("SOURCE_DATE_EPOCH");
        respath = resources;
    }

    /// A document of one A4 page.
    template <typename Draw>
    void drawPage(Draw const& draw) const
    {
        PDFFile file(path, String("title"));
        file.startPage({210, 297});
        draw(file);
        file.endPage();
        file.Close();
        EXPECT_FALSE(file.hasFailed());
    }

    /// What a drawing adds to a page.
    template <typename Draw>
    std::string operatorsOf(Draw const& draw) const
    {
        drawPage(draw);
        std::string const content = ReadPDF(onDiskPath()).content(0);
        EXPECT_EQ(content.substr(0, lengthsInMillimetres.size()), lengthsInMillimetres);
        return content.substr(std::min(content.size(), lengthsInMillimetres.size()));
    }

    void writeWithTitle(std::string const& title) const
    {
        PDFFile file(path, String(String(), title.data(), title.size()));
        file.startPage({210, 297});
        file.endPage();
        file.Close();
        EXPECT_FALSE(file.hasFailed());
    }

    std::string titleOf(std::string const& title) const
    {
        writeWithTitle(title);
        return ReadPDF(onDiskPath()).infoText("/Title");
    }

    std::string creationDate() const
    {
        drawPage([](PDFFile&) {});
        return ReadPDF(onDiskPath()).infoText("/CreationDate");
    }

    std::filesystem::path onDiskPath() const { return folder.path() / "file"; }

private:
    String const resources = respath;
};
