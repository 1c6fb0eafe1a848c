// The work of a long-lived process in some minutes: soak [--short] VARNEL
//
// Prints each step with its figures. Exit status 1 when memory or descriptors grew, or the command failed.
#include <spdlog/sinks/null_sink.h>
#include <spdlog/spdlog.h>

#include <iostream>
#include <memory>

#include "soak.h"

namespace VARNEL_TEST {

namespace {

size_t g_wrong = 0;

}  // namespace

void Expect(bool right, const std::string& what) {
  std::cout << (right ? "ok     " : "WRONG  ") << what << std::endl;
  g_wrong += right ? 0 : 1;
}

size_t Wrong() {
  return g_wrong;
}

}  // namespace VARNEL_TEST

int main(int argc, char** argv) {
  using namespace VARNEL_TEST;
  if (argc > 2 && std::string(argv[1]) == MEASURE) return Measure({argv + 2, argv + argc});
  const bool isShort = argc == 3 && std::string(argv[1]) == "--short";
  if (argc != 2 && !isShort) {
    std::cerr << "usage: soak [--short] VARNEL\n";
    return 2;
  }
  const std::string varnel = argv[argc - 1];
  const SoakSize size = isShort ? SoakSize{500, 20000, 20, 1000, 1, 4, 1000000} : SoakSize{};
  spdlog::register_logger(
      std::make_shared<spdlog::logger>("transcommon_log", std::make_shared<spdlog::sinks::null_sink_st>()));
  SoakObjects(size);
  SoakPackages(size, varnel);
  SoakElements(size, varnel);
  SoakWatch(size, varnel);
  return Wrong() == 0 ? 0 : 1;
}
