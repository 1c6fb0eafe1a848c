// Dates and times as texts.
#include <absl/time/time.h>
#include <fmt/chrono.h>
#include <str.h>

#include <ctime>
#include <iomanip>
#include <sstream>
#include <string>

#include "inputs.h"
#include "row.h"
#include "services.h"

namespace VARNEL_BENCH {

namespace {

using namespace VARNEL_COMMON;

constexpr char TIME[] = "%Y-%m-%d %H:%M:%S";
constexpr char DATE[] = "%Y%m%d";

std::tm Local(time_t seconds) {
  std::tm local = {};
  localtime_r(&seconds, &local);
  return local;
}

std::string ByStrftime(time_t seconds, const char* format) {
  const std::tm local = Local(seconds);
  char text[32];
  return {text, std::strftime(text, sizeof text, format, &local)};
}

std::string ByPutTime(time_t seconds, const char* format) {
  const std::tm local = Local(seconds);
  std::ostringstream stream;
  stream << std::put_time(&local, format);
  return stream.str();
}

std::string BySetfill(time_t seconds) {
  const std::tm local = Local(seconds);
  const auto two = [](std::ostream& out, int number) -> std::ostream& {
    return out << std::setw(2) << std::setfill('0') << number;
  };
  std::ostringstream stream;
  stream << local.tm_year + 1900 << '-';
  two(stream, local.tm_mon + 1) << '-';
  two(stream, local.tm_mday) << ' ';
  two(stream, local.tm_hour) << ':';
  two(stream, local.tm_min) << ':';
  two(stream, local.tm_sec);
  return stream.str();
}

void Times(const std::string& name, long moment) {
  Row("MakeTimeFormated", name, 0, [moment] { return MakeTimeFormated(moment); })
      .Peer("strftime", [moment] { return ByStrftime(moment, TIME); })
      .Peer("fmt", [moment] { return fmt::format("{:%Y-%m-%d %H:%M:%S}", Local(moment)); })
      .Peer("abseil",
            [moment, zone = absl::LocalTimeZone()] { return absl::FormatTime(TIME, absl::FromTimeT(moment), zone); })
      .Obvious("std::put_time", [moment] { return ByPutTime(moment, TIME); })
      .Obvious("std::setfill", [moment] { return BySetfill(moment); })
      .Limit("localtime_r", [moment] { return Local(moment).tm_sec; });
}

}  // namespace

void AddTime() {
  Times("2026", 1768471200);
  Times("1970", 0);
  Row("GetCurDateFormated", "today", 0, GetCurDateFormated)
      .Peer("strftime", [] { return ByStrftime(std::time(nullptr), DATE); })
      .Peer("fmt", [] { return fmt::format("{:%Y%m%d}", Local(std::time(nullptr))); })
      .Peer(
          "abseil",
          [zone = absl::LocalTimeZone()] { return absl::FormatTime(DATE, absl::FromTimeT(std::time(nullptr)), zone); })
      .Obvious("std::put_time", [] { return ByPutTime(std::time(nullptr), DATE); })
      .Limit("localtime_r", [] { return Local(std::time(nullptr)).tm_mday; });
}

}  // namespace VARNEL_BENCH
