#include "lines.h"

#include <algorithm>
#include <utility>

#include "chars.h"

namespace VARNEL_TL1 {

namespace {

constexpr size_t MAX_PROMPT = 32;
constexpr char ESCAPE = '\x1B';

bool IsWordCharacter(char c) {
  return IsLetter(c) || IsDigit(c) || c == '-' || c == '_' || c == '.';
}
template <typename... Words>
bool IsOneOf(std::string_view word, const Words&... words) {
  return ((word == std::string_view(words)) || ...);
}
bool IsReportVerb(std::string_view word) {
  return IsOneOf(word, "REPT", "CANC");
}
bool IsCompletionCode(std::string_view code) {
  return IsOneOf(code, "COMPLD", "DENY", "PRTL", "DELAY", "RTRV");
}

bool IsWithin(char c, char low, char high) {
  return c >= low && c <= high;
}

// The text without the terminal control sequences at its beginning: ESC [ 0 1 ; 3 1 m, ESC ( B.
std::string_view WithoutControlsInFront(std::string_view text) {
  while (text.size() >= 3 && text[0] == ESCAPE && (text[1] == '[' || IsWithin(text[1], ' ', '/'))) {
    size_t end = 2;
    while (end < text.size() && IsWithin(text[end], ' ', '?'))
      ++end;
    if (end == text.size()) break;
    text.remove_prefix(end + 1);
  }
  return text;
}

// Length of the terminal control sequence at the end of a text, 0 without one.
size_t ControlLengthAtEnd(std::string_view text) {
  if (text.size() < 3 || !IsWithin(text.back(), '0', '~')) return 0;
  size_t begin = text.size() - 1;
  while (begin > 0 && IsWithin(text[begin - 1], ' ', '?'))
    --begin;
  if (begin > 1 && text[begin - 1] == '[') --begin;
  const bool longEnough = text.size() - begin >= 2;
  return longEnough && begin > 0 && text[begin - 1] == ESCAPE ? text.size() - begin + 1 : 0;
}

std::string_view TrimmedEnd(std::string_view text) {
  text = WithoutBlankEnd(text);
  for (size_t length; (length = ControlLengthAtEnd(text)) > 0;)
    text = WithoutBlankEnd(text.substr(0, text.size() - length));
  return text;
}

std::string_view TrimmedFront(std::string_view line) {
  line = WithoutIndent(line);
  for (size_t size = line.size() + 1; !line.empty() && line.front() == ESCAPE && line.size() < size;) {
    size = line.size();
    line = WithoutIndent(WithoutControlsInFront(line));
  }
  return line;
}

std::string_view TakeWord(std::string_view& line) {
  line = WithoutIndent(line);
  size_t end = 0;
  while (end < line.size() && !IsBlank(line[end]))
    ++end;
  const std::string_view word = line.substr(0, end);
  line.remove_prefix(end);
  return word;
}

std::string_view TakeLastWord(std::string_view& line) {
  line = TrimmedEnd(line);
  size_t begin = line.size();
  while (begin > 0 && !IsBlank(line[begin - 1]))
    --begin;
  const std::string_view word = line.substr(begin);
  line = line.substr(0, begin);
  return WithoutControlsInFront(word);
}

// Removes groups of digits, separated by one separator each, from the front of a word; returns their number.
size_t TakeDigitGroups(std::string_view& word, std::string_view separators) {
  size_t groups = 0;
  for (size_t end = 0;;) {
    const size_t begin = end;
    while (end < word.size() && IsDigit(word[end]))
      ++end;
    if (end == begin) return 0;
    ++groups;
    if (end == word.size() || separators.find(word[end]) == std::string_view::npos) {
      word.remove_prefix(end);
      return groups;
    }
    ++end;
  }
}

bool IsDate(std::string_view word) {
  return word.size() >= 6 && word.size() <= 10 && TakeDigitGroups(word, "-/.") == 3 && word.empty();
}

// "PM", "UTC", "+02:00", "GMT+1"
bool IsZone(std::string_view word) {
  const auto inZone = [](char c) { return IsLetter(c) || IsDigit(c) || c == '+' || c == '-' || c == ':' || c == '.'; };
  return word.size() <= 9 && AllOf(word, inZone) && !IsDigit(word.front());
}

bool IsTime(std::string_view word) {
  if (word.size() > 24) return false;
  const size_t groups = TakeDigitGroups(word, ":");
  if (groups != 2 && groups != 3) return false;
  if (!word.empty() && (word.front() == '.' || word.front() == ',')) {
    word.remove_prefix(1);
    if (TakeDigitGroups(word, "") == 0) return false;
  }
  return word.empty() || IsZone(word);
}

// Removes the time, and up to two words after it, from the end of a line: "12:00:07", "12:00:07 PM EST".
std::string_view TakeTime(std::string_view& line) {
  line = TrimmedEnd(line);
  const std::string_view whole = line;
  for (int words = 0; words < 3; ++words) {
    const std::string_view word = TakeLastWord(line);
    if (IsTime(word)) return whole.substr(static_cast<size_t>(word.data() - whole.data()));
    if (!IsZone(word)) break;
  }
  return {};
}

std::string_view SidOf(std::string_view text) {
  text = Trimmed(text);
  if (text.size() >= 2 && text.front() == '"' && text.back() == '"') text = Trimmed(text.substr(1, text.size() - 2));
  return text;
}

// True if a text has a digit for each "0" of a pattern and is equal to it elsewhere.
bool Fits(std::string_view text, std::string_view pattern) {
  for (size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] == '0' ? !IsDigit(text[i]) : text[i] != pattern[i]) return false;
  }
  return true;
}

// The usual form, "   NE1 26-01-15 12:00:07", at about a tenth of the cost of the general one.
bool ReadUsualHeader(std::string_view line, HeaderLine& header) {
  constexpr std::string_view TIME = " 00:00:00", DATE = " 00-00-00", CENTURY = " 0000-00-00";
  if (line.size() < CENTURY.size() + TIME.size() || !Fits(line.substr(line.size() - TIME.size()), TIME)) return false;
  const std::string_view front = line.substr(0, line.size() - TIME.size());
  size_t dateLength = DATE.size();
  if (!Fits(front.substr(front.size() - dateLength), DATE)) {
    dateLength = CENTURY.size();
    if (!Fits(front.substr(front.size() - dateLength), CENTURY)) return false;
  }
  header.time = line.substr(line.size() - TIME.size() + 1);
  header.date = front.substr(front.size() - dateLength + 1);
  header.sid = SidOf(front.substr(0, front.size() - dateLength));
  return true;
}

bool IsAlarmCharacter(char c) {
  return IsUpper(c) || c == '*' || c == '^';
}

// These expect a trimmed line.

// "M  12 COMPLD"
bool ReadResponse(std::string_view line, bool afterHeader, Identification& found) {
  if (TakeWord(line) != "M") return false;
  found.type = MessageType::Response;
  found.tag = TakeWord(line);
  found.code = TrimmedFront(line);
  found.verb = {};
  if (found.code.empty()) std::swap(found.tag, found.code);
  return IsCompletionCode(found.code) || (afterHeader && !found.tag.empty());
}

// "*C 12 REPT ALM EQPT", "**12 REPT ALM EQPT", "A  REPT EVT"
bool ReadAutonomous(std::string_view line, bool afterHeader, Identification& found) {
  size_t codeLength = 0;
  while (codeLength < line.size() && IsAlarmCharacter(line[codeLength]))
    ++codeLength;
  if (codeLength == 0 || codeLength > 2 || codeLength == line.size()) return false;
  const bool joined = IsDigit(line[codeLength]);
  if (!joined && !IsBlank(line[codeLength]) && line[codeLength] != ESCAPE) return false;
  found.type = MessageType::Autonomous;
  found.code = line.substr(0, codeLength);
  line = TrimmedFront(line.substr(codeLength));
  found.verb = line;
  found.tag = TakeWord(line);
  if (IsReportVerb(found.tag)) {
    found.tag = {};
    return true;
  }
  found.verb = TrimmedFront(line);
  if (!AnyOf(found.tag, IsDigit)) return false;
  return IsReportVerb(TakeWord(line)) || (afterHeader && !joined && !found.verb.empty() && IsUpper(found.verb.front()));
}

bool ReadWhole(std::string_view line, bool afterHeader, Identification& found) {
  const std::string_view text = Trimmed(line);
  if (text.size() < 3) return false;
  return text[0] == 'M' && IsBlank(text[1]) ? ReadResponse(text, afterHeader, found)
                                            : ReadAutonomous(text, afterHeader, found);
}

// After such a code or verb a ";" ends the message.
bool IsClean(const Identification& identification) {
  const auto clean = [](char c) { return IsUpper(c) || IsDigit(c) || c == '-' || IsBlank(c); };
  return AllOf(identification.verb.empty() ? identification.code : identification.verb, clean);
}

// End of a prompt such as "NE1>" or "TL1>>", 0 without one.
size_t NamedPromptEnd(std::string_view line) {
  const size_t mark = line.substr(0, MAX_PROMPT).find('>');
  if (mark == std::string_view::npos || !AllOf(line.substr(0, mark), IsWordCharacter)) return 0;
  return std::min(line.find_first_not_of('>', mark), line.size());
}

size_t BlanksAt(std::string_view line, size_t pos) {
  while (pos < line.size() && IsBlank(line[pos]))
    ++pos;
  return pos;
}

// Length of the line end at the end of a text.
size_t LineEndLength(std::string_view text) {
  if (text.empty() || !IsLineEnd(text.back())) return 0;
  return text.back() == '\n' && text.size() > 1 && text[text.size() - 2] == '\r' ? 2 : 1;
}

}  // namespace

std::string_view Trimmed(std::string_view line) {
  return TrimmedEnd(TrimmedFront(line));
}

bool IsUnindented(std::string_view line) {
  line = WithoutControlsInFront(line);
  return !line.empty() && !IsBlank(line.front());
}

bool ReadHeader(std::string_view line, HeaderLine& header) {
  if (line.size() > MAX_LINE || line.empty() || line.back() == '"') return false;
  if (ReadUsualHeader(line, header)) return true;
  header.time = TakeTime(line);
  if (header.time.empty()) return false;
  header.date = TakeLastWord(line);
  if (!IsDate(header.date)) return false;
  header.sid = SidOf(line);
  return true;
}

size_t HeaderLead(std::string_view before) {
  const size_t last = LineEndLength(before);
  return last + LineEndLength(before.substr(0, before.size() - last));
}

bool BeginsStrictHeader(std::string_view before, std::string_view line) {
  constexpr std::string_view INDENT = "   ";
  const bool indented = line.size() > INDENT.size() && line.substr(0, INDENT.size()) == INDENT;
  return indented && !IsBlank(line[INDENT.size()]) && HeaderLead(before) > LineEndLength(before);
}

bool IsStrictHeader(std::string_view before, std::string_view line) {
  HeaderLine header;
  return BeginsStrictHeader(before, line) && ReadHeader(line, header) && !header.sid.empty();
}

bool ReadIdentification(std::string_view line, bool afterHeader, Identification& identification) {
  const size_t semicolon = line.substr(0, MAX_LINE).find(';');
  if (semicolon != std::string_view::npos && ReadWhole(line.substr(0, semicolon), afterHeader, identification) &&
      IsClean(identification)) {
    identification.length = semicolon + 1;
    identification.ended = true;
    return true;
  }
  identification.length = line.size();
  identification.ended = false;
  return line.size() <= MAX_LINE && ReadWhole(line, afterHeader, identification);
}

bool ReadAcknowledgement(std::string_view line, AcknowledgementLine& acknowledgement) {
  if (line.size() > MAX_LINE) return false;
  line = Trimmed(line);
  acknowledgement.code = TakeWord(line);
  if (!IsOneOf(acknowledgement.code, "IP", "PF", "OK", "NA", "NG", "RL")) return false;
  acknowledgement.ctag = Trimmed(line);
  return !AnyOf(acknowledgement.ctag, IsBlank);
}

bool IsCommand(std::string_view line) {
  if (line.size() > MAX_LINE) return false;
  line = Trimmed(line);
  if (line.size() < 4 || line.back() != ';' || !IsLetter(line.front())) return false;
  const std::string_view verb = line.substr(0, line.find_first_of(":;"));
  return AllOf(verb, IsWordCharacter) && (verb.size() < line.size() - 1 || verb.find('-') != std::string_view::npos);
}

size_t PromptLength(std::string_view line) {
  if (line.empty() || IsBlank(line.front())) return 0;
  size_t end = 0;
  while (end < line.size() && (line[end] == ';' || line[end] == '<' || line[end] == '>'))
    end = BlanksAt(line, end + 1);
  if (end > 0) return end;
  end = NamedPromptEnd(line);
  return end > 0 ? BlanksAt(line, end) : 0;
}

}  // namespace VARNEL_TL1
