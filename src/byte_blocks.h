#ifndef VARNEL_SRC_BYTE_BLOCKS_H
#define VARNEL_SRC_BYTE_BLOCKS_H

#include <cstddef>
#include <cstdint>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace VARNEL_COMMON {

/// Texts are looked at in blocks of 16 bytes. A mask tells of each byte of a block whether it is of a kind, the first
/// byte in the lowest bit.
constexpr size_t BLOCK = 16;
constexpr uint32_t WHOLE_BLOCK = 0xFFFF;

/// Which bytes of a block are white space (see IsBlank()), and which of them are no plain blanks.
struct BlankMasks {
  uint32_t blank;
  uint32_t unusual;
};

inline BlankMasks FindBlanks(const char* block) {
#ifdef __SSE2__
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block));
  const __m128i plain = _mm_cmpeq_epi8(bytes, _mm_set1_epi8(' '));
  // Tab to carriage return are the bytes that a shift down by a tab takes to 0 ... 4.
  const __m128i shifted = _mm_sub_epi8(bytes, _mm_set1_epi8('\t'));
  const __m128i unusual = _mm_cmpeq_epi8(_mm_min_epu8(shifted, _mm_set1_epi8('\r' - '\t')), shifted);
  const auto unusualMask = static_cast<uint32_t>(_mm_movemask_epi8(unusual));
  return {static_cast<uint32_t>(_mm_movemask_epi8(plain)) | unusualMask, unusualMask};
#else
  BlankMasks masks{};
  for (size_t i = 0; i < BLOCK; ++i) {
    const bool unusual = block[i] >= '\t' && block[i] <= '\r';
    masks.unusual |= static_cast<uint32_t>(unusual) << i;
    masks.blank |= static_cast<uint32_t>(unusual || block[i] == ' ') << i;
  }
  return masks;
#endif
}

/// Which bytes of a block are `c`.
inline uint32_t FindByte(const char* block, char c) {
#ifdef __SSE2__
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block));
  return static_cast<uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(c))));
#else
  uint32_t mask = 0;
  for (size_t i = 0; i < BLOCK; ++i)
    mask |= static_cast<uint32_t>(block[i] == c) << i;
  return mask;
#endif
}

/// Position of the lowest bit of a mask that is not 0.
inline size_t LowestBit(uint32_t mask) {
  return static_cast<size_t>(__builtin_ctz(mask));
}

/// Position of the highest bit of a mask that is not 0.
inline size_t HighestBit(uint32_t mask) {
  return static_cast<size_t>(31 - __builtin_clz(mask));
}

/// As std::string_view::find(), but faster where `c` stands within a block from `from` on.
inline size_t FindNear(std::string_view text, char c, size_t from) {
  if (from <= text.size() && text.size() - from >= BLOCK) {
    const uint32_t places = FindByte(text.data() + from, c);
    if (places != 0) return from + LowestBit(places);
    from += BLOCK;
  }
  return text.find(c, from);
}

/// Which of the bytes of a text from `at` on are `c`, as far as a block goes.
inline uint32_t PlacesInBlock(std::string_view text, size_t at, char c) {
  const size_t left = text.size() - at;
  if (left >= BLOCK) return FindByte(text.data() + at, c);
  // The last block of a text that has several lies partly in the one before.
  if (at != 0) return FindByte(text.data() + text.size() - BLOCK, c) >> (BLOCK - left);
  uint32_t places = 0;
  for (size_t i = 0; i < left; ++i)
    places |= static_cast<uint32_t>(text[i] == c) << i;
  return places;
}

/// Calls `visit` with each position at which `c` stands, in order.
template <typename Visit>
void ForEachPlace(std::string_view text, char c, Visit visit) {
  for (size_t at = 0; at < text.size(); at += BLOCK) {
    for (uint32_t places = PlacesInBlock(text, at, c); places != 0; places &= places - 1)
      visit(at + LowestBit(places));
  }
}

}  // namespace VARNEL_COMMON

#endif
