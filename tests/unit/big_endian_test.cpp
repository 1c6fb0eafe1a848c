#include "util/big_endian.h"

#include <gtest/gtest.h>

#include <cstring>

namespace VARNEL_TEST {
namespace {

using VARNEL_UTIL::BigToHost;
using VARNEL_UTIL::LoadBig16;
using VARNEL_UTIL::LoadBig32;

TEST(BigEndian, EveryPairOfBytes) {
  for (unsigned int value = 0; value <= 0xFFFF; ++value) {
    const unsigned char bytes[] = {static_cast<unsigned char>(value / 256), static_cast<unsigned char>(value % 256)};
    ASSERT_EQ(LoadBig16(bytes), value);
  }
}

TEST(BigEndian, EveryByteValueAtEachPositionOf32Bits) {
  for (unsigned int value = 0; value <= 0xFF; ++value) {
    const auto byte = static_cast<unsigned char>(value);
    const unsigned char bytes[] = {0, 0, 0, byte, 0, 0, 0};
    EXPECT_EQ(LoadBig32(bytes + 3), value * 0x1000000U);
    EXPECT_EQ(LoadBig32(bytes + 2), value * 0x10000U);
    EXPECT_EQ(LoadBig32(bytes + 1), value * 0x100U);
    EXPECT_EQ(LoadBig32(bytes), value);
  }
}

TEST(BigEndian, MostSignificantByteComesFirst) {
  EXPECT_EQ(LoadBig16("\x12\x34"), 0x1234U);
  EXPECT_EQ(LoadBig32("\x12\x34\x56\x78"), 0x12345678U);
  EXPECT_EQ(LoadBig32("\xFF\xFE\xFD\xFC"), 0xFFFEFDFCU);
  EXPECT_EQ(LoadBig32("\x80\0\0\1"), 0x80000001U);
}

TEST(BigEndian, NoAlignmentIsNeeded) {
  alignas(8) const unsigned char bytes[] = {0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0x09, 0x0A};
  for (unsigned int offset = 0; offset < 8; ++offset) {
    EXPECT_EQ(LoadBig16(bytes + offset), offset * 0x101U + 0x1U) << offset;
    EXPECT_EQ(LoadBig32(bytes + offset), offset * 0x1010101U + 0x10203U) << offset;
  }
}

TEST(BigEndian, NumbersAreConvertedInPlace) {
  uint16_t number16;
  uint32_t number32;
  std::memcpy(&number16, "\xAB\xCD", sizeof number16);
  std::memcpy(&number32, "\x89\xAB\xCD\xEF", sizeof number32);
  BigToHost(number16);
  BigToHost(number32);
  EXPECT_EQ(number16, 0xABCDU);
  EXPECT_EQ(number32, 0x89ABCDEFU);
}

TEST(BigEndian, ConvertingTwiceRestoresTheBytes) {
  uint16_t number16;
  uint32_t number32;
  std::memcpy(&number16, "\xAB\xCD", sizeof number16);
  std::memcpy(&number32, "\x89\xAB\xCD\xEF", sizeof number32);
  for (int turn = 0; turn < 2; ++turn) {
    BigToHost(number16);
    BigToHost(number32);
  }
  EXPECT_EQ(std::memcmp(&number16, "\xAB\xCD", sizeof number16), 0);
  EXPECT_EQ(std::memcmp(&number32, "\x89\xAB\xCD\xEF", sizeof number32), 0);
}

}  // namespace
}  // namespace VARNEL_TEST
