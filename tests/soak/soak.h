#ifndef VARNEL_TESTS_SOAK_H
#define VARNEL_TESTS_SOAK_H

#include <cstddef>
#include <string>
#include <vector>

namespace VARNEL_TEST {

/// The amount of work.
struct SoakSize {
  size_t objects = 10000;
  size_t reports = 1000000;
  size_t offers = 100;  ///< objects that each report is offered to
  size_t packages = 100000;
  double seconds = 5;         ///< that the command is kept busy by an element that never ends
  double watch = 120;         ///< seconds that `varnel watch` follows elements
  size_t message = 16777216;  ///< bytes up to which it takes messages that take long to read
};

/// Whether the memory of the process is checked: not under sanitizers, which keep freed memory.
constexpr bool MEMORY_COUNTS =
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    false;
#else
    true;
#endif

/// How a child process ended.
struct Child {
  int status;          ///< exit status, or -1 after a signal
  double seconds;      ///< that it ran
  size_t kibibytes;    ///< most memory that it had
  std::string errors;  ///< what it wrote to standard error
};

/// First argument of this program with which it only starts a command and reports the memory it needed.
constexpr char MEASURE[] = "--measure ";
int Measure(const std::vector<std::string>& command);

/// Runs a command and discards its standard output.
Child RunChild(const std::vector<std::string>& command);

/// Prints a line of the report, and counts those that are wrong.
void Expect(bool right, const std::string& what);
size_t Wrong();

/// Live events and parsers that receive endless reports: memory and descriptors do not grow.
void SoakObjects(const SoakSize& size);

/// A folder with very many packages through `varnel package`.
void SoakPackages(const SoakSize& size, const std::string& varnel);

/// Elements that never end a message, send one byte after the other, or one that is too long.
void SoakElements(const SoakSize& size, const std::string& varnel);

/// 200 elements that connect and disconnect, through `varnel watch`: every message arrives, and memory does not grow.
void SoakWatch(const SoakSize& size, const std::string& varnel);

}  // namespace VARNEL_TEST

#endif
