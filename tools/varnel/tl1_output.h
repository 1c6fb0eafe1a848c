#ifndef VARNEL_TOOLS_TL1_OUTPUT_H
#define VARNEL_TOOLS_TL1_OUTPUT_H

#include <tl1reader.h>

#include "output.h"

/// A message as one JSON object.
Json PartsToJson(const VARNEL_TL1::Parts& parts);

/// Prints a message for people: a line with type, code and tags, one with its origin, and its text.
void PrintBlock(const VARNEL_TL1::Parts& parts);

#endif
