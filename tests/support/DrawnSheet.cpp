// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/DrawnSheet.h"

#include "support/ChartCase.h"

#include <gtest/gtest.h>

#include <sstream>

namespace
{

// Every number of a line, in order.
std::vector<double> numbersIn(std::string const& line)
{
    std::vector<double> numbers;
    std::istringstream words(line);
    for (std::string word; words >> word;)
        if (std::istringstream number(word); number >> numbers.emplace_back())
            continue;
        else
            numbers.pop_back();
    return numbers;
}

// The text between two others. The second one ends the line.
std::string between(std::string const& line, std::string const& before, std::string const& end)
{
    std::size_t const first = line.find(before) + before.size();
    return line.substr(first, line.size() - end.size() - first);
}

} // namespace

DrawnSheet readSheet(std::filesystem::path const& file)
{
    DrawnSheet sheet;
    DrawnSheet::Colour colour;
    double height = 6;
    std::istringstream lines(bytesOf(file));
    for (std::string line; std::getline(lines, line, '\r');) {
        std::vector<double> const n = numbersIn(line);
        if (line.starts_with("%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 "))
            std::istringstream(between(line, ": 0 0 ", "\n")) >> sheet.page.width >> sheet.page.height;
        else if (line.ends_with(" setcmykcolor") || line.ends_with(" setrgbcolor"))
            colour = n;
        else if (line.ends_with(" fill") && n.size() == 10)
            sheet.rectangles.push_back({{n[0], n[1], n[4] - n[0], n[5] - n[1]}, colour});
        else if (line.ends_with(") show") && n.size() == 2)
            sheet.texts.push_back({{n[0], n[1]}, between(line, " moveto (", ") show"), colour, height});
        else if (line.starts_with("/Courier findfont ") && line.ends_with(" scalefont setfont") && n.size() == 1)
            height = n[0];
        else
            EXPECT_TRUE(line.ends_with(" scale") || line.ends_with("setfont\n") || line == "\nshowpage\n") << line;
    }
    return sheet;
}
