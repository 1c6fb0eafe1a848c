#include "password_spellings.h"

#include <algorithm>

namespace VARNEL_TEST {

namespace {

std::string Replaced(std::string text, char what, const std::string& by) {
  for (size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
    text.replace(at, 1, by);
  return text;
}

std::string Escaped(const std::string& text, char quote) {
  return Replaced(Replaced(text, '\\', "\\\\"), quote, std::string{'\\', quote});
}

std::string Doubled(const std::string& text, char quote) {
  return Replaced(text, quote, {quote, quote});
}

bool HoldsAny(const std::string& text, const char* characters) {
  return text.find_first_of(characters) != std::string::npos;
}

}  // namespace

const std::vector<Spelling>& Spellings() {
  static const std::vector<Spelling> spellings{
      {"without quotes",
       [](const std::string& password) {
         const size_t start = std::min(password.find_first_not_of("=:>"), password.size() - 1);
         const bool possible = !HoldsAny(password, " \t\n,;") && !HoldsAny(password.substr(0, 1), "\"'\\([{") &&
                               !HoldsAny(password.substr(start, 1), "\"'([{");
         return possible ? "a PWD=" + password + ",b=1" : "";
       },
       "a PWD=******,b=1"},
      {"double quotes, escaped", [](const std::string& password) { return "PWD=\"" + Escaped(password, '"') + "\" b"; },
       "PWD=\"******\" b"},
      {"single quotes, escaped", [](const std::string& password) { return "pwd: '" + Escaped(password, '\'') + "' b"; },
       "pwd: '******' b"},
      {"double quotes, doubled",
       [](const std::string& password) {
         return HoldsAny(password, "\\") ? "" : "token=\"" + Doubled(password, '"') + "\" b";
       },
       "token=\"******\" b"},
      {"single quotes, doubled",
       [](const std::string& password) {
         return HoldsAny(password, "\\") ? "" : "token='" + Doubled(password, '\'') + "' b";
       },
       "token='******' b"},
      {"JSON", [](const std::string& password) { return "{\"secret\":\"" + Escaped(password, '"') + "\",\"b\":1}"; },
       "{\"secret\":\"******\",\"b\":1}"},
      {"JSON in a quoted text",
       [](const std::string& password) {
         return "\"" + Escaped("{\"secret\":\"" + Escaped(password, '"') + "\",\"b\":1}", '"') + "\"";
       },
       R"("{\"secret\":\"******\",\"b\":1}")"},
      {"TL1",
       [](const std::string& password) {
         return HoldsAny(password, ":;\"") ? "" : "ACT-USER:NE1:bob:1::" + password + ";b";
       },
       "ACT-USER:NE1:bob:1::******;b"},
      {"TL1 in quotes",
       [](const std::string& password) { return "ED-PID:NE1:bob:1::x,\"" + Escaped(password, '"') + "\":b;"; },
       "ED-PID:NE1:bob:1::******:b;"},
  };
  return spellings;
}

std::string GeneratePassword(std::mt19937& random) {
  using namespace std::string_literals;
  static const std::string alphabet = "aZ09:;,=\"'\\ \t\n{}[]()<>*?.#$%&/\0\x7F\x80\xA3\xFF"s;
  std::string password;
  for (size_t length = 1 + random() % 12; password.size() < length;)
    password += alphabet[random() % alphabet.size()];
  return password;
}

}  // namespace VARNEL_TEST
