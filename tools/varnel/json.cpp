#include "json.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <iostream>

#include "utf8.h"

void JsonText::Grow(size_t size) {
  const size_t used = View().size();
  m_memory.resize(2 * m_memory.size() + size);
  m_end = m_memory.data() + used;
  m_limit = m_memory.data() + m_memory.size();
}

namespace {

constexpr bool IsPlain(unsigned char byte) {
  return byte >= 0x20 && byte < 0x7F && byte != '"' && byte != '\\';
}

constexpr std::array<bool, 256> PlainBytes() {
  std::array<bool, 256> plain = {};
  for (size_t byte = 0; byte < plain.size(); ++byte)
    plain[byte] = IsPlain(static_cast<unsigned char>(byte));
  return plain;
}

constexpr std::array<bool, 256> PLAIN = PlainBytes();

using Block = unsigned char __attribute__((vector_size(8)));

// IsPlain() for all bytes at once: most of the time of writing JSON is spent here.
bool IsPlainBlock(const Block& block) {
  const auto special = (block < 0x20) | (block > 0x7E) | (block == '"') | (block == '\\');
  uint64_t any;
  std::memcpy(&any, &special, sizeof any);
  return any == 0;
}

// Copies the plain characters at the start of a text and returns their number.
size_t CopyPlain(std::string_view text, char* to) {
  size_t length = 0;
  for (Block block; text.size() - length >= sizeof block; length += sizeof block) {
    std::memcpy(&block, text.data() + length, sizeof block);
    if (!IsPlainBlock(block)) break;
    std::memcpy(to + length, &block, sizeof block);
  }
  for (; length < text.size() && PLAIN[static_cast<unsigned char>(text[length])]; ++length)
    to[length] = text[length];
  return length;
}

void Append(JsonText& json, std::string_view text) {
  text.copy(json.Room(text.size()), text.size());
  json.Use(text.size());
}

// All characters that need it have numbers below 10000.
void AppendEscape(JsonText& json, char32_t point) {
  constexpr char DIGITS[] = "0123456789abcdef";
  Append(json, "\\u");
  for (const unsigned shift : {12U, 8U, 4U, 0U})
    json.Put(DIGITS[point >> shift & 0xF]);
}

// Appends the character at the start of a text, which is not plain, and returns its length.
size_t AppendCharacter(JsonText& json, std::string_view text) {
  if (text[0] == '"' || text[0] == '\\') {
    json.Put('\\');
    json.Put(text[0]);
    return 1;
  }
  const size_t length = CharacterLength(text);
  if (length == 0) {
    Append(json, "\xEF\xBF\xBD");
    return 1;
  }
  const std::string_view character = text.substr(0, length);
  const char32_t point = CodePoint(character);
  if (IsHarmless(point)) {
    Append(json, character);
  } else {
    AppendEscape(json, point);
  }
  return length;
}

}  // namespace

void JsonWriter::Writer::WriteText(std::string_view text) {
  constexpr size_t MAX_PIECE = 4096;
  os_->Put('"');
  while (!text.empty()) {
    const std::string_view piece = text.substr(0, MAX_PIECE);
    const size_t plain = CopyPlain(piece, os_->Room(piece.size()));
    os_->Use(plain);
    text.remove_prefix(plain);
    if (plain < piece.size()) text.remove_prefix(AppendCharacter(*os_, text));
  }
  os_->Put('"');
}

void JsonWriter::Print() {
  End();
  std::cout << m_text.View();
  Begin();
}

void JsonWriter::AppendTo(std::string& lines) {
  End();
  lines += m_text.View();
  Begin();
}

void JsonWriter::Begin() {
  m_text.Clear();
  m_writer.Reset(m_text);
  m_writer.StartObject();
}

void JsonWriter::End() {
  m_writer.EndObject();
  m_text.Put('\n');
}
