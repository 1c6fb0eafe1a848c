#ifndef VARNEL_SRC_PRODUCTDATA_H
#define VARNEL_SRC_PRODUCTDATA_H

#include <string_view>

namespace VARNEL_COMMON {

/// Product names, as patterns for strmcmpnocase(), in lower case.
constexpr char KORVANE_NAME[] = "*kva*4210*";

/// System-control boards, in the order in which they are tried. Names without "*" match only as a whole.
constexpr std::string_view SCC_BOARD_NAMES[] = {
    "*scc*", "*sce*", "*vmcu*", "*vscu*", "vnctl201", "vnmcp01", "vnmcp02", "*vnmcx10*", "vnstg01", "vnstg02", "vcu",
    "vcua",  "vcub",  "vcuc",   "vcud",   "vcue",     "vpu",     "vmu",     "vmua",      "61vcu",   "vb21",    "vb22",
};

}  // namespace VARNEL_COMMON

#endif
