#include "slot_references.h"

#include <gtest/gtest.h>

#include <limits>
#include <locale>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "publicdata.h"
#include "str.h"
#include "stream_reader.h"
#include "string_references.h"
#include "zepv2data.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_COMMON::convertSlot2strDC;
using VARNEL_COMMON::convertSlotDC;
using VARNEL_COMMON::StreamReader;

// Bytes that mean something to a reader of numbers, neighbours of those, and bytes that are blank in other locales.
const std::string MIXED = std::string("0123456789-+ \t\n\v\f\r\x08\x0E/:,.xXaAfFgGSLOT\x85\xA0\xFF") + '\0';

std::string Shown(const std::string& text) {
  return ::testing::PrintToString(text);
}

// Both readers of one text, which is given as a stream that is used again: building one costs more than reading.
class Readers {
 public:
  Readers() { m_stream.imbue(std::locale::classic()); }

  void Start(const std::string& text) {
    m_text = text;
    m_stream.clear();
    m_stream.str(text);
    m_reader = StreamReader(m_text);
  }

  template <typename Value>
  void Compare(Value before) {
    Value expected = before, actual = before;
    m_stream >> expected;
    m_reader.Read(actual);
    ASSERT_EQ(actual, expected) << Shown(m_text);
    ASSERT_EQ(m_reader.Failed(), m_stream.fail()) << Shown(m_text);
    ASSERT_EQ(m_reader.AtEnd(), m_stream.eof()) << Shown(m_text);
  }

 private:
  std::string m_text;
  std::istringstream m_stream;
  StreamReader m_reader{""};
};

template <typename First, typename Second>
void CompareReading(Readers& readers, const std::string& text) {
  readers.Start(text);
  ASSERT_NO_FATAL_FAILURE(readers.Compare<First>(77));
  ASSERT_NO_FATAL_FAILURE(readers.Compare<Second>(88));
}

void CompareAllReading(Readers& readers, const std::string& text) {
  ASSERT_NO_FATAL_FAILURE((CompareReading<int, int>(readers, text)));
  ASSERT_NO_FATAL_FAILURE((CompareReading<short, long>(readers, text)));
  ASSERT_NO_FATAL_FAILURE((CompareReading<unsigned long, char>(readers, text)));
  ASSERT_NO_FATAL_FAILURE((CompareReading<unsigned short, unsigned int>(readers, text)));
}

TEST(NumberReference, AllShortTexts) {
  Readers readers;
  for (const std::string& text : AllTexts("059-+ \tx,", 5))
    ASSERT_NO_FATAL_FAILURE(CompareAllReading(readers, text));
  for (const std::string& text : AllTexts("0123456789-+ SLOT\t,", 4))
    ASSERT_NO_FATAL_FAILURE((CompareReading<int, unsigned short>(readers, text)));
}

// Numbers at the ends of all ranges, with every sign.
std::vector<std::string> NumbersAroundTheLimits() {
  std::vector<std::string> numbers;
  for (const unsigned long long limit : {32768ULL, 65536ULL, 655360ULL, 2147483648ULL, 4294967296ULL, 42949672960ULL,
                                         9223372036854775808ULL, 18446744073709551603ULL}) {
    for (unsigned long long distance = 0; distance < 12; ++distance) {
      numbers.push_back(std::to_string(limit - distance));
      numbers.push_back(std::to_string(limit + distance));
    }
    numbers.push_back(std::to_string(limit) + "0");
    numbers.push_back(std::to_string(limit) + std::string(300, '9'));
  }
  numbers.insert(numbers.end(), {"18446744073709551616", "18446744073709551617", "184467440737095516150"});
  return numbers;
}

TEST(NumberReference, NumbersAroundTheLimits) {
  Readers readers;
  for (const std::string& number : NumbersAroundTheLimits()) {
    for (const char* before : {"", "-", "+", " -", "-+", "--", "00000000000000000000", "-00", "\v\f+00"}) {
      for (const char* behind : {"", " ", "x", ".5", "-1", " -65536", ",3"})
        ASSERT_NO_FATAL_FAILURE(CompareAllReading(readers, before + number + behind));
    }
  }
}

TEST(NumberReference, RandomTexts) {
  RandomTexts random(41);
  Readers readers;
  for (int i = 0; i < 100000; ++i) {
    const std::string number = random.Next(" -+", 2) + random.Next("0123456789", 22);
    ASSERT_NO_FATAL_FAILURE(CompareAllReading(readers, number + random.Next("-0123456789 ", 12)));
    ASSERT_NO_FATAL_FAILURE(CompareAllReading(readers, number + random.Next(MIXED, 12)));
    ASSERT_NO_FATAL_FAILURE(CompareAllReading(readers, random.Next(MIXED, 30)));
  }
}

template <typename Number>
void CompareConverting(std::istringstream& stream, const std::string& text) {
  Number expected = 77, actual = 77;
  stream.clear();
  stream.str(text);
  stream >> expected;
  VARNEL_COMMON::ConvertFromString(text.c_str(), actual);
  ASSERT_EQ(actual, expected) << Shown(text);
}

void CompareAllConverting(std::istringstream& stream, const std::string& text) {
  ASSERT_NO_FATAL_FAILURE(CompareConverting<unsigned int>(stream, text));
  ASSERT_NO_FATAL_FAILURE(CompareConverting<unsigned short>(stream, text));
  ASSERT_NO_FATAL_FAILURE(CompareConverting<char>(stream, text));
}

TEST(NumberReference, ConvertingAllShortTexts) {
  std::istringstream stream;
  for (const std::string& text : AllTexts("0123456789-+ SLOT\t,", 4))
    ASSERT_NO_FATAL_FAILURE(CompareAllConverting(stream, text));
}

TEST(NumberReference, ConvertingRandomTexts) {
  RandomTexts random(42);
  std::istringstream stream;
  for (int i = 0; i < 400000; ++i) {
    const std::string text = random.Next(" -+", 2) + random.Next("0123456789", 12) + random.Next(MIXED, 3);
    ASSERT_NO_FATAL_FAILURE(CompareAllConverting(stream, text.c_str()));
  }
}

void CompareWord(const std::string& text) {
  ASSERT_EQ(VARNEL_COMMON::WSlotIDstr2i(text), Reference::ReadWord(text)) << Shown(text);
}

void CompareDc(const std::string& text) {
  const std::optional<unsigned int> expected = Reference::ReadDcText(text);
  if (!expected) return;  // ends the process
  ASSERT_EQ(convertSlotDC(text), *expected) << Shown(text);
}

void CompareMml(const std::string& text) {
  Reference::ParsedSlot parsed{false, 77, 88};
  parsed.found = VARNEL_COMMON::ParseMMLSlotID(text.c_str(), parsed.shelf, parsed.slot);
  ASSERT_EQ(parsed, Reference::ParseMmlSlot(text.c_str(), 77, 88)) << Shown(text);
}

void CompareTl1(const std::string& text) {
  Reference::ParsedSlot parsed{false, 77, 88};
  parsed.found = VARNEL_COMMON::ParseTL1SlotID(text.c_str(), parsed.shelf, parsed.slot);
  ASSERT_EQ(parsed, Reference::ParseTl1Slot(text.c_str(), 77, 88)) << Shown(text);
}

// A text that is likely to be a slot, with something before, between or behind.
std::string SlotText(RandomTexts& random) {
  return random.Next(" +-0\t", 2) + random.Next("0123456789", 6) + random.Next("--- ,", 2) +
         random.Next("0123456789", 6) + random.Next(MIXED, 2);
}

TEST(SlotReference, WordsOfAllShortTexts) {
  for (const std::string& text : AllTexts("259-+ x", 6))
    ASSERT_NO_FATAL_FAILURE(CompareWord(text));
  for (const std::string& text : AllTexts("0123456789-+ SLOT\t,", 4))
    ASSERT_NO_FATAL_FAILURE(CompareWord(text));
}

TEST(SlotReference, WordsOfRandomTexts) {
  RandomTexts random(43);
  for (int i = 0; i < 150000; ++i) {
    ASSERT_NO_FATAL_FAILURE(CompareWord(SlotText(random)));
    ASSERT_NO_FATAL_FAILURE(CompareWord(random.Next(MIXED, 20)));
  }
}

TEST(SlotReference, TextsOfEveryWord) {
  for (unsigned int word = 0; word <= 0xFFFF; ++word) {
    const auto slotId = static_cast<unsigned short>(word);
    ASSERT_EQ(VARNEL_COMMON::WSlotIDi2str(slotId), Reference::DecimalText(slotId));
    ASSERT_EQ(VARNEL_COMMON::WSlotIDi2Hexstr(slotId), Reference::HexadecimalText(slotId));
  }
}

TEST(SlotReference, DcTextsOfEveryWord) {
  for (int word = 0; word <= 0xFFFF; ++word) {
    for (const unsigned int generation : {52099U, 52100U, 0x80000000U})
      ASSERT_EQ(convertSlot2strDC(generation, word), Reference::DcText(generation, word));
  }
}

TEST(SlotReference, DcTextsOfRandomBoards) {
  RandomTexts random(44);
  for (int i = 0; i < 100000; ++i) {
    const auto board = static_cast<int>(static_cast<unsigned int>(random.Below(1ULL << 32)));
    const auto generation = static_cast<unsigned int>(random.Below(60000));
    ASSERT_EQ(convertSlot2strDC(generation, board), Reference::DcText(generation, board)) << generation << ' ' << board;
  }
}

TEST(SlotReference, DcWordsOfAllShortTexts) {
  for (const std::string& text : AllTexts("0123456789-+ SLOT\t,", 4))
    ASSERT_NO_FATAL_FAILURE(CompareDc(text));
  for (const std::string& text : AllTexts("0123456789", 5))
    ASSERT_NO_FATAL_FAILURE(CompareDc(text));
  for (const std::string& text : AllTexts(std::string("29- x\0", 6), 6))
    ASSERT_NO_FATAL_FAILURE(CompareDc(text));
}

TEST(SlotReference, DcWordsOfRandomTexts) {
  RandomTexts random(45);
  for (int i = 0; i < 100000; ++i) {
    ASSERT_NO_FATAL_FAILURE(CompareDc(random.Next("0123456789", 13)));
    ASSERT_NO_FATAL_FAILURE(CompareDc(random.Next("0123456789", 11) + random.Next(MIXED, 3)));
    ASSERT_NO_FATAL_FAILURE(CompareDc(random.Next("0123456789", 8) + '\0' + random.Next("-+0123456789", 3)));
  }
}

TEST(SlotReference, MmlSlotsOfAllShortTexts) {
  for (const std::string& text : AllTexts("259-+ x", 6))
    ASSERT_NO_FATAL_FAILURE(CompareMml(text));
  for (const std::string& text : AllTexts("0123456789-+ SLOT\t,", 4))
    ASSERT_NO_FATAL_FAILURE(CompareMml(text));
}

TEST(SlotReference, MmlSlotsOfRandomTexts) {
  RandomTexts random(46);
  for (int i = 0; i < 150000; ++i) {
    ASSERT_NO_FATAL_FAILURE(CompareMml(SlotText(random)));
    ASSERT_NO_FATAL_FAILURE(CompareMml(random.Next(MIXED, 20)));
  }
}

TEST(SlotReference, Tl1SlotsOfAllShortTexts) {
  for (const std::string& text : AllTexts("SLOT-7", 7))
    ASSERT_NO_FATAL_FAILURE(CompareTl1(text));
  for (const std::string& text : AllTexts("259-+ x", 5))
    ASSERT_NO_FATAL_FAILURE(CompareTl1("SLOT-" + text));
}

TEST(SlotReference, Tl1SlotsOfRandomTexts) {
  RandomTexts random(47);
  for (int i = 0; i < 100000; ++i) {
    const char* prefix = random.Below(8) == 0 ? "SLOT" : "SLOT-";
    ASSERT_NO_FATAL_FAILURE(CompareTl1(random.Next("SLOT-", 6) + prefix + SlotText(random)));
    ASSERT_NO_FATAL_FAILURE(CompareTl1(prefix + random.Next(MIXED, 12) + prefix + random.Next(MIXED, 12)));
  }
}

TEST(SlotReference, HexNumbersOfAllShortTexts) {
  for (const std::string& text : AllTexts("0xX9aFg -", 5))
    ASSERT_EQ(VARNEL_COMMON::HexStr2Int(text), Reference::ReadHex(text)) << Shown(text);
  for (const std::string& digits : AllTexts("0123456789abcdefABCDEFgG", 3))
    ASSERT_EQ(VARNEL_COMMON::HexStr2Int("0x" + digits), Reference::ReadHex("0x" + digits)) << digits;
}

TEST(SlotReference, HexNumbersOfRandomTexts) {
  RandomTexts random(48);
  for (int i = 0; i < 220000; ++i) {
    for (const std::string& text : {"0x" + random.Next("0123456789abcdefABCDEF", 10) + random.Next(MIXED, 1),
                                    random.Next("0xX", 3) + random.Next(MIXED, 9)})
      ASSERT_EQ(VARNEL_COMMON::HexStr2Int(text), Reference::ReadHex(text)) << Shown(text);
  }
}

TEST(SlotReference, NeSlotIdsOfEveryNumber) {
  for (unsigned int number = 0; number <= 0xFFFF; ++number) {
    const auto slotNumber = static_cast<unsigned short>(number);
    ASSERT_EQ(VARNEL_COMMON::GetNESlotID(slotNumber), Reference::NeSlotId(slotNumber)) << number;
  }
}

}  // namespace
}  // namespace VARNEL_TEST
