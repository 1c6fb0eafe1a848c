#include "event_references.h"

#include <cstdlib>
#include <sstream>
#include <vector>

#include "string_references.h"

namespace VARNEL_TEST::Reference {

namespace {

constexpr size_t NPOS = std::string::npos;

// A match of "*piece*piece*".
bool HasInOrder(const std::string& report, const std::vector<std::string>& pieces) {
  size_t at = 0;
  for (const std::string& piece : pieces) {
    at = report.find(piece, at);
    if (at == NPOS) return false;
    at += piece.size();
  }
  return true;
}

bool ReadTwoNumbers(std::string text, unsigned int& first, unsigned int& second) {
  Collapse(text);
  std::stringstream stream(text);
  stream >> first;
  stream >> second;
  return stream.tellg() > 2;
}

bool ConvertDigits(const char* text, unsigned int& number) {
  char* end;
  number = static_cast<unsigned int>(std::strtoul(text, &end, 10));
  return end != text;
}

void ReadAttribute(const std::string& report, const std::string& name, unsigned int& number) {
  std::string value;
  AttributeValue(report.c_str(), name, value);
  std::stringstream(value) >> number;
}

}  // namespace

bool ClaimsReport(const std::string& key, const std::string& report) {
  return MatchesStars(report, key) || report.find(key) != NPOS;
}

bool ReadMmlPackageProgress(const std::string& report, unsigned int& done, unsigned int& total) {
  if (HasInOrder(report, {"EVT_SFTM_CPYFILE_PROGRESS", "DONE_NUM", "TOTAL_NUM"})) {
    return ReadTwoNumbers(report.substr(report.find("TOTAL_NUM") + 9), done, total);
  }
  if (!HasInOrder(report, {"status=completed", "done=", "total="})) return false;
  const bool hasDone = ConvertDigits(report.c_str() + report.find("done=") + 5, done);
  const bool hasTotal = ConvertDigits(report.c_str() + report.find("total=") + 6, total);
  return hasDone && hasTotal;
}

bool ReadTl1PackageProgress(const std::string& report, unsigned int& done, unsigned int& total) {
  std::string doneName, totalName;
  if (HasInOrder(report, {"FILES_DONE=", "FILES_TOTAL="})) {
    doneName = "FILES_DONE=";
    totalName = "FILES_TOTAL=";
  } else if (HasInOrder(report, {"REPT EVT PROGRESS", "TRANSFEREDFILES=", "TOTALNUM="})) {
    doneName = "TRANSFEREDFILES=";
    totalName = "TOTALNUM=";
  } else if (HasInOrder(report, {"SLOTSDONE=", "SLOTSTTL="})) {
    doneName = "SLOTSDONE=";
    totalName = "SLOTSTTL=";
  } else {
    return false;
  }
  ReadAttribute(report, doneName, done);
  ReadAttribute(report, totalName, total);
  return total != 0;
}

bool ReadScriptProgress(const std::string& report, unsigned int& done, unsigned int& total) {
  if (!HasInOrder(report, {"EVENT", "CAM", "RUN", "PROGRESS"})) return false;
  const size_t at = report.find("TOTAL");
  if (at == NPOS || report.size() - at < 15) return false;
  return ReadTwoNumbers(report.substr(at + 15), total, done);
}

bool ReadScriptEnd(const std::string& report, ScriptEnd& end) {
  if (!HasInOrder(report, {"EVENT", "CAM", "RUN", "END"})) return false;
  const size_t at = report.find("RSP");
  if (at == NPOS) return false;
  std::string text = report.substr(at + 3);
  Collapse(text);
  if (text.find("SUCCESS") != NPOS) {
    std::stringstream stream(text);
    stream >> end.result;
    stream >> end.code;
    return true;
  }
  if (text.find("FAIL") == NPOS) return false;
  std::vector<std::string> words;
  Split(text.c_str(), ' ', words);
  if (words.size() < 4) return false;
  end.result = words[0];
  std::stringstream(words[1]) >> end.code;
  end.item = words[2];
  for (size_t i = 3; i < words.size(); ++i)
    end.text += words[i] + " ";
  return true;
}

}  // namespace VARNEL_TEST::Reference
