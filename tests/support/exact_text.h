#ifndef VARNEL_TESTS_EXACT_TEXT_H
#define VARNEL_TESTS_EXACT_TEXT_H

#include <cstring>
#include <memory>
#include <string>

namespace VARNEL_TEST {

/// A NUL-terminated text in a block of exactly its size: the address sanitizer reports every read beyond its end.
class ExactText {
 public:
  explicit ExactText(const std::string& text) : m_text(new char[text.size() + 1]) {
    std::memcpy(m_text.get(), text.c_str(), text.size() + 1);
  }
  operator const char*() const { return m_text.get(); }

 private:
  std::unique_ptr<char[]> m_text;
};

}  // namespace VARNEL_TEST

#endif
