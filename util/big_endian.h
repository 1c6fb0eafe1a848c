#ifndef VARNEL_UTIL_BIG_ENDIAN_H
#define VARNEL_UTIL_BIG_ENDIAN_H

#include <cstdint>
#include <cstring>

namespace VARNEL_UTIL {

/// Big-endian integers on a machine of any byte order. `bytes` needs no alignment.
inline uint16_t LoadBig16(const void* bytes) {
  unsigned char raw[2];
  std::memcpy(raw, bytes, sizeof raw);
  return static_cast<uint16_t>(raw[0] << 8 | raw[1]);
}

inline uint32_t LoadBig32(const void* bytes) {
  unsigned char raw[4];
  std::memcpy(raw, bytes, sizeof raw);
  return uint32_t{raw[0]} << 24 | uint32_t{raw[1]} << 16 | uint32_t{raw[2]} << 8 | uint32_t{raw[3]};
}

/// Converts a number that was read as big-endian bytes into its value, in place; a second call restores the bytes.
inline void BigToHost(uint16_t& number) {
  number = LoadBig16(&number);
}

inline void BigToHost(uint32_t& number) {
  number = LoadBig32(&number);
}

}  // namespace VARNEL_UTIL

#endif
