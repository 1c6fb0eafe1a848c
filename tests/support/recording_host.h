#ifndef VARNEL_TESTS_RECORDING_HOST_H
#define VARNEL_TESTS_RECORDING_HOST_H

#include <cerrno>
#include <cstddef>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

/// A host for the unit tests. It replaces the log service, the sensitive-text filter, the bounded functions and
/// the file calls; everything else comes from the bundled platform.
namespace VARNEL_TEST {

enum class Overload { StringObject, CharacterPointer };

/// One line as the log service received it.
struct LogLine {
  int level;
  Overload overload;
  std::string text;
  std::string sourceModule;
  std::string function;
  std::string module = "transcommon_log";
  int line = 0;  ///< not compared: most lines are free
};

bool operator==(const LogLine& a, const LogLine& b);
std::ostream& operator<<(std::ostream& out, const LogLine& line);

LogLine Warning(const std::string& text, const std::string& sourceModule, const std::string& function);
LogLine Error(const std::string& text, const std::string& sourceModule, const std::string& function);

/// Makes one call of a kind fail: the N-th since FailAt().
class CallFailure {
 public:
  void FailAt(size_t call) { m_failAt = call, m_calls = 0; }
  size_t Calls() const { return m_calls; }
  bool Armed() const { return m_failAt != 0; }
  /// Call it once for each call.
  bool Next() { return ++m_calls == m_failAt; }

 private:
  size_t m_failAt = 0;
  size_t m_calls = 0;
};

/// Records the calls of the host since the last Reset(), and makes some of them fail. The filter replaces every
/// "SECRET" by "######".
struct RecordingHost {
  static RecordingHost& Instance();
  void Reset() {
    *this = RecordingHost();
    errno = 0;  // appears in log lines about files that end too early
  }

  std::vector<LogLine> lines;
  std::vector<std::string> filtered;   ///< each text as it came to the filter
  std::vector<std::string> encodings;  ///< the encoding of each file call
  size_t moments = 0;                  ///< how often aroundOpening has been called

  CallFailure boundedCopies;       ///< memcpy_s and strncpy_s
  int boundedCopyResult = 34;      ///< what a failing one returns
  bool failingCopiesCopy = false;  ///< a failing one copies nevertheless
  CallFailure formats;             ///< snprintf_s; a failing one returns -1 and writes nothing
  CallFailure stats;
  CallFailure opens;
  int fileError = 5;        ///< errno of a failing file call
  long readableBytes = -1;  ///< reads of opened files fail with fileError after this many bytes, unless negative
  CallFailure seeks;       ///< of files opened while it is armed, and as they come to the system: past what is buffered
  bool logThrows = false;  ///< ForceLog throws std::runtime_error
  bool filterThrows = false;                  ///< the filter throws std::runtime_error
  std::function<void(size_t)> aroundOpening;  ///< called with 0, 1, 2 … before and after each opening of a file
};

}  // namespace VARNEL_TEST

#endif
