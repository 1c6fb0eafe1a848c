#ifndef VARNEL_TOOLS_TL1_STRICT_H
#define VARNEL_TOOLS_TL1_STRICT_H

#include <varnel_tl1/message.h>

/// Reads a message with CTL1NEMsgParse. A message that the parser refuses is unrecognised, all its bytes are its text.
VARNEL_TL1::MessageCopy ReadStrictly(const VARNEL_TL1::Message& message);

#endif
