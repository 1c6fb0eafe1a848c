#include <re2/re2.h>

#include "platform/ns_util.h"

namespace {

// A key with what stands between it and its value. The quote behind it may be an escaped one.
constexpr char KEY[] = R"re((?:PASSWORD|PASSWD|PWD|PSWD|SECRET|TOKEN)\\*["']?[ \t]*[=:][ \t]*)re";

// Inside quotes a backslash escapes, a doubled quote is one quote, and a text that is never closed reaches to the end.
// The third kind is a text inside another quoted text, where each quote carries a backslash itself.
constexpr char QUOTED[] = R"re((")(?:[^"\\]|\\.|"")*(?:(")|\\?\z)|(')(?:[^'\\]|\\.|'')*(?:(')|\\?\z)|)re"
                          R"re((\\")(?:[^"\\]|\\[^"\\]|\\\\(?:\\.|[^"\\]))*(?:(\\*")|\\*\z))re";

// A value without quotes ends at white space, a comma or a semicolon. A key in it takes its own value along, so that
// nothing is left of "password: PWD = value" and "token:{secret: value}".
std::string KeyValue() {
  const std::string key = KEY;
  const std::string quoted = QUOTED;
  return "(" + key + ")(?:" + quoted + R"re(|(?:[^\s,;]*)re" + key + "(?:" + quoted + R"re()?)+[^\s,;]*|[^\s,;]+))re";
}
constexpr char KEY_VALUE_MASKED[] = R"(\1\2\4\6******\3\5\7)";

// The block behind the fifth colon of a TL1 security command: target, user, ctag and general block stand before it.
// A colon or semicolon inside quotes ends no block.
constexpr char TL1_COMMAND[] = R"re(((?:ACT-USER|ED-PID|(?:ENT|ED)-USER-SECU)(?::(?:"(?:[^"\\]|\\.)*"|[^:;])*){4}:))re"
                               R"re((?:"(?:[^"\\]|\\.)*(?:"|\\?\z)|[^:;])+)re";
constexpr char TL1_COMMAND_MASKED[] = R"(\1******)";

// Never destroyed: lines may still be filtered while the process winds down.
const RE2& Compile(const std::string& pattern) {
  RE2::Options options;
  options.set_encoding(RE2::Options::EncodingLatin1);  // every byte is a character, so that any text can be searched
  options.set_case_sensitive(false);
  options.set_dot_nl(true);
  return *new RE2(pattern, options);
}

}  // namespace

namespace NS_UTIL {

CDCLogFilter* CDCLogFilter::getInstance() {
  static CDCLogFilter filter;
  return &filter;
}

void CDCLogFilter::replaceAllSensInfo(std::string& text) {
  static const RE2& tl1Command = Compile(TL1_COMMAND);
  static const RE2& keyValue = Compile(KeyValue());
  RE2::GlobalReplace(&text, tl1Command, TL1_COMMAND_MASKED);
  RE2::GlobalReplace(&text, keyValue, KEY_VALUE_MASKED);
}

}  // namespace NS_UTIL
