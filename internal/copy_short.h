#ifndef VARNEL_INTERNAL_COPY_SHORT_H
#define VARNEL_INTERNAL_COPY_SHORT_H

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace VARNEL_INTERNAL {

/// What CopyShort() copies at most.
constexpr size_t SHORT_COPY = 16;

/// memcpy() of at most SHORT_COPY bytes, with at most two moves of known size that may overlap: for so few bytes a call
/// costs more than the copy.
inline void CopyShort(char* dest, const char* src, size_t size) {
  const auto copyBothEnds = [=](auto unit) {
    auto last = unit;
    std::memcpy(&unit, src, sizeof unit);
    std::memcpy(&last, src + size - sizeof last, sizeof last);
    std::memcpy(dest, &unit, sizeof unit);
    std::memcpy(dest + size - sizeof last, &last, sizeof last);
  };
  if (size >= sizeof(uint64_t)) {
    copyBothEnds(uint64_t{});
  } else if (size >= sizeof(uint32_t)) {
    copyBothEnds(uint32_t{});
  } else if (size >= sizeof(uint16_t)) {
    copyBothEnds(uint16_t{});
  } else if (size != 0) {
    *dest = *src;
  }
}

}  // namespace VARNEL_INTERNAL

#endif
