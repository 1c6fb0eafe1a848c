#include "str.h"

#include <sys/time.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <iterator>
#include <string_view>
#include <utility>

#include <ace/OS_NS_time.h>
#include <ace/Recursive_Thread_Mutex.h>
#include <ace/Time_Value.h>

#include "common.h"
#include "platform/ns_util.h"
#include "util/chars.h"
#include "util/checked_math.h"
#include "util/collapse.h"
#include "util/find.h"
#include "util/replace.h"
#include "util/stream_reader.h"
#include "util/wildcard.h"

namespace VARNEL_COMMON {

using namespace VARNEL_UTIL;

namespace {

constexpr char MODULE[] = "str";
constexpr size_t MAX_PATH_LENGTH = 4096;
static_assert(MAX_PATH_LENGTH >= PATH_MAX, "realpath() may write PATH_MAX bytes");

// Part of the module by convention; no operation uses it.
[[maybe_unused]] ACE_Recursive_Thread_Mutex g_mutex;

std::string WithSlashes(std::string path) {
  ReplaceString(path, "\\", "/");
  return path;
}

std::string Refuse(int line, const char* why, const char* path) {
  LogError({MODULE, "ToAbsPath", line}, CONSISTENCY_ERROR, StrCat(why, path, ". "));
  return "";
}

std::tm LocalTime(time_t seconds) {
  const int callersErrno = errno;
  std::tm local = {};
  ACE_OS::localtime_r(&seconds, &local);
  errno = callersErrno;  // a missing time zone file changes it
  return local;
}

// Writes a time stamp.
class Stamp {
 public:
  // Adds a number as a stream of that width and fill character "0" writes it: a sign comes after the zeros.
  Stamp& Number(int number, size_t width) {
    char digits[11];
    const char* end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    for (auto length = static_cast<size_t>(end - digits); length < width; ++length)
      *m_end++ = '0';
    m_end = std::copy(static_cast<const char*>(digits), end, m_end);
    return *this;
  }

  Stamp& Separator(char c) {
    *m_end++ = c;
    return *this;
  }

  Stamp& Year(const std::tm& local) { return Number(CheckedAdd(local.tm_year, 1900), 4); }
  Stamp& Month(const std::tm& local) { return Number(CheckedAdd(local.tm_mon, 1), 2); }

  std::string Text() const { return {m_text, static_cast<size_t>(m_end - m_text)}; }

 private:
  char m_text[6 * 11 + 5];  // six numbers of any size and the separators
  char* m_end = m_text;
};

}  // namespace

void StrTrimLeft(std::string& s) {
  s.erase(0, s.size() - TrimmedLeft(s).size());
}

void StrTrimRight(std::string& s) {
  s.resize(TrimmedRight(s).size());
}

void StrTrim(std::string& s) {
  StrTrimRight(s);
  StrTrimLeft(s);
}

int strmcmp(const char* text, const char* pattern) {
  return NS_UTIL::RepalaceSensInfo().strmcmp(text, pattern);
}

int strmcmpnocase(const char* text, const char* pattern) {
  return text != nullptr && pattern != nullptr && NoCaseMatcher(text, pattern).Matches() ? 1 : 0;
}

void freeArray(void** array) {
  if (array == nullptr) return;
  for (void** element = array; *element != nullptr; ++element) {
    std::free(*element);
    *element = nullptr;
  }
  std::free(array);
}

void ReplaceString(std::string& s, const std::string& from, const std::string& to) {
  const size_t hit = from.empty() ? std::string::npos : FindLinear(s, from);
  // A `to` that contains `from` would be replaced endlessly.
  if (hit == std::string::npos || FindLinear(to, from) != std::string::npos) return;
  s = MayCascade(from, to) ? CascadingReplacer(s, from, to).Run() : ReplaceOnce(s, from, to, hit);
}

void StrCollapse(std::string& s) {
  Collapser::Collapse(s);
}

void toUpperCase(std::string& s) {
  std::transform(s.begin(), s.end(), s.begin(), ToUpper);
}

std::string replaceEnterWithBlank(const char* text) {
  std::string cleaned;
  if (text == nullptr) return cleaned;
  cleaned.reserve(std::strlen(text));
  for (; *text != '\0'; ++text) {
    const char c = *text == '\r' ? ' ' : *text;
    const bool dropped = c == '\n' || (c == ' ' && !cleaned.empty() && cleaned.back() == ' ');
    if (!dropped) cleaned.push_back(c);
  }
  return cleaned;
}

bool GetTL1AttrbuteString(const char* text, const std::string& name, std::string& value) {
  const std::string_view all = text == nullptr ? "" : text;
  const size_t found = name.empty() ? std::string_view::npos : FindLinear(all, name);
  if (found == std::string_view::npos) {
    value.clear();
    return false;
  }
  size_t end = all.find(',', found);
  if (end == std::string_view::npos) end = all.find('"', found);
  const size_t start = found + name.size();
  value.assign(all.substr(start, std::max(end, start) - start));  // empty if the end is inside the name
  return end != std::string_view::npos || !value.empty();
}

void SplitStringByChar(const char* text, char sep, std::vector<std::string>& fields) {
  if (text == nullptr) return;
  // The text may be part of `fields`, and memory exhaustion must not leave some of its fields there.
  std::vector<std::string> added;
  added.reserve(8);  // 8 fields: half the time
  for (std::string_view rest = text;;) {
    while (!rest.empty() && IsBlank(rest.front()))  // 15 ns less than TrimmedLeft()
      rest.remove_prefix(1);
    const size_t end = rest.find(sep);
    added.emplace_back(rest.substr(0, end));
    if (end == std::string_view::npos) break;
    rest.remove_prefix(end + 1);
  }
  if (fields.empty()) {
    fields.swap(added);
  } else {
    fields.insert(fields.end(), std::make_move_iterator(added.begin()), std::make_move_iterator(added.end()));
  }
}

template <typename T>
void ConvertFromString(const char* text, T& value) {
  if (text != nullptr) StreamReader(text).Read(value);
}

template void ConvertFromString<unsigned int>(const char* text, unsigned int& value);
template void ConvertFromString<char>(const char* text, char& value);
template void ConvertFromString<unsigned short>(const char* text, unsigned short& value);

void SplitFilePathAndFileName(const std::string& fullPath, std::string& filePath, std::string& fileName) {
  std::string path = WithSlashes(fullPath);
  const size_t nameStart = path.rfind('/') + 1;  // 0 without a separator
  const bool isBareName = !path.empty() && nameStart == 0;
  std::string name = path.substr(nameStart);
  path.resize(nameStart);
  if (isBareName) path = "/";
  fileName = std::move(name);
  filePath = std::move(path);  // assigned last: if one variable is passed for both outputs, it keeps this value
}

// The name is a copy and may be one of the outputs. If one variable is passed for both outputs, it keeps the extension.
void GetFileLeftNameAndExName(std::string fileName, std::string& leftName, std::string& exName) {
  const size_t dot = std::min(fileName.rfind('.'), fileName.size());
  std::string extension = fileName.substr(dot);
  fileName.resize(dot);
  leftName = std::move(fileName);
  exName = std::move(extension);
}

bool VerifyFilePathAndName(const std::string& path) {
  // Two dots are in the folder part or in the name part, never across the separator between them.
  return path.find("..") == std::string::npos;
}

std::string ToAbsPath(const std::string& path) {
  const char* text = path.c_str();  // up to the first NUL
  if (std::strlen(text) > MAX_PATH_LENGTH) return Refuse(__LINE__, "fileName too long file:", text);
  const int callersErrno = errno;
  char resolved[MAX_PATH_LENGTH + 1] = {};
  if (realpath(text, resolved) == nullptr) return Refuse(__LINE__, "realpath failed. file:", text);
  if (!VerifyFilePathAndName(resolved)) {
    return Refuse(__LINE__, "VerifyFilePathAndName is failed, filename", resolved);
  }
  errno = callersErrno;  // realpath() changes it on success too
  return resolved;
}

int VNRemoveFile(const std::string& path) {
  return NS_UTIL::RemoveFile(path);
}

int VNRemoveDir(const std::string& path) {
  return NS_UTIL::RemoveDir(path);
}

double GetCurTimeMilSec() {
  const time_t seconds = std::time(nullptr);
  timeval now;
  const ACE_Time_Value time = gettimeofday(&now, nullptr) == -1 ? ACE_Time_Value(-1, 0) : ACE_Time_Value(now);
  return static_cast<double>(time.usec()) / 1000000.0 + static_cast<double>(seconds);
}

bool IsTimerReach(unsigned int last, unsigned int now, unsigned int period) {
  return now != 0 && now / period != last / period;
}

std::string GetCurDateFormated() {
  const std::tm local = LocalTime(std::time(nullptr));
  return Stamp().Year(local).Month(local).Number(local.tm_mday, 2).Text();
}

std::string MakeTimeFormated(long seconds) {
  const std::tm local = LocalTime(seconds);
  Stamp stamp;
  stamp.Year(local).Separator('-').Month(local).Separator('-').Number(local.tm_mday, 2).Separator(' ');
  stamp.Number(local.tm_hour, 2).Separator(':').Number(local.tm_min, 2).Separator(':').Number(local.tm_sec, 2);
  return stamp.Text();
}

std::string GetCurTimeFormated() {
  return MakeTimeFormated(std::time(nullptr));
}

bool ParseTL1SlotID(const char* text, unsigned short& shelf, unsigned short& slot) {
  constexpr std::string_view PREFIX = "SLOT-";
  const char* found = text == nullptr ? nullptr : std::strstr(text, PREFIX.data());
  return found != nullptr && ParseMMLSlotID(found + PREFIX.size(), shelf, slot);
}

bool ParseMMLSlotID(const char* text, unsigned short& shelf, unsigned short& slot) {
  if (text == nullptr) return false;
  ReadDashed(text, shelf, slot);
  return true;
}

}  // namespace VARNEL_COMMON
