#include "encoding.h"

#include <strings.h>

#include <cerrno>
#include <cstdint>
#include <new>

#include "utf8.h"

namespace {

bool NamesUtf8(const std::string& name) {
  return strcasecmp(name.c_str(), "UTF-8") == 0 || strcasecmp(name.c_str(), "UTF8") == 0;
}

// iconv_open() returns -1, converted to a pointer, if it fails.
bool IsOpen(iconv_t converter) {
  return reinterpret_cast<intptr_t>(converter) != -1;
}

}  // namespace

std::string Encoding::Check(const std::string& name) {
  iconv_t converter = iconv_open("UTF-8", name.c_str());
  if (!IsOpen(converter)) return "\"" + name + "\" is not an encoding that iconv knows (iconv -l lists them)";
  iconv_close(converter);
  constexpr std::string_view ASCII = "AZaz09 *;<>,:=\"/\r\n";
  return Encoding(name).ToUtf8(ASCII) == ASCII ? "" : "\"" + name + "\" does not extend ASCII, as TL1 needs it";
}

Encoding::Encoding(const std::string& name) {
  if (NamesUtf8(name)) return;
  iconv_t converter = iconv_open("UTF-8", name.c_str());
  if (!IsOpen(converter)) throw std::bad_alloc();
  m_converter.reset(converter);
}

bool Encoding::IsValid(std::string_view text) {
  return m_converter == nullptr ? IsUtf8(text) : Convert(text);
}

std::string_view Encoding::ToUtf8(std::string_view text) {
  if (m_converter == nullptr) return text;
  Convert(text);
  return m_text;
}

// Fills m_text; returns whether all of the text is valid.
bool Encoding::Convert(std::string_view text) {
  bool valid = true;
  m_text.clear();
  iconv(m_converter.get(), nullptr, nullptr, nullptr, nullptr);
  auto* from = const_cast<char*>(text.data());  // iconv() does not write there
  for (size_t left = text.size(); left > 0;) {
    char piece[1024];
    char* to = piece;
    size_t room = sizeof piece;
    const bool failed = iconv(m_converter.get(), &from, &left, &to, &room) == static_cast<size_t>(-1);
    const bool invalid = failed && errno != E2BIG;
    m_text.append(piece, sizeof piece - room);
    if (!invalid) continue;
    m_text += "\xEF\xBF\xBD";
    ++from;
    --left;
    valid = false;
  }
  return valid;
}
