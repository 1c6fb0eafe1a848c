#ifndef VARNEL_TESTS_FOREIGN_LOCALE_H
#define VARNEL_TESTS_FOREIGN_LOCALE_H

#include <locale>
#include <string>

namespace VARNEL_TEST {

/// While it lives, streams of the program group digits by three with a point, as in "1.234".
class GroupingLocale {
 public:
  GroupingLocale() : m_before(std::locale::global(std::locale(std::locale(), new Grouping))) {}
  ~GroupingLocale() { std::locale::global(m_before); }
  GroupingLocale(const GroupingLocale&) = delete;
  GroupingLocale& operator=(const GroupingLocale&) = delete;

 private:
  struct Grouping : std::numpunct<char> {
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };

  std::locale m_before;
};

}  // namespace VARNEL_TEST

#endif
