#ifndef VARNEL_TOOLS_TL1_STRICT_H
#define VARNEL_TOOLS_TL1_STRICT_H

#include <message.h>

#include <string>

/// The result of CTL1NEMsgParse for a message.
struct StrictMessage {
  VARNEL_TL1::MessageCopy message;  ///< unrecognised if the parser refuses it; all its bytes are its text then
  std::string refusedAt;            ///< the part that the parser could not read; empty if it accepts the message
};

/// Reads a message with CTL1NEMsgParse. A message without its end is unrecognised and not refused.
StrictMessage ReadStrictly(const VARNEL_TL1::Message& message);

#endif
