// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PlainWriting.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace
{

constexpr std::size_t longestNumber = 32;

using NumberText = char[longestNumber];

std::size_t formatWhole(NumberText& text, double value)
{
    return static_cast<std::size_t>(std::snprintf(text, sizeof text, "%d", static_cast<int>(value)));
}

std::size_t formatReal(NumberText& text, double value)
{
    return static_cast<std::size_t>(std::snprintf(text, sizeof text, "%f", value));
}

} // namespace

PlainWriting::PlainWriting(std::string const& contents)
{
    constexpr char const* numberCharacters = "-.0123456789";
    for (std::size_t start = 0; start < contents.size();) {
        std::size_t const number = std::min(contents.find_first_of(numberCharacters, start), contents.size());
        std::size_t const end = std::min(contents.find_first_not_of(numberCharacters, number), contents.size());
        append(contents.substr(start, number - start));
        append(contents.substr(number, end - number));
        start = end;
    }
}

// Takes characters for a number if the number's text is the same again, and for part of a text otherwise.
void PlainWriting::append(std::string const& characters)
{
    double const value = std::strtod(characters.c_str(), nullptr);
    NumberText text;
    if (std::abs(value) < 1e9 && characters == std::string(text, formatWhole(text, value)))
        pieces.push_back({Piece::whole, "", value});
    else if (std::abs(value) < 1e9 && characters == std::string(text, formatReal(text, value)))
        pieces.push_back({Piece::real, "", value});
    else if (!pieces.empty() && pieces.back().kind == Piece::text)
        pieces.back().characters += characters;
    else
        pieces.push_back({Piece::text, characters, 0});
}

void PlainWriting::write(std::filesystem::path const& path) const
{
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    if (!file)
        return;
    NumberText text;
    for (Piece const& piece : pieces) {
        if (piece.kind == Piece::text)
            std::fwrite(piece.characters.data(), 1, piece.characters.size(), file);
        else if (piece.kind == Piece::whole)
            std::fwrite(text, 1, formatWhole(text, piece.value), file);
        else
            std::fwrite(text, 1, formatReal(text, piece.value), file);
    }
    std::fclose(file);
}
