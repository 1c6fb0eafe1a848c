#ifndef VARNEL_COMMON_H
#define VARNEL_COMMON_H

/// @file
/// All public headers of the library.

/// @namespace VARNEL_COMMON
/// The library: texts, paths and time, software files, reports, strict TL1, binary messages, slots and boards.
///
/// Rules for all of it, unless a comment says otherwise:
///
/// - **Failures.** Nothing throws but std::bad_alloc. Bad input leads to a failure result or a fallback; a failure
///   without a result is written to the host's log.
/// - **Threads.** Functions keep no state and are reentrant. An object belongs to one thread at a time, also while it
///   is only read.
/// - **Arguments.** A `const char*` is a NUL-terminated text of any bytes; comments say if it may be null. Outputs
///   that a comment does not mention for a failure keep their value. Nothing refers to an argument after the call.
/// - **Results.** Pointers belong to the object that returned them. Only CEvtMsg::Duplicate() returns an object that
///   the caller owns.
/// - **errno.** An operation that succeeds leaves it as it was.
/// - **Locale and environment.** Neither changes a result, except for the time zone of the time functions. White space
///   is blank, tab, line feed, vertical tab, form feed and carriage return; only ASCII letters have cases.
/// - **Time.** Every operation takes time linear in the size of its arguments.
///
/// docs/pitfalls.md lists the behaviours that can cost data or security.

#include "cmdstr.h"
#include "comnemsg.h"
#include "evtmsg.h"
#include "pkgfile.h"
#include "publicdata.h"
#include "softwarefile.h"
#include "str.h"
#include "tl1nemsgparse.h"
#include "zepv2data.h"

#endif
