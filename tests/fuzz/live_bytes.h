#ifndef VARNEL_FUZZ_LIVE_BYTES_H
#define VARNEL_FUZZ_LIVE_BYTES_H

#include <cstddef>

/// Counts the bytes allocated by operator new in the whole program.
namespace VARNEL_FUZZ {

/// The peak of live bytes since the last ResetPeak().
size_t PeakBytes();

/// Returns the live bytes.
size_t ResetPeak();

}  // namespace VARNEL_FUZZ

#endif
