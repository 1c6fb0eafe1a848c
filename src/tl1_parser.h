#ifndef VARNEL_SRC_TL1_PARSER_H
#define VARNEL_SRC_TL1_PARSER_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace VARNEL_COMMON {

/// A part of a message; one that was not found leaves what an earlier parse left.
struct TL1Part {
  size_t start = std::string_view::npos;
  size_t length = 0;

  void CopyTo(std::string& text, const std::string& message) const {
    if (start != std::string_view::npos) text.assign(message.data() + start, length);
  }
};

/// What the parse of a message found.
struct TL1Findings {
  enum Type : int { NONE = -1, ACKNOWLEDGEMENT = 2, RESPONSE = 3, AUTONOMOUS = 4 };

  /// What stands in a response line in front of the ctag, whatever stands there in the message.
  static constexpr std::string_view RSP_LINE_START = "\r\nM  ";

  TL1Part sid, date, time, echo, rspLine, textBlock, verb, code, ctag, atag;
  int type = NONE;
  std::optional<unsigned int> startPos;
  bool emptiesAll = false;
};

/// Takes a message in strict form apart; see docs/formats.md.
///
/// @param found  is to be fresh. After false it holds what the object that keeps the message is to take over.
/// @return whether the message is recognised. Most of what is not is reported.
bool FindTL1Parts(std::string_view message, TL1Findings& found);

}  // namespace VARNEL_COMMON

#endif
