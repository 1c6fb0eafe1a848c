#ifndef VARNEL_TL1_LINE_KINDS_H
#define VARNEL_TL1_LINE_KINDS_H

#include <cstddef>
#include <optional>
#include <string_view>

namespace VARNEL_TL1 {

/// What the lines of TL1 look like; see docs/formats.md. All take a line without its end; the parts that they give
/// point into it.

inline bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}
inline bool IsLineEnd(char c) {
  return c == '\r' || c == '\n';
}

/// The line without blanks and NULs at both ends.
std::string_view Trimmed(std::string_view line);

/// Takes the first word off the front of a line; empty where there is none.
std::string_view TakeWord(std::string_view& line);

/// Takes one line off the front of a text, with an end of any kind: CR, LF, CR LF; NULs may follow a CR.
std::string_view TakeLine(std::string_view& text);

struct HeaderLine {
  std::string_view sid;  ///< may hold blanks and quotes, and may be empty
  std::string_view date;
  std::string_view time;
};
/// A line that ends in date and time.
std::optional<HeaderLine> ReadHeader(std::string_view line);

/// Identification line of a response, "M  ctag CODE".
struct ResponseLine {
  std::string_view ctag;  ///< empty where it is missing
  std::string_view code;
};
std::optional<ResponseLine> ReadResponse(std::string_view line);

/// Identification line of an autonomous message, "*C 12 REPT ALM EQPT".
struct AutonomousLine {
  std::string_view code;
  std::string_view atag;  ///< empty where it is missing
  std::string_view verb;
};
std::optional<AutonomousLine> ReadAutonomous(std::string_view line);

/// First line of an acknowledgement, "IP 12".
struct AcknowledgementLine {
  std::string_view code;
  std::string_view ctag;  ///< empty where it is missing
};
std::optional<AcknowledgementLine> ReadAcknowledgement(std::string_view line);

/// One of the codes that the book names.
bool IsKnownAcknowledgement(std::string_view code);

/// An identification line that can be told from other text without a header in front of it.
bool IsSureIdentification(std::string_view line);

/// An identification line behind a header.
bool IsIdentification(std::string_view line);

/// An identification line behind which a ";" ends the message: one with a clean code or verb.
bool CanEndMessage(std::string_view line);

/// The echo of a command, "RTRV-HDR:::1;".
bool IsCommand(std::string_view line);

/// Length of the prompts in front of a line: ";", "< ", "> ", "NE1>", "TL1>>", with the blanks behind them.
size_t PromptLength(std::string_view line);

/// A line with which something new begins behind the end of a message.
bool LooksLikeStart(std::string_view line);

}  // namespace VARNEL_TL1

#endif
