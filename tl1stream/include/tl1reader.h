#ifndef VARNEL_TL1READER_H
#define VARNEL_TL1READER_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tl1framer.h"
#include "varnel_export.h"

/// @file
/// Reading the parts of TL1 messages.

namespace VARNEL_TL1 {

/// What kind of message it is.
enum class MessageType {
  Acknowledgement,  ///< a command was received
  Response,         ///< an answer to a command, or a part of one
  Autonomous,       ///< sent by the element on its own
  Prompt,           ///< CR LF ">" alone
  Unrecognised,     ///< cut out of the stream, but without an identification line that can be read
};

/// Gives the name of a type.
///
/// @param type  the type.
/// @return "acknowledgement", "response", "autonomous", "prompt" or "unrecognised"; a constant.
VARNEL_API const char* TypeName(MessageType type);

/// The parts of a message. Fields have no surrounding blanks; those that the message lacks are absent.
struct Parts {
  MessageType type = MessageType::Unrecognised;  ///< what kind of message it is
  uint64_t offset = 0;                           ///< where the message begins in its stream
  uint64_t length = 0;                           ///< bytes that it takes up there
  std::optional<std::string> sid;                ///< without the quotes around it
  std::optional<std::string> date;               ///< as it stands
  std::optional<std::string> time;               ///< as it stands
  std::optional<std::string> ctag;               ///< correlation tag of an acknowledgement or response
  std::optional<std::string> atag;               ///< tag of an autonomous message
  std::optional<std::string> code;               ///< acknowledgement code, completion code or alarm code
  std::optional<std::string> verb;               ///< of an autonomous message, all its words
  std::vector<std::string> lines;                ///< the text, each line without its indent and line end
  bool continues = false;                        ///< more parts follow; see Continues()
};

/// Tells whether more parts of an answer follow.
///
/// @param bytes  the message, of which the last byte counts.
/// @param parts  its parts, of which type and code count.
/// @return true when the message ends in ">", and for a response with the completion code RTRV whatever ends it.
VARNEL_API bool Continues(std::string_view bytes, const Parts& parts);

/// Cuts a text into lines.
///
/// @param text  lines that end in CR, LF or CR LF.
/// @return the lines, each without its indent and line end, and without blank lines at the front and at the end.
VARNEL_API std::vector<std::string> TextLines(std::string_view text);

/// Gives a field as it is shown.
///
/// @param text  the field as it stands in a message.
/// @return the text without line ends and blanks around it; absent where nothing remains.
VARNEL_API std::optional<std::string> Field(std::string_view text);

/// Gives a SID as it is shown.
///
/// @param text  the SID as it stands in a message.
/// @return as Field(), but also without quotes around it.
VARNEL_API std::optional<std::string> SidField(std::string_view text);

/// Reads the parts of messages as a person would. One reader reads the messages of one stream in their order: bare
/// text behind a part that ended in ">" gets the type, SID, tags, code and verb of that part. An object belongs to one
/// thread at a time. Memory exhaustion throws std::bad_alloc and leaves the reader as it was or as after the call.
class VARNEL_API Reader {
 public:
  /// Reads one message.
  ///
  /// @param message  the next one of the stream, as Framer::Next() gives it.
  /// @return its parts; what cannot be read has the type Unrecognised and all its text in `lines`.
  Parts Read(const Message& message);

 private:
  Parts m_previous;  ///< the last part that continues, without its lines
};

}  // namespace VARNEL_TL1

#endif
