// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvString.h"

#include "lib/OvFile.h"
#include "support/CapturedOutput.h"
#include "support/DecimalCommaLocale.h"
#include "support/StringText.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>

using namespace std::string_literals;

namespace
{

constexpr char outOfBounds[] = "Array element out of bounds.\r";
constexpr char initOutOfBounds[] = "Array initialization out of bounds.\r";

Array<String> partsOf(std::initializer_list<char const*> texts)
{
    GrowingArray<String> parts;
    for (char const* const text : texts)
        parts.add(text);
    return parts;
}

bool hasStorage(String const& string)
{
    return string.begin() != nullptr;
}

// Whether the text needs no copy for functions that expect a NUL.
bool staysWhenTerminated(String const& string)
{
    char const* const before = string.begin();
    return string.getNullTerminatedString() == before;
}

} // namespace

// Construction --------------------------------------------------------------------------------------------------------

TEST(String, IsEmptyAtFirst)
{
    String const string;
    EXPECT_EQ(string.getCount(), 0U);
    EXPECT_FALSE(hasStorage(string));
    EXPECT_STREQ(string, "");
}

TEST(String, HoldsNulsWhenMadeWithALength)
{
    EXPECT_EQ(textOf(String(3)), "\0\0\0"s);
    EXPECT_EQ(textOf(String(2ULL)), "\0\0"s);
    EXPECT_FALSE(hasStorage(String(0)));
}

TEST(String, IsEmptyWhenMemoryForItsLengthRunsOut)
{
    EXPECT_FALSE(hasStorage(String(~0ULL)));
    EXPECT_FALSE(hasStorage(String(-1)));
}

TEST(String, CopiesANulTerminatedText)
{
    char text[] = "abc";
    String const string = text;
    text[0] = 'x';
    EXPECT_EQ(textOf(string), "abc");
    EXPECT_TRUE(staysWhenTerminated(string));
    EXPECT_FALSE(hasStorage(String("")));
}

TEST(String, ReportsANullText)
{
    constexpr char message[] = "Array creation: Pointer to provided buffer is NULL.\r";
    EXPECT_EQ(errorsOf([] { EXPECT_FALSE(hasStorage(String(static_cast<char const*>(nullptr)))); }), message);
    EXPECT_EQ(errorsOf([] { EXPECT_FALSE(hasStorage(String(nullptr, true))); }), message);
    EXPECT_EQ(errorsOf([] { EXPECT_FALSE(hasStorage(String(nullptr, false, 3))); }), message);
}

TEST(String, TakesATextOver)
{
    char* const text = new char[4]{'a', 'b', 'c', '\0'};
    String const string(text, true);
    EXPECT_EQ(textOf(string), "abc");
    EXPECT_EQ(string.begin(), text);
    EXPECT_TRUE(staysWhenTerminated(string));
}

TEST(String, TakesATextOverByItsLength)
{
    char* const text = new char[3]{'a', '\0', 'c'};
    String const string(text, true, 3);
    EXPECT_EQ(textOf(string), "a\0c"s);
    EXPECT_EQ(string.begin(), text);
    EXPECT_EQ(string.getNullTerminatedString()[3], '\0');
    EXPECT_EQ(textOf(string), "a\0c"s);
}

TEST(String, FreesAnEmptyTextTakenOver)
{
    EXPECT_FALSE(hasStorage(String(new char[1]{'\0'}, true)));
    EXPECT_FALSE(hasStorage(String(new char[1]{'x'}, true, 0)));
}

TEST(String, BorrowsATextThatIsNotTakenOver)
{
    char text[] = "abc";
    String const whole(text, false);
    String const part(text, false, 2);
    text[0] = 'x';
    EXPECT_EQ(textOf(whole), "xbc");
    EXPECT_EQ(textOf(part), "xb");
    EXPECT_TRUE(staysWhenTerminated(whole));
    EXPECT_STREQ(part, "xb");
    EXPECT_STREQ(text, "xbc");
}

TEST(String, SharesItsBytesWithItsCopies)
{
    String string = "abc";
    String const copy = string;
    string[1] = 'x';
    EXPECT_EQ(textOf(copy), "axc");
    EXPECT_TRUE(staysWhenTerminated(copy));
}

TEST(String, LeavesAnEmptyStringBehindWhenMoved)
{
    String string = "abc";
    String const moved = std::move(string);
    EXPECT_EQ(textOf(moved), "abc");
    EXPECT_FALSE(hasStorage(string)); // NOLINT(bugprone-use-after-move)
    EXPECT_STREQ(string, "");
}

TEST(String, SurvivesAssignmentToItself)
{
    String string = "abc";
    String& same = string;
    string = same;
    EXPECT_STREQ(string, "abc");
    string = std::move(same);
    EXPECT_STREQ(string, "abc");
}

TEST(String, JoinsTwoTexts)
{
    String const a = stringOf("a\0");
    String const b = "b";
    EXPECT_EQ(textOf(String(a, b)), "a\0b"s);
    EXPECT_EQ(textOf(String("x", b)), "xb");
    EXPECT_EQ(textOf(String(b, "x")), "bx");
    EXPECT_EQ(textOf(String(b, "x\0yz", 3)), "bx\0y"s);
    EXPECT_EQ(textOf(a + b), "a\0b"s);
    EXPECT_EQ(textOf(b + "x"), "bx");
    EXPECT_EQ(textOf("x" + b), "xb");
    EXPECT_EQ(textOf(b + String() + b), "bb");
    EXPECT_TRUE(staysWhenTerminated(b + b));
}

TEST(String, IsEmptyWhenMemoryForAJoinRunsOut)
{
    EXPECT_FALSE(hasStorage(String(String("abc"), "d", ~0ULL - 1))); // the sum wraps around to 1
}

TEST(String, HasNoStorageAsTheJoinOfEmptyTexts)
{
    EXPECT_FALSE(hasStorage(String() + String()));
    EXPECT_FALSE(hasStorage("" + String()));
}

TEST(String, ReportsANullTextInAJoinAndLeavesItOut)
{
    char const* const null = nullptr;
    EXPECT_EQ(errorsOf([&] { EXPECT_EQ(textOf(String(null, String("b"))), "b"); }),
              "Array creation: Pointer to provided buffer 1 is NULL.\r");
    EXPECT_EQ(errorsOf([&] { EXPECT_EQ(textOf(null + String("b")), "b"); }),
              "Array creation: Pointer to provided buffer 1 is NULL.\r");
    EXPECT_EQ(errorsOf([&] { EXPECT_EQ(textOf(String(String("a"), null)), "a"); }),
              "Array creation: Pointer to provided buffer 2 is NULL.\r");
    EXPECT_EQ(errorsOf([&] { EXPECT_EQ(textOf(String(String("a"), null, 3)), "a"); }),
              "Array creation: Pointer to provided buffer 2 is NULL.\r");
}

TEST(String, CannotBeAddedToANumber)
{
    auto const isAddable = []<typename Number>(Number number) {
        return requires
        {
            String() + number;
        };
    };
    EXPECT_FALSE(isAddable('c'));
    EXPECT_FALSE(isAddable(1));
}

TEST(String, IsMadeAsAViewOfAnother)
{
    String source = "abcdef";
    String const view(source, 2, 3);
    EXPECT_EQ(textOf(view), "cde");
    EXPECT_EQ(view.begin(), source.begin() + 2);
    EXPECT_EQ(textOf(String(source, 0, 2)), "ab");
    EXPECT_EQ(textOf(String(source, 4ULL, 2)), "ef");
}

TEST(String, JoinsPartsWithASeparator)
{
    Array<String> const parts = partsOf({"a", "bc", "", "d"});
    EXPECT_EQ(textOf(String(parts, ", ", false, false)), "a, bc, , d");
    EXPECT_EQ(textOf(String(parts, ", ", true, false)), ", a, bc, , d");
    EXPECT_EQ(textOf(String(parts, ", ", false, true)), "a, bc, , d, ");
    EXPECT_EQ(textOf(String(parts, ", ", true, true)), ", a, bc, , d, ");
    EXPECT_EQ(textOf(String(parts, "", true, true)), "abcd");
    EXPECT_TRUE(staysWhenTerminated(String(parts, "/", true, true)));
}

TEST(String, JoinsOnePartAndNone)
{
    EXPECT_EQ(textOf(String(partsOf({"a"}), "/", false, false)), "a");
    EXPECT_EQ(textOf(String(partsOf({"a"}), "/", true, true)), "/a/");
    EXPECT_EQ(textOf(String(partsOf({""}), "/", true, true)), "//");
    EXPECT_FALSE(hasStorage(String(partsOf({}), "/", true, true)));
}

// The ending NUL ------------------------------------------------------------------------------------------------------

TEST(String, EndsInANulForFunctionsThatExpectOne)
{
    String const string = "abc";
    EXPECT_EQ(std::strlen(string), 3U);
    EXPECT_EQ(std::strlen(string.getNullTerminatedString()), 3U);
}

TEST(String, IsCopiedForItsNulWhenItIsAViewWithinAnother)
{
    String source = "abcdef";
    String const view = source.substr(0, 3);
    EXPECT_STREQ(view, "abc");
    EXPECT_EQ(textOf(source), "abcdef");
    source[0] = 'x';
    EXPECT_STREQ(view, "abc");
}

TEST(String, KeepsItsPointerFromOneCallToTheNext)
{
    String const view = String("abcdef").substr(1, 3);
    char const* const text = view;
    EXPECT_EQ(static_cast<char const*>(view), text);
    EXPECT_STREQ(text, "bcd");
}

TEST(String, IsNotCopiedForItsNulWhenItIsTheEndOfAnother)
{
    String const source = "abcdef";
    EXPECT_TRUE(staysWhenTerminated(source.substr(3, 3)));
    EXPECT_EQ(source.substr(3, 3).getNullTerminatedString(), source.begin() + 3);
}

TEST(String, DoesNotRelyOnANulInTheTextBehindAView)
{
    String source = stringOf("ab\0cd");
    String const view = source.substr(0, 2);
    char const* const text = view;
    source[2] = 'x';
    EXPECT_STREQ(text, "ab");
}

TEST(String, StaysTerminatedThroughOperationsOfItsBase)
{
    String string = "abc";
    string.decouple();
    EXPECT_STREQ(string, "abc");
    string.init(String("abcdef"), 1, 2);
    EXPECT_STREQ(string, "bc");
    Array<char>& base = string;
    base.init(string, 'd');
    EXPECT_STREQ(string, "bcd");
    base.init(0);
    EXPECT_STREQ(string, "");
}

TEST(String, GivesAFreshEmptyTextEveryTime)
{
    *String().getNullTerminatedString() = 'x';
    EXPECT_STREQ(String(), "");
}

// Bytes ---------------------------------------------------------------------------------------------------------------

TEST(String, BecomesEmptyWhenCleared)
{
    String string = "abc";
    string.clearString();
    EXPECT_FALSE(hasStorage(string));
    EXPECT_STREQ(string, "");
}

TEST(String, EqualsStringsOfTheSameBytes)
{
    EXPECT_TRUE(String("abc") == String("abc"));
    EXPECT_TRUE(String() == String(""));
    EXPECT_TRUE(String("abc") != String("abd"));
    EXPECT_TRUE(String("abc") != String("ab"));
    EXPECT_FALSE(stringOf("a\0b") == stringOf("a\0c"));
    EXPECT_FALSE(stringOf("a\0") == String("a"));
}

TEST(String, EqualsTextsOfTheSameBytes)
{
    EXPECT_TRUE(String("abc") == "abc");
    EXPECT_TRUE("abc" == String("abc"));
    EXPECT_TRUE(String() == "");
    EXPECT_TRUE(String("abc") != "abcd");
    EXPECT_TRUE(String("abc") != "ab");
    EXPECT_TRUE(stringOf("a\0b") != "a");
    EXPECT_FALSE(String() == static_cast<char const*>(nullptr));
    EXPECT_TRUE(String() != static_cast<char const*>(nullptr));
}

TEST(String, TellsItsBytesFromEitherEnd)
{
    String const string = "abc";
    EXPECT_EQ(string.Char(0), 'a');
    EXPECT_EQ(string.Char(2), 'c');
    EXPECT_EQ(string.CharRight(0), 'c');
    EXPECT_EQ(string.CharRight(2), 'a');
    EXPECT_EQ(string[1], 'b');
}

TEST(String, ReportsBytesPastEitherEnd)
{
    String const string = "abc";
    for (unsigned long long const index : {3ULL, 4ULL, ~0ULL, ~0ULL - 2}) {
        EXPECT_EQ(errorsOf([&] { EXPECT_EQ(string.Char(index), '\0'); }), outOfBounds);
        EXPECT_EQ(errorsOf([&] { EXPECT_EQ(string.CharRight(index), '\0'); }), outOfBounds);
        EXPECT_EQ(errorsOf([&] { EXPECT_EQ(string[index], '\0'); }), outOfBounds);
    }
    EXPECT_EQ(errorsOf([] { EXPECT_EQ(String().CharRight(0), '\0'); }), outOfBounds);
}

TEST(String, GivesViewsOfItsParts)
{
    String const string = "abcdef";
    EXPECT_EQ(textOf(string.substr(0, 6)), "abcdef");
    EXPECT_EQ(textOf(string.substr(1, 2)), "bc");
    EXPECT_EQ(string.substr(1, 2).begin(), string.begin() + 1);
    EXPECT_FALSE(hasStorage(string.substr(6, 0)));
}

TEST(String, ReportsAPartPastItsEnd)
{
    String const string = "abc";
    EXPECT_EQ(errorsOf([&] { EXPECT_EQ(textOf(string.substr(2, 2)), "c"); }), initOutOfBounds);
    EXPECT_EQ(errorsOf([&] { EXPECT_EQ(textOf(string.substr(4, 1)), ""); }), initOutOfBounds);
    EXPECT_EQ(errorsOf([&] { EXPECT_EQ(textOf(String(string, 1, ~0ULL)), "bc"); }), initOutOfBounds);
}

TEST(String, IsStrippedAtBothEnds)
{
    String string = "abcdef";
    string.strip(1, 2);
    EXPECT_EQ(textOf(string), "bcd");
    string.strip(0, 0);
    EXPECT_EQ(textOf(string), "bcd");
    string.strip(2, 1);
    EXPECT_FALSE(hasStorage(string));
}

TEST(String, IsEmptyWhenMoreIsStrippedThanItHas)
{
    for (auto const& [front, back] :
         {std::pair{4ULL, 0ULL}, {0ULL, 4ULL}, {2ULL, 2ULL}, {~0ULL, ~0ULL}, {1ULL, ~0ULL}}) {
        String string = "abc";
        EXPECT_EQ(errorsOf([&] { string.strip(front, back); }), "");
        EXPECT_FALSE(hasStorage(string));
    }
}

TEST(String, IsPrintedToAFileAsItIs)
{
    TemporaryFolder const folder;
    String const path = folder.pathOf("out");
    {
        WFile file(path, false, 0644);
        stringOf("100% %s\0x").print(&file);
        String().print(&file);
    }
    EXPECT_EQ(textOf(RFile::readContents(path)), "100% %s\0x"s);
}

// Formats -------------------------------------------------------------------------------------------------------------

TEST(String, IsFormattedAsByPrintf)
{
    EXPECT_EQ(textOf(String::format("Gaps: %1.02f dE", 18.456)), "Gaps: 18.46 dE");
    EXPECT_EQ(textOf(String::format("%s_%03d%%", "sheet", 7)), "sheet_007%");
    EXPECT_EQ(textOf(String::format("a%cb", '\0')), "a\0b"s);
    EXPECT_FALSE(hasStorage(String::format("%s", "")));
    EXPECT_TRUE(staysWhenTerminated(String::format("%d", 1)));
}

TEST(String, IsFormattedToAMillionBytes)
{
    std::string const text(1'000'000, 'x');
    EXPECT_EQ(textOf(String::format("<%s>", text.c_str())), "<" + text + ">");
}

TEST(String, IsFormattedWithThePointUnderADecimalCommaLocale)
{
    DecimalCommaLocale const locale;
    ASSERT_TRUE(locale.isInForce());
    EXPECT_EQ(textOf(String::format("%1.02f %g", 12.5, 0.1)), "12.50 0.1");
}

TEST(String, IsEmptyWherePrintfFails)
{
    // A wide character that the C locale cannot write.
    wchar_t const text[] = {static_cast<wchar_t>(0x20ac), 0};
    EXPECT_FALSE(hasStorage(String::format("a%lsb", text)));
}

TEST(PrintBinary, PrintsTheBitsHighestFirst)
{
    CapturedOutput const output(1);
    printbinary(5);
    printbinary(-2);
    EXPECT_EQ(output.text(), "00000000000000000000000000000101\n11111111111111111111111111111110\n");
}
