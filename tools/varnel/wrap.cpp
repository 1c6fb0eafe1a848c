#include "wrap.h"

#include <sstream>

std::vector<std::string> Wrapped(const std::string& text, size_t width) {
  std::vector<std::string> lines(1);
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    std::string& line = lines.back();
    if (line.empty()) {
      line = word;
    } else if (line.size() + 1 + word.size() <= width) {
      line += ' ' + word;
    } else {
      lines.push_back(word);
    }
  }
  return lines;
}
