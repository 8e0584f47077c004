// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Any bytes as a file, read by any sequence of readers in either byte order, and written the same way before. A copy of
// the bytes in memory tells what each of them has to give.

#include "Fuzzing.h"
#include "lib/OvFile.h"
#include "support/StringText.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <bit>
#include <fuzzer/FuzzedDataProvider.h>
#include <type_traits>

namespace
{

constexpr long long longestArray = 3000;

// The bytes of a file and the place in it.
struct Model
{
    std::string bytes;
    std::size_t position = 0;
    bool isBig = false;
    std::string newLine = "\r";

    std::string take(std::size_t n)
    {
        std::string taken = position < bytes.size() ? bytes.substr(position, n) : "";
        position += taken.size();
        return taken;
    }

    template <typename Number>
    static Number numberOf(std::string const& digits, bool isBig)
    {
        std::uint64_t number = 0;
        for (std::size_t i = 0; i < sizeof(Number); ++i)
            number = number << 8 | static_cast<unsigned char>(digits[isBig ? i : sizeof(Number) - 1 - i]);
        return static_cast<Number>(number);
    }

    template <typename Number>
    Number take()
    {
        std::string const digits = take(sizeof(Number));
        return digits.size() == sizeof(Number) ? numberOf<Number>(digits, isBig) : Number{};
    }

    std::string takeLine()
    {
        std::size_t const end = std::min(bytes.find_first_of("\r\n", position), bytes.size());
        std::string line = take(end - std::min(end, position));
        if (take(1) == "\r" && position < bytes.size() && bytes[position] == '\n')
            ++position;
        return line;
    }

    template <typename Number>
    void put(Number number)
    {
        auto const digits = static_cast<std::uint64_t>(number);
        for (std::size_t i = 0; i < sizeof(Number); ++i)
            bytes += static_cast<char>(digits >> 8 * (isBig ? sizeof(Number) - 1 - i : i));
    }
};

template <typename Number>
void readArray(RFile& file, Model& model, void (RFile::*read)(Number*, long long), long long n)
{
    using Bits = std::conditional_t<sizeof(Number) == 4, std::uint32_t, Number>;
    std::vector<Number> values(static_cast<std::size_t>(std::max(n, 0LL)), Number{1});
    (file.*read)(values.data(), n);
    for (Number const value : values)
        require(std::bit_cast<Bits>(value) == model.take<Bits>(), "an array holds the file's numbers");
}

void readBytes(RFile& file, Model& model, long long n)
{
    std::string bytes(static_cast<std::size_t>(std::max(n, 0LL)), ' ');
    long long const got = file.readBytes(bytes.data(), n);
    require(got >= 0 && got <= std::max(n, 0LL), "no more bytes than asked for");
    bytes.resize(static_cast<std::size_t>(got));
    require(bytes == model.take(static_cast<std::size_t>(std::max(n, 0LL))), "bytes are the file's");
}

void jump(FuzzedDataProvider& steps, RFile& file, Model& model)
{
    bool const isRelative = steps.ConsumeBool();
    long long const distance = steps.ConsumeBool() ? steps.ConsumeIntegral<long long>()
                                                   : steps.ConsumeIntegralInRange(-longestArray, 2 * longestArray);
    long long target = 0;
    if (__builtin_add_overflow(isRelative ? static_cast<long long>(model.position) : 0, distance, &target))
        target = -1;
    isRelative ? file.jumpRelative(distance) : file.jumpToOffset(distance);
    // How far beyond its end a file can be jumped in is the file system's to say.
    if (target > static_cast<long long>(model.bytes.size())) {
        file.jumpToOffset(0);
        target = 0;
    }
    if (target >= 0)
        model.position = static_cast<std::size_t>(target);
}

void readOne(FuzzedDataProvider& steps, RFile& file, Model& model)
{
    auto const n = [&] { return steps.ConsumeIntegralInRange(-1LL, longestArray); };
    switch (steps.ConsumeIntegralInRange(0, 16)) {
    case 0:
        return require(file.readInt8() == model.take<std::int8_t>(), "readInt8");
    case 1:
        return require(file.readUInt8() == model.take<std::uint8_t>(), "readUInt8");
    case 2:
        return require(file.readInt16() == model.take<std::int16_t>(), "readInt16");
    case 3:
        return require(file.readUInt16() == model.take<std::uint16_t>(), "readUInt16");
    case 4:
        return require(file.readInt32() == model.take<std::int32_t>(), "readInt32");
    case 5:
        return require(file.readUInt32() == model.take<std::uint32_t>(), "readUInt32");
    case 6:
        return require(file.readInt64() == model.take<std::int64_t>(), "readInt64");
    case 7:
        return require(file.readUInt64() == model.take<std::uint64_t>(), "readUInt64");
    case 8:
        return require(std::bit_cast<std::uint32_t>(file.readFloat()) == model.take<std::uint32_t>(), "readFloat");
    case 9:
        return readArray(file, model, &RFile::readUInt8Array, n());
    case 10:
        return readArray(file, model, &RFile::readUInt16Array, n());
    case 11:
        return readArray(file, model, &RFile::readFloatArray, n());
    case 12:
        return readBytes(file, model, 2 * n());
    case 13:
        return require(textOf(file.readLine()) == model.takeLine(), "readLine");
    case 14: {
        auto const length = model.take<std::uint64_t>();
        return require(textOf(file.readStringWithLength()) == model.take(length), "readStringWithLength");
    }
    case 15:
        return file.requireBytes(n());
    default:
        return jump(steps, file, model);
    }
}

// Writes an array of numbers whose bytes are those of the text.
template <typename Number>
void writeArray(WFile& file, Model& model, void (WFile::*write)(Number const*, long long), std::string const& text)
{
    using Bits = std::conditional_t<sizeof(Number) == 4, std::uint32_t, Number>;
    std::vector<Number> values(text.size() / sizeof(Number));
    for (std::size_t i = 0; i < values.size(); ++i) {
        auto const bits = Model::numberOf<Bits>(text.substr(i * sizeof(Number), sizeof(Number)), false);
        values[i] = std::bit_cast<Number>(bits);
        model.put(bits);
    }
    (file.*write)(values.data(), static_cast<long long>(values.size()));
}

template <typename Number>
void writeNumber(WFile& file, Model& model, void (WFile::*write)(Number), std::uint64_t number)
{
    (file.*write)(static_cast<Number>(number));
    model.put(static_cast<std::make_unsigned_t<Number>>(number));
}

void writeText(FuzzedDataProvider& steps, WFile& file, Model& model, std::string const& text)
{
    String const string(String(), text.data(), text.size());
    bool const isFormatted = steps.ConsumeBool();
    switch (steps.ConsumeIntegralInRange(0, 4)) {
    case 0:
        isFormatted ? file.writeString("%s", text.c_str()) : file.writeString(string);
        model.bytes += isFormatted ? text.c_str() : text;
        return;
    case 1:
        isFormatted ? file.writeLine("%s", text.c_str()) : file.writeLine(string);
        model.bytes += (isFormatted ? text.c_str() : text) + model.newLine;
        return;
    case 2:
        isFormatted ? file.writeTab() : file.writeNewLine();
        model.bytes += isFormatted ? "\t" : model.newLine;
        return;
    case 3:
        file.writeStringWithLength(string);
        model.put(std::uint64_t{text.size()});
        model.bytes += text;
        return;
    default:
        model.newLine = text.substr(0, 3);
        return file.setNewLine(String(String(), model.newLine.data(), model.newLine.size()));
    }
}

void writeOne(FuzzedDataProvider& steps, WFile& file, Model& model, std::string const& text)
{
    auto const number = steps.ConsumeIntegral<std::uint64_t>();
    std::string const piece = text.substr(0, steps.ConsumeIntegralInRange<std::size_t>(0, 2 * longestArray));
    switch (steps.ConsumeIntegralInRange(0, 15)) {
    case 0:
        return writeNumber(file, model, &WFile::writeInt8, number);
    case 1:
        return writeNumber(file, model, &WFile::writeUInt8, number);
    case 2:
        return writeNumber(file, model, &WFile::writeInt16, number);
    case 3:
        return writeNumber(file, model, &WFile::writeUInt16, number);
    case 4:
        return writeNumber(file, model, &WFile::writeInt32, number);
    case 5:
        return writeNumber(file, model, &WFile::writeUInt32, number);
    case 6:
        return writeNumber(file, model, &WFile::writeInt64, number);
    case 7:
        return writeNumber(file, model, &WFile::writeUInt64, number);
    case 8:
        file.writeFloat(std::bit_cast<float>(static_cast<std::uint32_t>(number)));
        return model.put(static_cast<std::uint32_t>(number));
    case 9:
        return writeArray(file, model, &WFile::writeUInt8Array, piece);
    case 10:
        return writeArray(file, model, &WFile::writeUInt16Array, piece);
    case 11:
        return writeArray(file, model, &WFile::writeFloatArray, piece);
    case 12:
        file.writeBytes(piece.data(), static_cast<long long>(piece.size()));
        model.bytes += piece;
        return;
    case 13:
        file.requireBytes(static_cast<long long>(number));
        return;
    case 14:
        return file.setAutoFlush(static_cast<OvAutoFlush>(number % 4));
    default:
        return writeText(steps, file, model, piece);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static TemporaryFolder const folder;
    FuzzedDataProvider input(data, size);
    Model model;
    Endianness const order = input.PickValueInArray({Endianness::native, Endianness::little, Endianness::big});
    model.isBig = order == Endianness::big;
    std::vector<std::uint8_t> const writing = input.ConsumeBytes<std::uint8_t>(input.ConsumeIntegral<std::uint8_t>());
    std::vector<std::uint8_t> const reading = input.ConsumeBytes<std::uint8_t>(input.ConsumeIntegral<std::uint8_t>());
    std::string const text = input.ConsumeRemainingBytesAsString();

    String const path = folder.write("file", text);
    model.bytes = text;
    {
        WFile file(path, true, 0644);
        file.setEndianness(order);
        FuzzedDataProvider steps(writing.data(), writing.size());
        while (steps.remaining_bytes() > 0)
            writeOne(steps, file, model, text);
    }
    require(textOf(RFile::readContents(path)) == model.bytes, "a file holds what was written");
    require(RFile::readBinaryContents(path).getCount() == model.bytes.size(), "its bytes are as many");

    RFile file(path);
    file.setEndianness(order);
    FuzzedDataProvider steps(reading.data(), reading.size());
    while (steps.remaining_bytes() > 0)
        readOne(steps, file, model);
    return 0;
}
