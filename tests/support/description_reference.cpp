#include "description_reference.h"

#include <optional>
#include <sstream>
#include <tuple>

namespace VARNEL_TEST {

namespace {

std::string Trimmed(const std::string& text) {
  constexpr char BLANKS[] = " \t\n\v\f\r";
  const size_t first = text.find_first_not_of(BLANKS);
  return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(BLANKS) - first + 1);
}

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

class PlainParse {
 public:
  explicit PlainParse(const std::string& text) : m_text(text) {}

  Description Result() {
    Description description{Ending::SectionMissing, {}};
    std::optional<std::string> line = Next();
    while (line && !Contains(*line, "[File Description]"))
      line = Next();
    if (!line) return description;

    while ((line = Next()) && line->substr(0, 1) != "[" && !Contains(*line, "[END]")) {
      const std::vector<std::string> columns = Columns(*line);
      if (columns.size() != 8 || columns[0][0] == '#' || Contains(columns[0], "\xA3\xA3")) continue;
      description.ending = Ending::LineNotCorrect;
      for (const std::string& column : columns) {
        if (column.size() > 255) return description;
      }
      unsigned int size = 0;
      std::istringstream(columns[4]) >> size;
      description.entries.push_back({columns[0], columns[1], size});
    }
    description.ending = description.entries.empty() ? Ending::ListEmpty : Ending::Complete;
    return description;
  }

 private:
  std::optional<std::string> Next() {
    std::string line;
    if (!std::getline(m_text, line)) return std::nullopt;
    return std::string(line.substr(0, 1023).c_str());
  }

  static std::vector<std::string> Columns(const std::string& line) {
    std::vector<std::string> columns;
    std::istringstream stream(line + ":");
    for (std::string column; std::getline(stream, column, ':');)
      columns.push_back(Trimmed(column));
    return columns;
  }

  std::istringstream m_text;
};

}  // namespace

bool operator==(const Entry& a, const Entry& b) {
  return std::tie(a.name, a.kind, a.size) == std::tie(b.name, b.kind, b.size);
}

std::ostream& operator<<(std::ostream& out, const Entry& entry) {
  return out << "(\"" << entry.name << "\", \"" << entry.kind << "\", " << entry.size << ')';
}

Description Reference::ReadDescription(const std::string& text) {
  return PlainParse(text).Result();
}

}  // namespace VARNEL_TEST
