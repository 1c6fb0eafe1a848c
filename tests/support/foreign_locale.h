#ifndef VARNEL_TESTS_FOREIGN_LOCALE_H
#define VARNEL_TESTS_FOREIGN_LOCALE_H

#include <clocale>
#include <cstdlib>
#include <locale>
#include <string>

#include "temp_folder.h"

namespace VARNEL_TEST {

/// Groups digits by three with a point, as in "1.234".
struct Grouping : std::numpunct<char> {
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

/// While it exists, the streams of the program use it.
class GroupingLocale {
 public:
  GroupingLocale() : m_before(std::locale::global(std::locale(std::locale(), new Grouping))) {}
  ~GroupingLocale() { std::locale::global(m_before); }
  GroupingLocale(const GroupingLocale&) = delete;
  GroupingLocale& operator=(const GroupingLocale&) = delete;

 private:
  std::locale m_before;
};

/// Compiles a Turkish ISO 8859 locale, if the system can, and sets it for the process while it exists. In this locale
/// the upper case of "i" is not "I", and E1 is a letter.
class TurkishLocale {
 public:
  TurkishLocale() {
    // Under emulation, the program is that of another machine.
    const std::string order = __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__ ? "--big-endian" : "--little-endian";
    const std::string command =
        "localedef " + order + " -i tr_TR -f ISO-8859-9 " + m_folder.Path("iso8859-9") + " >/dev/null 2>&1";
    if (std::system(command.c_str()) != 0) return;
    setenv("LOCPATH", m_folder.Path().c_str(), 1);
    m_isSet = std::setlocale(LC_ALL, "iso8859-9") != nullptr;
  }
  ~TurkishLocale() {
    std::setlocale(LC_ALL, "C");
    unsetenv("LOCPATH");
  }
  TurkishLocale(const TurkishLocale&) = delete;
  TurkishLocale& operator=(const TurkishLocale&) = delete;

  bool IsSet() const { return m_isSet; }

 private:
  TempFolder m_folder;
  bool m_isSet = false;
};

}  // namespace VARNEL_TEST

#endif
