#include "arguments.h"

#include <charconv>
#include <iostream>

#include "output.h"

namespace {

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

}  // namespace

CLI::Option* AddGenerationOption(CLI::App& command, std::optional<int>& generation, const std::string& help) {
  const auto read = [&generation](const std::string& text) {
    int code = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, code);
    if (error != std::errc() || stop != end)
      throw CLI::ValidationError("--generation", "is not a decimal number of 32 bits");
    generation = code;
  };
  return command.add_option_function<std::string>("--generation", read, help)->type_name("CODE");
}

bool ForEachText(const std::vector<std::string>& texts, const Examine& examine) {
  bool all = true;
  for (const std::string& text : texts)
    all = (text == "-" ? ForEachLine(examine) : examine(text)) && all;
  return all;
}
