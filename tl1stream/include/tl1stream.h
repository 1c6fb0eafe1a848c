#ifndef VARNEL_TL1STREAM_H
#define VARNEL_TL1STREAM_H

/// TL1 as elements really send it: a framer cuts a stream into messages, a reader tells their parts, a joiner puts
/// the parts of an answer together.

#include "tl1framer.h"
#include "tl1joiner.h"
#include "tl1reader.h"

#endif
