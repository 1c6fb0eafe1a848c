#include "str.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <optional>

#include <ace/Recursive_Thread_Mutex.h>

#include "chars.h"
#include "common.h"
#include "find.h"
#include "piece.h"
#include "platform/ns_util.h"
#include "replace.h"
#include "stream_reader.h"
#include "tl1_attribute.h"
#include "wildcard.h"

namespace VARNEL_COMMON {

using VARNEL_INTERNAL::Finder;
using VARNEL_INTERNAL::FindLinear;

namespace {

// Part of the module by convention; no operation takes it.
[[maybe_unused]] ACE_Recursive_Thread_Mutex g_mutex;

// Writes a collapsed text over the text that it is read from, a block at a time.
class Collapser {
 public:
  explicit Collapser(char* text) : m_start(text), m_end(text) {}

  // Packs the stretches that stay, each with a copy of known size, so that more than the stretch is copied.
  void AddBlock(const char* text) {
    char block[2 * BLOCK];
    std::memcpy(block, text, BLOCK);
    const BlankMasks masks = FindBlanks(block);
    for (uint32_t unusual = masks.unusual; unusual != 0; unusual &= unusual - 1)
      block[LowestBit(unusual)] = ' ';
    uint32_t kept = WHOLE_BLOCK & ~(masks.blank & (masks.blank << 1 | static_cast<uint32_t>(m_blankBefore)));
    m_blankBefore = (masks.blank >> (BLOCK - 1)) != 0;
    // Written in place where that overwrites nothing but what has been read, which is soon so.
    char aside[2 * BLOCK];
    char* packed = text - m_end >= std::ptrdiff_t{BLOCK} ? m_end : aside;
    size_t size = 0;
    while (kept != 0) {
      const size_t start = LowestBit(kept);
      std::memcpy(packed + size, block + start, BLOCK);
      size += LowestBit(~(kept >> start));
      kept &= kept + (uint32_t{1} << start);  // takes the lowest stretch away
    }
    if (packed == aside) std::memcpy(m_end, aside, BLOCK);
    m_end += size;
  }

  void Add(char c) {
    const bool blank = IsBlank(c);
    *m_end = blank ? ' ' : c;
    m_end += blank && m_blankBefore ? 0 : 1;
    m_blankBefore = blank;
  }

  size_t Size() const { return static_cast<size_t>(m_end - m_start); }

 private:
  char* m_start;
  char* m_end;
  bool m_blankBefore = true;  // also in front of the text, which so loses its leading blanks
};

std::vector<std::string> Split(std::string_view text, char sep) {
  std::vector<std::string> fields;
  fields.reserve(static_cast<size_t>(std::count(text.begin(), text.end(), sep)) + 1);
  size_t start = LeadingBlanks(text);
  ForEachPlace(text, sep, [&](size_t end) {
    if (end < start) return;  // a separator that is white space is itself skipped in front of a field
    AppendPiece(fields, text, start, end - start);
    start = end + 1;
    if (start < text.size() && IsBlank(text[start])) start += LeadingBlanks(text.substr(start));
  });
  AppendPiece(fields, text, start, text.size() - start);
  return fields;
}

}  // namespace

void StrTrimLeft(std::string& s) {
  s.erase(0, LeadingBlanks(s));
}

void StrTrimRight(std::string& s) {
  s.resize(LengthWithoutTrailingBlanks(s));
}

void StrTrim(std::string& s) {
  StrTrimLeft(s);
  StrTrimRight(s);
}

int strmcmp(const char* text, const char* pattern) {
  return NS_UTIL::RepalaceSensInfo().strmcmp(text, pattern);
}

int strmcmpnocase(const char* text, const char* pattern) {
  return text != nullptr && pattern != nullptr && MatchesNoCase(text, pattern) ? 1 : 0;
}

void freeArray(void** array) {
  if (array == nullptr) return;
  for (void** element = array; *element != nullptr; ++element) {
    std::free(*element);
    *element = nullptr;
  }
  std::free(array);
}

void ReplaceString(std::string& s, const std::string& from, const std::string& to) {
  if (from.empty()) return;
  const Finder finder(from);
  const size_t firstHit = finder.Find(s);
  // A `to` that holds `from` would go on for ever.
  if (firstHit != std::string::npos && finder.Find(to) == std::string::npos) {
    ReplaceRepeatedly(s, finder, to, firstHit);
  }
}

void StrCollapse(std::string& s) {
  Collapser collapser(s.data());
  const char* next = s.data();
  const char* end = next + s.size();
  for (; static_cast<size_t>(end - next) >= BLOCK; next += BLOCK)
    collapser.AddBlock(next);
  while (next != end)
    collapser.Add(*next++);
  s.resize(LengthWithoutTrailingBlanks({s.data(), collapser.Size()}));
}

void toUpperCase(std::string& s) {
  constexpr size_t STRIDE = 16;  // a known number of turns is done in one go
  char* next = s.data();
  char* end = next + s.size();
  for (; static_cast<size_t>(end - next) >= STRIDE; next += STRIDE) {
    for (size_t i = 0; i < STRIDE; ++i)
      next[i] = ToUpper(next[i]);
  }
  std::transform(next, end, next, ToUpper);
}

std::string replaceEnterWithBlank(const char* text) {
  std::string cleaned;
  if (text == nullptr) return cleaned;
  cleaned.reserve(std::strlen(text));
  for (; *text != '\0'; ++text) {
    const char c = *text == '\r' ? ' ' : *text;
    const bool dropped = c == '\n' || (c == ' ' && !cleaned.empty() && cleaned.back() == ' ');
    if (!dropped) cleaned.push_back(c);
  }
  return cleaned;
}

bool GetTL1AttrbuteString(const char* text, const std::string& name, std::string& value) {
  const std::string_view all = text == nullptr ? "" : text;
  const size_t found = name.empty() ? std::string_view::npos : FindLinear(all, name);
  const auto part = found == std::string_view::npos ? std::nullopt : AttributeValue(all, found, name.size());
  value.assign(part.value_or(std::string_view()));
  return part.has_value();
}

void SplitStringByChar(const char* text, char sep, std::vector<std::string>& fields) {
  if (text == nullptr) return;
  // Growing the vector itself would move the text away where it belongs to one of the elements, and memory that runs
  // out half-way would leave some of the fields in it.
  std::vector<std::string> added = Split(text, sep);
  if (fields.empty()) {
    fields.swap(added);
    return;
  }
  fields.insert(fields.end(), std::make_move_iterator(added.begin()), std::make_move_iterator(added.end()));
}

template <typename T>
void ConvertFromString(const char* text, T& value) {
  if (text != nullptr) StreamReader(text).Read(value);
}

template void ConvertFromString<unsigned int>(const char* text, unsigned int& value);
template void ConvertFromString<char>(const char* text, char& value);
template void ConvertFromString<unsigned short>(const char* text, unsigned short& value);

}  // namespace VARNEL_COMMON
