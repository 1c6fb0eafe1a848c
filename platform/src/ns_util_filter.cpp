#include <re2/re2.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>
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
  return "(" + key + ")" + QuotedKeys() + "(?:" + quoted + R"re(|(?:[^\s,;]*)re" + key + QuotedKeys() + "(?:" + quoted +
         R"re()?)+[^\s,;]*|[^\s,;]+))re";
}

// The block behind the fifth colon of a TL1 security command: target, user, ctag and general block stand before it.
// A colon or semicolon inside quotes ends no block.
constexpr char TL1_NAME[] = "(?:ACT-USER|ED-PID|(?:ENT|ED)-USER-SECU):";
constexpr char TL1_BLOCKS[] = R"re((?:"(?:[^"\\]|\\.)*"|[^:;])*(?::(?:"(?:[^"\\]|\\.)*"|[^:;])*){3}:)re";
constexpr char TL1_PASSWORD[] = R"re((?:"(?:[^"\\]|\\.)*(?:"|\\?\z)|[^:;])+)re";

std::string Tl1Command() {
  return "(" + std::string(TL1_NAME) + TL1_BLOCKS + ")" + TL1_PASSWORD;
}

// Never destroyed: lines may still be filtered while the process winds down.
const RE2& Compile(const std::string& pattern) {
  RE2::Options options;
  options.set_encoding(RE2::Options::EncodingLatin1);  // every byte is a character, so that any text can be searched
  options.set_case_sensitive(false);
  options.set_dot_nl(true);
  return *new RE2(pattern, options);
}

constexpr char MASK[] = "******";

// What is to be masked; of it only the opening quote of a value is kept.
struct Secret {
  size_t start;
  size_t end;
  std::string quote;
};
using Secrets = std::vector<Secret>;

// A match: all of it, the key or command in front of the value, and then its opening and closing quotes in turn.
using Match = std::array<re2::StringPiece, 8>;

template <typename Visit>
void ForEachMatch(const RE2& pattern, re2::StringPiece text, Visit visit) {
  for (Match match; pattern.Match(text, 0, text.size(), RE2::UNANCHORED, match.data(), match.size());) {
    visit(match);
    text.remove_prefix(static_cast<size_t>(match[0].end() - text.begin()));
  }
}

Secret SecretOf(const Match& match, const std::string& text) {
  const char* end = match[0].end();
  std::string quote;
  for (size_t i = 2; i < match.size(); i += 2) {
    quote.append(match[i].data(), match[i].size());
    if (!match[i + 1].empty()) end = match[i + 1].begin();
  }
  const auto position = [&text](const char* at) { return static_cast<size_t>(at - text.data()); };
  return {position(match[1].end()), position(end), quote};
}

void FindKeyValues(const std::string& text, Secrets& secrets) {
  static const RE2& keyValue = Compile(KeyValue());
  ForEachMatch(keyValue, text, [&](const Match& match) { secrets.push_back(SecretOf(match, text)); });
}

// A name may also stand in front of the command it belongs to, which would then be taken for its blocks. So commands
// are looked for once more, each up to the next name.
void FindTl1Passwords(const std::string& text, Secrets& secrets) {
  static const RE2& name = Compile(TL1_NAME);
  static const RE2& command = Compile(Tl1Command());
  const auto find = [&](re2::StringPiece part) {
    ForEachMatch(command, part, [&](const Match& match) { secrets.push_back(SecretOf(match, text)); });
  };
  const char* start = text.data();
  find(text);
  ForEachMatch(name, text, [&](const Match& match) {
    find({start, static_cast<size_t>(match[0].begin() - start)});
    start = match[0].begin();
  });
  find({start, text.size() - static_cast<size_t>(start - text.data())});
}

// Masks in place, so that all that is not secret stays where it is.
std::string Blanked(std::string text, const Secrets& secrets) {
  for (const Secret& secret : secrets)
    text.replace(secret.start, secret.end - secret.start, secret.end - secret.start, MASK[0]);
  return text;
}

std::string Masked(const std::string& text, Secrets secrets) {
  std::stable_sort(secrets.begin(), secrets.end(), [](const Secret& a, const Secret& b) { return a.start < b.start; });
  std::string masked;
  size_t end = 0;
  for (const Secret& secret : secrets) {
    if (secret.start >= end) masked.append(text, end, secret.start - end).append(secret.quote).append(MASK);
    end = std::max(end, secret.end);
  }
  return masked.append(text, end);
}

}  // namespace

namespace NS_UTIL {

CDCLogFilter* CDCLogFilter::getInstance() {
  static CDCLogFilter filter;
  return &filter;
}

// A password may look like a command and hide one, and the other way round. So each kind is looked for in the text as
// it is, and in the text without what the other kind found.
void CDCLogFilter::replaceAllSensInfo(std::string& text) {
  Secrets commands, keyValues;
  FindTl1Passwords(text, commands);
  FindKeyValues(text, keyValues);
  if (commands.empty() && keyValues.empty()) return;
  Secrets all = commands;
  all.insert(all.end(), keyValues.begin(), keyValues.end());
  FindTl1Passwords(Blanked(text, keyValues), all);
  FindKeyValues(Blanked(text, commands), all);
  text = Masked(text, std::move(all));
}

}  // namespace NS_UTIL
