#ifndef VARNEL_TL1_MESSAGE_H
#define VARNEL_TL1_MESSAGE_H

#include <cstdint>
#include <string_view>
#include <vector>

#include "varnel_export.h"

/// @file
/// TL1 messages and their parts.

namespace VARNEL_TL1 {

/// The types of messages.
enum class MessageType {
  Acknowledgement,  ///< a command was received
  Response,         ///< an answer to a command, or a part of one
  Autonomous,       ///< sent by the element on its own
  Prompt,           ///< ">" alone on a line
  Unrecognised,     ///< without an identification line: the stream ended after the header
};

/// @param type  the type.
/// @return "acknowledgement", "response", "autonomous", "prompt" or "unrecognised"; a constant.
VARNEL_API const char* TypeName(MessageType type);

/// The parts of a message as views, which are valid for the time documented by the object that supplied the message.
/// Copying a Message copies the views; MessageCopy owns its text.
///
/// Fields have no surrounding blanks. An empty field means that the message lacks it.
struct Message {
  MessageType type = MessageType::Unrecognised;  ///< what kind of message it is
  std::string_view sid;                          ///< source identifier, without the quotes around it
  std::string_view date;                         ///< as sent
  std::string_view time;                         ///< as sent, with a time zone or "PM" after it
  std::string_view ctag;                         ///< correlation tag of an acknowledgement or response
  std::string_view atag;                         ///< tag of an autonomous message
  std::string_view code;                         ///< acknowledgement code, completion code or alarm code
  std::string_view verb;                         ///< of an autonomous message, all its words
  std::string_view text;   ///< from after the identification line to before the terminator; see LineReader
  std::string_view bytes;  ///< from the line ends before the header to the terminator, without telnet sequences
  uint64_t offset = 0;     ///< of the first byte in the stream
  uint64_t length = 0;     ///< bytes that the message takes up in the stream, telnet sequences included
  bool complete = true;    ///< false for a message that has no end
  bool continues = false;  ///< more parts follow: it ended in ">", or is a response with the code RTRV
  bool bare = false;     ///< only text after a part that ended in ">"; sid, tags, code and verb are those of that part
  bool tooLong = false;  ///< `bytes` is the beginning of a message beyond the limit; `complete` is false
};

/// A message that owns its text.
class VARNEL_API MessageCopy {
 public:
  MessageCopy() = default;                           ///< a default Message
  explicit MessageCopy(const Message& message);      ///< copies everything that the views show
  MessageCopy(const MessageCopy& other);             ///< copies the text too
  MessageCopy& operator=(const MessageCopy& other);  ///< copies the text too
  MessageCopy(MessageCopy&&) = default;              ///< takes the text over; `other` may only be assigned or destroyed
  MessageCopy& operator=(MessageCopy&&) = default;   ///< takes the text over
  ~MessageCopy() = default;

  /// @return the message; its views are valid while this object is neither assigned nor destroyed. Moving the object
  ///         moves the text: earlier views stay valid as long as the new owner.
  const Message& View() const { return m_view; }

 private:
  std::vector<char> m_bytes;
  Message m_view;
};

}  // namespace VARNEL_TL1

#endif
