// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// Writes the bytes of a given file as one would with the C library alone: each number formatted by snprintf, each
/// number and each text between two numbers handed to fwrite.
class PlainWriting
{
public:
    explicit PlainWriting(std::string const& contents);

    void write(std::filesystem::path const& path) const;

private:
    struct Piece
    {
        enum Kind { text, whole, real } kind;
        std::string characters;
        double value;
    };

    void append(std::string const& characters);

    std::vector<Piece> pieces;
};
