#include "utf8.h"

#include <gtest/gtest.h>

namespace VARNEL_TEST {

TEST(IsUtf8Test, OneInvalidByteAnywhereIsFound) {
  EXPECT_TRUE(IsUtf8(""));
  for (size_t place = 0; place < 20; ++place) {
    const std::string before(place, 'x'), after(19 - place, 'y');
    for (const char* valid : {"\u00FC", "\u20AC", "\U0001F600"})
      EXPECT_TRUE(IsUtf8(before + valid + after));
    for (const char* invalid : {"\xFC", "\x80", "\xE2\x82", "\xF0\x9F\x98"})
      EXPECT_FALSE(IsUtf8(before + invalid + after));
  }
}

}  // namespace VARNEL_TEST
