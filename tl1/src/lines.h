#ifndef VARNEL_TL1_LINES_H
#define VARNEL_TL1_LINES_H

#include <cstddef>
#include <string_view>

#include "message.h"

namespace VARNEL_TL1 {

/// Recognises the lines of TL1; see docs/formats.md. All functions expect a line without its end; their results point
/// into it. Blanks are blanks, tabs and NULs; terminal control sequences at the edge of a word are ignored.

/// A longer line is text: no header, identification line, acknowledgement, prompt or echo.
constexpr size_t MAX_LINE = 4096;

/// The line without blanks and terminal control sequences at both ends.
std::string_view Trimmed(std::string_view line);

/// True unless the line begins with a blank.
bool IsUnindented(std::string_view line);

/// A line that ends in date and time, maybe with a time zone.
struct HeaderLine {
  std::string_view sid;  ///< without quotes around it; may be empty, may contain blanks
  std::string_view date;
  std::string_view time;
};
bool ReadHeader(std::string_view line, HeaderLine& header);

/// The number of line ends at the end of a text that belong to a header after it: the end of the line before, and one
/// blank line.
size_t HeaderLead(std::string_view before);

/// A header in the strict form: exactly three blanks, and a SID; `before` ends in a blank line.
bool BeginsStrictHeader(std::string_view before, std::string_view line);
bool IsStrictHeader(std::string_view before, std::string_view line);

/// The identification line of a response, "M  ctag CODE", or of an autonomous message, "*C 12 REPT ALM EQPT".
struct Identification {
  MessageType type = MessageType::Response;
  std::string_view code;
  std::string_view tag;   ///< empty if it is missing
  std::string_view verb;  ///< of an autonomous message
  size_t length = 0;      ///< up to the end of the line, or up to a ";" that ends the message
  bool ended = false;     ///< by such a ";"
};
/// @param afterHeader  false to require one of the known completion codes or verbs.
bool ReadIdentification(std::string_view line, bool afterHeader, Identification& identification);

/// The first line of an acknowledgement, "IP 12".
struct AcknowledgementLine {
  std::string_view code;
  std::string_view ctag;  ///< empty if it is missing
};
bool ReadAcknowledgement(std::string_view line, AcknowledgementLine& acknowledgement);

/// The echo of a command, "RTRV-HDR:::1;".
bool IsCommand(std::string_view line);

/// Length of the prompts at the beginning of a line: ";", "< ", "> ", "NE1>", "TL1>>", with the blanks after them.
size_t PromptLength(std::string_view line);

}  // namespace VARNEL_TL1

#endif
