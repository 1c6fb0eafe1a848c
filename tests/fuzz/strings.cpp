// A separator, two short texts and a long one: the string services compared with plain ones.

#include <str.h>

#include <optional>
#include <vector>

#include "check.h"
#include "exact_text.h"
#include "input.h"
#include "replay.h"
#include "string_references.h"

using VARNEL_TEST::ExactText;

namespace Reference = VARNEL_TEST::Reference;

namespace {

constexpr size_t LONGEST_TEXT = 2048;  // the plain versions erase from the front
constexpr size_t MOST_REPLACEMENTS = 2000;

void CheckInPlace(const std::string& text, void (*operation)(std::string&), void (*plain)(std::string&)) {
  std::string expected = text, actual = text;
  plain(expected);
  operation(actual);
  FUZZ_CHECK(actual == expected);
}

void CheckReplacing(const std::string& text, const std::string& from, const std::string& to) {
  const bool stays = from.empty() || to.find(from) != std::string::npos;
  const auto expected = stays ? text : Reference::Replace(text, from, to, MOST_REPLACEMENTS);
  if (!expected) return;  // may never end
  std::string actual = text;
  VARNEL_COMMON::ReplaceString(actual, from, to);
  FUZZ_CHECK(actual == *expected);
}

void CheckSplitting(const std::string& text, char separator) {
  std::vector<std::string> expected{"first"}, fields{"first"};
  Reference::Split(text.c_str(), separator, expected);
  VARNEL_COMMON::SplitStringByChar(ExactText(text), separator, fields);
  FUZZ_CHECK(fields == expected);
  fields.clear();
  VARNEL_COMMON::SplitStringByChar(ExactText(text), separator, fields);
  FUZZ_CHECK(fields == std::vector(expected.begin() + 1, expected.end()));
}

void CheckAttribute(const std::string& text, const std::string& name) {
  std::string expected = "old", value = "old";
  const bool found = Reference::AttributeValue(text.c_str(), name, expected);
  FUZZ_CHECK(VARNEL_COMMON::GetTL1AttrbuteString(ExactText(text), name, value) == found);
  FUZZ_CHECK(value == expected);
}

void CheckPaths(const std::string& path) {
  std::string folder, file, left, extension;
  VARNEL_COMMON::SplitFilePathAndFileName(path, folder, file);
  FUZZ_CHECK(file.find_first_of("/\\") == std::string::npos);
  FUZZ_CHECK(path.empty() ? folder.empty() : folder.back() == '/');
  FUZZ_CHECK(path.compare(path.size() - file.size(), file.size(), file) == 0);
  VARNEL_COMMON::GetFileLeftNameAndExName(file, left, extension);
  FUZZ_CHECK(left + extension == file);
  FUZZ_CHECK(VARNEL_COMMON::VerifyFilePathAndName(path) == (path.find("..") == std::string::npos));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  VARNEL_FUZZ::Input input(data, size);
  const auto separator = static_cast<char>(input.Byte());
  const std::string first = input.Field(), second = input.Field();
  const std::string text = input.Rest().substr(0, LONGEST_TEXT);

  CheckInPlace(text, VARNEL_COMMON::StrTrimLeft, Reference::TrimLeft);
  CheckInPlace(text, VARNEL_COMMON::StrTrimRight, Reference::TrimRight);
  CheckInPlace(text, VARNEL_COMMON::StrTrim, Reference::Trim);
  CheckInPlace(text, VARNEL_COMMON::StrCollapse, Reference::Collapse);
  CheckInPlace(text, VARNEL_COMMON::toUpperCase, Reference::UpperCase);
  FUZZ_CHECK(VARNEL_COMMON::replaceEnterWithBlank(ExactText(text)) == Reference::CleanLineEnds(text.c_str()));
  CheckReplacing(text, first, second);
  CheckSplitting(text, separator);
  CheckAttribute(text, first);
  CheckPaths(text);
  return 0;
}

void VARNEL_FUZZ::RunGenerated(Runner run) {
  using VARNEL_TEST::AllTexts;
  const auto runAll = [run](const std::vector<std::string>& starts, const std::vector<std::string>& texts) {
    for (const std::string& start : starts) {
      for (const std::string& text : texts)
        run(start + text);
    }
  };
  const auto fields = [](const std::string& first, const std::string& second) {
    return "," + first + '\x1E' + second + '\x1E';
  };
  std::vector<std::string> names, pairs, morePairs;
  for (const std::string& name : AllTexts("a=,\"", 3))
    names.push_back(fields(name, ""));
  for (const std::string& from : AllTexts("ab", 3)) {
    for (const std::string& to : AllTexts("ab", 3))
      pairs.push_back(fields(from, to));
  }
  for (const std::string& from : AllTexts("abc", 3)) {
    for (const std::string& to : AllTexts("abc", 2))
      morePairs.push_back(fields(from, to));
  }
  runAll(names, AllTexts("a=,\"", 5));
  runAll(pairs, AllTexts("ab", 8));
  runAll(morePairs, AllTexts("abc", 4));
  runAll({",\x1E\x1E", " \x1E\x1E"}, AllTexts("a, \t\r\n\xA0", 5));
  runAll({",\x1E\x1E"}, AllTexts("a \t", 7));
  runAll({",\x1E\x1E"}, AllTexts(" \r\n", 8));
}
