// A stranger's program: it knows the installed headers and nothing of the build tree.
#include <varnel_common/cmdstr.h>
#include <varnel_common/platform/log_process.h>
#include <varnel_common/varnel_common.h>

#include <cstdio>
#include <iostream>
#include <string>

#include "cmdstr.h"
#include "platform/annex_k.h"
#include "platform/log_process.h"

using namespace VARNEL_COMMON;

int main(int, char** argv) {
  CCmdStr command;
  command.SetMsg("ACT-USER");
  command.AddMsg(":NE1;");
  std::cout << command.GetMsg() << ' ' << command.GetMsgLen() << '\n';

  std::string text = "  a \t b ";
  StrCollapse(text);
  unsigned int number = 0;
  ConvertFromString("42", number);
  std::cout << text << ' ' << number << ' ' << strmcmp("abc", "a*c") << ' ' << strmcmpnocase("abc", "A?C") << '\n';

  const char bytes[] = "\1\2\3";
  std::cout << GetUCCheckSum(bytes, 3) << ' ' << isColdPatch(argv[0]) << '\n';

  CPkgFile package("/absent");
  std::cout << std::hex << package.ParsePkgFile() << ' ' << ToAbsPath("/absent").size() << '\n';

  const LocationInfo location("main", "main", 7);
  LogProcess::ForceLog("stranger", EN_LOG_LEVEL_WARNING, std::string("PWD=hunter2 as it is"), location);
  char small[4];
  std::cout << std::dec << snprintf_s(small, sizeof small, 3, "%d", 123) << ' ' << small << '\n';
}
