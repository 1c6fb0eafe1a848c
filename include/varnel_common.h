#ifndef VARNEL_COMMON_H
#define VARNEL_COMMON_H

/// All public headers of the library.

#include "cmdstr.h"
#include "pkgfile.h"
#include "publicdata.h"
#include "str.h"

#endif
