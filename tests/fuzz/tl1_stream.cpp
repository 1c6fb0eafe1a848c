// The limit, the cut, and the stream: framer, texts, joiner and alarms.

#include <varnel_tl1/tl1.h>

#include <algorithm>
#include <iterator>
#include <numeric>
#include <string>
#include <vector>

#include "check.h"
#include "input.h"
#include "live_bytes.h"

using VARNEL_TL1::Framer;
using VARNEL_TL1::Joiner;
using VARNEL_TL1::LineReader;
using VARNEL_TL1::Message;
using VARNEL_TL1::MessageCopy;
using VARNEL_TL1::Skipped;

namespace {

constexpr size_t LIMITS[] = {VARNEL_TL1::DEFAULT_LIMIT, 64, 200, 1000, 4096};
constexpr std::string_view WELL_FORMED = "\r\n\n   N 26-01-15 12:00:07\r\nM  7 DENY\r\n   \"x\"\r\n;";

// The results of reading a stream.
struct Result {
  std::vector<MessageCopy> messages;
  Skipped skipped;
};

// Lengths of pieces: all of one byte, or a sequence that the seed decides on.
class Pieces {
 public:
  explicit Pieces(unsigned char seed) : m_onlyOne(seed == 0), m_state(seed) {}

  size_t Next() {
    if (m_onlyOne) return 1;
    m_state = m_state * 1103515245U + 12345U;
    return (m_state >> 16) % (m_state >> 28 == 0 ? 500U : 12U);
  }

 private:
  bool m_onlyOne;
  uint32_t m_state;
};

Result Cut(std::string_view stream, size_t limit, Pieces* pieces) {
  Framer framer(limit);
  Result result;
  const auto takeAll = [&] {
    for (Message message; framer.Next(message);)
      result.messages.emplace_back(message);
  };
  while (!stream.empty()) {
    const size_t length = pieces == nullptr ? stream.size() : std::min(pieces->Next(), stream.size());
    framer.Append(stream.substr(0, length));
    takeAll();
    stream.remove_prefix(length);
  }
  framer.Finish();
  takeAll();
  result.skipped = framer.GetSkipped();
  return result;
}

std::vector<std::string_view> Fields(const Message& message) {
  return {message.sid,  message.date, message.time, message.ctag, message.atag,
          message.code, message.verb, message.text, message.bytes};
}

void CheckSame(const Message& a, const Message& b) {
  FUZZ_CHECK(a.type == b.type);
  FUZZ_CHECK(Fields(a) == Fields(b));
  FUZZ_CHECK(a.offset == b.offset);
  FUZZ_CHECK(a.length == b.length);
  FUZZ_CHECK(a.complete == b.complete && a.continues == b.continues && a.bare == b.bare && a.tooLong == b.tooLong);
}

void CheckSame(const Result& a, const Result& b) {
  FUZZ_CHECK(a.messages.size() == b.messages.size());
  for (size_t i = 0; i < a.messages.size(); ++i)
    CheckSame(a.messages[i].View(), b.messages[i].View());
  FUZZ_CHECK(a.skipped.bytes == b.skipped.bytes);
  FUZZ_CHECK(a.skipped.echoes == b.skipped.echoes);
  FUZZ_CHECK(a.skipped.prompts == b.skipped.prompts);
  FUZZ_CHECK(a.skipped.lines == b.skipped.lines);
  FUZZ_CHECK(a.skipped.telnet == b.skipped.telnet);
}

// Messages and what was skipped are the whole stream, and a message keeps all its bytes.
void CheckNothingLost(const Result& result, std::string_view stream, size_t limit) {
  uint64_t end = 0, sum = result.skipped.bytes;
  for (const MessageCopy& copy : result.messages) {
    const Message& message = copy.View();
    FUZZ_CHECK(message.offset >= end);
    FUZZ_CHECK(message.length >= message.bytes.size());
    FUZZ_CHECK(message.bytes.size() <= limit);
    FUZZ_CHECK(!message.tooLong || (message.bytes.size() == limit && !message.complete));
    if (message.length == message.bytes.size())
      FUZZ_CHECK(message.bytes == stream.substr(static_cast<size_t>(message.offset), message.bytes.size()));
    end = message.offset + message.length;
    sum += message.length;
  }
  FUZZ_CHECK(end <= stream.size());
  FUZZ_CHECK(sum == stream.size());
}

// A well-formed message is read correctly after any bytes.
void CheckDamageDoesNotSpread(const std::string& stream, size_t limit) {
  const Result result = Cut(stream + std::string(WELL_FORMED), limit, nullptr);
  FUZZ_CHECK(!result.messages.empty());
  const Message& last = result.messages.back().View();
  FUZZ_CHECK(last.bytes == WELL_FORMED && last.complete && last.ctag == "7" && last.sid == "N");
}

size_t FilledLines(std::string_view text) {
  size_t count = 0;
  LineReader lines(text);
  for (std::string_view line; lines.Next(line);)
    count += line.empty() ? 0U : 1U;
  return count;
}

// Parsing of texts loses nothing, and the joiner loses no line.
void CheckReading(const std::vector<MessageCopy>& messages) {
  Joiner joiner;
  VARNEL_TL1::Alarms alarms;
  VARNEL_TL1::QuotedText quoted;
  size_t lines = 0, joinedLines = 0;
  for (const MessageCopy& copy : messages) {
    LineReader reader(copy.View().text);
    for (std::string_view line; reader.Next(line);) {
      const std::string_view text = reader.Quoted();
      FUZZ_CHECK(quoted.Read(text) == !text.empty());
      size_t size = 2 + quoted.Aid().size() + (quoted.Blocks() > 0 ? 1 : 0);
      for (const auto& parameter : quoted.Parameters())
        size += parameter.name.size() + parameter.value.size();
      FUZZ_CHECK(text.empty() || size <= text.size());
    }
    alarms.Add("", copy.View());
    lines += FilledLines(copy.View().text);
    joiner.Add(copy.View());
  }
  joiner.Finish();
  for (Message message; joiner.Next(message);)
    joinedLines += FilledLines(message.text);
  FUZZ_CHECK(joinedLines == lines);
}

// The most live bytes while a stream arrives repeatedly, in small pieces, and its messages are retrieved.
size_t PeakOfEndless(std::string_view stream, size_t limit) {
  constexpr size_t TOTAL = 200000, PIECE = 64;
  const size_t before = VARNEL_FUZZ::ResetPeak();
  Framer framer(limit);
  Message message;
  for (size_t appended = 0, at = 0; appended < TOTAL;) {
    const std::string_view piece = stream.substr(at, PIECE);
    framer.Append(piece);
    while (framer.Next(message)) {
    }
    appended += piece.size();
    at = at + PIECE < stream.size() ? at + PIECE : 0;
  }
  return VARNEL_FUZZ::PeakBytes() - before;
}

// Memory stays within what a message, some lines after it, and the places of telnet sequences between their bytes need.
void CheckMemory(std::string_view stream, size_t limit) {
  constexpr size_t LINES = size_t{1} << 20;
  if (!stream.empty()) FUZZ_CHECK(PeakOfEndless(stream, limit) <= LINES + 64 * limit);
}

unsigned int Sum(const std::string& bytes) {
  return std::accumulate(bytes.begin(), bytes.end(), 0U,
                         [](unsigned int sum, char c) { return sum + static_cast<unsigned char>(c); });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  VARNEL_FUZZ::Input input(data, size);
  const size_t limit = LIMITS[input.Byte() % std::size(LIMITS)];
  Pieces pieces(input.Byte());
  const std::string stream = input.Rest();

  const Result whole = Cut(stream, limit, nullptr);
  CheckNothingLost(whole, stream, limit);
  CheckSame(whole, Cut(stream, limit, &pieces));
  CheckDamageDoesNotSpread(stream, limit);
  CheckReading(whole.messages);
  // Slower than the other checks, therefore only for few inputs. The choice must not be heritable by mutation.
  if (Sum(stream) % 32 == 0) CheckMemory(stream, std::min(limit, size_t{1000}));
  return 0;
}
