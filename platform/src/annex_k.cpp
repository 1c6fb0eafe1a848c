#include "platform/annex_k.h"

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

// strnlen(), which for the usual few characters is not worth a call.
size_t Length(const char* text, size_t limit) {
  constexpr size_t FEW = 16;
  for (size_t i = 0; i < FEW; ++i) {
    if (i == limit || text[i] == '\0') return i;
  }
  return FEW + strnlen(text + FEW, limit - FEW);
}

constexpr size_t SHORT_COPY = 16;

// memcpy() of at most SHORT_COPY bytes, with at most two moves of known size that may overlap: for so few bytes a call
// costs more than the copy.
void CopyShort(char* dest, const char* src, size_t size) {
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

void Copy(void* dest, const void* src, size_t count) {
  if (count <= SHORT_COPY) {
    CopyShort(static_cast<char*>(dest), static_cast<const char*>(src), count);
  } else {
    std::memcpy(dest, src, count);
  }
}

void Fill(void* dest, int c, size_t count) {
  if (c == 0) {
    explicit_bzero(dest, count);
  } else {
    std::memset(dest, c, count);
  }
}

}  // namespace

int memcpy_s(void* dest, size_t destMax, const void* src, size_t count) {
  if (dest == nullptr) return EINVAL;
  const bool tooLong = count > destMax;
  if (src == nullptr || tooLong || (count > 0 && Overlap(dest, count, src, count))) {
    explicit_bzero(dest, destMax);
    return tooLong ? ERANGE : EINVAL;
  }
  Copy(dest, src, count);
  return 0;
}

int memset_s(void* dest, size_t destMax, int c, size_t count) {
  if (dest == nullptr) return EINVAL;
  if (count > destMax) {
    Fill(dest, c, destMax);
    return ERANGE;
  }
  Fill(dest, c, count);
  return 0;
}

int strncpy_s(char* dest, size_t destMax, const char* src, size_t count) {
  if (dest == nullptr) return EINVAL;
  if (destMax == 0) return src == nullptr ? EINVAL : ERANGE;
  if (src == nullptr) {
    dest[0] = '\0';
    return EINVAL;
  }
  // One more character than fits is all that needs to be seen of the text.
  const size_t length = Length(src, count < destMax ? count : destMax);
  if (length >= destMax || Overlap(dest, length + 1, src, length)) {
    dest[0] = '\0';
    return length >= destMax ? ERANGE : EINVAL;
  }
  Copy(dest, src, length);
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
