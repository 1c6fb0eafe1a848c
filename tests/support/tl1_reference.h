#ifndef VARNEL_TESTS_TL1_REFERENCE_H
#define VARNEL_TESTS_TL1_REFERENCE_H

#include <ostream>
#include <string>
#include <vector>

namespace VARNEL_TEST {

/// All that a TL1 parser holds; as it stands, what one holds that was emptied.
struct Tl1Parts {
  std::string message, sid, date, time, echo, responseLine, textBlock, verb, code, ctag, atag;
  int type = -1;
  unsigned int start = 0;
};

bool operator==(const Tl1Parts& a, const Tl1Parts& b);
std::ostream& operator<<(std::ostream& out, const Tl1Parts& parts);

/// A TL1 parser that follows its steps one by one, with std::string::find only.
class Tl1Reference {
 public:
  explicit Tl1Reference(const std::string& message) { parts.message = message; }

  bool Parse();
  bool ParseComplete(const std::string& message);

  struct Report {
    std::string function, text;
  };

  Tl1Parts parts;
  std::vector<Report> reports;

 private:
  bool ParseSid(size_t& cursor);
  bool ParseDate(size_t& cursor);
  bool ParseTime(size_t& cursor);
  bool ParseVerb(size_t& cursor);
  bool ParseTextBlock(size_t& cursor);
  bool ParseHeader(size_t header);
  bool ParseAcknowledgement();
  bool ParseResponse(size_t m);
  bool ParseAutonomous(size_t n);
  bool Fail(const std::string& function, const std::string& text);
  bool Empty();
};

}  // namespace VARNEL_TEST

#endif
