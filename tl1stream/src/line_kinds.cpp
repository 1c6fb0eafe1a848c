#include "line_kinds.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace VARNEL_TL1 {

namespace {

constexpr size_t MAX_PROMPT = 32;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsUpper(char c) {
  return c >= 'A' && c <= 'Z';
}
bool IsLetter(char c) {
  return IsUpper(c) || (c >= 'a' && c <= 'z');
}
bool IsWordCharacter(char c) {
  return IsLetter(c) || IsDigit(c) || c == '-' || c == '_' || c == '.';
}
template <typename Predicate>
bool AllOf(std::string_view text, Predicate predicate) {
  return !text.empty() && std::all_of(text.begin(), text.end(), predicate);
}
bool IsOneOf(std::string_view word, std::initializer_list<std::string_view> words) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

std::string_view TakeLastWord(std::string_view& line) {
  line = Trimmed(line);
  const size_t blank = line.find_last_of(" \t");
  const size_t begin = blank == std::string_view::npos ? 0 : blank + 1;
  const std::string_view word = line.substr(begin);
  line = Trimmed(line.substr(0, begin));
  return word;
}

// How many groups of digits a word has; 0 when it holds anything but digits and single separators.
size_t DigitGroups(std::string_view word, std::string_view separators) {
  size_t groups = 0;
  bool inGroup = false;
  for (const char c : word) {
    if (IsDigit(c)) {
      groups += inGroup ? 0U : 1U;
      inGroup = true;
    } else {
      if (!inGroup || separators.find(c) == std::string_view::npos) return 0;
      inGroup = false;
    }
  }
  return inGroup ? groups : 0;
}

bool IsDate(std::string_view word) {
  return word.size() >= 6 && word.size() <= 10 && DigitGroups(word, "-/.") == 3;
}

bool IsTime(std::string_view word) {
  const size_t fraction = std::min(word.find_first_of(".,"), word.size());
  const size_t groups = DigitGroups(word.substr(0, fraction), ":");
  const bool wholeFraction = fraction == word.size() || AllOf(word.substr(fraction + 1), IsDigit);
  return word.size() <= 16 && (groups == 2 || groups == 3) && wholeFraction;
}

bool IsAlarmCode(std::string_view word) {
  return word.size() <= 2 && AllOf(word, [](char c) { return IsUpper(c) || c == '*' || c == '^'; });
}

bool BeginsVerb(std::string_view word) {
  return IsOneOf(word, {"REPT", "CANC", "RPT"});
}

bool HasDigit(std::string_view word) {
  return std::any_of(word.begin(), word.end(), IsDigit);
}

bool IsCompletionCode(std::string_view code) {
  return IsOneOf(code, {"COMPLD", "DENY", "PRTL", "DELAY", "RTRV"});
}

size_t BlanksAt(std::string_view line, size_t pos) {
  while (pos < line.size() && IsBlank(line[pos]))
    ++pos;
  return pos;
}

// End of a prompt such as "NE1>" or "TL1>>", 0 where there is none.
size_t NamedPromptEnd(std::string_view line) {
  const size_t mark = line.substr(0, MAX_PROMPT).find('>');
  if (mark == std::string_view::npos || !AllOf(line.substr(0, mark), IsWordCharacter)) return 0;
  return std::min(line.find_first_not_of('>', mark), line.size());
}

}  // namespace

std::string_view Trimmed(std::string_view line) {
  constexpr std::string_view BLANKS(" \t\0", 3);
  const size_t begin = line.find_first_not_of(BLANKS);
  if (begin == std::string_view::npos) return {};
  return line.substr(begin, line.find_last_not_of(BLANKS) + 1 - begin);
}

std::string_view TakeWord(std::string_view& line) {
  line.remove_prefix(BlanksAt(line, 0));
  const std::string_view word = line.substr(0, line.find_first_of(" \t"));
  line.remove_prefix(word.size());
  return word;
}

std::string_view TakeLine(std::string_view& text) {
  const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
  text.remove_prefix(line.size());
  if (text.empty()) return line;
  const bool carriageReturn = text.front() == '\r';
  text.remove_prefix(1);
  while (carriageReturn && !text.empty() && text.front() == '\0')
    text.remove_prefix(1);
  if (carriageReturn && !text.empty() && text.front() == '\n') text.remove_prefix(1);
  return line;
}

std::optional<HeaderLine> ReadHeader(std::string_view line) {
  HeaderLine header;
  header.time = TakeLastWord(line);
  if (!IsTime(header.time)) return std::nullopt;
  header.date = TakeLastWord(line);
  if (!IsDate(header.date)) return std::nullopt;
  header.sid = line;
  return header;
}

std::optional<ResponseLine> ReadResponse(std::string_view line) {
  line = Trimmed(line);
  if (TakeWord(line) != "M") return std::nullopt;
  ResponseLine response;
  response.ctag = TakeWord(line);
  response.code = Trimmed(line);
  if (response.code.empty()) std::swap(response.ctag, response.code);
  if (response.code.empty()) return std::nullopt;
  return response;
}

std::optional<AutonomousLine> ReadAutonomous(std::string_view line) {
  line = Trimmed(line);
  AutonomousLine event;
  event.code = TakeWord(line);
  if (!IsAlarmCode(event.code)) return std::nullopt;
  const std::string_view rest = Trimmed(line);
  event.atag = TakeWord(line);
  event.verb = Trimmed(line);
  if (BeginsVerb(event.atag)) {
    event.atag = {};
    event.verb = rest;
  }
  if (event.verb.empty()) return std::nullopt;
  return event;
}

std::optional<AcknowledgementLine> ReadAcknowledgement(std::string_view line) {
  AcknowledgementLine acknowledgement;
  line = Trimmed(line);
  acknowledgement.code = TakeWord(line);
  acknowledgement.ctag = Trimmed(line);
  const bool twoLetters = acknowledgement.code.size() == 2 && AllOf(acknowledgement.code, IsUpper);
  if (!twoLetters || acknowledgement.ctag.find_first_of(" \t") != std::string_view::npos) return std::nullopt;
  if (acknowledgement.ctag.empty() && !IsKnownAcknowledgement(acknowledgement.code)) return std::nullopt;
  return acknowledgement;
}

bool IsKnownAcknowledgement(std::string_view code) {
  return IsOneOf(code, {"IP", "PF", "OK", "NA", "NG", "RL"});
}

bool IsSureIdentification(std::string_view line) {
  if (const auto response = ReadResponse(line)) return IsCompletionCode(response->code);
  const auto event = ReadAutonomous(line);
  if (!event) return false;
  std::string_view verb = event->verb;
  return BeginsVerb(TakeWord(verb)) && (event->atag.empty() || HasDigit(event->atag));
}

bool IsIdentification(std::string_view line) {
  return ReadResponse(line).has_value() || ReadAutonomous(line).has_value();
}

bool CanEndMessage(std::string_view line) {
  const auto isClean = [](char c) { return IsUpper(c) || IsDigit(c) || c == '-' || IsBlank(c); };
  if (const auto response = ReadResponse(line)) return AllOf(response->code, isClean);
  const auto event = ReadAutonomous(line);
  return event && AllOf(event->verb, isClean);
}

bool IsCommand(std::string_view line) {
  line = Trimmed(line);
  if (line.size() < 4 || line.back() != ';' || !IsLetter(line.front())) return false;
  const std::string_view verb = line.substr(0, line.find_first_of(":;"));
  return AllOf(verb, IsWordCharacter) && (verb.size() < line.size() - 1 || verb.find('-') != std::string_view::npos);
}

size_t PromptLength(std::string_view line) {
  size_t end = 0;
  while (end < line.size() && (line[end] == ';' || line[end] == '<' || line[end] == '>'))
    end = BlanksAt(line, end + 1);
  if (end > 0) return end;
  end = NamedPromptEnd(line);
  return end > 0 ? BlanksAt(line, end) : 0;
}

bool LooksLikeStart(std::string_view line) {
  line.remove_prefix(PromptLength(line));
  if (ReadHeader(line) || IsCommand(line) || IsSureIdentification(line)) return true;
  const auto acknowledgement = ReadAcknowledgement(line);
  return acknowledgement && IsKnownAcknowledgement(acknowledgement->code);
}

}  // namespace VARNEL_TL1
