#ifndef VARNEL_TESTS_STREAMS_H
#define VARNEL_TESTS_STREAMS_H

#include <tl1stream.h>

#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace VARNEL_TEST {

using Messages = std::vector<VARNEL_TL1::Message>;

/// The messages of a stream that is fed in pieces of a size.
Messages Cut(std::string_view stream, size_t pieceSize);

/// The messages of a stream that is fed in one piece; what was skipped goes to `skipped`.
Messages CutWhole(std::string_view stream, VARNEL_TL1::Skipped* skipped = nullptr);

/// The messages of a stream that is fed in two pieces.
Messages CutAt(std::string_view stream, size_t position);

/// What a message is, in one text that shows all of it.
std::string Shown(const VARNEL_TL1::Message& message);
std::vector<std::string> Shown(const Messages& messages);

/// The parts of a message as a line of JSON.
std::string Shown(const VARNEL_TL1::Parts& parts);

/// True when all parts are the same.
bool Same(const VARNEL_TL1::Parts& a, const VARNEL_TL1::Parts& b);

/// All messages of a stream, read and shown.
std::vector<std::string> ReadAll(std::string_view stream);

/// Whole captures: their names, their bytes and the lines expected.
struct Capture {
  std::string name;
  std::string bytes;
  std::vector<std::string> expected;
};
const std::vector<Capture>& Captures();

/// Makes messages in strict form out of random parts.
class StrictMessages {
 public:
  explicit StrictMessages(unsigned seed) : m_random(seed) {}

  /// A message, with what is to be read from it; its offset is 0.
  struct Made {
    std::string bytes;
    VARNEL_TL1::Parts parts;
  };
  Made Make();
  size_t Random(size_t end) { return std::uniform_int_distribution<size_t>(0, end - 1)(m_random); }

 private:
  Made MakeAcknowledgement();
  Made MakeResponse();
  Made MakeAutonomous();
  void AddHeader(Made& made);
  void AddText(Made& made, bool sureM);
  std::string Tag();
  std::string Words(std::string_view characters, size_t most);

  std::mt19937 m_random;
};

}  // namespace VARNEL_TEST

#endif
