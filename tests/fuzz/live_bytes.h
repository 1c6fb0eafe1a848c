#ifndef VARNEL_FUZZ_LIVE_BYTES_H
#define VARNEL_FUZZ_LIVE_BYTES_H

#include <cstddef>

/// Counts what operator new of the whole program has given out.
namespace VARNEL_FUZZ {

/// The most bytes that were live at once since the last ResetPeak().
size_t PeakBytes();

/// Gives the bytes that are live now.
size_t ResetPeak();

}  // namespace VARNEL_FUZZ

#endif
