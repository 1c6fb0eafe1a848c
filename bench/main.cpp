#include <spdlog/spdlog.h>

#include <cstdio>
#include <cstdlib>

#include "bench.h"

namespace VARNEL_BENCH {

std::string FieldsOf(const std::string& operation, const std::string& input, Kind kind, const std::string& peer) {
  constexpr const char* NAMES[] = {"ours", "peer", "other", "limit"};
  return operation + '/' + input + '/' + NAMES[static_cast<size_t>(kind)] + '/' + peer;
}

void AnswersDiffer(const std::string& operation, const std::string& input, const std::string& peer) {
  std::fprintf(stderr, "%s, %s: %s returns another answer\n", operation.c_str(), input.c_str(), peer.c_str());
  std::exit(EXIT_FAILURE);
}

}  // namespace VARNEL_BENCH

int main(int argc, char** argv) {
  using namespace VARNEL_BENCH;
  // Without a sink: refusing an input is measured, writing a log line is not.
  spdlog::register_logger(std::make_shared<spdlog::logger>("transcommon_log"));
  AddCmdStr();
  AddComNEMsg();
  AddEvtMsg();
  AddPkgFile();
  AddPublicData();
  AddStr();
  AddTl1NEMsgParse();
  AddZepv2Data();
  AddTl1();
  AddCommand();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return EXIT_FAILURE;
  benchmark::RunSpecifiedBenchmarks();
}
