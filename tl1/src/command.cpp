#include "command.h"

#include "chars.h"
#include "command_text.h"

namespace VARNEL_TL1 {

namespace {

constexpr size_t NONE = std::string_view::npos;
constexpr char TOO_LONG[] = "longer than 10485760 bytes";

// The first ":" or ";" outside quotes from `begin` on, or the size of the text; NONE if a quotation has no end.
size_t BlockEnd(std::string_view text, size_t begin) {
  for (size_t i = begin; i < text.size(); ++i) {
    if (text[i] == ':' || text[i] == ';') return i;
    if (text[i] == '"') i = FindQuote(text, i + 1);
    if (i >= text.size()) return NONE;
  }
  return text.size();
}

bool IsNameCharacter(char c) {
  return IsLetter(c) || IsDigit(c) || c == '-' || c == '_';
}

bool IsName(std::string_view text) {
  return AllOf(text, IsNameCharacter) && IsLetter(text.front());
}

bool IsTagCharacter(char c) {
  return IsNameCharacter(c) || c == '.';
}

bool IsPlainCharacter(char c) {
  return IsTagCharacter(c) || c == '/';
}

const char* BlockFault(size_t number, std::string_view block) {
  if (number == Command::VERB && !IsName(block))
    return "no verb (expected a letter, then letters, digits, \"-\", \"_\")";
  if (number == Command::CTAG && !block.empty() && !AllOf(block, IsTagCharacter))
    return "bad ctag (expected letters, digits, \"-\", \"_\", \".\")";
  return nullptr;
}

// Cuts a command before its ";".
const char* Check(std::string_view& text) {
  if (text.size() > Command::MAX_LENGTH) return TOO_LONG;
  if (AnyOf(text, IsUnsendable)) return "control character or byte 255";
  for (size_t number = 0, begin = 0;; ++number) {
    const size_t end = BlockEnd(text, begin);
    if (end == NONE) return "quotation without end";
    const char* const fault = BlockFault(number, text.substr(begin, end - begin));
    if (fault != nullptr) return fault;
    if (end < text.size() && text[end] == ':') {
      begin = end + 1;
      continue;
    }
    if (end + 1 < text.size()) return "text after the \";\"";
    text = text.substr(0, end);
    return text.size() == Command::MAX_LENGTH ? TOO_LONG : nullptr;
  }
}

std::string_view WithoutSemicolon(std::string_view text) {
  return text.substr(0, text.empty() ? 0 : text.size() - 1);
}

// Finds a block of a checked text without ";". Returns how many blocks are missing; 0 if it was found.
size_t FindBlock(std::string_view text, size_t number, size_t& begin, size_t& end) {
  begin = 0;
  for (size_t i = 0;; ++i) {
    end = BlockEnd(text, begin);
    if (i == number || end == text.size()) return number - i;
    begin = end + 1;
  }
}

void Replace(VARNEL_COMMON::CCmdStr& text, std::string_view checked) {
  WipedText whole;
  whole.Append(checked);
  constexpr char END[] = ";";
  whole.Append({END, sizeof END});  // a C string
  text.SetMsg(whole.View().data());
}

}  // namespace

void AppendQuoted(std::string_view value, WipedText& text) {
  text.Append("\"");
  for (const char& c : value) {
    if (c == '"' || c == '\\') text.Append("\\");
    text.Append({&c, 1});
  }
  text.Append("\"");
}

bool HasPassword(std::string_view verb) {
  for (const std::string_view name : {"ACT-USER", "ED-PID", "ENT-USER-SECU", "ED-USER-SECU"}) {
    if (IsSameIgnoringCase(verb, name)) return true;
  }
  return false;
}

Command& Command::operator=(const Command& other) {
  if (this != &other && other.Text().empty()) m_text.EmptyMsg();
  m_text = other.m_text;  // unchanged if the other one is empty
  return *this;
}

const char* Command::Parse(std::string_view text) {
  while (!text.empty() && text.front() == ' ')
    text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ')
    text.remove_suffix(1);
  const char* const fault = Check(text);
  if (fault == nullptr) Replace(m_text, text);
  return fault;
}

const char* Command::SetBlock(size_t number, std::string_view block) {
  if (number >= MAX_LENGTH) return TOO_LONG;
  const size_t blockEnd = BlockEnd(block, 0);
  if (blockEnd == NONE) return "quotation without end";
  if (blockEnd != block.size()) return "\":\" or \";\" outside quotes";
  const std::string_view text = WithoutSemicolon(Text());
  size_t begin = 0, end = 0;
  const size_t missing = FindBlock(text, number, begin, end);
  WipedText whole;
  whole.Append(text.substr(0, missing == 0 ? begin : end));
  for (size_t i = 0; i < missing; ++i)
    whole.Append(":");
  whole.Append(block);
  whole.Append(text.substr(end));
  std::string_view checked = whole.View();
  const char* const fault = Check(checked);
  if (fault == nullptr) Replace(m_text, checked);
  return fault;
}

const char* Command::SetParameters(size_t number, const std::vector<Parameter>& parameters) {
  WipedText block;
  for (const Parameter& parameter : parameters) {
    if (&parameter != &parameters.front()) block.Append(",");
    if (!parameter.name.empty()) {
      if (!IsName(parameter.name)) return "bad parameter name (expected a letter, then letters, digits, \"-\", \"_\")";
      block.Append(parameter.name);
      block.Append("=");
    }
    const bool plain = parameter.value.empty() || AllOf(parameter.value, IsPlainCharacter);
    plain ? block.Append(parameter.value) : AppendQuoted(parameter.value, block);
  }
  return SetBlock(number, block.View());
}

std::string_view Command::Block(size_t number) const {
  const std::string_view text = WithoutSemicolon(Text());
  size_t begin = 0, end = 0;
  return FindBlock(text, number, begin, end) == 0 ? text.substr(begin, end - begin) : std::string_view();
}

std::string_view Command::Text() const {
  return {m_text.GetMsg(), m_text.GetMsgLen()};
}

std::string Command::Masked() const {
  const std::string_view text = Text(), password = Block(DATA);
  if (password.empty() || !HasPassword(Block(VERB))) return std::string(text);
  const auto begin = static_cast<size_t>(password.data() - text.data());
  return std::string(text.substr(0, begin)) + "******" + std::string(text.substr(begin + password.size()));
}

}  // namespace VARNEL_TL1
