#include "platform/annex_k.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <string>
#include <vector>

namespace VARNEL_TEST {
namespace {

constexpr size_t HUGE_SIZE = SIZE_MAX / 4;

// Eight bytes "abcdefgh" that the calls under test write into, with a guard after them.
struct Area {
  char bytes[12] = {'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h', '#', '#', '#', '#'};

  std::string All() const { return {bytes, sizeof bytes}; }
};

std::string Zeros(size_t count) {
  return std::string(count, '\0');
}

TEST(MemcpyS, CopiesAndLeavesTheRest) {
  Area area;
  EXPECT_EQ(memcpy_s(area.bytes, 8, "xyz", 3), 0);
  EXPECT_EQ(area.All(), "xyzdefgh####");
}

TEST(MemcpyS, ExactFit) {
  Area area;
  EXPECT_EQ(memcpy_s(area.bytes, 8, "12345678", 8), 0);
  EXPECT_EQ(area.All(), "12345678####");
}

TEST(MemcpyS, NulsAreOrdinary) {
  Area area;
  EXPECT_EQ(memcpy_s(area.bytes, 8, "x\0y", 3), 0);
  EXPECT_EQ(area.All(), std::string("x\0ydefgh####", 12));
}

TEST(MemcpyS, CopyOfNothingChangesNothing) {
  Area area;
  EXPECT_EQ(memcpy_s(area.bytes, 8, "x", 0), 0);
  EXPECT_EQ(memcpy_s(area.bytes, 0, "x", 0), 0);
  EXPECT_EQ(memcpy_s(area.bytes, 8, area.bytes, 0), 0);
  EXPECT_EQ(area.All(), "abcdefgh####");
}

// The source is exactly as large as the copy: a memory checker then reports an excess byte.
TEST(MemcpyS, CopiesExactlyCountBytesOfAnySize) {
  for (size_t size = 1; size <= 40; ++size) {
    std::vector<char> source(size);
    std::iota(source.begin(), source.end(), 'A');
    std::vector<char> copy(size + 2, '.');
    ASSERT_EQ(memcpy_s(copy.data() + 1, size, source.data(), size), 0);
    ASSERT_EQ(copy.front(), '.');
    ASSERT_EQ(copy.back(), '.');
    ASSERT_TRUE(std::equal(source.begin(), source.end(), copy.begin() + 1)) << size;
  }
}

TEST(MemcpyS, TooLongClearsTheDestination) {
  Area area;
  EXPECT_EQ(memcpy_s(area.bytes, 8, "123456789", 9), ERANGE);
  EXPECT_EQ(area.All(), Zeros(8) + "####");
}

TEST(MemcpyS, DestinationOfSizeZeroIsUntouched) {
  Area area;
  EXPECT_EQ(memcpy_s(area.bytes, 0, "x", 1), ERANGE);
  EXPECT_EQ(area.All(), "abcdefgh####");
}

TEST(MemcpyS, NullSourceClearsTheDestination) {
  for (const size_t count : {0U, 3U}) {
    Area area;
    EXPECT_EQ(memcpy_s(area.bytes, 8, nullptr, count), EINVAL);
    EXPECT_EQ(area.All(), Zeros(8) + "####");
  }
}

TEST(MemcpyS, NullDestination) {
  EXPECT_EQ(memcpy_s(nullptr, 8, "x", 1), EINVAL);
  EXPECT_EQ(memcpy_s(nullptr, 0, nullptr, 0), EINVAL);
}

TEST(MemcpyS, OverlapClearsTheDestination) {
  Area forward;
  EXPECT_EQ(memcpy_s(forward.bytes + 3, 5, forward.bytes, 4), EINVAL);
  EXPECT_EQ(forward.All(), "abc" + Zeros(5) + "####");
  Area backward;
  EXPECT_EQ(memcpy_s(backward.bytes, 5, backward.bytes + 3, 4), EINVAL);
  EXPECT_EQ(backward.All(), Zeros(5) + "fgh####");
  Area same;
  EXPECT_EQ(memcpy_s(same.bytes, 8, same.bytes, 1), EINVAL);
  EXPECT_EQ(same.All(), Zeros(8) + "####");
}

TEST(MemcpyS, AdjacentAreasDoNotOverlap) {
  Area area;
  EXPECT_EQ(memcpy_s(area.bytes, 8, area.bytes + 4, 4), 0);
  EXPECT_EQ(area.All(), "efghefgh####");
  EXPECT_EQ(memcpy_s(area.bytes + 2, 2, area.bytes, 2), 0);
  EXPECT_EQ(area.All(), "efefefgh####");
}

TEST(MemcpyS, HugeDestinationSizeIsAccepted) {
  Area area;
  EXPECT_EQ(memcpy_s(area.bytes, HUGE_SIZE, "xy", 2), 0);
  EXPECT_EQ(area.All(), "xycdefgh####");
}

TEST(MemsetS, SetsAndLeavesTheRest) {
  for (const int value : {0x00, 0x78, 0xFF}) {
    Area area;
    EXPECT_EQ(memset_s(area.bytes, 8, value, 3), 0);
    EXPECT_EQ(area.All(), std::string(3, static_cast<char>(value)) + "defgh####");
  }
}

TEST(MemsetS, ExactFitAndNothing) {
  Area area;
  EXPECT_EQ(memset_s(area.bytes, 8, 'x', 0), 0);
  EXPECT_EQ(memset_s(area.bytes, 0, 'x', 0), 0);
  EXPECT_EQ(area.All(), "abcdefgh####");
  EXPECT_EQ(memset_s(area.bytes, 8, 'x', 8), 0);
  EXPECT_EQ(area.All(), "xxxxxxxx####");
}

TEST(MemsetS, ValueIsConvertedToAByte) {
  Area area;
  EXPECT_EQ(memset_s(area.bytes, 8, 0x178, 2), 0);
  EXPECT_EQ(area.All(), "xxcdefgh####");
  EXPECT_EQ(memset_s(area.bytes, 8, 0x100, 1), 0);
  EXPECT_EQ(area.All(), Zeros(1) + "xcdefgh####");
}

TEST(MemsetS, TooLongSetsTheWholeDestination) {
  for (const int value : {0x00, 0x78}) {
    Area area;
    EXPECT_EQ(memset_s(area.bytes, 8, value, 9), ERANGE);
    EXPECT_EQ(area.All(), std::string(8, static_cast<char>(value)) + "####");
  }
}

TEST(MemsetS, NullDestination) {
  EXPECT_EQ(memset_s(nullptr, 8, 0, 8), EINVAL);
  EXPECT_EQ(memset_s(nullptr, 0, 0, 0), EINVAL);
}

TEST(AnnexK, HasNoSizeLimit) {
  constexpr size_t SIZE = size_t{300} << 20;
  const std::vector<char> source(SIZE, 's');
  std::vector<char> area(SIZE);
  ASSERT_EQ(memcpy_s(area.data(), SIZE, source.data(), SIZE), 0);
  EXPECT_EQ(area.front(), 's');
  EXPECT_EQ(area.back(), 's');
  ASSERT_EQ(memset_s(area.data(), SIZE, 'x', SIZE), 0);
  EXPECT_EQ(area.front(), 'x');
  EXPECT_EQ(area.back(), 'x');
}

TEST(StrncpyS, CopiesTheWholeText) {
  Area area;
  EXPECT_EQ(strncpy_s(area.bytes, 8, "xyz", 7), 0);
  EXPECT_STREQ(area.bytes, "xyz");
  EXPECT_EQ(area.All().substr(4), "efgh####") << "nothing is padded";
}

TEST(StrncpyS, CopiesAtMostCount) {
  Area area;
  EXPECT_EQ(strncpy_s(area.bytes, 8, "uvwxyz", 3), 0);
  EXPECT_STREQ(area.bytes, "uvw");
}

TEST(StrncpyS, ExactFit) {
  Area whole;
  EXPECT_EQ(strncpy_s(whole.bytes, 8, "1234567", 100), 0);
  EXPECT_EQ(whole.All(), "1234567" + Zeros(1) + "####");
  Area cut;
  EXPECT_EQ(strncpy_s(cut.bytes, 8, "123456789", 7), 0);
  EXPECT_EQ(cut.All(), "1234567" + Zeros(1) + "####");
}

TEST(StrncpyS, CountZeroGivesTheEmptyText) {
  Area none;
  EXPECT_EQ(strncpy_s(none.bytes, 8, "xyz", 0), 0);
  EXPECT_STREQ(none.bytes, "");
  Area empty;
  EXPECT_EQ(strncpy_s(empty.bytes, 1, "", 5), 0);
  EXPECT_EQ(empty.All(), Zeros(1) + "bcdefgh####");
}

TEST(StrncpyS, SourceNeedsNoTerminatorWithinCount) {
  Area area;
  const char source[] = {'x', 'y', 'z'};
  EXPECT_EQ(strncpy_s(area.bytes, 8, source, sizeof source), 0);
  EXPECT_STREQ(area.bytes, "xyz");
}

TEST(StrncpyS, TooLongEmptiesTheDestination) {
  for (const size_t count : {8U, 9U, 100U}) {
    Area area;
    EXPECT_EQ(strncpy_s(area.bytes, 8, "123456789", count), ERANGE);
    EXPECT_EQ(area.All(), Zeros(1) + "bcdefgh####");
  }
}

TEST(StrncpyS, DestinationOfSizeZeroIsUntouched) {
  Area area;
  EXPECT_EQ(strncpy_s(area.bytes, 0, "x", 1), ERANGE);
  EXPECT_EQ(strncpy_s(area.bytes, 0, "", 0), ERANGE);
  EXPECT_EQ(area.All(), "abcdefgh####");
}

TEST(StrncpyS, NullPointers) {
  Area area;
  EXPECT_EQ(strncpy_s(area.bytes, 0, nullptr, 3), EINVAL);
  EXPECT_EQ(area.All(), "abcdefgh####");
  EXPECT_EQ(strncpy_s(area.bytes, 8, nullptr, 3), EINVAL);
  EXPECT_EQ(area.All(), Zeros(1) + "bcdefgh####");
  EXPECT_EQ(strncpy_s(nullptr, 8, "x", 1), EINVAL);
  EXPECT_EQ(strncpy_s(nullptr, 0, nullptr, 0), EINVAL);
}

TEST(StrncpyS, OverlapEmptiesTheDestination) {
  Area forward;
  EXPECT_EQ(strncpy_s(forward.bytes + 2, 6, forward.bytes, 3), EINVAL);
  EXPECT_EQ(forward.All(), "ab" + Zeros(1) + "defgh####");
  Area backward;
  EXPECT_EQ(strncpy_s(backward.bytes, 8, backward.bytes + 3, 3), EINVAL) << "the terminator would overwrite the source";
  EXPECT_EQ(backward.All(), Zeros(1) + "bcdefgh####");
}

TEST(StrncpyS, AdjacentAreasDoNotOverlap) {
  Area area;
  EXPECT_EQ(strncpy_s(area.bytes, 4, area.bytes + 4, 3), 0);
  EXPECT_EQ(area.All(), "efg" + Zeros(1) + "efgh####");
  EXPECT_EQ(strncpy_s(area.bytes + 6, 2, area.bytes + 4, 1), 0);
  EXPECT_EQ(area.All(), "efg" + Zeros(1) + "efe" + Zeros(1) + "####");
}

TEST(StrncpyS, HugeDestinationSizeIsAccepted) {
  Area area;
  EXPECT_EQ(strncpy_s(area.bytes, HUGE_SIZE, "xy", HUGE_SIZE), 0);
  EXPECT_STREQ(area.bytes, "xy");
}

TEST(SnprintfS, FormatsAndReturnsTheLength) {
  Area area;
  EXPECT_EQ(snprintf_s(area.bytes, 8, 7, "%d-%s", 12, "ab"), 5);
  EXPECT_STREQ(area.bytes, "12-ab");
  EXPECT_EQ(area.All().substr(8), "####");
}

TEST(SnprintfS, ExactFit) {
  Area area;
  EXPECT_EQ(snprintf_s(area.bytes, 8, 7, "%s", "1234567"), 7);
  EXPECT_STREQ(area.bytes, "1234567");
  EXPECT_EQ(snprintf_s(area.bytes, 8, 3, "%s", "abc"), 3);
  EXPECT_STREQ(area.bytes, "abc");
  EXPECT_EQ(snprintf_s(area.bytes, 8, SIZE_MAX, "%s", "7654321"), 7);
  EXPECT_STREQ(area.bytes, "7654321");
}

TEST(SnprintfS, EmptyResultFitsEverywhere) {
  Area area;
  EXPECT_EQ(snprintf_s(area.bytes, 1, 0, "%s", ""), 0);
  EXPECT_EQ(area.All(), Zeros(1) + "bcdefgh####");
}

TEST(SnprintfS, ResultLongerThanCountFails) {
  for (const size_t count : {0U, 1U, 3U}) {
    Area area;
    EXPECT_EQ(snprintf_s(area.bytes, 8, count, "%s", "1234"), -1);
    EXPECT_STREQ(area.bytes, "");
    EXPECT_EQ(area.All().substr(8), "####");
  }
}

TEST(SnprintfS, ResultThatDoesNotFitFails) {
  for (const char* text : {"12345678", "123456789", "12345678901234567890"}) {
    Area area;
    EXPECT_EQ(snprintf_s(area.bytes, 8, 100, "%s", text), -1);
    EXPECT_STREQ(area.bytes, "");
    EXPECT_EQ(area.All().substr(8), "####");
  }
}

TEST(SnprintfS, FailingFormatIsReported) {
  Area area;
  EXPECT_EQ(snprintf_s(area.bytes, 8, 7, "ab%ls", L"\x4E00"), -1) << "no such character in the C locale";
  EXPECT_STREQ(area.bytes, "");
}

TEST(SnprintfS, NullPointersAndSizeZero) {
  // Hidden from the compiler, which would detect that nothing can be formatted.
  const char* volatile noFormat = nullptr;
  char* volatile noDestination = nullptr;
  volatile size_t noRoom = 0;
  Area area;
  EXPECT_EQ(snprintf_s(area.bytes, noRoom, 7, "%d", 1), -1);
  EXPECT_EQ(area.All(), "abcdefgh####");
  EXPECT_EQ(snprintf_s(noDestination, 8, 7, "%d", 1), -1);
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
  EXPECT_EQ(snprintf_s(area.bytes, 8, 7, noFormat), -1);
#pragma GCC diagnostic pop
  EXPECT_EQ(area.All(), Zeros(1) + "bcdefgh####");
}

}  // namespace
}  // namespace VARNEL_TEST
