#ifndef VARNEL_TOOLS_TL1_STRICT_H
#define VARNEL_TOOLS_TL1_STRICT_H

#include <tl1reader.h>

/// Reads a message with CTL1NEMsgParse. What that refuses is given as unrecognised, all its bytes as lines.
VARNEL_TL1::Parts ReadStrictly(const VARNEL_TL1::Message& message);

#endif
