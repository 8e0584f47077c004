// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/ReadPDF.h"

#include <gtest/gtest.h>

#include <exception>
#include <memory>
#include <sstream>

namespace
{

constexpr double pointsPerMillimetre = 72 / 25.4;

std::vector<double> numbersBefore(std::string const& line)
{
    std::istringstream words(line);
    std::vector<double> numbers;
    for (double number = 0; words >> number;)
        numbers.push_back(number);
    return numbers;
}

// "BT /F 6 Tf 12.5 32 Td (A) Tj ET"
DrawnSheet::Text textOf(std::string const& line, DrawnSheet::Colour const& colour)
{
    DrawnSheet::Text text;
    std::istringstream words(line.substr(6));
    std::string operation;
    words >> text.height >> operation >> text.position.x >> text.position.y;
    EXPECT_EQ(operation, "Tf") << line;
    std::size_t const start = line.find("Td (") + 4;
    text.text = line.substr(start, line.rfind(") Tj") - start);
    text.colour = colour;
    return text;
}

} // namespace

ReadPDF::ReadPDF(std::filesystem::path const& path)
{
    pdf.setSuppressWarnings(true);
    try {
        pdf.processFile(path.c_str());
        pdf.getAllPages();
    } catch (std::exception const& fault) {
        ADD_FAILURE() << fault.what();
        pdf.emptyPDF();
    }
    EXPECT_FALSE(pdf.anyWarnings());
}

std::string ReadPDF::content(std::size_t index)
{
    auto const buffer = page(index).getKey("/Contents").getStreamData();
    return {buffer->getBuffer(), buffer->getBuffer() + buffer->getSize()};
}

DrawnSheet ReadPDF::drawing(std::size_t index)
{
    DrawnSheet sheet;
    std::vector<double> const box = numbersOf(page(index).getKey("/MediaBox"));
    sheet.page = {box.at(2) - box.at(0), box.at(3) - box.at(1)};
    DrawnSheet::Colour colour;
    bool isFirst = true;
    std::istringstream lines(content(index));
    for (std::string line; std::getline(lines, line); isFirst = false) {
        std::vector<double> const n = numbersBefore(line);
        if (isFirst) {
            EXPECT_TRUE(line.ends_with(" cm"));
            EXPECT_NEAR(n.at(0), pointsPerMillimetre, 1e-10);
            EXPECT_NEAR(n.at(3), pointsPerMillimetre, 1e-10);
        } else if (line.ends_with(" k") || line.ends_with(" rg"))
            colour = n;
        else if (line.ends_with(" re f") && n.size() == 4)
            sheet.rectangles.push_back({{n[0], n[1], n[2], n[3]}, colour});
        else if (line.starts_with("BT /F ") && line.ends_with(") Tj ET"))
            sheet.texts.push_back(textOf(line, colour));
        else
            ADD_FAILURE() << line;
    }
    return sheet;
}

std::string ReadPDF::infoText(std::string const& key)
{
    return info().hasKey(key) ? info().getKey(key).getUTF8Value() : "";
}

std::vector<double> numbersOf(QPDFObjectHandle box)
{
    std::vector<double> numbers;
    for (QPDFObjectHandle const& number : box.getArrayAsVector())
        numbers.push_back(QPDFObjectHandle(number).getNumericValue());
    return numbers;
}
