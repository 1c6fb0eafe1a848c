#include <varnel_common/varnel_common.h>

#include <cstdlib>
#include <iostream>

#include "tiny_platform.h"

namespace {

bool g_failed = false;

template <typename T>
void Expect(const char* what, const T& actual, const T& expected) {
  if (actual == expected) return;
  std::cerr << what << ": " << actual << " instead of " << expected << '\n';
  g_failed = true;
}

}  // namespace

int main() {
  using namespace VARNEL_COMMON;
  Expect("cold patch", isColdPatch("/absent/classified"), false);
  Expect("absolute path", ToAbsPath("/absent/classified"), std::string());
  Expect("calls of the host's file functions", FileCalls(), 1);
  Expect("result of the host's matcher", strmcmp("a", "a"), 17);
  Expect("result of the host's file removal", VNRemoveFile("x"), 101);
  Expect("result of the host's folder removal", VNRemoveDir("x"), 102);

  std::vector<std::string>& lines = CollectedLines();
  lines.resize(3);
  Expect("warning", lines[0], std::string("transcommon_log 3 isColdPatch not find coldpatch, File: /absent/(hidden)"));
  Expect("error report", lines[1],
         std::string("transcommon_log 5 ErrorCode:0x3b001400, realpath failed. file:/absent/(hidden). "));
  Expect("line too many", lines[2], std::string());
  return g_failed ? EXIT_FAILURE : EXIT_SUCCESS;
}
