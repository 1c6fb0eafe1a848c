#include "inputs.h"

#include <deque>
#include <map>
#include <random>

namespace VARNEL_BENCH {

const std::string& Keep(std::string input) {
  static std::deque<std::string> inputs;
  return inputs.emplace_back(std::move(input));
}

const std::string& ReportText(size_t size) {
  static std::map<size_t, std::string> texts;
  std::string& text = texts[size];
  if (!text.empty()) return text;
  constexpr const char* WORDS[] = {"EVENT", "slot=3-5", "board", "VNCTL201", "status=running", "load", "of", "file",
                                   "M01",   "TOTAL",    "done",  "element",  "NE-EAST",        "is",   "at", "7860"};
  constexpr const char* GAPS[] = {" ", " ", " ", " ", " ", " ", "  ", "   ", "\t", "\r\n   "};
  std::mt19937 engine(2026);
  while (text.size() < size)
    text.append(WORDS[engine() % std::size(WORDS)]).append(GAPS[engine() % std::size(GAPS)]);
  text.resize(size);
  return text;
}

std::string SizeName(size_t bytes) {
  if (bytes < 1024) return std::to_string(bytes) + " B";
  if (bytes < 1024 * 1024) return std::to_string(bytes >> 10) + " KB";
  return std::to_string(bytes >> 20) + " MB";
}

}  // namespace VARNEL_BENCH
