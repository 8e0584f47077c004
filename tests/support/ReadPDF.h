// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/OvPDFLibrary.h"
#include "support/DrawnSheet.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

/// A PDF document as the library reads it. A document that it cannot read fails the test.
class ReadPDF
{
public:
    explicit ReadPDF(std::filesystem::path const& path);
    ReadPDF(ReadPDF const&) = delete;
    ReadPDF& operator=(ReadPDF const&) = delete;

    std::size_t countPages() { return pdf.getAllPages().size(); }

    /// A page's dictionary, counted from 0.
    QPDFObjectHandle page(std::size_t index) { return pdf.getAllPages().at(index); }

    /// A page's operators.
    std::string content(std::size_t index);

    /// A page's drawing. A line that no sheet should have fails the test.
    DrawnSheet drawing(std::size_t index);

    QPDFObjectHandle root() { return pdf.getRoot(); }
    QPDFObjectHandle info() { return pdf.getTrailer().getKey("/Info"); }

    /// The text of an entry of the document's information; empty without one.
    std::string infoText(std::string const& key);

private:
    QPDF pdf;
};

/// The four numbers of a box.
std::vector<double> numbersOf(QPDFObjectHandle box);
