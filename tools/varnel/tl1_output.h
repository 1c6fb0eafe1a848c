#ifndef VARNEL_TOOLS_TL1_OUTPUT_H
#define VARNEL_TOOLS_TL1_OUTPUT_H

#include <message.h>
#include <text.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "encoding.h"
#include "json.h"

/// The origin of a message.
struct Tl1Origin {
  std::string_view source;         ///< FILE, HOST:PORT or the name of the element
  std::string_view received;       ///< time; empty for input that is not live
  std::optional<uint64_t> missed;  ///< see Atags::Missed()
};

/// The time in UTC, as "received" has it: 2026-01-15T12:00:07.042Z.
std::string CurrentTime();

/// Shows TL1 messages.
class Tl1Output {
 public:
  explicit Tl1Output(const std::string& encoding) : m_encoding(encoding) {}

  /// Adds all members that describe a message.
  void Add(JsonWriter& json, const VARNEL_TL1::Message& message, const Tl1Origin& origin);

  /// Prints a message as text: a line with type, code and tags, one with its origin, one with its position, and its
  /// text. The source is shown if `origin` has one.
  void Print(const VARNEL_TL1::Message& message, const Tl1Origin& origin);

 private:
  void AddText(JsonWriter& json, std::string_view text);
  void AddQuoted(JsonWriter& json);
  void AddPositional(JsonWriter& json);
  void AddNamed(JsonWriter& json);
  std::string_view Meaning(std::string_view raw);

  std::string ColouredCode(const VARNEL_TL1::Message& message);
  void AppendField(const char* name, std::string_view field);
  void AppendHeading(const VARNEL_TL1::Message& message, const Tl1Origin& origin);

  struct Named {
    size_t begin, length;    // of the name in m_names
    std::string_view value;  // raw
  };

  Encoding m_encoding;
  std::vector<std::string_view> m_quotedTexts;  // of the lines of a message; empty if a line is not quoted
  VARNEL_TL1::QuotedText m_quoted;
  bool m_hasEscapes = false;  // m_quoted
  std::string_view m_severity;
  std::string m_names;  // one after the other, their meaning
  std::vector<Named> m_named;
  std::string m_unescaped;
  std::string m_block;
};

#endif
