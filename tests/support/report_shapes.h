#ifndef VARNEL_TESTS_REPORT_SHAPES_H
#define VARNEL_TESTS_REPORT_SHAPES_H

#include <sstream>
#include <string>
#include <vector>

/// The shapes of reports, as in docs/formats.md; tests/architecture/shapes compares both lists with the library's.
namespace VARNEL_TEST {

/// The values follow `done` and `total`, which are parts of the pattern.
struct Tl1Shape {
  const char* pattern;
  const char* done;
  const char* total;
};

inline constexpr Tl1Shape TL1_SHAPES[] = {
    {"*FILES_DONE=*FILES_TOTAL=*", "FILES_DONE=", "FILES_TOTAL="},
    {"*REPT EVT PROGRESS*TRANSFEREDFILES=*TOTALNUM=*", "TRANSFEREDFILES=", "TOTALNUM="},
    {"*SLOTSDONE=*SLOTSTTL=*", "SLOTSDONE=", "SLOTSTTL="},
};

inline constexpr char COPY_SHAPE[] = "*EVT_SFTM_CPYFILE_PROGRESS*DONE_NUM*TOTAL_NUM*";
inline constexpr char COMPLETED_SHAPE[] = "*status=completed*done=*total=*";
inline constexpr char SCRIPT_PROGRESS_SHAPE[] = "*EVENT*CAM*RUN*PROGRESS*";
inline constexpr char SCRIPT_END_SHAPE[] = "*EVENT*CAM*RUN*END*";

/// The texts between the stars of each shape.
inline std::vector<std::vector<std::string>> WordsOfAllShapes() {
  std::vector<std::string> patterns{COPY_SHAPE, COMPLETED_SHAPE, SCRIPT_PROGRESS_SHAPE, SCRIPT_END_SHAPE};
  for (const Tl1Shape& shape : TL1_SHAPES)
    patterns.emplace_back(shape.pattern);
  std::vector<std::vector<std::string>> shapes;
  for (const std::string& pattern : patterns) {
    shapes.emplace_back();
    std::istringstream words(pattern.substr(1));
    for (std::string word; std::getline(words, word, '*');)
      shapes.back().push_back(word);
  }
  return shapes;
}

}  // namespace VARNEL_TEST

#endif
