#include "string_references.h"

#include <algorithm>
#include <cctype>

namespace VARNEL_TEST::Reference {

namespace {

bool IsSpace(char c) {
  return std::isspace(static_cast<unsigned char>(c)) != 0;
}

char Upper(char c) {
  return static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
}

bool Same(char a, char b) {
  return Upper(a) == Upper(b);
}

bool IsLiteral(char c) {
  return c != '\0' && c != '*' && c != '?';
}

class Matcher {
 public:
  Matcher(const char* text, const char* pattern) : t(text), p(pattern), r(pattern) {}

  int Run() {
    while (!m_result.has_value())
      Step();
    return *m_result;
  }

 private:
  void Step() {
    if (*p == '\0') {
      m_result = *t == '\0' ? 1 : 0;
    } else if (*t == '\0') {
      while (*p == '*')
        ++p;
      m_result = *p == '\0' ? 1 : 0;
    } else if (*p == '*') {
      Star();
    } else if (*p == '?') {
      QuestionMark();
    } else if (!Same(*p, *t)) {
      m_result = 0;
    } else {
      ++p;
      ++t;
    }
  }

  void Star() {
    const char* anchor = p + 1;
    while (*anchor == '*' || *anchor == '?')
      ++anchor;
    if (*anchor == '\0') {
      m_result = 1;
      return;
    }
    const char* k = t;
    while (*k != '\0' && !Same(*k, *anchor))
      ++k;
    if (*k == '\0') {
      m_result = 0;
      return;
    }
    Literals(k, anchor);
  }

  void Literals(const char* k, const char* anchor) {
    const char* literal = anchor + 1;
    const char* next = k + 1;
    if (IsLiteral(*literal) && *next == '\0') {
      m_result = 0;
      return;
    }
    while (IsLiteral(*literal) && *next != '\0') {
      if (!Same(*literal, *next)) {
        t = k + 1;  // the same "*" again
        return;
      }
      ++literal;
      ++next;
    }
    r = p;
    t = next;
    p = literal;
  }

  void QuestionMark() {
    ++t;
    ++p;
    if (!IsLiteral(*p)) return;
    if (*t == '\0') {
      m_result = 0;
      return;
    }
    while (IsLiteral(*p) && *t != '\0') {
      if (!Same(*p, *t)) {
        p = r;
        return;
      }
      ++p;
      ++t;
    }
  }

  const char* t;
  const char* p;
  const char* r;
  std::optional<int> m_result;
};

}  // namespace

void TrimLeft(std::string& s) {
  while (!s.empty() && IsSpace(s.front()))
    s.erase(0, 1);
}

void TrimRight(std::string& s) {
  while (!s.empty() && IsSpace(s.back()))
    s.erase(s.size() - 1, 1);
}

void Trim(std::string& s) {
  TrimLeft(s);
  TrimRight(s);
}

bool MatchesStars(const std::string& text, const std::string& pattern) {
  // reached[j]: the text so far matches the first j characters of the pattern.
  std::vector<bool> reached(pattern.size() + 1);
  reached[0] = true;
  for (size_t j = 0; j < pattern.size() && pattern[j] == '*'; ++j)
    reached[j + 1] = true;
  for (const char c : text) {
    std::vector<bool> next(pattern.size() + 1);
    for (size_t j = 0; j < pattern.size(); ++j)
      next[j + 1] = pattern[j] == '*' ? reached[j + 1] || next[j] : reached[j] && pattern[j] == c;
    reached = next;
  }
  return reached.back();
}

int MatchNoCase(const char* text, const char* pattern) {
  if (text == nullptr || pattern == nullptr || *text == '\0') return 0;
  return Matcher(text, pattern).Run();
}

std::optional<std::string> Replace(std::string s, const std::string& from, const std::string& to, size_t limit) {
  size_t count = 0;
  for (size_t at; (at = s.find(from)) != std::string::npos;) {
    if (++count > limit) return std::nullopt;
    s.replace(at, from.size(), to);
  }
  return s;
}

void Collapse(std::string& s) {
  Trim(s);
  std::replace_if(s.begin(), s.end(), IsSpace, ' ');
  for (size_t at; (at = s.find("  ")) != std::string::npos;)
    s.replace(at, 2, " ");
}

void UpperCase(std::string& s) {
  for (size_t i = 0; i < s.size(); ++i)
    s[i] = Upper(s[i]);
}

std::string CleanLineEnds(const char* text) {
  if (text == nullptr) return "";
  std::string s = text;
  for (size_t at; (at = s.find('\n')) != std::string::npos;)
    s.erase(at, 1);
  for (size_t at; (at = s.find('\r')) != std::string::npos;)
    s[at] = ' ';
  for (size_t at; (at = s.find("  ")) != std::string::npos;)
    s.erase(at, 1);
  return s;
}

bool AttributeValue(const char* text, const std::string& name, std::string& value) {
  value.clear();
  if (text == nullptr || *text == '\0' || name.empty()) return false;
  const std::string all = text;
  const size_t found = all.find(name);
  if (found == std::string::npos) return false;
  const size_t start = found + name.size();
  size_t end = all.find(',', found);
  if (end == std::string::npos) end = all.find('"', found);
  if (end == std::string::npos) {
    value = all.substr(start);
    return !value.empty();
  }
  if (end > start) value = all.substr(start, end - start);
  return true;
}

void Split(const char* text, char separator, std::vector<std::string>& fields) {
  if (text == nullptr) return;
  std::string rest = text;
  TrimLeft(rest);
  for (size_t at; (at = rest.find(separator)) != std::string::npos;) {
    fields.push_back(rest.substr(0, at));
    rest.erase(0, at + 1);
    TrimLeft(rest);
  }
  fields.push_back(rest);
}

}  // namespace VARNEL_TEST::Reference

namespace VARNEL_TEST {

std::vector<std::string> AllTexts(const std::vector<std::string>& pieces, size_t longest) {
  std::vector<std::string> texts{""};
  size_t first = 0;
  for (size_t length = 1; length <= longest; ++length) {
    const size_t end = texts.size();
    for (; first < end; ++first) {
      for (const std::string& piece : pieces)
        texts.push_back(texts[first] + piece);
    }
  }
  return texts;
}

std::vector<std::string> AllTexts(const std::string& alphabet, size_t longest) {
  std::vector<std::string> letters;
  for (const char c : alphabet)
    letters.emplace_back(1, c);
  return AllTexts(letters, longest);
}

std::string RandomTexts::Next(const std::string& alphabet, size_t longest) {
  std::string text(Below(longest + 1), '\0');
  for (char& c : text)
    c = alphabet[Below(alphabet.size())];
  return text;
}

}  // namespace VARNEL_TEST
