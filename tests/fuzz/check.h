#ifndef VARNEL_FUZZ_CHECK_H
#define VARNEL_FUZZ_CHECK_H

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace VARNEL_FUZZ {

/// Shows the current input; set by the replay program. libFuzzer saves the input itself.
inline void (*g_showInput)() = nullptr;

[[noreturn]] inline void Fail(const char* condition, const char* file, int line) {
  std::fprintf(stderr, "%s:%d: does not hold: %s\n", file, line, condition);
  if (g_showInput != nullptr) g_showInput();
  std::abort();
}

/// Counts the answers of a function. A replay fails unless both answers are frequent: a comparison of functions that
/// always refuse proves nothing.
class Answers {
 public:
  explicit Answers(const char* function) : m_function(function) { All().push_back(this); }

  void Count(bool answer) { ++(answer ? m_yes : m_no); }

  static bool AreMixed() {
    constexpr size_t OFTEN = 300;
    bool mixed = true;
    for (const Answers* a : All()) {
      std::printf("%s: %zu yes, %zu no (expected at least %zu of each)\n", a->m_function, a->m_yes, a->m_no, OFTEN);
      mixed = mixed && a->m_yes >= OFTEN && a->m_no >= OFTEN;
    }
    return mixed;
  }

 private:
  static std::vector<const Answers*>& All() {
    static std::vector<const Answers*> all;
    return all;
  }

  const char* m_function;
  size_t m_yes = 0;
  size_t m_no = 0;
};

}  // namespace VARNEL_FUZZ

/// Aborts if a property is violated, in every build type.
#define FUZZ_CHECK(condition) ((condition) ? void() : ::VARNEL_FUZZ::Fail(#condition, __FILE__, __LINE__))

#endif
