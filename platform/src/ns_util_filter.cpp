#include <re2/re2.h>

#include <string>
#include <vector>

#include "platform/ns_util.h"

namespace {

constexpr char WORD[] = "(?:PASSWORD|PASSWD|PWD|PSWD|SECRET|TOKEN)";
constexpr char SIGN[] = R"([ \t]*[=:][ \t]*)";

// Inside quotes a backslash escapes, a doubled quote is one quote, and a text that is never closed reaches to the end.
// The third kind is a text inside another quoted text, where each quote carries a backslash itself.
constexpr char QUOTED[] = R"re((")(?:[^"\\]|\\.|"")*(?:(")|\\?\z)|(')(?:[^'\\]|\\.|'')*(?:(')|\\?\z)|)re"
                          R"re((\\")(?:[^"\\]|\\[^"\\]|\\\\(?:\\.|[^"\\]))*(?:(\\*")|\\*\z))re";

// A key with what stands between it and its value. The quote behind it may be an escaped one.
std::string Key() {
  return WORD + std::string(R"(\\*["']?)") + SIGN;
}

// Quoted keys in the place of a value: the value is what follows them. Text inside a quoted value looks different: the
// quotes around it are not of one kind.
std::string QuotedKeys() {
  const std::string word = R"([^\s"'\\]*)" + std::string(WORD);
  return "(?:(?:\"" + word + "\"|'" + word + R"('|\\+")" + word + R"(\\+"))" + SIGN + ")*";
}

// A value without quotes ends at white space, a comma or a semicolon. A key in it takes its own value along, so that
// nothing is left of "password: PWD = value" and "token:{secret: value}".
std::string KeyValue() {
  const std::string key = Key();
  const std::string quoted = QUOTED;
  return "(" + key + ")" + QuotedKeys() + "(?:" + quoted + R"re(|(?:[^\s,;]*)re" + key + "(?:" + quoted +
         R"re()?)+[^\s,;]*|[^\s,;]+))re";
}
constexpr char KEY_VALUE_MASKED[] = R"(\1\2\4\6******\3\5\7)";

// The block behind the fifth colon of a TL1 security command: target, user, ctag and general block stand before it.
// A colon or semicolon inside quotes ends no block.
constexpr char TL1_NAME[] = "(?:ACT-USER|ED-PID|(?:ENT|ED)-USER-SECU):";
constexpr char TL1_BLOCKS[] = R"re((?:"(?:[^"\\]|\\.)*"|[^:;])*(?::(?:"(?:[^"\\]|\\.)*"|[^:;])*){3}:)re";
constexpr char TL1_PASSWORD[] = R"re((?:"(?:[^"\\]|\\.)*(?:"|\\?\z)|[^:;])+)re";

std::string Tl1Command() {
  return "(" + std::string(TL1_NAME) + TL1_BLOCKS + ")" + TL1_PASSWORD;
}
constexpr char TL1_COMMAND_MASKED[] = R"(\1******)";

// Never destroyed: lines may still be filtered while the process winds down.
const RE2& Compile(const std::string& pattern) {
  RE2::Options options;
  options.set_encoding(RE2::Options::EncodingLatin1);  // every byte is a character, so that any text can be searched
  options.set_case_sensitive(false);
  options.set_dot_nl(true);
  return *new RE2(pattern, options);
}

// Where commands may begin.
std::vector<size_t> CommandNames(const std::string& text) {
  static const RE2& name = Compile(TL1_NAME);
  std::vector<size_t> names;
  re2::StringPiece rest = text;
  for (re2::StringPiece found; name.Match(rest, 0, rest.size(), RE2::UNANCHORED, &found, 1);) {
    names.push_back(static_cast<size_t>(found.data() - text.data()));
    rest.remove_prefix(static_cast<size_t>(found.data() - rest.data()) + found.size());
  }
  return names;
}

// A name may also stand in front of the command it belongs to, which would then be taken for its blocks. So commands
// are masked once more, each up to the next name.
void MaskTl1Commands(std::string& text) {
  static const RE2& command = Compile(Tl1Command());
  RE2::GlobalReplace(&text, command, TL1_COMMAND_MASKED);
  std::vector<size_t> ends = CommandNames(text);
  if (ends.size() < 2) return;
  ends.push_back(text.size());
  std::string masked;
  size_t start = 0;
  for (const size_t end : ends) {
    std::string part = text.substr(start, end - start);
    RE2::GlobalReplace(&part, command, TL1_COMMAND_MASKED);
    masked += part;
    start = end;
  }
  text = masked;
}

}  // namespace

namespace NS_UTIL {

CDCLogFilter* CDCLogFilter::getInstance() {
  static CDCLogFilter filter;
  return &filter;
}

void CDCLogFilter::replaceAllSensInfo(std::string& text) {
  static const RE2& keyValue = Compile(KeyValue());
  MaskTl1Commands(text);
  RE2::GlobalReplace(&text, keyValue, KEY_VALUE_MASKED);
}

}  // namespace NS_UTIL
