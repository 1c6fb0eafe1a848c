#include <varnel_common/platform/log_process.h>

#include <iostream>
#include <string>

#include "cmdstr.h"
#include "families.h"
#include "platform/annex_k.h"
#include "platform/log_process.h"

// Headers have the shorter spellings too.
void UsePlatform() {
  const LocationInfo location("main", "main", 7);
  LogProcess::ForceLog("stranger", EN_LOG_LEVEL_WARNING, std::string("PWD=hunter2 as it is"), location);
  char small[4];
  std::cout << snprintf_s(small, sizeof small, 3, "%d", 123) << ' ' << small << '\n';
}
