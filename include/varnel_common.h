#ifndef VARNEL_COMMON_H
#define VARNEL_COMMON_H

/// All public headers of the library.

#include "cmdstr.h"
#include "comnemsg.h"
#include "evtmsg.h"
#include "pkgfile.h"
#include "publicdata.h"
#include "str.h"
#include "tl1nemsgparse.h"
#include "zepv2data.h"

#endif
