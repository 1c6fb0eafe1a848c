#include <spdlog/spdlog.h>

#include "row.h"
#include "services.h"

namespace VARNEL_BENCH {

const char* NameOf(Kind kind) {
  switch (kind) {
    case Kind::Ours:
      return "ours";
    case Kind::Peer:
      return "peer";
    case Kind::Obvious:
      return "obvious";
    case Kind::Other:
      return "other";
    case Kind::Limit:
      return "limit";
  }
  return "";
}

}  // namespace VARNEL_BENCH

int main(int argc, char** argv) {
  using namespace VARNEL_BENCH;
  // Without a sink: what is refused is part of a measurement, writing about it is not.
  spdlog::register_logger(std::make_shared<spdlog::logger>("transcommon_log"));
  AddStrings();
  AddMatching();
  AddNumbers();
  AddTime();
  AddEvents();
  AddTl1();
  AddCmdStr();
  AddComNEMsg();
  AddFiles();
  AddCommand();
  AddScaling();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return EXIT_FAILURE;
  benchmark::RunSpecifiedBenchmarks();
}
