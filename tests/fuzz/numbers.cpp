// A text: two consecutive numbers or characters, compared with those that a stream reads.

#include <str.h>

#include <limits>
#include <sstream>

#include "check.h"
#include "exact_text.h"
#include "input.h"
#include "replay.h"
#include "string_references.h"
#include "util/stream_reader.h"

namespace {

// A reused stream: building one costs more than reading.
std::istringstream& StreamOf(const std::string& text) {
  static std::istringstream stream;
  stream.clear();
  stream.str(text);
  return stream;
}

template <typename Number>
void CheckConverting(const std::string& text) {
  Number expected = 77, number = 77;
  StreamOf(text.c_str()) >> expected;
  VARNEL_COMMON::ConvertFromString(VARNEL_TEST::ExactText(text), number);
  FUZZ_CHECK(number == expected);
}

template <typename Value>
void CheckRead(VARNEL_UTIL::StreamReader& reader, std::istream& stream) {
  Value expected = 77, value = 77;
  stream >> expected;
  reader.Read(value);
  FUZZ_CHECK(value == expected);
  FUZZ_CHECK(reader.Failed() == stream.fail());
  FUZZ_CHECK(reader.AtEnd() == stream.eof());
}

template <typename First, typename Second>
void CheckReading(const std::string& text) {
  std::istream& stream = StreamOf(text);
  VARNEL_UTIL::StreamReader reader(text);
  CheckRead<First>(reader, stream);
  CheckRead<Second>(reader, stream);
}

// At the ends of the ranges of all types.
std::vector<std::string> Limits() {
  std::vector<std::string> numbers{"18446744073709551616", "18446744073709551617", "184467440737095516150"};
  for (const uint64_t limit : {uint64_t{1} << 15, uint64_t{1} << 16, uint64_t{655360}, uint64_t{65535} << 16,
                               uint64_t{1} << 31, uint64_t{1} << 32, uint64_t{42949672960}, uint64_t{0xFFFFFFFF} << 32,
                               uint64_t{1} << 63, std::numeric_limits<uint64_t>::max() - 11}) {
    for (uint64_t distance = 0; distance < 12; ++distance) {
      numbers.push_back(std::to_string(limit - distance));
      numbers.push_back(std::to_string(limit + distance));
    }
    numbers.push_back(std::to_string(limit) + "0");
    numbers.push_back(std::to_string(limit) + std::string(300, '9'));
  }
  return numbers;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text = VARNEL_FUZZ::Input(data, size).Rest();
  CheckConverting<unsigned int>(text);
  CheckConverting<unsigned short>(text);
  CheckConverting<char>(text);
  CheckReading<int, int>(text);
  CheckReading<short, long>(text);
  CheckReading<unsigned long, char>(text);
  CheckReading<unsigned int, unsigned int>(text);
  CheckReading<unsigned short, unsigned short>(text);
  CheckReading<unsigned short, char>(text);
  CheckReading<char, unsigned int>(text);
  CheckReading<char, char>(text);
  return 0;
}

void VARNEL_FUZZ::RunGenerated(Runner run) {
  using VARNEL_TEST::AllTexts;
  for (const std::string& text : AllTexts("059-+ \tx", 5))
    run(text);
  for (const std::string& text : AllTexts("0123456789-+ S\t,", 4))
    run(text);
  for (int byte = 0; byte < 256; ++byte) {
    run(std::string(1, static_cast<char>(byte)));
    run("1" + std::string(1, static_cast<char>(byte)) + "2");
  }
  for (const std::string& number : Limits()) {
    for (const char* before : {"", "-", "+", " -", "-+", "--", "00000000000000000000", "-00", "\v\f+00"}) {
      for (const char* after : {"", " ", "x", ".5", "-1", " -65536", ",3"})
        run(before + number + after);
    }
  }
}
