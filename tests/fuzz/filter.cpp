// Filters a text that the input composes of noise and of passwords in all accepted spellings: no password may remain.
// The input itself is filtered too.

#include <platform/ns_util.h>

#include <algorithm>
#include <iterator>
#include <string>

#include "check.h"
#include "input.h"

using VARNEL_FUZZ::Input;

namespace {

constexpr char SECRET[] = "hJ7xQ";
constexpr size_t LONGEST_TEXT = 4096;
constexpr const char* KEYS[] = {"PASSWORD", "passwd", "Pwd", "PSWD", "secret", "Token", "user_password"};
constexpr const char* ENDS[] = {" ", "\n", ",", ";", ", ", "\t", "; "};
constexpr const char* COMMANDS[] = {"ACT-USER", "ED-PID", "ENT-USER-SECU", "ed-user-secu"};

template <size_t count>
const char* OneOf(Input& input, const char* const (&choices)[count]) {
  return choices[input.Byte() % count];
}

std::string Without(std::string text, const std::string& unwanted) {
  text.erase(std::remove_if(text.begin(), text.end(), [&](char c) { return unwanted.find(c) != std::string::npos; }),
             text.end());
  return text;
}

// The text outside passwords, without `unwanted` characters and without the secret.
std::string Other(Input& input, size_t longest, const std::string& unwanted) {
  const std::string text = Without(input.Bytes(input.Byte() % longest), unwanted);
  return text.find(SECRET) == std::string::npos ? text : "";
}

// A quote, bracket or TL1 command in the noise could include the following text and end anywhere.
std::string Noise(Input& input) {
  return Other(input, 32, "\"'`&\\:([{\xC2\xE2");
}

// Bytes around the secret, without all bytes that could end the value.
std::string Value(Input& input, const std::string& unwanted) {
  const std::string front = Without(input.Bytes(input.Byte() % 8), unwanted);
  return front + SECRET + Without(input.Bytes(input.Byte() % 8), unwanted);
}

// A value without quotes. It must not begin with a quote or bracket, also not after signs, as in =`.
std::string Plain(Input& input) {
  const std::string value = Value(input, std::string("\"'\\,; \t\n\v\f\r", 11));
  const size_t start = value.find_first_not_of("=:>");
  return std::string("`([{\xC2\xE2").find(value[start]) == std::string::npos ? value : SECRET + value;
}

// The text between quotes: a quote or backslash in it is escaped, or the quote is doubled.
std::string Quoted(Input& input, char quote) {
  const bool doubles = input.Byte() % 2 == 0;
  std::string text(1, quote);
  for (const char c : Value(input, "")) {
    if (c == '\\' || (c == quote && !doubles)) text += '\\';
    if (c == quote && doubles) text += quote;
    text += c;
  }
  return text + quote;
}

std::string KeyValue(Input& input) {
  const std::string key = OneOf(input, KEYS);
  const std::string gap = input.Byte() % 2 == 0 ? "" : " ";
  const std::string sign = gap + (input.Byte() % 2 == 0 ? "=" : ":") + gap;
  switch (input.Byte() % 5) {
    case 0:
      return key + sign + Quoted(input, '"');
    case 1:
      return key + sign + Quoted(input, '\'');
    case 2:
      return '"' + key + '"' + sign + Quoted(input, '"');
    case 3:
      return "\\\"" + key + "\\\"" + sign + "\\\"" + Value(input, "\"'\\") + "\\\"";
    default:
      return key + sign + Plain(input);
  }
}

std::string Tl1Command(Input& input) {
  std::string command = OneOf(input, COMMANDS);
  for (int block = 0; block < 4; ++block)
    command += ':' + Other(input, 6, "\"'`&:;\\=([{\r\n\xC2\xE2");
  return command + ':' + (input.Byte() % 2 == 0 ? Quoted(input, '"') : Value(input, "\"':;\\")) + ';';
}

std::string Text(Input& input) {
  std::string text;
  while (!input.IsEmpty() && text.size() < LONGEST_TEXT) {
    text += Noise(input);
    text += OneOf(input, ENDS);
    text += input.Byte() % 4 == 0 ? Tl1Command(input) : KeyValue(input);
    text += OneOf(input, ENDS);
  }
  return text;
}

std::string Filtered(std::string text) {
  NS_UTIL::CDCLogFilter::getInstance()->replaceAllSensInfo(text);
  return text;
}

// Filtering twice changes nothing more, and masks add only a bounded number of bytes.
void CheckAnyBytes(const std::string& text) {
  constexpr size_t MASK = 6;
  const std::string once = Filtered(text);
  FUZZ_CHECK(once.size() <= text.size() * (MASK + 1));
  FUZZ_CHECK(Filtered(once) == once);
  FUZZ_CHECK(text.find("******") != std::string::npos || once == text || once.find("******") != std::string::npos);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  CheckAnyBytes(Input(data, size).Rest());
  Input input(data, size);
  const std::string text = Text(input);
  const std::string once = Filtered(text);
  FUZZ_CHECK(once.find(SECRET) == std::string::npos);
  FUZZ_CHECK(Filtered(once) == once);
  return 0;
}
