#include "output.h"

#include <gtest/gtest.h>

namespace VARNEL_TEST {
namespace {

struct Case {
  std::string text, escaped;
};

TEST(Escaped, HarmlessTextIsUnchanged) {
  for (const std::string text :
       {"", "mainboard.pkg", "a b\\c\"d'", "M\u00FCnchen", "\u6771\u4EAC", "\U0001F600", "\u00A0", "\u061B", "\u061D",
        "\u200D", "\u2010", "\u2029", "\u202F", "\u2065", "\u206A"})
    EXPECT_EQ(Escaped(text), text);
}

TEST(Escaped, ControlCharactersAreEscaped) {
  for (const Case& c :
       {Case{"\033[2J", "\\x1b[2J"}, Case{"a\nb\tc\r", "a\\x0ab\\x09c\\x0d"}, Case{"\177", "\\x7f"},
        Case{std::string(1, '\0'), "\\x00"}, Case{"\u0080", "\\xc2\\x80"}, Case{"\u009F", "\\xc2\\x9f"}})
    EXPECT_EQ(Escaped(c.text), c.escaped);
}

TEST(Escaped, CharactersThatChangeTheDirectionAreEscaped) {
  for (const Case& c :
       {Case{"\u061C", "\\xd8\\x9c"}, Case{"\u200E", "\\xe2\\x80\\x8e"}, Case{"\u200F", "\\xe2\\x80\\x8f"},
        Case{"\u202A", "\\xe2\\x80\\xaa"}, Case{"a\u202Egkp.b", "a\\xe2\\x80\\xaegkp.b"},
        Case{"\u2066", "\\xe2\\x81\\xa6"}, Case{"\u2069", "\\xe2\\x81\\xa9"}})
    EXPECT_EQ(Escaped(c.text), c.escaped);
}

TEST(Escaped, BytesThatAreNotUtf8AreEscaped) {
  for (const Case& c : {Case{"\x80", "\\x80"}, Case{"a\xFF", "a\\xff"}, Case{"\xC3", "\\xc3"},
                        Case{"\xC0\xAF", "\\xc0\\xaf"}, Case{"\xE0\x80\x80", "\\xe0\\x80\\x80"},
                        Case{"\xED\xA0\x80", "\\xed\\xa0\\x80"}, Case{"\xF4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"},
                        Case{"\xE2\x80", "\\xe2\\x80"}, Case{"\xE2\x80z", "\\xe2\\x80z"}})
    EXPECT_EQ(Escaped(c.text), c.escaped);
}

}  // namespace
}  // namespace VARNEL_TEST
