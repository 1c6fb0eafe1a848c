#ifndef VARNEL_TOOLS_TL1_OUTPUT_H
#define VARNEL_TOOLS_TL1_OUTPUT_H

#include <varnel_tl1/message.h>

#include "output.h"

/// A message as one JSON object.
Json MessageToJson(const VARNEL_TL1::Message& message);

/// Prints a message for people: a line with type, code and tags, one with its origin, and its text.
void PrintBlock(const VARNEL_TL1::Message& message);

#endif
