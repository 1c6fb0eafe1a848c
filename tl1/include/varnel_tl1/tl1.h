#ifndef VARNEL_TL1_TL1_H
#define VARNEL_TL1_TL1_H

/// @file
/// All public headers of the TL1 library.

/// @namespace VARNEL_TL1
/// TL1 as elements really send it: a Framer cuts a stream into messages and reads their parts, a LineReader and a
/// QuotedText parse texts, a Joiner joins the parts of an answer, Alarms keeps the active alarms, and Atags finds
/// missing messages. A Session sends Commands to an element and matches the answers.
///
/// Any bytes are accepted, cut into pieces anywhere. Nothing throws but std::bad_alloc, and nothing is logged.
/// Functions are reentrant, an object belongs to one thread at a time.

#include "alarms.h"
#include "atags.h"
#include "command.h"
#include "framer.h"
#include "joiner.h"
#include "message.h"
#include "session.h"
#include "text.h"

#endif
