#include "json.h"

#include <array>
#include <iostream>

#include "utf8.h"

namespace {

constexpr bool IsPlain(size_t byte) {
  return byte >= 0x20 && byte < 0x7F && byte != '"' && byte != '\\';
}

constexpr std::array<bool, 256> PlainBytes() {
  std::array<bool, 256> plain = {};
  for (size_t byte = 0; byte < plain.size(); ++byte)
    plain[byte] = IsPlain(byte);
  return plain;
}

constexpr std::array<bool, 256> PLAIN = PlainBytes();

size_t PlainLength(std::string_view text) {
  size_t length = 0;
  while (length < text.size() && PLAIN[static_cast<unsigned char>(text[length])])
    ++length;
  return length;
}

// All characters that need it have numbers below 10000.
void AppendEscape(std::string& json, char32_t point) {
  constexpr char DIGITS[] = "0123456789abcdef";
  json += "\\u";
  for (const unsigned shift : {12U, 8U, 4U, 0U})
    json += DIGITS[point >> shift & 0xF];
}

// Appends the character at the start of a text and returns its length.
size_t AppendCharacter(std::string& json, std::string_view text) {
  const size_t length = CharacterLength(text);
  if (length == 0) {
    json += "\xEF\xBF\xBD";
    return 1;
  }
  const std::string_view character = text.substr(0, length);
  const char32_t point = CodePoint(character);
  if (!IsHarmless(point)) {
    AppendEscape(json, point);
    return length;
  }
  if (point == '"' || point == '\\') json += '\\';
  json += character;
  return length;
}

}  // namespace

void JsonWriter::Writer::Text(std::string_view text) {
  Prefix(rapidjson::kStringType);
  std::string& json = os_->text;
  json += '"';
  while (!text.empty()) {
    const size_t plain = PlainLength(text);
    json.append(text.data(), plain);
    text.remove_prefix(plain);
    if (!text.empty()) text.remove_prefix(AppendCharacter(json, text));
  }
  json += '"';
}

void JsonWriter::Print() {
  m_writer.EndObject();
  m_line.Put('\n');
  std::cout << m_line.text;
  m_line.text.clear();
  m_writer.Reset(m_line);
  m_writer.StartObject();
}
