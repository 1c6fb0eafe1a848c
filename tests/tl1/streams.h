#ifndef VARNEL_TESTS_TL1_STREAMS_H
#define VARNEL_TESTS_TL1_STREAMS_H

#include <varnel_tl1/tl1.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace VARNEL_TEST {

using Texts = std::vector<std::string>;
using Messages = std::vector<VARNEL_TL1::MessageCopy>;

/// A stream cut into messages.
struct Cut {
  Messages messages;
  VARNEL_TL1::Skipped skipped;
};

/// Appends a stream in pieces of a size; 0 for one piece.
Cut CutStream(std::string_view stream, size_t pieceSize = 0, size_t limit = VARNEL_TL1::DEFAULT_LIMIT);

/// The lines of a text, each after a blank and a bar.
std::string ShownText(std::string_view text);

/// A message in one line: its type and its fields, such as `response A 1 COMPLD continues | "x" | y`.
std::string Shown(const VARNEL_TL1::Message& message);
Texts Shown(const Messages& messages);

/// The same with its position and its header: `12+40 response A 26-03-04 05:06:07 1 COMPLD`.
Texts ShownWithPlaces(const Messages& messages);

/// The messages of a stream as lines. Checks that they are the same byte by byte.
Texts Read(std::string_view stream);

/// Creates well-formed messages of all types in the strict form.
class MessageMaker {
 public:
  explicit MessageMaker(unsigned seed) : m_random(seed) {}

  struct Made {
    std::string bytes;
    std::string shown;  ///< as Shown() has it
  };
  /// Any message; an acknowledgement is one of eight.
  Made Make();
  /// A message with a header.
  Made MakeWithHeader();
  size_t Random(size_t end) { return std::uniform_int_distribution<size_t>(0, end - 1)(m_random); }
  template <typename List>
  const auto& OneOf(const List& list) {
    return list[Random(std::size(list))];
  }

 private:
  Made MakeAcknowledgement();
  std::string Words(std::string_view characters, size_t most);
  std::string TwoDigits(size_t end) { return std::to_string(10 + Random(end - 10)); }
  std::string Line();

  std::mt19937 m_random;
};

constexpr char HEADER[] = "\r\n\n   NORTH1 26-03-04 05:06:07\r\n";
constexpr char RESPONSE[] = "\r\n\n   NORTH1 26-03-04 05:06:07\r\nM  9 COMPLD\r\n   \"x\"\r\n;";
constexpr char SHOWN_RESPONSE[] = "response NORTH1 9 COMPLD | \"x\"";

}  // namespace VARNEL_TEST

#endif
