// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvString.h"

#include "support/DecimalCommaLocale.h"
#include "support/StringText.h"

#include <gtest/gtest.h>

#include <string>

using namespace std::string_literals;

namespace
{

// A token and the rest of the string, in the form "token|rest".
template <typename Tokeniser>
std::string cut(String string, Tokeniser const& tokeniser)
{
    String token = "not set";
    tokeniser(string, token);
    return textOf(token) + "|" + textOf(string);
}

std::string cutLine(String const& string, bool skip)
{
    return cut(string, [skip](String& s, String& token) { s.getLine(token, skip); });
}

std::string cutToken(String const& string)
{
    return cut(string, [](String& s, String& token) { s.getToken(token); });
}

std::string cutToken(String const& string, char separator, bool drop)
{
    return cut(string, [=](String& s, String& token) { s.getToken(token, separator, drop); });
}

std::string cutToken(String const& string, char open, char close, bool nested)
{
    return cut(string, [=](String& s, String& token) { s.getToken(token, open, close, nested); });
}

std::string cutName(String const& string)
{
    return cut(string, [](String& s, String& token) { s.getNameToken(token); });
}

std::string cutNumber(String const& string)
{
    return cut(string, [](String& s, String& token) { s.getNumberToken(token); });
}

std::string cutDirectory(String const& string)
{
    return cut(string, [](String& s, String& token) { s.getDirectoryToken(token); });
}

std::string afterWhitespace(String string)
{
    string.skipWhitespaces();
    return textOf(string);
}

std::string afterLine(String string)
{
    string.skipLine();
    return textOf(string);
}

std::string withoutSuffix(String string)
{
    string.stripSuffix();
    return textOf(string);
}

bool hasStorage(String const& string)
{
    return string.begin() != nullptr;
}

} // namespace

// Skipping and lines --------------------------------------------------------------------------------------------------

TEST(StringTokens, SkipsWhitespace)
{
    EXPECT_EQ(afterWhitespace(" \t\r\n\v\f\x01\x1f"
                              "a b"),
              "a b");
    EXPECT_EQ(afterWhitespace(stringOf("\0a")), "a");
    EXPECT_EQ(afterWhitespace("a "), "a ");
}

TEST(StringTokens, TreatsBytesFrom0x80OnAsWhitespace)
{
    EXPECT_EQ(afterWhitespace("\x80\xc3\xa4\xff"
                              "a"),
              "a");
    EXPECT_EQ(afterWhitespace("\x7f"), "\x7f");
    EXPECT_EQ(afterWhitespace("!"), "!");
}

TEST(StringTokens, HasNoStorageWhenAllOfItIsSkipped)
{
    String blanks = "  ";
    blanks.skipWhitespaces();
    EXPECT_FALSE(hasStorage(blanks));
}

TEST(StringTokens, SkipsCharacters)
{
    String string = "abc";
    string.skipCharacters(0);
    EXPECT_EQ(textOf(string), "abc");
    string.skipCharacters(2);
    EXPECT_EQ(textOf(string), "c");
    string.skipCharacters(2);
    EXPECT_FALSE(hasStorage(string));
}

TEST(StringTokens, SkipsALineWithItsEnd)
{
    EXPECT_EQ(afterLine("ab\rcd"), "cd");
    EXPECT_EQ(afterLine("ab\ncd"), "cd");
    EXPECT_EQ(afterLine("ab\r\ncd"), "cd");
    EXPECT_EQ(afterLine("ab\n\rcd"), "\rcd");
    EXPECT_EQ(afterLine("ab\r\rcd"), "\rcd");
    EXPECT_EQ(afterLine("ab\n\ncd"), "\ncd");
    EXPECT_EQ(afterLine("ab\r"), "");
    EXPECT_EQ(afterLine("ab"), "");
    EXPECT_EQ(afterLine(""), "");
}

TEST(StringTokens, GivesALineWithoutItsEnd)
{
    EXPECT_EQ(cutLine("abc\r\ndef", false), "abc|def");
    EXPECT_EQ(cutLine("abc\ndef", false), "abc|def");
    EXPECT_EQ(cutLine("abc\rdef", false), "abc|def");
    EXPECT_EQ(cutLine("abc\n\rdef", false), "abc|\rdef");
    EXPECT_EQ(cutLine("abc\n def", false), "abc| def");
    EXPECT_EQ(cutLine("\nabc", false), "|abc");
    EXPECT_EQ(cutLine(stringOf("a\0b\nc"), false), "a\0b|c"s);
}

TEST(StringTokens, DropsBlankLinesAfterALineIfAsked)
{
    EXPECT_EQ(cutLine("abc\r\ndef", true), "abc|def");
    EXPECT_EQ(cutLine("abc\n\rdef", true), "abc|def");
    EXPECT_EQ(cutLine("abc\n \t\n\n def", true), "abc|def");
    EXPECT_EQ(cutLine("abc\n\n", true), "abc|");
    EXPECT_EQ(cutLine("abc def", true), "abc def|");
}

TEST(StringTokens, GivesTheWholeRestAsTheLastLine)
{
    EXPECT_EQ(cutLine("abc", false), "abc|");
    EXPECT_EQ(cutLine("abc\r\n", false), "abc|");
    EXPECT_EQ(cutLine("", false), "|");
}

// Tokens --------------------------------------------------------------------------------------------------------------

TEST(StringTokens, GivesATokenUpToWhitespace)
{
    EXPECT_EQ(cutToken("ab cd"), "ab|cd");
    EXPECT_EQ(cutToken("ab \t\r\n cd ef"), "ab|cd ef");
    EXPECT_EQ(cutToken("ab\xc3\xa4"
                       "cd"),
              "ab|cd");
    EXPECT_EQ(cutToken(stringOf("ab\0cd")), "ab|cd");
    EXPECT_EQ(cutToken("ab"), "ab|");
    EXPECT_EQ(cutToken("ab "), "ab|");
    EXPECT_EQ(cutToken(""), "|");
}

TEST(StringTokens, GivesAnEmptyTokenBeforeLeadingWhitespace)
{
    EXPECT_EQ(cutToken("  ab"), "|ab");
}

TEST(StringTokens, IsEmptyAndWithoutStorageAfterItsLastToken)
{
    String string = "ab cd";
    String token;
    string.getToken(token);
    string.getToken(token);
    EXPECT_EQ(textOf(token), "cd");
    EXPECT_EQ(string.getCount(), 0U);
    EXPECT_FALSE(hasStorage(string));
}

TEST(StringTokens, GivesTokensWithoutCopyingThem)
{
    String const text = "ab cd";
    String rest = text;
    String token;
    rest.getToken(token);
    EXPECT_EQ(token.begin(), text.begin());
    EXPECT_EQ(rest.begin(), text.begin() + 3);
}

TEST(StringTokens, LeavesTheTextBehindATokenAloneWhenTheTokenNeedsItsNul)
{
    String rest = "ab cd";
    String token;
    rest.getToken(token);
    EXPECT_STREQ(token, "ab");
    EXPECT_TRUE(rest.getNullTerminatedString() == rest.begin());
    EXPECT_STREQ(rest, "cd");
}

TEST(StringTokens, BecomesItsOwnToken)
{
    String string = "ab cd";
    string.getToken(string);
    EXPECT_EQ(textOf(string), "ab");
    string = "name=value";
    string.getToken(string, '=', true);
    EXPECT_EQ(textOf(string), "name");
    string = "x(value)";
    string.getToken(string, '(', ')', false);
    EXPECT_EQ(textOf(string), "value");
    string = "ab\ncd";
    string.getLine(string, true);
    EXPECT_EQ(textOf(string), "ab");
    string = " 12 cd";
    string.getNumberToken(string);
    EXPECT_EQ(textOf(string), "12");
}

TEST(StringTokens, GivesATokenIntoAStringThatSharesItsBytes)
{
    String string = "ab cd";
    String token = string;
    string.getToken(token);
    EXPECT_EQ(textOf(token), "ab");
    EXPECT_EQ(textOf(string), "cd");
}

TEST(StringTokens, GivesATokenUpToASeparator)
{
    EXPECT_EQ(cutToken("ab;cd", ';', true), "ab|cd");
    EXPECT_EQ(cutToken("ab; \n cd", ';', true), "ab|cd");
    EXPECT_EQ(cutToken("a b ;cd", ';', true), "a b |cd");
    EXPECT_EQ(cutToken(";;cd", ';', true), "|;cd");
    EXPECT_EQ(cutToken("ab;", ';', true), "ab|");
    EXPECT_EQ(cutToken("a b", ';', true), "a b|");
    EXPECT_EQ(cutToken("", ';', true), "|");
}

TEST(StringTokens, KeepsTheSeparatorAtItsFrontUnlessItIsDropped)
{
    EXPECT_EQ(cutToken("ab; cd", ';', false), "ab|; cd");
    EXPECT_EQ(cutToken("a b", ';', false), "a b|");
    EXPECT_EQ(cutToken("ab\n\n cd", '\n', false), "ab|cd"); // whitespace is dropped in any case
}

TEST(StringTokens, GivesTheTokenBetweenTwoDelimiters)
{
    EXPECT_EQ(cutToken("x(ab) cd", '(', ')', false), "ab|cd");
    EXPECT_EQ(cutToken("(a b)cd", '(', ')', false), "a b|cd");
    EXPECT_EQ(cutToken("x()\n", '(', ')', false), "|");
    EXPECT_EQ(cutToken(")x(ab)c)", '(', ')', false), "ab|c)");
    EXPECT_EQ(cutToken("x'ab' 'cd'", '\'', '\'', false), "ab|'cd'");
    EXPECT_EQ(cutToken("x'ab' 'cd'", '\'', '\'', true), "ab|'cd'");
}

TEST(StringTokens, CountsDelimitersWithinOthersIfAsked)
{
    EXPECT_EQ(cutToken("x(a(b)c)d", '(', ')', false), "a(b|c)d");
    EXPECT_EQ(cutToken("x(a(b)c)d", '(', ')', true), "a(b)c|d");
    EXPECT_EQ(cutToken("((a)((b)))) c", '(', ')', true), "(a)((b))|) c");
}

TEST(StringTokens, IsEmptyWithoutAnOpeningDelimiter)
{
    EXPECT_EQ(cutToken("ab)cd", '(', ')', false), "|");
    EXPECT_EQ(cutToken("", '(', ')', true), "|");
}

TEST(StringTokens, GivesTheWholeRestWithoutAClosingDelimiter)
{
    EXPECT_EQ(cutToken("x(ab cd", '(', ')', false), "ab cd|");
    EXPECT_EQ(cutToken("x(a(b)c ", '(', ')', true), "a(b)c |");
    EXPECT_EQ(cutToken("x(", '(', ')', false), "|");
}

TEST(StringTokens, GivesANameOfLettersAndDigits)
{
    EXPECT_EQ(cutName("ab12 cd"), "ab12|cd");
    EXPECT_EQ(cutName("Z"), "Z|");
    EXPECT_EQ(cutName("a_b"), "a|_b");
    EXPECT_EQ(cutName("az09AZ@[`{/:"), "az09AZ|@[`{/:");
    EXPECT_EQ(cutName("a\xe4"
                      "b"),
              "a|b");
}

TEST(StringTokens, GivesAnEmptyNameWhereNoLetterStands)
{
    EXPECT_EQ(cutName("1a"), "|1a");
    EXPECT_EQ(cutName("_a"), "|_a");
    EXPECT_EQ(cutName("\xe4"
                      "a"),
              "|a");
    EXPECT_EQ(cutName(" a"), "|a");
    EXPECT_EQ(cutName(""), "|");
}

TEST(StringTokens, TellsLettersByTheirAsciiCodesUnderEveryLocale)
{
    DecimalCommaLocale const locale;
    ASSERT_TRUE(locale.isInForce());
    EXPECT_EQ(cutName("ab\xc3\xa4"), "ab|");
}

TEST(StringTokens, GivesANumber)
{
    EXPECT_EQ(cutNumber("12 x"), "12|x");
    EXPECT_EQ(cutNumber(" \n-12.50\tx"), "-12.50|x");
    EXPECT_EQ(cutNumber("+1.5e10x"), "+1.5e10|x");
    EXPECT_EQ(cutNumber("1e5"), "1e5|");
    EXPECT_EQ(cutNumber("12abc"), "12|abc");
    EXPECT_EQ(cutNumber("1-2"), "1|-2");
    EXPECT_EQ(cutNumber("1.2.3"), "1.2|.3");
}

TEST(StringTokens, GivesANumberWithDigitsOnOneSideOfThePointOnly)
{
    EXPECT_EQ(cutNumber(".5 x"), ".5|x");
    EXPECT_EQ(cutNumber("5. x"), "5.|x");
    EXPECT_EQ(cutNumber("5.e3 x"), "5.e3|x");
}

TEST(StringTokens, GivesANumberWithEitherKindOfExponent)
{
    EXPECT_EQ(cutNumber("1E5 x"), "1E5|x");
    EXPECT_EQ(cutNumber("1e-5 x"), "1e-5|x");
    EXPECT_EQ(cutNumber("1E+5 x"), "1E+5|x");
}

TEST(StringTokens, LeavesAnExponentWithoutDigitsBehindTheNumber)
{
    EXPECT_EQ(cutNumber("1e"), "1|e");
    EXPECT_EQ(cutNumber("1e x"), "1|e x");
    EXPECT_EQ(cutNumber("1e+x"), "1|e+x");
}

TEST(StringTokens, GivesAnEmptyNumberWithoutDigits)
{
    EXPECT_EQ(cutNumber("e5"), "|e5");
    EXPECT_EQ(cutNumber("-e5"), "|-e5");
    EXPECT_EQ(cutNumber(".e5"), "|.e5");
    EXPECT_EQ(cutNumber(" +"), "|+");
    EXPECT_EQ(cutNumber("- 5"), "|- 5");
    EXPECT_EQ(cutNumber("x5"), "|x5");
    EXPECT_EQ(cutNumber(" "), "|");
}

TEST(StringTokens, GivesAFolderOfAPath)
{
    EXPECT_EQ(cutDirectory("ab/cd/ef"), "ab|cd/ef");
    EXPECT_EQ(cutDirectory("ab\\cd"), "ab|cd");
    EXPECT_EQ(cutDirectory("/ab"), "|ab");
    EXPECT_EQ(cutDirectory("a b/ c"), "a b| c");
    EXPECT_EQ(cutDirectory("ab/"), "ab|");
    EXPECT_EQ(cutDirectory("ab"), "ab|");
    EXPECT_EQ(cutDirectory(""), "|");
}

// Paths ---------------------------------------------------------------------------------------------------------------

TEST(StringTokens, TellsTheFilenameOfAPath)
{
    EXPECT_EQ(textOf(String("/a/b.txt").getFilename()), "b.txt");
    EXPECT_EQ(textOf(String("a\\b").getFilename()), "b");
    EXPECT_EQ(textOf(String("/a\\b/c").getFilename()), "c");
    EXPECT_EQ(textOf(String("b.txt").getFilename()), "b.txt");
    EXPECT_EQ(textOf(String("a/").getFilename()), "");
    EXPECT_EQ(textOf(String().getFilename()), "");
}

TEST(StringTokens, TellsTheParentFolderOfAPath)
{
    EXPECT_EQ(textOf(String("/a/b.txt").getParentDir()), "/a/");
    EXPECT_EQ(textOf(String("a\\b").getParentDir()), "a\\");
    EXPECT_EQ(textOf(String("a/").getParentDir()), "a/");
    EXPECT_EQ(textOf(String("/").getParentDir()), "/");
    EXPECT_EQ(textOf(String("b.txt").getParentDir()), "");
}

TEST(StringTokens, TellsTheSuffixOfAPath)
{
    EXPECT_EQ(textOf(String("/a/b.eps").getSuffix()), ".eps");
    EXPECT_EQ(textOf(String("b.tar.gz").getSuffix()), ".gz");
    EXPECT_EQ(textOf(String("dir.v2/file").getSuffix()), ".v2/file");
    EXPECT_EQ(textOf(String("b.").getSuffix()), ".");
    EXPECT_EQ(textOf(String("b").getSuffix()), "");
}

TEST(StringTokens, TellsThePiecesOfAPathAtOnce)
{
    String dir;
    String filename;
    String suffix;
    String const path = "/a/b.eps";
    path.getDirAndFilename(dir, filename);
    EXPECT_EQ(textOf(dir), "/a/");
    EXPECT_EQ(textOf(filename), "b.eps");
    path.getDirAndFilenameAndSuffix(dir, filename, suffix);
    EXPECT_EQ(textOf(dir), "/a/");
    EXPECT_EQ(textOf(filename), "b.eps");
    EXPECT_EQ(textOf(suffix), ".eps");
}

TEST(StringTokens, TellsItsOwnPieces)
{
    String path = "/a/b.eps";
    String filename;
    String suffix;
    path.getDirAndFilenameAndSuffix(path, filename, suffix);
    EXPECT_EQ(textOf(path), "/a/");
    EXPECT_EQ(textOf(filename), "b.eps");
    EXPECT_EQ(textOf(suffix), ".eps");
    path = "/a/b.eps";
    path.getDirAndFilename(path, filename);
    EXPECT_EQ(textOf(path), "/a/");
    EXPECT_EQ(textOf(filename), "b.eps");
}

TEST(StringTokens, IsShortenedByItsSuffix)
{
    EXPECT_EQ(withoutSuffix("a.b.c"), "a.b");
    EXPECT_EQ(withoutSuffix("name"), "");
    EXPECT_EQ(withoutSuffix(".x"), "");
    EXPECT_EQ(withoutSuffix("dir.v2/file"), "dir");
    EXPECT_EQ(withoutSuffix(""), "");
}

TEST(StringTokens, EndsInASlashIfAsked)
{
    EXPECT_EQ(textOf(String("/a").getStringWithEndingSlash()), "/a/");
    EXPECT_EQ(textOf(String("/a/").getStringWithEndingSlash()), "/a/");
    EXPECT_EQ(textOf(String("a\\").getStringWithEndingSlash()), "a\\");
    EXPECT_EQ(textOf(String().getStringWithEndingSlash()), "/");
}

TEST(StringTokens, EndsWithoutOneSlashIfAsked)
{
    EXPECT_EQ(textOf(String("/a/").getStringWithoutEndingSlash()), "/a");
    EXPECT_EQ(textOf(String("/a").getStringWithoutEndingSlash()), "/a");
    EXPECT_EQ(textOf(String("a\\").getStringWithoutEndingSlash()), "a");
    EXPECT_EQ(textOf(String("a//").getStringWithoutEndingSlash()), "a/");
    EXPECT_EQ(textOf(String("/").getStringWithoutEndingSlash()), "");
    EXPECT_EQ(textOf(String().getStringWithoutEndingSlash()), "");
}
