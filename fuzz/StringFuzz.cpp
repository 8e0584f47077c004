// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Any text, taken apart by any sequence of tokenisers, and its parts as numbers, paths and hashes.

#include "Fuzzing.h"
#include "lib/OvString.h"
#include "support/StringText.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fuzzer/FuzzedDataProvider.h>
#include <limits>

namespace
{

// The sign and the digits at the front of a text, as long as that is not far beyond 64 bits.
__int128 leadingNumber(std::string const& text, bool isSigned)
{
    bool const hasSign = isSigned && !text.empty() && (text[0] == '-' || text[0] == '+');
    __int128 number = 0;
    for (std::size_t i = hasSign ? 1 : 0; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i)
        number = std::min<__int128>(number * 10 + (text[i] - '0'), __int128{1} << 100);
    return hasSign && text[0] == '-' ? -number : number;
}

template <typename Number>
void requireUnsigned(String const& text, Number (String::*convert)(Number) const, std::uint64_t bits)
{
    auto const max = static_cast<Number>(bits);
    __int128 const expected = std::min<__int128>(leadingNumber(textOf(text), false), max);
    require((text.*convert)(max) == static_cast<Number>(expected), "digits give a number up to the largest");
}

template <typename Number>
void requireSigned(String const& text, Number (String::*convert)(Number, Number) const, std::uint64_t bits)
{
    auto const max = static_cast<Number>(static_cast<Number>(bits) & std::numeric_limits<Number>::max());
    auto const min = static_cast<Number>(~max);
    __int128 const expected = std::clamp<__int128>(leadingNumber(textOf(text), true), min, max);
    require((text.*convert)(max, min) == static_cast<Number>(expected), "digits give a number between two limits");
}

void convert(String const& text, std::uint64_t limit)
{
    requireUnsigned(text, &String::toUInt8, limit);
    requireUnsigned(text, &String::toUInt16, limit);
    requireUnsigned(text, &String::toUInt32, limit);
    requireUnsigned(text, &String::toUInt64, limit);
    requireSigned(text, &String::toInt8, limit);
    requireSigned(text, &String::toInt16, limit);
    requireSigned(text, &String::toInt32, limit);
    requireSigned(text, &String::toInt64, limit);

    double const real = text.toReal();
    double const expected = std::strtod(textOf(text).c_str(), nullptr);
    require(real == expected || (std::isnan(real) && std::isnan(expected)), "a number reads as the C library reads it");
    require(text.toDouble() == real || std::isnan(real), "both names read the same");
    text.toFloat();
    for (int algorithm = -1; algorithm <= 10; ++algorithm)
        text.hashKey(static_cast<HashAlgorithm>(algorithm));
}

void takeApartAsPath(String const& path)
{
    String folder;
    String name;
    String suffix;
    path.getDirAndFilenameAndSuffix(folder, name, suffix);
    require(folder + name == path, "folder and name make up the path");
    require(textOf(path).ends_with(textOf(suffix)), "a path ends in its suffix");
    require(path.getFilename() == name && path.getParentDir() == folder, "each part is what both are");
    String stem = path;
    stem.stripSuffix();
    require(suffix.getCount() == 0 || stem + suffix == path, "stem and suffix make up the path");
    String const ending = path.getStringWithEndingSlash();
    require(ending.getStringWithoutEndingSlash().getCount() + 1 == ending.getCount(), "an ending slash comes off");
}

// One tokeniser, drawn from the input; what it takes off the text goes into the token.
void takeToken(FuzzedDataProvider& input, String& text, String& token)
{
    switch (input.ConsumeIntegralInRange(0, 11)) {
    case 0:
        return text.skipWhitespaces();
    case 1:
        return text.skipCharacters(input.ConsumeIntegral<unsigned long long>());
    case 2:
        return text.skipLine();
    case 3:
        return text.getLine(token, input.ConsumeBool());
    case 4:
        return text.getToken(token);
    case 5:
        return text.getToken(token, input.ConsumeIntegral<char>(), input.ConsumeBool());
    case 6:
        return text.getToken(token, input.ConsumeIntegral<char>(), input.ConsumeIntegral<char>(), input.ConsumeBool());
    case 7:
        return text.getNameToken(token);
    case 8:
        return text.getNumberToken(token);
    case 9:
        return text.getDirectoryToken(token);
    case 10:
        token = text.substr(input.ConsumeIntegral<std::uint8_t>(), input.ConsumeIntegral<std::uint8_t>());
        return;
    default:
        return text.strip(input.ConsumeIntegral<std::uint8_t>(), 0);
    }
}

void tokenise(FuzzedDataProvider& input, String& text, GrowingArray<String>& tokens)
{
    std::string const before = textOf(text);
    String token;
    takeToken(input, text, token);
    require(before.ends_with(textOf(text)), "what is left is the end of the text");
    require(before.find(textOf(token)) != std::string::npos, "a token is a part of the text");
    // Neither a view made private nor one that got its ending NUL changes what the others see.
    if (input.ConsumeBool())
        token.decouple();
    if (input.ConsumeBool())
        require(std::strlen(token.getNullTerminatedString()) <= token.getCount(), "a NUL ends the text");
    require(before.ends_with(textOf(text)), "what is left stays");
    tokens.add(token);
}

void join(GrowingArray<String> const& tokens, String const& separator, bool before, bool after)
{
    std::string expected = before && tokens.getCount() > 0 ? textOf(separator) : "";
    for (unsigned long long i = 0; i < tokens.getCount(); ++i)
        expected += (i > 0 ? textOf(separator) : "") + textOf(tokens[i]);
    if (after && tokens.getCount() > 0)
        expected += textOf(separator);
    require(textOf(String(tokens, separator, before, after)) == expected, "a join has all its parts");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    std::vector<std::uint8_t> const program =
        input.ConsumeBytes<std::uint8_t>(input.ConsumeIntegralInRange<std::size_t>(0, 64));
    auto const limit = input.ConsumeIntegral<std::uint64_t>();
    std::string const bytes = input.ConsumeRemainingBytesAsString();
    String text(String(), bytes.data(), bytes.size());
    convert(text, limit);
    takeApartAsPath(text);

    GrowingArray<String> tokens;
    FuzzedDataProvider steps(program.data(), program.size());
    while (steps.remaining_bytes() > 0)
        tokenise(steps, text, tokens);
    for (String const& token : tokens) {
        convert(token, limit);
        takeApartAsPath(token);
        require(textOf(String::format("%s|%d", token.getNullTerminatedString(), 5)) ==
                    std::string(token.getNullTerminatedString()) + "|5",
                "a format takes what it is given");
    }
    join(tokens, text, limit % 2 == 0, limit % 4 < 2);
    return 0;
}
