// How the limit is chosen, how the stream is cut, and the stream: framer, reader and joiner.

#include <tl1stream.h>

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
using VARNEL_TL1::Message;
using VARNEL_TL1::Parts;
using VARNEL_TL1::Reader;
using VARNEL_TL1::Skipped;

namespace {

constexpr size_t LIMITS[] = {VARNEL_TL1::DEFAULT_LIMIT, 16, 64, 200, 1000, 4096};

// What becomes of a stream.
struct Result {
  std::vector<Message> messages;
  Skipped skipped;
  bool tooLong = false;
  uint64_t tooLongOffset = 0;
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

void TakeAll(Framer& framer, Result& result) {
  for (Message message; framer.Next(message);)
    result.messages.push_back(message);
}

void Finish(Framer& framer, Result& result) {
  framer.Finish();
  TakeAll(framer, result);
  result.skipped = framer.GetSkipped();
  result.tooLong = framer.TooLong();
  if (result.tooLong) result.tooLongOffset = framer.TooLongOffset();
}

Result CutWhole(std::string_view stream, size_t limit) {
  Framer framer(limit);
  Result result;
  framer.Feed(stream);
  Finish(framer, result);
  return result;
}

Result CutInPieces(std::string_view stream, size_t limit, Pieces pieces) {
  Framer framer(limit);
  Result result;
  bool goesOn = true;
  while (!stream.empty()) {
    const size_t length = std::min(pieces.Next(), stream.size());
    const bool taken = framer.Feed(stream.substr(0, length));
    FUZZ_CHECK(goesOn || !taken);
    FUZZ_CHECK(taken == !framer.TooLong());
    goesOn = taken;
    stream.remove_prefix(length);
    TakeAll(framer, result);
  }
  Finish(framer, result);
  return result;
}

void CheckSame(const Message& a, const Message& b) {
  FUZZ_CHECK(a.bytes == b.bytes);
  FUZZ_CHECK(a.offset == b.offset);
  FUZZ_CHECK(a.length == b.length);
  FUZZ_CHECK(a.complete == b.complete);
  FUZZ_CHECK(a.bareText == b.bareText);
}

void CheckSame(const Skipped& a, const Skipped& b) {
  FUZZ_CHECK(a.bytes == b.bytes);
  FUZZ_CHECK(a.echoes == b.echoes);
  FUZZ_CHECK(a.prompts == b.prompts);
  FUZZ_CHECK(a.lines == b.lines);
  FUZZ_CHECK(a.telnet == b.telnet);
}

void CheckSame(const Result& a, const Result& b) {
  FUZZ_CHECK(a.tooLong == b.tooLong);
  FUZZ_CHECK(a.tooLongOffset == b.tooLongOffset);
  FUZZ_CHECK(a.messages.size() == b.messages.size());
  for (size_t i = 0; i < a.messages.size(); ++i)
    CheckSame(a.messages[i], b.messages[i]);
  if (!a.tooLong) CheckSame(a.skipped, b.skipped);
}

// Messages and what was skipped are the whole stream, and a message keeps all its bytes.
void CheckNothingLost(const Result& result, std::string_view stream, size_t limit) {
  uint64_t end = 0, sum = 0;
  for (const Message& message : result.messages) {
    FUZZ_CHECK(message.offset >= end);
    FUZZ_CHECK(message.length >= message.bytes.size());
    FUZZ_CHECK(message.bytes.size() <= limit);
    FUZZ_CHECK(message.complete || &message == &result.messages.back());
    const std::string_view source = stream.substr(message.offset, message.length);
    if (message.length == message.bytes.size()) FUZZ_CHECK(message.bytes == source);
    end = message.offset + message.length;
    sum += message.length;
  }
  FUZZ_CHECK(end <= stream.size());
  if (result.tooLong) {
    FUZZ_CHECK(result.tooLongOffset >= end && result.tooLongOffset <= stream.size());
  } else {
    FUZZ_CHECK(sum + result.skipped.bytes == stream.size());
  }
}

// All that is told stands in the message; bare text has its fields from the part before.
void CheckFields(const Parts& parts, const Message& message) {
  FUZZ_CHECK(parts.offset == message.offset);
  FUZZ_CHECK(parts.length == message.length);
  for (const auto& field : {parts.sid, parts.date, parts.time, parts.ctag, parts.code}) {
    if (field && !message.bareText) FUZZ_CHECK(!field->empty() && message.bytes.find(*field) != std::string::npos);
  }
  for (const std::string& line : parts.lines)
    FUZZ_CHECK(message.bytes.find(line) != std::string::npos);
}

// The joiner loses no line either.
void CheckReading(const std::vector<Message>& messages) {
  Reader reader;
  Joiner joiner;
  size_t lines = 0, joinedLines = 0;
  for (const Message& message : messages) {
    const Parts parts = reader.Read(message);
    CheckFields(parts, message);
    lines += parts.lines.size();
    FUZZ_CHECK(joiner.Add(parts));
  }
  joiner.Finish();
  for (Parts parts; joiner.Next(parts);)
    joinedLines += parts.lines.size();
  FUZZ_CHECK(joinedLines == lines);
}

// The most bytes that are live while a stream comes again and again, a little at a time, and its messages are taken.
size_t PeakOfEndless(std::string_view stream, size_t limit) {
  constexpr size_t TOTAL = 200000, PIECE = 64;
  const size_t before = VARNEL_FUZZ::ResetPeak();
  Framer framer(limit);
  Message message;
  for (size_t fed = 0, at = 0; fed < TOTAL;) {
    const std::string_view piece = stream.substr(at, PIECE);
    if (!framer.Feed(piece)) break;
    while (framer.Next(message)) {
    }
    fed += piece.size();
    at = at + PIECE < stream.size() ? at + PIECE : 0;
  }
  return VARNEL_FUZZ::PeakBytes() - before;
}

// Memory stays within what the longest line, held with the place of each byte, and a few messages need. How soon that
// is reached is open: in a stream that is mostly telnet negotiation a line grows by a byte now and then.
void CheckMemory(std::string_view stream, size_t limit) {
  constexpr size_t LONGEST_LINE = 4096, LINES = 2 * LONGEST_LINE * (1 + sizeof(uint64_t));
  if (!stream.empty()) FUZZ_CHECK(PeakOfEndless(stream, limit) <= LINES + 8 * limit);
}

unsigned int Sum(const std::string& bytes) {
  return std::accumulate(bytes.begin(), bytes.end(), 0U,
                         [](unsigned int sum, char c) { return sum + static_cast<unsigned char>(c); });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  VARNEL_FUZZ::Input input(data, size);
  const size_t limit = LIMITS[input.Byte() % std::size(LIMITS)];
  const Pieces pieces(input.Byte());
  const std::string stream = input.Rest();

  const Result whole = CutWhole(stream, limit);
  CheckNothingLost(whole, stream, limit);
  CheckSame(whole, CutInPieces(stream, limit, pieces));
  CheckReading(whole.messages);
  // Takes many times longer than all else, so that few inputs go through it; which ones, a mutation cannot hand on.
  if (Sum(stream) % 32 == 0) CheckMemory(stream, std::min(limit, size_t{1000}));
  return 0;
}
