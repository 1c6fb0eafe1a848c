#include "platform/annex_k.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace {

bool Overlap(const void* a, size_t aSize, const void* b, size_t bSize) {
  const auto aStart = reinterpret_cast<uintptr_t>(a);
  const auto bStart = reinterpret_cast<uintptr_t>(b);
  return aStart < bStart ? bStart - aStart < aSize : aStart - bStart < bSize;
}

}  // namespace

int memcpy_s(void* dest, size_t destMax, const void* src, size_t count) {
  if (dest == nullptr) return EINVAL;
  const bool tooLong = count > destMax;
  if (src == nullptr || tooLong || (count > 0 && Overlap(dest, count, src, count))) {
    explicit_bzero(dest, destMax);
    return tooLong ? ERANGE : EINVAL;
  }
  std::memcpy(dest, src, count);
  return 0;
}

int memset_s(void* dest, size_t destMax, int c, size_t count) {
  if (dest == nullptr) return EINVAL;
  const size_t size = std::min(count, destMax);
  if (c == 0) {
    explicit_bzero(dest, size);
  } else {
    std::memset(dest, c, size);
  }
  return count > destMax ? ERANGE : 0;
}

int strncpy_s(char* dest, size_t destMax, const char* src, size_t count) {
  if (dest == nullptr) return EINVAL;
  if (destMax == 0) return src == nullptr ? EINVAL : ERANGE;
  if (src == nullptr) {
    dest[0] = '\0';
    return EINVAL;
  }
  const size_t length = strnlen(src, std::min(count, destMax));
  if (length >= destMax || Overlap(dest, length + 1, src, length)) {
    dest[0] = '\0';
    return length >= destMax ? ERANGE : EINVAL;
  }
  std::memcpy(dest, src, length);
  dest[length] = '\0';
  return 0;
}

int snprintf_s(char* dest, size_t destMax, size_t count, const char* format, ...) {
  if (dest == nullptr || destMax == 0) return -1;
  dest[0] = '\0';
  if (format == nullptr) return -1;
  va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(dest, destMax, format, arguments);
  va_end(arguments);
  if (length < 0 || static_cast<size_t>(length) >= destMax || static_cast<size_t>(length) > count) {
    dest[0] = '\0';
    return -1;
  }
  return length;
}
