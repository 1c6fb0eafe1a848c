#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <cstring>
#include <numeric>
#include <string>
#include <type_traits>
#include <vector>

#include "publicdata.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_COMMON::GetUCCheckSum;
using VARNEL_COMMON::ZEP_DIR_HEAD;
using VARNEL_COMMON::ZEP_FILE_HEAD;

constexpr size_t HEAD_SIZE = 64;

struct Field {
  size_t offset;
  size_t size;
  bool isNumber = true;
};

bool operator==(const Field& a, const Field& b) {
  return a.offset == b.offset && a.size == b.size && a.isNumber == b.isNumber;
}

std::ostream& operator<<(std::ostream& out, const Field& field) {
  return out << (field.isNumber ? "number " : "bytes ") << field.offset << '+' << field.size;
}

using Fields = std::vector<Field>;

const Fields& DirFields() {
  static const Fields fields{{0, 4},  {4, 4},  {8, 2},  {10, 2}, {12, 4}, {16, 6, false},  {22, 2}, {24, 2},
                             {26, 2}, {28, 4}, {32, 2}, {34, 2}, {36, 2}, {38, 22, false}, {60, 4}};
  return fields;
}

const Fields& FileFields() {
  static const Fields fields{{0, 4},  {4, 4},  {8, 2},  {10, 2},        {12, 12, false}, {24, 4},
                             {28, 4}, {32, 2}, {34, 2}, {36, 4},        {40, 4},         {44, 2},
                             {46, 2}, {48, 2}, {50, 2}, {52, 8, false}, {60, 4}};
  return fields;
}

#define FIELD(Head, name)                                                              \
  Field {                                                                              \
    offsetof(Head, name), sizeof(Head::name), std::is_integral_v<decltype(Head::name)> \
  }

TEST(ZepHead, DirectoryHeaderHasTheLayoutOfTheFile) {
  using Head = ZEP_DIR_HEAD;
  EXPECT_EQ(sizeof(Head), HEAD_SIZE);
  EXPECT_EQ((Fields{FIELD(Head, ulMagic), FIELD(Head, ulCheckSum), FIELD(Head, usValue08), FIELD(Head, usValue10),
                    FIELD(Head, ulValue12), FIELD(Head, aucBytes16), FIELD(Head, usValue22), FIELD(Head, usValue24),
                    FIELD(Head, usGapLen26), FIELD(Head, ulValue28), FIELD(Head, usGapLen32), FIELD(Head, usGapLen34),
                    FIELD(Head, usGapLen36), FIELD(Head, aucBytes38), FIELD(Head, ulValue60)}),
            DirFields());
}

TEST(ZepHead, FileHeaderHasTheLayoutOfTheFile) {
  using Head = ZEP_FILE_HEAD;
  EXPECT_EQ(sizeof(Head), HEAD_SIZE);
  EXPECT_EQ((Fields{FIELD(Head, ulMagic), FIELD(Head, ulCheckSum), FIELD(Head, usValue08), FIELD(Head, usValue10),
                    FIELD(Head, aucBytes12), FIELD(Head, ulValue24), FIELD(Head, ulValue28), FIELD(Head, usFileType),
                    FIELD(Head, usValue34), FIELD(Head, ulValue36), FIELD(Head, ulValue40), FIELD(Head, usSkipLen),
                    FIELD(Head, usLinkLen), FIELD(Head, usVersionLen), FIELD(Head, usTailLen), FIELD(Head, aucBytes52),
                    FIELD(Head, ulValue60)}),
            FileFields());
}

#undef FIELD

template <typename Head>
void ExpectPlainData() {
  EXPECT_TRUE(std::is_standard_layout_v<Head>);
  EXPECT_TRUE(std::is_trivially_copyable_v<Head>);
  EXPECT_FALSE(std::is_polymorphic_v<Head>);
}

TEST(ZepHead, HeadersArePlainData) {
  ExpectPlainData<ZEP_DIR_HEAD>();
  ExpectPlainData<ZEP_FILE_HEAD>();
}

using Bytes = std::vector<unsigned char>;

// The bytes 0, 1, 2 … 63: each is equal to its offset.
Bytes NumberedBytes() {
  Bytes bytes(HEAD_SIZE);
  std::iota(bytes.begin(), bytes.end(), static_cast<unsigned char>(0));
  return bytes;
}

template <typename Head>
Bytes Converted(const Bytes& bytes) {
  Head head;
  std::memcpy(&head, bytes.data(), sizeof head);
  head.ToHostOrder();
  Bytes converted(sizeof head);
  std::memcpy(converted.data(), &head, sizeof head);
  return converted;
}

template <typename Number>
Number Load(const Bytes& bytes, size_t offset) {
  Number number;
  std::memcpy(&number, &bytes[offset], sizeof number);
  return number;
}

void ExpectConverted(const Bytes& converted, const Field& field) {
  const size_t at = field.offset;
  if (!field.isNumber) {
    for (size_t i = at; i < at + field.size; ++i)
      EXPECT_EQ(converted[i], i);
  } else if (field.size == 2) {
    EXPECT_EQ(Load<uint16_t>(converted, at), at * 256 + (at + 1)) << field;
  } else {
    EXPECT_EQ(Load<uint32_t>(converted, at), ((at * 256 + (at + 1)) * 256 + (at + 2)) * 256 + (at + 3)) << field;
  }
}

TEST(ZepHead, ToHostOrderConvertsTheNumbersOfTheDirectoryHeader) {
  const Bytes converted = Converted<ZEP_DIR_HEAD>(NumberedBytes());
  for (const Field& field : DirFields())
    ExpectConverted(converted, field);
}

TEST(ZepHead, ToHostOrderConvertsTheNumbersOfTheFileHeader) {
  const Bytes converted = Converted<ZEP_FILE_HEAD>(NumberedBytes());
  for (const Field& field : FileFields())
    ExpectConverted(converted, field);
}

TEST(ZepHead, ToHostOrderTwiceRestoresTheBytes) {
  const Bytes bytes = NumberedBytes();
  EXPECT_EQ(Converted<ZEP_DIR_HEAD>(Converted<ZEP_DIR_HEAD>(bytes)), bytes);
  EXPECT_EQ(Converted<ZEP_FILE_HEAD>(Converted<ZEP_FILE_HEAD>(bytes)), bytes);
}

TEST(CheckSum, AddsBytes) {
  EXPECT_EQ(GetUCCheckSum("\1\2\3", 3), 6U);
  EXPECT_EQ(GetUCCheckSum("abc", 1), 97U);
}

TEST(CheckSum, OfNoBytesIsZero) {
  EXPECT_EQ(GetUCCheckSum("abc", 0), 0U);
  EXPECT_EQ(GetUCCheckSum("abc", -1), 0U);
  EXPECT_EQ(GetUCCheckSum("abc", INT_MIN), 0U);
  EXPECT_EQ(GetUCCheckSum(nullptr, 5), 0U);
  EXPECT_EQ(GetUCCheckSum(nullptr, 0), 0U);
}

TEST(CheckSum, BytesAreUnsigned) {
  EXPECT_EQ(GetUCCheckSum("\xFF", 1), 255U);
  EXPECT_EQ(GetUCCheckSum("\x80\xFF", 2), 383U);
}

TEST(CheckSum, NulIsOrdinary) {
  EXPECT_EQ(GetUCCheckSum("\0\1\0\2", 4), 3U);
}

TEST(CheckSum, EveryByteValueCountsAsItself) {
  std::string bytes;
  for (int value = 0; value < 256; ++value)
    bytes.push_back(static_cast<char>(value));
  EXPECT_EQ(GetUCCheckSum(bytes.data(), 256), 255U * 256U / 2U);
}

TEST(CheckSum, Wraps) {
  constexpr int LONGEST_WITHOUT_WRAP = 16843009;  // times 255 is 2^32 - 1
  const std::string bytes(LONGEST_WITHOUT_WRAP + 1, '\xFF');
  EXPECT_EQ(GetUCCheckSum(bytes.data(), LONGEST_WITHOUT_WRAP), 0xFFFFFFFFU);
  EXPECT_EQ(GetUCCheckSum(bytes.data(), LONGEST_WITHOUT_WRAP + 1), 254U);
}

}  // namespace
}  // namespace VARNEL_TEST
