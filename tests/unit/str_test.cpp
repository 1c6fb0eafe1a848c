#include "str.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <locale>
#include <sstream>
#include <string>
#include <vector>

#include "allocation.h"
#include "foreign_locale.h"
#include "growth.h"
#include "recording_test.h"
#include "util/chars.h"
#include "util/stream_reader.h"

namespace VARNEL_TEST {
namespace {

using namespace std::string_literals;

using VARNEL_COMMON::ConvertFromString;
using VARNEL_COMMON::GetTL1AttrbuteString;
using VARNEL_COMMON::replaceEnterWithBlank;
using VARNEL_COMMON::ReplaceString;
using VARNEL_COMMON::SplitStringByChar;
using VARNEL_COMMON::StrCollapse;
using VARNEL_COMMON::strmcmp;
using VARNEL_COMMON::strmcmpnocase;
using VARNEL_COMMON::StrTrim;
using VARNEL_COMMON::StrTrimLeft;
using VARNEL_COMMON::StrTrimRight;
using VARNEL_COMMON::toUpperCase;
using VARNEL_UTIL::StreamReader;

using Fields = std::vector<std::string>;

constexpr size_t LARGE = 5000000;

// No string function logs, for any input.
class Str : public RecordingTest {
 protected:
  void TearDown() override { EXPECT_EQ(host.lines, Lines{}); }
};

std::string Left(std::string s) {
  StrTrimLeft(s);
  return s;
}

std::string Right(std::string s) {
  StrTrimRight(s);
  return s;
}

std::string Trimmed(std::string s) {
  StrTrim(s);
  return s;
}

std::string Collapsed(std::string s) {
  StrCollapse(s);
  return s;
}

std::string Upper(std::string s) {
  toUpperCase(s);
  return s;
}

std::string Replaced(std::string s, const std::string& from, const std::string& to) {
  ReplaceString(s, from, to);
  return s;
}

Fields Split(const char* text, char separator) {
  Fields fields;
  SplitStringByChar(text, separator, fields);
  return fields;
}

template <typename T>
T Converted(const char* text, T before) {
  ConvertFromString(text, before);
  return before;
}

std::string Times(size_t count, const std::string& piece) {
  std::string text;
  text.reserve(count * piece.size());
  for (size_t i = 0; i < count; ++i)
    text += piece;
  return text;
}

TEST_F(Str, WhiteSpaceAndCaseOfEveryByteFollowTheCLocale) {
  for (int byte = 0; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    EXPECT_EQ(VARNEL_UTIL::IsBlank(c), std::isspace(byte) != 0) << byte;
    EXPECT_EQ(VARNEL_UTIL::ToUpper(c), static_cast<char>(std::toupper(byte))) << byte;
  }
}

TEST_F(Str, TrimLeftRemovesLeadingWhiteSpaceOnly) {
  EXPECT_EQ(Left(" \t\n\v\f\ra b \t"), "a b \t");
  EXPECT_EQ(Left("a "), "a ");
  EXPECT_EQ(Left(" \t\r\n"), "");
  EXPECT_EQ(Left(""), "");
}

TEST_F(Str, TrimRightRemovesTrailingWhiteSpaceOnly) {
  EXPECT_EQ(Right(" \ta b \t\n\v\f\r"), " \ta b");
  EXPECT_EQ(Right(" a"), " a");
  EXPECT_EQ(Right(" \t\r\n"), "");
  EXPECT_EQ(Right(""), "");
}

TEST_F(Str, TrimRemovesWhiteSpaceAtBothEnds) {
  EXPECT_EQ(Trimmed(" \t\n\v\f\ra \t b \t\n\v\f\r"), "a \t b");
  EXPECT_EQ(Trimmed("ab"), "ab");
  EXPECT_EQ(Trimmed("\t \r\n"), "");
  EXPECT_EQ(Trimmed(""), "");
}

TEST_F(Str, TrimKeepsNulsAndBytesThatAreBlankElsewhere) {
  EXPECT_EQ(Trimmed(" \0 a \0 "s), "\0 a \0"s);
  EXPECT_EQ(Trimmed(" \xA0 a\x85 "), "\xA0 a\x85");
  EXPECT_EQ(Trimmed("\x08\x0E\x1F"), "\x08\x0E\x1F");
}

TEST_F(Str, TrimOfALargeText) {
  const std::string blanks(LARGE, ' ');
  EXPECT_TRUE(Trimmed(blanks).empty());
  EXPECT_EQ(Trimmed(blanks + "a b" + blanks), "a b");
}

TEST_F(Str, CollapseTrimsAndReducesEveryRunToOneBlank) {
  EXPECT_EQ(Collapsed("  a \t\t b\r\n"), "a b");
  EXPECT_EQ(Collapsed("a\tb\nc\vd\fe\rf"), "a b c d e f");
  EXPECT_EQ(Collapsed("a b"), "a b");
  EXPECT_EQ(Collapsed("a"), "a");
  EXPECT_EQ(Collapsed(" \t\r\n"), "");
  EXPECT_EQ(Collapsed(""), "");
}

TEST_F(Str, CollapseKeepsNulsAndBytesThatAreBlankElsewhere) {
  EXPECT_EQ(Collapsed(" \0  \0 a"s), "\0 \0 a"s);
  EXPECT_EQ(Collapsed("\xA0\xA0  \x85\x85"), "\xA0\xA0 \x85\x85");
}

TEST_F(Str, CollapseOfALargeText) {
  EXPECT_EQ(Collapsed(Times(LARGE / 4, " a\t\r")), Times(LARGE / 4 - 1, "a ") + "a");
}

TEST_F(Str, UpperCaseOfEveryByte) {
  std::string all, expected;
  for (int byte = 0; byte < 256; ++byte) {
    all += static_cast<char>(byte);
    expected += static_cast<char>(byte >= 'a' && byte <= 'z' ? byte - 'a' + 'A' : byte);
  }
  EXPECT_EQ(Upper(all), expected);
  EXPECT_EQ(Upper("abc, xyz; 1a"), "ABC, XYZ; 1A");
  EXPECT_EQ(Upper(""), "");
}

TEST_F(Str, UpperCaseOfALargeText) {
  EXPECT_EQ(Upper(Times(LARGE / 2, "a\xE1")), Times(LARGE / 2, "A\xE1"));
}

TEST_F(Str, WildcardMatchOfTheHostDistinguishesCase) {
  EXPECT_NE(strmcmp("abc", "*b*"), 0);
  EXPECT_EQ(strmcmp("abc", "*B*"), 0);
}

struct MatchCase {
  const char* text;
  const char* pattern;
};

TEST_F(Str, CaselessMatchAccepts) {
  const MatchCase cases[] = {
      {"abc", "a*c"},     {"ABC", "a*"},    {"abc", "a?c"},    {"abc", "*?"},    {"mississippi", "m*iss*ppi"},
      {"aab", "*ab"},     {"abaab", "a?b"}, {"abc", "abc"},    {"abc", "ABC"},   {"AbC", "aBc"},
      {"abc", "*"},       {"abc", "***"},   {"abc", "abc***"}, {"abc", "*abc*"}, {"abc", "a**?*c"},
      {"a", "?"},         {"abc", "???"},   {"abc", "?*"},     {"a*c", "a?c"},   {" ", "?"},
      {"aXbXc", "a*x*c"},
  };
  for (const auto& [text, pattern] : cases)
    EXPECT_EQ(strmcmpnocase(text, pattern), 1) << text << " against " << pattern;
}

TEST_F(Str, CaselessMatchRefuses) {
  const MatchCase cases[] = {
      {"abc", "abd"}, {"abc", "ab"},  {"abc", "abcd"}, {"abc", "a?"},    {"abc", "????"}, {"abc", "b*"},
      {"abc", "*d"},  {"abc", "*d*"}, {"abc", "*cb"},  {"abc", "abc*d"}, {"a[c", "a{c"},  {"a@", "a`"},
  };
  for (const auto& [text, pattern] : cases)
    EXPECT_EQ(strmcmpnocase(text, pattern), 0) << text << " against " << pattern;
}

TEST_F(Str, CaselessMatchNeverGoesBackToAStarAtTheEndOfThePattern) {
  EXPECT_EQ(strmcmpnocase("abab", "*ab"), 0);
  EXPECT_EQ(strmcmpnocase("abcbc", "a*bc"), 0);
}

TEST_F(Str, CaselessMatchNeedsTextForTheRestOfThePattern) {
  EXPECT_EQ(strmcmpnocase("abc", "abc?"), 0);
  EXPECT_EQ(strmcmpnocase("a", "a*?"), 0);
  EXPECT_EQ(strmcmpnocase("a", "a*"), 1);
}

TEST_F(Str, CaselessMatchOfAnEmptyTextOrPattern) {
  EXPECT_EQ(strmcmpnocase("", "*"), 0);
  EXPECT_EQ(strmcmpnocase("", ""), 0);
  EXPECT_EQ(strmcmpnocase("", "?"), 0);
  EXPECT_EQ(strmcmpnocase("", "a"), 0);
  EXPECT_EQ(strmcmpnocase("abc", ""), 0);
}

TEST_F(Str, CaselessMatchOfNullFails) {
  EXPECT_EQ(strmcmpnocase(nullptr, "x"), 0);
  EXPECT_EQ(strmcmpnocase("x", nullptr), 0);
  EXPECT_EQ(strmcmpnocase(nullptr, nullptr), 0);
  EXPECT_EQ(strmcmpnocase(nullptr, "*"), 0);
}

TEST_F(Str, CaselessMatchContinuesFromTheLastStarAfterAMismatchAfterAQuestionMark) {
  EXPECT_EQ(strmcmpnocase("xa1cxa2b", "x*a?b"), 1) << "back to the star";
  EXPECT_EQ(strmcmpnocase("xa1cxa2b", "xa?b"), 0) << "back to the start, where the mismatching c is no x";
  EXPECT_EQ(strmcmpnocase("a1cya2b", "a?cy*?b"), 1) << "a question mark next to a star consumes nothing";
  EXPECT_EQ(strmcmpnocase("a12", "a?b"), 0);
}

TEST_F(Str, CaselessMatchFoldsAsciiLettersOnly) {
  EXPECT_EQ(strmcmpnocase("\xE1", "\xE1"), 1);
  EXPECT_EQ(strmcmpnocase("\xE1", "\xC1"), 0);
  EXPECT_EQ(strmcmpnocase("x\xE1y\xFFz", "*\xE1Y*Z"), 1);
}

TEST_F(Str, CaselessMatchOfLiteralsOfEveryLength) {
  for (const size_t length : {1U, 62U, 63U, 64U, 65U, 66U, 500U}) {
    const std::string literal = std::string(length, 'a') + "b";
    const std::string text = std::string(length - 1, 'A') + "c" + std::string(length + 3, 'A') + "B";
    EXPECT_EQ(strmcmpnocase(text.c_str(), ("*" + literal).c_str()), 1) << length;
    EXPECT_EQ(strmcmpnocase(text.c_str(), ("*" + literal + "?").c_str()), 0) << length;
    EXPECT_EQ(strmcmpnocase((text + text).c_str(), ("*" + literal + "*" + literal + "*").c_str()), 1) << length;
  }
}

TEST_F(Str, CaselessMatchOfALargeText) {
  const std::string text(LARGE, 'a');
  EXPECT_EQ(strmcmpnocase(text.c_str(), std::string(LARGE, 'A').c_str()), 1);
  EXPECT_EQ(strmcmpnocase(text.c_str(), "*b"), 0);
  EXPECT_EQ(strmcmpnocase((text + "b").c_str(), "*ab"), 1);
}

// An array as callers allocate it, with space after its end.
void** NewArray(size_t elements) {
  auto** array = static_cast<void**>(std::calloc(elements + 2, sizeof(void*)));
  for (size_t i = 0; i < elements; ++i)
    array[i] = std::malloc(10 + i);
  return array;
}

TEST_F(Str, FreeArrayOfNullDoesNothing) {
  VARNEL_COMMON::freeArray(nullptr);
}

// The address sanitizer reports what these two leak or release twice.
TEST_F(Str, FreeArrayReleasesElementsAndArray) {
  for (const size_t elements : {0U, 1U, 2U, 100U})
    VARNEL_COMMON::freeArray(NewArray(elements));
}

TEST_F(Str, FreeArrayStopsAtTheFirstNull) {
  void** array = NewArray(2);
  auto* kept = static_cast<char*>(std::malloc(5));
  std::strcpy(kept, "kept");
  array[3] = kept;
  VARNEL_COMMON::freeArray(array);
  EXPECT_STREQ(kept, "kept");
  std::free(kept);
}

TEST_F(Str, ReplaceReplacesEveryOccurrence) {
  EXPECT_EQ(Replaced("x--y", "--", "-"), "x-y");
  EXPECT_EQ(Replaced("a.b.c", ".", ", "), "a, b, c");
  EXPECT_EQ(Replaced("aXbXc", "X", ""), "abc");
  EXPECT_EQ(Replaced("abc", "abc", "z"), "z");
  EXPECT_EQ(Replaced("abc", "abc", ""), "");
}

TEST_F(Str, ReplaceWithoutAnOccurrenceChangesNothing) {
  EXPECT_EQ(Replaced("x--y", "---", "-"), "x--y");
  EXPECT_EQ(Replaced("x--y", "X", "-"), "x--y");
  EXPECT_EQ(Replaced("", "a", "b"), "");
}

TEST_F(Str, ReplaceAlsoReplacesOccurrencesThatItCreates) {
  EXPECT_EQ(Replaced("aaaa", "aa", "a"), "a");
  EXPECT_EQ(Replaced("aabb", "ab", ""), "");
  EXPECT_EQ(Replaced("xaabbabx", "ab", ""), "xx");
  EXPECT_EQ(Replaced("aaab", "ab", "b"), "b");
  EXPECT_EQ(Replaced("abab", "ab", "ba"), "bbaa");
  EXPECT_EQ(Replaced("aab", "ab", "bba"), "bbbbaa");
}

TEST_F(Str, ReplacesTheFirstOfTwoOverlappingOccurrences) {
  EXPECT_EQ(Replaced("ababa", "aba", "X"), "Xba");
  EXPECT_EQ(Replaced("aaa", "aa", "b"), "ba");
  EXPECT_EQ(Replaced("aabaa", "aa", "ab"), "abbab");
}

TEST_F(Str, ReplaceThatWouldNeverEndChangesNothing) {
  EXPECT_EQ(Replaced("abc", "", "x"), "abc");
  EXPECT_EQ(Replaced("abc", "", ""), "abc");
  EXPECT_EQ(Replaced("abc", "b", "b"), "abc");
  EXPECT_EQ(Replaced("abc", "b", "xbx"), "abc");
  EXPECT_EQ(Replaced("a\nb", "\n", "\r\n"), "a\nb");
}

TEST_F(Str, ReplaceTreatsNulsAndHighBytesAsOrdinary) {
  EXPECT_EQ(Replaced("a\0\0b"s, "\0"s, "\xE1"),
            "a\xE1\xE1"
            "b");
  EXPECT_EQ(Replaced("a\0b"s, "a\0"s, ""), "b");
  EXPECT_EQ(Replaced("\xFF\xFE\xFF", "\xFE", "\0"s), "\xFF\0\xFF"s);
}

TEST_F(Str, ReplaceOfATextByItself) {
  std::string s = "ab";
  ReplaceString(s, s, s);
  EXPECT_EQ(s, "ab");
}

TEST_F(Str, ReplaceOfTheWholeTextByAnother) {
  for (const char* text : {"ab", "a text that lives on the heap because it is long"}) {
    std::string s = text;
    ReplaceString(s, s, "x");
    EXPECT_EQ(s, "x");
    s = text;
    const std::string sameLength(s.size(), 'z');
    ReplaceString(s, s, sameLength);
    EXPECT_EQ(s, sameLength);
    s = text;
    ReplaceString(s, s, "another text that lives on the heap because it is long");
    EXPECT_EQ(s, "another text that lives on the heap because it is long");
  }
}

TEST_F(Str, ReplaceOfAPieceByTheTextItselfChangesNothing) {
  std::string s = "abc";
  ReplaceString(s, "b", s);
  EXPECT_EQ(s, "abc");
  ReplaceString(s, "x", s);
  EXPECT_EQ(s, "abc");
}

TEST_F(Str, ReplaceInALargeText) {
  const std::string piece(LARGE / 5000, 'a');
  EXPECT_EQ(Replaced(Times(5000, piece + "."), ".", "::"), Times(5000, piece + "::"));
  EXPECT_EQ(Replaced(std::string(LARGE, ' '), "  ", " "), " ");
}

TEST_F(Str, CleaningDropsLineFeedsAndTurnsCarriageReturnsIntoBlanks) {
  EXPECT_EQ(replaceEnterWithBlank("A\r\nB  C"), "A B C");
  EXPECT_EQ(replaceEnterWithBlank("A\nB"), "AB");
  EXPECT_EQ(replaceEnterWithBlank("A\rB"), "A B");
  EXPECT_EQ(replaceEnterWithBlank("A\r\n\r\nB"), "A B");
  EXPECT_EQ(replaceEnterWithBlank("A \n B"), "A B");
  EXPECT_EQ(replaceEnterWithBlank("\n\n"), "");
}

TEST_F(Str, CleaningKeepsOuterBlanksAndTabs) {
  EXPECT_EQ(replaceEnterWithBlank("  A  "), " A ");
  EXPECT_EQ(replaceEnterWithBlank("\r\nA\r\n"), " A ");
  EXPECT_EQ(replaceEnterWithBlank("\t\tA \t B\v\f"), "\t\tA \t B\v\f");
  EXPECT_EQ(replaceEnterWithBlank("\xA0\xA0\x85"), "\xA0\xA0\x85");
}

TEST_F(Str, CleaningNullOrEmptyReturnsEmpty) {
  EXPECT_EQ(replaceEnterWithBlank(nullptr), "");
  EXPECT_EQ(replaceEnterWithBlank(""), "");
}

TEST_F(Str, CleaningALargeText) {
  EXPECT_EQ(replaceEnterWithBlank(Times(LARGE / 5, "ab \r\n").c_str()), Times(LARGE / 5, "ab "));
}

struct AttributeCase {
  const char* text;
  const char* name;
  const char* value;
};

TEST_F(Str, AttributeValueEndsAtACommaAQuoteOrTheEnd) {
  const AttributeCase cases[] = {
      {"X=1,TOTAL=7,Y=2", "TOTAL=", "7"},
      {"TOTAL=7", "TOTAL=", "7"},
      {"TOTAL=,x", "TOTAL=", ""},
      {"TOTAL=\"", "TOTAL=", ""},
      {"\"TOTAL=7\"", "TOTAL=", "7"},
      {"TOTAL=7\" Y", "TOTAL=", "7"},
      {"TOTAL=\"7\",Y=2", "TOTAL=", "\"7\""},
      {"TOTAL=7\"Y,Z", "TOTAL=", "7\"Y"},
      {"TOTAL= 7 \r\n,Y", "TOTAL=", " 7 \r\n"},
      {"TOTAL=1,TOTAL=2", "TOTAL=", "1"},
      {"SUBTOTAL=1,TOTAL=2", "TOTAL=", "1"},
      {"TOTAL=7", "TOTAL", "=7"},
      {"TOTAL=7", "T", "OTAL=7"},
      {"x,\"y\",TOTAL=\xE1\xA0", "TOTAL=", "\xE1\xA0"},
  };
  for (const auto& [text, name, expected] : cases) {
    std::string value = "old";
    EXPECT_TRUE(GetTL1AttrbuteString(text, name, value)) << text;
    EXPECT_EQ(value, expected) << text;
  }
}

TEST_F(Str, AttributeValueIsEmptyWhenTheEndIsInsideTheName) {
  const AttributeCase cases[] = {
      {"A,B=7", "A,B=", ""}, {"A,B=7,C", "A,B=", ""}, {"A,B=", "A,B=", ""}, {"A\"B=7", "A\"B=", ""}, {",", ",", ""},
  };
  for (const auto& [text, name, expected] : cases) {
    std::string value = "old";
    EXPECT_TRUE(GetTL1AttrbuteString(text, name, value)) << text;
    EXPECT_EQ(value, expected) << text;
  }
}

TEST_F(Str, MissingAttributeEmptiesTheValue) {
  const AttributeCase cases[] = {
      {"TOTAL=", "TOTAL=", ""},
      {"X=1,TOTAL=", "TOTAL=", ""},
      {"TOTAL", "TOTAL=", ""},
      {"total=7", "TOTAL=", ""},
      {"TOTAL =7", "TOTAL=", ""},
      {"", "TOTAL=", ""},
      {nullptr, "TOTAL=", ""},
      {"TOTAL=7", "", ""},
      {"\"X\",TOTAL=", "TOTAL=", ""},
      {"", "", ""},
      {nullptr, "", ""},
  };
  for (const auto& [text, name, expected] : cases) {
    std::string value = "old";
    EXPECT_FALSE(GetTL1AttrbuteString(text, name, value)) << name;
    EXPECT_EQ(value, expected);
  }
}

TEST_F(Str, AttributeNameWithANulOccursInNoText) {
  std::string value = "old";
  EXPECT_FALSE(GetTL1AttrbuteString("TOTAL=7", "TOTAL=\0"s, value));
  EXPECT_EQ(value, "");
}

TEST_F(Str, AttributeValueMayReplaceTheName) {
  std::string name = "TOTAL=";
  EXPECT_TRUE(GetTL1AttrbuteString("X=1,TOTAL=7,Y=2", name, name));
  EXPECT_EQ(name, "7");
  name = "TOTAL=";
  EXPECT_FALSE(GetTL1AttrbuteString("X=1", name, name));
  EXPECT_EQ(name, "");
}

TEST_F(Str, AttributeValueMayReplaceTheText) {
  std::string text = "X=1,TOTAL=7,Y=2";
  EXPECT_TRUE(GetTL1AttrbuteString(text.c_str(), "TOTAL=", text));
  EXPECT_EQ(text, "7");
  const std::string longValue(1000, 'v');
  text = "X=1,TOTAL=" + longValue + ",Y=2";
  EXPECT_TRUE(GetTL1AttrbuteString(text.c_str(), "TOTAL=", text));
  EXPECT_EQ(text, longValue);
  text = "TOTAL=";
  EXPECT_FALSE(GetTL1AttrbuteString(text.c_str(), "TOTAL=", text));
  EXPECT_EQ(text, "");
}

TEST_F(Str, AttributeOfALargeText) {
  std::string value;
  const std::string large(LARGE, 'v');
  EXPECT_TRUE(GetTL1AttrbuteString((large + "TOTAL=" + large + ",").c_str(), "TOTAL=", value));
  EXPECT_EQ(value, large);
}

TEST_F(Str, SplitFieldsLoseLeadingAndKeepTrailingWhiteSpace) {
  EXPECT_EQ(Split("  a , b", ','), (Fields{"a ", "b"}));
  EXPECT_EQ(Split("\t a\t,\r\n b\r\n", ','), (Fields{"a\t", "b\r\n"}));
  EXPECT_EQ(Split("a b", ','), Fields{"a b"});
}

TEST_F(Str, SplitKeepsEmptyFields) {
  EXPECT_EQ(Split("a,,b", ','), (Fields{"a", "", "b"}));
  EXPECT_EQ(Split("a,b,", ','), (Fields{"a", "b", ""}));
  EXPECT_EQ(Split(",", ','), (Fields{"", ""}));
  EXPECT_EQ(Split(" , , ", ','), (Fields{"", "", ""}));
  EXPECT_EQ(Split("", ','), Fields{""});
  EXPECT_EQ(Split("  ", ','), Fields{""});
}

TEST_F(Str, SplitAtWhiteSpaceSeparatesOncePerRun) {
  EXPECT_EQ(Split("a   b", ' '), (Fields{"a", "b"}));
  EXPECT_EQ(Split("  a b ", ' '), (Fields{"a", "b", ""}));
  EXPECT_EQ(Split("a\n\n b\n", '\n'), (Fields{"a", "b", ""}));
  EXPECT_EQ(Split("a\tb c", '\t'), (Fields{"a", "b c"}));
}

TEST_F(Str, SplitAtUnusualBytes) {
  EXPECT_EQ(Split("a\xE1\xA0\xE1"
                  "b",
                  '\xE1'),
            (Fields{"a", "\xA0", "b"}));
  EXPECT_EQ(Split(" a b", '\0'), Fields{"a b"});
}

TEST_F(Str, SplitAppends) {
  Fields fields{"old"};
  SplitStringByChar("a,b", ',', fields);
  EXPECT_EQ(fields, (Fields{"old", "a", "b"}));
  SplitStringByChar("", ',', fields);
  EXPECT_EQ(fields, (Fields{"old", "a", "b", ""}));
}

TEST_F(Str, SplitOfNullAppendsNothing) {
  Fields fields{"old"};
  SplitStringByChar(nullptr, ',', fields);
  EXPECT_EQ(fields, Fields{"old"});
  EXPECT_EQ(Split(nullptr, ','), Fields{});
}

TEST_F(Str, SplitOfATextThatBelongsToAField) {
  const std::string longField(1000, 'x');
  for (const size_t room : {0U, 100U}) {
    Fields fields{"a,b", longField + "," + longField};
    fields.reserve(room);
    SplitStringByChar(fields[0].c_str(), ',', fields);
    EXPECT_EQ(fields, (Fields{"a,b", longField + "," + longField, "a", "b"}));
    SplitStringByChar(fields[1].c_str(), ',', fields);
    EXPECT_EQ(fields, (Fields{"a,b", longField + "," + longField, "a", "b", longField, longField}));
  }
}

TEST_F(Str, SplitOfALargeText) {
  const Fields fields = Split(Times(LARGE / 5, "ab , ").c_str(), ',');
  ASSERT_EQ(fields.size(), LARGE / 5 + 1);
  for (size_t i = 0; i < LARGE / 5; ++i)
    ASSERT_EQ(fields[i], "ab ");
  EXPECT_EQ(fields.back(), "");
}

struct NumberCase {
  const char* text;
  unsigned int number;       // as unsigned int
  unsigned short shortened;  // as unsigned short
};

constexpr unsigned int MAX_INT = 4294967295U;
constexpr unsigned short MAX_SHORT = 65535;

TEST_F(Str, ConvertsNumbers) {
  const NumberCase cases[] = {
      {"42", 42, 42},
      {"0", 0, 0},
      {" \t\n\v\f\r42", 42, 42},
      {"42 43", 42, 42},
      {"42abc", 42, 42},
      {"42-7", 42, 42},
      {"1.9", 1, 1},
      {"1,234", 1, 1},
      {"0x10", 0, 0},
      {"010", 10, 10},
      {"0000000000000000000000000000000000042", 42, 42},
      {"+42", 42, 42},
      {"-0", 0, 0},
      {"-1", MAX_INT, MAX_SHORT},
      {"-42", MAX_INT - 41, MAX_SHORT - 41},
      {"65535", 65535, MAX_SHORT},
      {"-65535", MAX_INT - 65534, 1},
  };
  for (const auto& [text, number, shortened] : cases) {
    EXPECT_EQ(Converted(text, 77U), number) << text;
    EXPECT_EQ(Converted<unsigned short>(text, 77), shortened) << text;
  }
}

TEST_F(Str, ConvertsAnOverflowToTheLargestValue) {
  const NumberCase cases[] = {
      {"65536", 65536, MAX_SHORT},
      {"-65536", MAX_INT - 65535, MAX_SHORT},
      {"655350", 655350, MAX_SHORT},
      {"4294967295", MAX_INT, MAX_SHORT},
      {"4294967296", MAX_INT, MAX_SHORT},
      {"-4294967295", 1, MAX_SHORT},
      {"-4294967296", MAX_INT, MAX_SHORT},
      {"18446744073709551617", MAX_INT, MAX_SHORT},
      {"99999999999999999999999999999999999999 1", MAX_INT, MAX_SHORT},
  };
  for (const auto& [text, number, shortened] : cases) {
    EXPECT_EQ(Converted(text, 77U), number) << text;
    EXPECT_EQ(Converted<unsigned short>(text, 77), shortened) << text;
  }
}

TEST_F(Str, ConvertsATextWithoutANumberToZero) {
  for (const char* text : {"abc", "-", "+", "--1", "+-1", "- 1", " x1", ".5", ",",
                           "\xA0"
                           "1",
                           "\xB2"}) {
    EXPECT_EQ(Converted(text, 77U), 0U) << text;
    EXPECT_EQ(Converted<unsigned short>(text, 77), 0) << text;
  }
}

TEST_F(Str, ConvertsTheFirstCharacterThatIsNotBlank) {
  EXPECT_EQ(Converted("x", '?'), 'x');
  EXPECT_EQ(Converted(" \t\n\v\f\rxy", '?'), 'x');
  EXPECT_EQ(Converted("-1", '?'), '-');
  EXPECT_EQ(Converted("\xA0"
                      "1",
                      '?'),
            '\xA0');
  EXPECT_EQ(Converted("\x01", '?'), '\x01');
}

TEST_F(Str, ConvertingAnEmptyTextLeavesTheValue) {
  for (const char* text : {static_cast<const char*>(nullptr), "", " ", " \t\n\v\f\r"}) {
    EXPECT_EQ(Converted(text, 77U), 77U);
    EXPECT_EQ(Converted<unsigned short>(text, 77), 77);
    EXPECT_EQ(Converted(text, '?'), '?');
  }
}

TEST_F(Str, ConvertsALargeText) {
  EXPECT_EQ(Converted((std::string(LARGE, ' ') + std::string(LARGE, '0') + "42").c_str(), 77U), 42U);
  EXPECT_EQ(Converted(std::string(LARGE, '9').c_str(), 77U), MAX_INT);
}

TEST_F(Str, ReaderStopsAfterEachValue) {
  StreamReader reader("12 x-3");
  unsigned int number = 77;
  char letter = '?';
  reader.Read(number);
  EXPECT_EQ(number, 12U);
  reader.Read(letter);
  EXPECT_EQ(letter, 'x');
  EXPECT_FALSE(reader.AtEnd());
  reader.Read(number);
  EXPECT_EQ(number, MAX_INT - 2);
  EXPECT_TRUE(reader.AtEnd());
  EXPECT_FALSE(reader.Failed());
}

TEST_F(Str, ReaderReadsNothingAfterAFailure) {
  StreamReader reader("x 12");
  unsigned int number = 77;
  char letter = '?';
  reader.Read(number);
  EXPECT_EQ(number, 0U);
  EXPECT_TRUE(reader.Failed());
  EXPECT_FALSE(reader.AtEnd());
  number = 77;
  reader.Read(number);
  reader.Read(letter);
  EXPECT_EQ(number, 77U);
  EXPECT_EQ(letter, '?');
}

TEST_F(Str, ReaderFailsAtTheEnd) {
  StreamReader reader("12");
  unsigned int number = 77;
  reader.Read(number);
  EXPECT_FALSE(reader.Failed());
  reader.Read(number);
  EXPECT_TRUE(reader.Failed());
  EXPECT_TRUE(reader.AtEnd());
  EXPECT_EQ(number, 12U);
}

TEST_F(Str, ReaderTreatsANulAsOrdinary) {
  const std::string text = "1\0\0002"s;
  StreamReader reader(text);
  unsigned int number = 77;
  char letter = '?';
  reader.Read(number);
  EXPECT_EQ(number, 1U);
  reader.Read(letter);
  EXPECT_EQ(letter, '\0');
  reader.Read(number);
  EXPECT_EQ(number, 0U);
  EXPECT_TRUE(reader.Failed());
}

// A0 is a blank, and E1 the lower case of C1, as in the ISO 8859 locales.
class ForeignCharacters : public std::ctype<char> {
 public:
  ForeignCharacters() : std::ctype<char>(Table()) {}

 private:
  static const mask* Table() {
    static const std::vector<mask> table = [] {
      std::vector<mask> masks(classic_table(), classic_table() + table_size);
      masks[0xA0] = space;
      masks[0xC1] = upper | alpha;
      masks[0xE1] = lower | alpha;
      return masks;
    }();
    return table.data();
  }
  char do_toupper(char c) const override { return c == '\xE1' ? '\xC1' : std::ctype<char>::do_toupper(c); }
};

void ExpectResultsOfTheCLocale() {
  EXPECT_EQ(Converted("1.234", 77U), 1U);
  EXPECT_EQ(Converted<unsigned short>("1.234", 77), 1);
  EXPECT_EQ(Converted("\xA0"
                      "5",
                      77U),
            0U);
  EXPECT_EQ(Converted("\xA0"
                      "5",
                      '?'),
            '\xA0');
  EXPECT_EQ(Trimmed("\xA0x\xA0"), "\xA0x\xA0");
  EXPECT_EQ(Collapsed("x\xA0\xA0y"), "x\xA0\xA0y");
  EXPECT_EQ(Split(",\xA0x", ','), (Fields{"", "\xA0x"}));
  EXPECT_EQ(Upper("i\xE1\xFD"), "I\xE1\xFD");
  EXPECT_EQ(strmcmpnocase("i\xE1", "I\xE1"), 1);
  EXPECT_EQ(strmcmpnocase("\xE1", "\xC1"), 0);
}

TEST_F(Str, ResultsDoNotDependOnTheGlobalStreamLocale) {
  const std::locale foreign(std::locale(std::locale::classic(), new Grouping), new ForeignCharacters);
  const std::locale before = std::locale::global(foreign);
  unsigned int read = 0;
  std::stringstream(
      "\xA0"
      "1.234") >>
      read;
  EXPECT_EQ(read, 1234U) << "a stream does follow it";
  ExpectResultsOfTheCLocale();
  std::locale::global(before);
}

TEST_F(Str, ResultsDoNotDependOnTheLocaleOfTheProcess) {
  const TurkishLocale locale;
  if (!locale.IsSet()) GTEST_SKIP() << "no localedef here";
  // The compiler evaluates toupper() for the "C" locale, so it must not know the letters.
  const volatile int i = 'i', letter = 0xE1;
  EXPECT_EQ(std::toupper(i), 0xDD) << "the C library does follow it";
  EXPECT_EQ(std::toupper(letter), 0xC1);
  ExpectResultsOfTheCLocale();
}

TEST_F(Str, NothingIsAllocatedForUsualSizes) {
  const std::string pattern = "*FILES_TOTAL=?*, " + std::string(30, 'x') + "*";
  const std::string text = "prefix of some length, files_total=7 , " + std::string(30, 'X') + " and more";
  std::string trimmed = "  a text that lives on the heap because it is long  ";
  std::string collapsed = " a   text that lives   on the heap because it is long ";
  std::string upper = "a text that lives on the heap because it is long";
  std::string absent = "a text that lives on the heap because it is long";
  const std::string name = "DONE=";
  const std::string from = "from", to = "to";
  std::string value;
  unsigned int number = 0;
  unsigned short shortened = 0;
  char letter = '\0';

  const AllocationGuard guard;
  strmcmp(text.c_str(), "*files*total*");
  strmcmpnocase(text.c_str(), pattern.c_str());
  ConvertFromString("  4294967296", number);
  ConvertFromString("-3", shortened);
  ConvertFromString("  x", letter);
  GetTL1AttrbuteString(text.c_str(), name, value);
  StrTrim(trimmed);
  StrCollapse(collapsed);
  toUpperCase(upper);
  ReplaceString(absent, from, to);
  EXPECT_EQ(guard.Count(), 0U);
}

TEST_F(Str, AllocationFailureLeavesTheTextThatIsReplacedIn) {
  const size_t live = LiveAllocations();
  {
    const std::string before = Times(100, "ab ") + Times(100, "  ");
    const std::string from = "ab", to = "a somewhat longer text, xyz", blanks = "  ", blank = " ";
    std::string s = before;
    const auto unchanged = [&] { EXPECT_EQ(s, before); };
    EXPECT_GT(FailEachAllocation([&] { ReplaceString(s, from, to); }, unchanged), 0U);
    EXPECT_EQ(s.size(), before.size() + 100 * (to.size() - 2));
    s = before;
    EXPECT_GT(FailEachAllocation([&] { ReplaceString(s, blanks, blank); }, unchanged), 2U);
    EXPECT_EQ(s, Times(100, "ab "));
  }
  EXPECT_EQ(LiveAllocations(), live);
}

TEST_F(Str, AllocationFailureLeavesTheFieldsThatAreAppendedTo) {
  const size_t live = LiveAllocations();
  {
    const std::string longField(100, 'x');
    const std::string text = longField + "," + longField + ",a,b,c,d,e,f,g,h,i,j,k";
    Fields fields;
    EXPECT_GT(
        FailEachAllocation([&] { SplitStringByChar(text.c_str(), ',', fields); }, [&] { EXPECT_EQ(fields, Fields{}); }),
        2U);
    EXPECT_EQ(fields.size(), 13U);
    fields.resize(2);
    fields.shrink_to_fit();
    const Fields before{longField, longField};
    EXPECT_GT(
        FailEachAllocation([&] { SplitStringByChar(text.c_str(), ',', fields); }, [&] { EXPECT_EQ(fields, before); }),
        2U);
    EXPECT_EQ(fields.size(), 15U);
  }
  EXPECT_EQ(LiveAllocations(), live);
}

TEST_F(Str, AllocationFailureLeavesTheAttributeValue) {
  const size_t live = LiveAllocations();
  {
    const std::string text = "TOTAL=" + std::string(1000, 'v'), name = "TOTAL=";
    std::string value = "old";
    EXPECT_EQ(
        FailEachAllocation([&] { GetTL1AttrbuteString(text.c_str(), name, value); }, [&] { EXPECT_EQ(value, "old"); }),
        1U);
    EXPECT_EQ(value, std::string(1000, 'v'));
  }
  EXPECT_EQ(LiveAllocations(), live);
}

TEST_F(Str, AllocationFailureWhileCleaningLeaksNothing) {
  const size_t live = LiveAllocations();
  const std::string text = Times(100, "ab\r\n");
  size_t length = 0;
  EXPECT_EQ(FailEachAllocation([&] { length = replaceEnterWithBlank(text.c_str()).size(); }, [] {}), 1U);
  EXPECT_EQ(length, 300U);
  EXPECT_EQ(LiveAllocations(), live + 1) << "the text itself";
}

TEST_F(Str, AllocationFailureWhileMatchingALongLiteralLeaksNothing) {
  const size_t live = LiveAllocations();
  {
    // The literal almost occurs everywhere in the text, therefore the search switches to its automaton.
    const std::string text(1000, 'a'), pattern = "*" + std::string(50, 'A') + "B" + std::string(50, 'A');
    EXPECT_EQ(FailEachAllocation([&] { strmcmpnocase(text.c_str(), pattern.c_str()); }, [] {}), 1U);
  }
  EXPECT_EQ(LiveAllocations(), live);
}

constexpr size_t SIZE = 20000;

std::string Blanks(size_t size) {
  return std::string(size, ' ');
}

TEST_F(Str, TrimmingIsLinear) {
  EXPECT_LT(Growth(SIZE, Blanks, Trimmed), LINEAR_GROWTH);
  EXPECT_LT(Growth(SIZE, Blanks, Right), LINEAR_GROWTH);
  EXPECT_LT(Growth(
                SIZE, [](size_t size) { return Blanks(size) + "x" + Blanks(size); }, Trimmed),
            LINEAR_GROWTH);
}

TEST_F(Str, CollapsingIsLinear) {
  EXPECT_LT(Growth(SIZE, Blanks, Collapsed), LINEAR_GROWTH);
  EXPECT_LT(Growth(
                SIZE, [](size_t size) { return "x" + Blanks(size) + "x"; }, Collapsed),
            LINEAR_GROWTH);
  EXPECT_LT(Growth(
                SIZE, [](size_t size) { return Times(size / 3, "x \t"); }, Collapsed),
            LINEAR_GROWTH);
}

TEST_F(Str, SplittingIsLinear) {
  const auto atCommas = [](const std::string& text) { Split(text.c_str(), ','); };
  const auto atBlanks = [](const std::string& text) { Split(text.c_str(), ' '); };
  for (const char* piece : {",", "x,", ",   ", "      "}) {
    const auto prepare = [&](size_t size) { return Times(size / std::strlen(piece), piece); };
    EXPECT_LT(Growth(SIZE, prepare, atCommas), LINEAR_GROWTH) << piece;
    EXPECT_LT(Growth(SIZE, prepare, atBlanks), LINEAR_GROWTH) << piece;
  }
}

TEST_F(Str, CleaningLineEndsIsLinear) {
  const auto clean = [](const std::string& text) { replaceEnterWithBlank(text.c_str()); };
  for (const char* piece : {"\n", "\r", " ", "a\r\n"}) {
    EXPECT_LT(Growth(
                  SIZE, [&](size_t size) { return Times(size / std::strlen(piece), piece); }, clean),
              LINEAR_GROWTH)
        << piece;
  }
}

template <typename Prepare>
double ReplaceGrowth(Prepare prepare, const std::string& from, const std::string& to, size_t size = MANY_HITS) {
  return Growth(size, prepare, [&](const std::string& text) { Replaced(text, from, to); });
}

TEST_F(Str, ReplacingIsLinear) {
  const auto letters = [](size_t size) { return std::string(size, 'a'); };
  EXPECT_LT(ReplaceGrowth(letters, "a", "bb"), LINEAR_GROWTH);
  EXPECT_LT(ReplaceGrowth(letters, "a", std::string(100, 'b'), MANY_HITS / 10), LINEAR_GROWTH);
  EXPECT_LT(ReplaceGrowth(letters, "a", ""), LINEAR_GROWTH);
  EXPECT_LT(ReplaceGrowth(letters, "aab", "c"), LINEAR_GROWTH);
}

TEST_F(Str, ReplacingInCascadesIsLinear) {
  EXPECT_LT(ReplaceGrowth(Blanks, "  ", " "), LINEAR_GROWTH);
  const auto lettersAndEnd = [](size_t size) { return std::string(size, 'a') + "b"; };
  EXPECT_LT(ReplaceGrowth(lettersAndEnd, "ab", "b"), LINEAR_GROWTH);
  EXPECT_LT(ReplaceGrowth(lettersAndEnd, "aab", "ab"), LINEAR_GROWTH);
  const auto nested = [](size_t size) { return std::string(size / 2, 'a') + std::string(size / 2, 'b'); };
  EXPECT_LT(ReplaceGrowth(nested, "ab", ""), LINEAR_GROWTH);
  EXPECT_LT(ReplaceGrowth(nested, "aabb", "ab"), LINEAR_GROWTH);
}

TEST_F(Str, ReplacingInCascadesByALongTextIsLinear) {
  const auto pairs = [](size_t size) { return Times(size / 2, "ab"); };
  EXPECT_LT(ReplaceGrowth(pairs, "ab", std::string(100, 'b'), MANY_HITS / 10), LINEAR_GROWTH);
  const auto lettersAndEnd = [](size_t size) { return std::string(size / 10, 'a') + "b"; };
  EXPECT_LT(ReplaceGrowth(lettersAndEnd, "ab", "b" + std::string(100, 'c'), MANY_HITS / 2), LINEAR_GROWTH);
}

TEST_F(Str, ReplacingALongTextThatAlmostOccursIsLinear) {
  const auto replace = [](const std::string& text) { Replaced(text, text.substr(text.size() / 2) + "b", "ab"); };
  EXPECT_LT(Growth(
                SIZE, [](size_t size) { return std::string(size, 'a'); }, replace),
            LINEAR_GROWTH);
  EXPECT_LT(Growth(
                SIZE, [](size_t size) { return std::string(size, 'a') + "b"; }, replace),
            LINEAR_GROWTH);
}

struct Pair {
  std::string text;
  std::string pattern;
};

template <typename Prepare>
double MatchGrowth(Prepare prepare, size_t size = SIZE) {
  return Growth(size, prepare, [](const Pair& pair) { strmcmpnocase(pair.text.c_str(), pair.pattern.c_str()); });
}

TEST_F(Str, CaselessMatchOfALiteralThatAlmostOccursIsLinear) {
  const auto prepare = [](size_t size) { return Pair{std::string(size, 'a'), "*" + std::string(size / 2, 'a') + "b"}; };
  EXPECT_LT(MatchGrowth(prepare), LINEAR_GROWTH);
}

TEST_F(Str, CaselessMatchWithManyStarsIsLinear) {
  EXPECT_LT(MatchGrowth([](size_t size) {
              return Pair{std::string(size, 'a'), Times(size / 2, "*a") + "b"};
            }),
            LINEAR_GROWTH);
  EXPECT_LT(MatchGrowth([](size_t size) {
              return Pair{std::string(size, 'a'), Times(size / 100, "*aab") + "*"};
            }),
            LINEAR_GROWTH);
  EXPECT_LT(MatchGrowth([](size_t size) {
              return Pair{Times(size, "a"), "a" + Times(size, "*") + "b"};
            }),
            LINEAR_GROWTH);
}

TEST_F(Str, CaselessMatchThatRestartsAfterQuestionMarksIsLinear) {
  for (const char* tail : {"?a?b", "a?b", "aaaa?b", "a?????b"}) {
    const auto prepare = [&](size_t size) {
      return Pair{std::string(size, 'a'), "*" + std::string(size / 10, '?') + tail};
    };
    EXPECT_LT(MatchGrowth(prepare, SIZE / 10), LINEAR_GROWTH) << tail;
  }
  EXPECT_LT(MatchGrowth([](size_t size) { return Pair{std::string(size, 'a'), "a?b"}; }), LINEAR_GROWTH);
  EXPECT_LT(MatchGrowth([](size_t size) {
              return Pair{Times(100, std::string(size / 100, 'a') + "c"), "*" + std::string(size / 100, 'a') + "?b"};
            }),
            LINEAR_GROWTH);
}

TEST_F(Str, SearchForAnAttributeThatAlmostOccursIsLinear) {
  const auto search = [](const Pair& pair) {
    std::string value;
    GetTL1AttrbuteString(pair.text.c_str(), pair.pattern, value);
  };
  EXPECT_LT(Growth(
                SIZE,
                [](size_t size) {
                  return Pair{std::string(size, 'a'), std::string(size / 2, 'a') + "b"};
                },
                search),
            LINEAR_GROWTH);
  EXPECT_LT(Growth(
                SIZE,
                [](size_t size) {
                  return Pair{std::string(size, 'a'), "b" + std::string(size / 2, 'a')};
                },
                search),
            LINEAR_GROWTH);
}

TEST_F(Str, ReadingANumberIsLinear) {
  const auto read = [](const std::string& text) { Converted(text.c_str(), 0U); };
  EXPECT_LT(Growth(
                SIZE, [](size_t size) { return Blanks(size) + std::string(size, '0') + std::string(size, '9'); }, read),
            LINEAR_GROWTH);
}

}  // namespace
}  // namespace VARNEL_TEST
