// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Writes the tables of examples/: make_examples <characterisation data> <output folder>

#include "CharacterisationData.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>

namespace
{

using Rgb = std::array<int, 3>;

/// The i-th of steps equal intervals from 0 to 255.
int level(int i, int steps)
{
    return static_cast<int>(std::lround(255.0 * i / steps));
}

/// All combinations of the levels in the three channels, blue changing fastest.
std::vector<Rgb> cube(std::vector<int> const& levels)
{
    std::vector<Rgb> colours;
    for (int const red : levels)
        for (int const green : levels)
            for (int const blue : levels)
                colours.push_back({red, green, blue});
    return colours;
}

/// A regular cube of nine steps, refined where eyes and profiles are most critical: along the greys and along the
/// edges from black and from white to the six pure hues.
std::vector<Rgb> profilingColours()
{
    std::vector<int> levels;
    for (int i = 0; i <= 8; ++i)
        levels.push_back(level(i, 8));
    std::vector<Rgb> colours = cube(levels);

    for (int i = 0; i <= 80; ++i) {
        if (i % 10 != 0) // every tenth is on the cube
            colours.push_back({level(i, 80), level(i, 80), level(i, 80)});
    }

    constexpr std::array<Rgb, 6> hues{{{1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 1, 1}, {0, 0, 1}, {1, 0, 1}}};
    for (Rgb const& hue : hues) {
        for (int i = 1; i < 16; i += 2) {
            int const between = level(i, 16);
            colours.push_back({hue[0] * between, hue[1] * between, hue[2] * between});
            colours.push_back({hue[0] ? 255 : between, hue[1] ? 255 : between, hue[2] ? 255 : between});
        }
    }
    return colours;
}

/// The eight corners of the colour cube, the eight corners of the cube half its size inside it, and eight greys.
std::vector<Rgb> fewColours()
{
    std::vector<Rgb> colours = cube({0, 255});
    std::ranges::copy(cube({64, 191}), std::back_inserter(colours));
    for (int i = 1; i <= 8; ++i)
        colours.push_back({level(i, 9), level(i, 9), level(i, 9)});
    return colours;
}

/// 33 greys from 64 to 160, each with its six neighbours that have one channel 8 higher or lower.
std::vector<Rgb> nearNeutralColours()
{
    constexpr int cast = 8;
    std::vector<Rgb> colours;
    for (int grey = 64; grey <= 160; grey += 3) {
        colours.push_back({grey, grey, grey});
        for (std::size_t channel = 0; channel < 3; ++channel)
            for (int const difference : {cast, -cast}) {
                Rgb colour{grey, grey, grey};
                colour[channel] += difference;
                colours.push_back(colour);
            }
    }
    return colours;
}

template <class Row>
void write(std::filesystem::path const& file, char const* header, std::vector<Row> const& rows)
{
    std::ofstream stream(file);
    stream << header << '\n';
    for (Row const& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i)
            stream << (i == 0 ? "" : " ") << row[i];
        stream << '\n';
    }
    if (!stream.flush()) {
        std::cerr << "Cannot write " << file.string() << '\n';
        std::exit(EXIT_FAILURE);
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::cerr << "usage: make_examples <characterisation data> <output folder>\n";
        return EXIT_FAILURE;
    }
    std::vector<MeasuredPatch> const patches = readCharacterisationData(argv[1]);
    if (patches.empty()) {
        std::cerr << "Cannot read " << argv[1] << '\n';
        return EXIT_FAILURE;
    }
    std::vector<Cmyk> devices;
    std::ranges::transform(patches, std::back_inserter(devices), &MeasuredPatch::device);

    std::filesystem::path const folder = argv[2];
    write(folder / "it8.7-4-cmyk.txt", "CMYK_C CMYK_M CMYK_Y CMYK_K", devices);
    write(folder / "rgb-cube-897.txt", "RGB_R RGB_G RGB_B", profilingColours());
    write(folder / "rgb-24.txt", "RGB_R RGB_G RGB_B", fewColours());
    write(folder / "rgb-near-neutrals-231.txt", "RGB_R RGB_G RGB_B", nearNeutralColours());
    return EXIT_SUCCESS;
}
