#ifndef VARNEL_TL1STREAM_H
#define VARNEL_TL1STREAM_H

/// @file
/// All public headers of the stream library.

/// @namespace VARNEL_TL1
/// TL1 as elements really send it: a Framer cuts a stream into messages, a Reader tells their parts, a Joiner puts the
/// parts of an answer together.
///
/// Any bytes are taken, in any cut. Nothing throws but std::bad_alloc, and nothing is logged. Functions are reentrant,
/// an object belongs to one thread at a time.

#include "tl1framer.h"
#include "tl1joiner.h"
#include "tl1reader.h"

#endif
