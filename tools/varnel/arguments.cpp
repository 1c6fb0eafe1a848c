#include "arguments.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iostream>

#include "output.h"

namespace {

constexpr char PATHS[] = "paths";  // a group of options that no help shows

using Examine = std::function<bool(const std::string& text)>;

bool ForEachLine(const Examine& examine) {
  bool all = true;
  std::string line;
  while (std::cout && std::getline(std::cin, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (!line.empty()) all = examine(line) && all;
  }
  if (!std::cin.bad()) return all;
  Complain("standard input", "cannot read");
  return false;
}

// Leading zeros do not make an octal number.
std::optional<uint64_t> ReadNumber(const std::string& text) {
  const bool hexadecimal = text.compare(0, 2, "0x") == 0 || text.compare(0, 2, "0X") == 0;
  const char* const begin = text.data() + (hexadecimal ? 2 : 0);
  const char* const end = text.data() + text.size();
  uint64_t number = 0;
  const auto [stop, error] = std::from_chars(begin, end, number, hexadecimal ? 16 : 10);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

}  // namespace

CLI::Option* TakePaths(CLI::Option* option) {
  return option->group(PATHS);
}

bool TakesPaths(const CLI::Option& option) {
  return option.get_group() == PATHS;
}

CLI::Option* TakeNumbers(CLI::Option* option, uint64_t least, uint64_t most) {
  const std::string range = std::to_string(least) + " to " + std::to_string(most);
  const auto read = [least, most, range](std::string& text) {
    const std::optional<uint64_t> number = ReadNumber(text);
    if (!number || *number < least || *number > most)
      return IsNot(text, "a number from " + range + ", decimal, or hexadecimal after 0x");
    text = std::to_string(*number);  // which CLI11 reads the same way
    return std::string();
  };
  return option->transform(CLI::Validator(read, ""));
}

CLI::Option* TakeSizes(CLI::Option* option, uint64_t least, uint64_t most) {
  const std::string range = std::to_string(least) + " to " + std::to_string(most);
  const auto read = [least, most, range](std::string& text) {
    uint64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    const std::string unit = stop == text.data() ? "?" : std::string(stop, end);
    const unsigned shift = unit == "K" || unit == "k" ? 10 : unit == "M" || unit == "m" ? 20 : 0;
    const bool valid = error == std::errc() && (unit.empty() || shift > 0) && number <= most >> shift;
    if (!valid || number << shift < least)
      return IsNot(text, "a number of bytes from " + range + ", decimal, with K or M");
    text = std::to_string(std::min<uint64_t>(number << shift, SIZE_MAX));
    return std::string();
  };
  return option->transform(CLI::Validator(read, ""));
}

CLI::Option* TakeSeconds(CLI::Option* option, Zero zero) {
  const auto check = [zero](const std::string& text) {
    constexpr double YEAR = 31536000;
    double seconds = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, seconds);
    const bool valid = error == std::errc() && stop == end && seconds >= 0 && seconds <= YEAR;
    if (valid && (seconds > 0 || zero == Zero::Accepted)) return std::string();
    return IsNot(text, zero == Zero::Accepted ? "a number of seconds from 0 to a year"
                                              : "a number of seconds above 0 and up to a year");
  };
  return option->check(check);
}

std::string IsNot(const std::string& value, const std::string& expected) {
  return '"' + value + "\" is not " + expected;
}

CLI::Validator OneOf(const std::vector<std::string>& values) {
  const auto check = [values](const std::string& text) {
    if (std::find(values.begin(), values.end(), text) != values.end()) return std::string();
    return IsNot(text, "one of " + CLI::detail::join(values, ", "));
  };
  return CLI::Validator(check, '{' + CLI::detail::join(values) + '}').non_modifying();
}

CLI::Option* AddGenerationOption(CLI::App& command, std::optional<int>& generation) {
  const auto read = [&generation](const std::string& text) {
    int code = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, code);
    if (error != std::errc() || stop != end)
      throw CLI::ValidationError("--generation", IsNot(text, "a decimal number of 32 bits"));
    generation = code;
  };
  return command.add_option_function<std::string>("--generation", read);
}

bool ForEachText(const std::vector<std::string>& texts, const Examine& examine) {
  bool all = true;
  for (const std::string& text : texts)
    all = (text == "-" ? ForEachLine(examine) : examine(text)) && all;
  return all;
}
