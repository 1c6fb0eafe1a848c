// Whether cost stays the same with a second thread, and with ever more objects alive.
#include <cmdstr.h>
#include <evtmsg.h>
#include <publicdata.h>
#include <str.h>
#include <tl1nemsgparse.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "input_files.h"
#include "inputs.h"
#include "row.h"
#include "services.h"
#include "software_file.h"

namespace VARNEL_BENCH {

namespace {

using namespace VARNEL_COMMON;

constexpr unsigned int TL1_ELEMENT = 0x1000000;

// A progress report of an element that tells a lot about itself.
const std::string& ProgressReport(size_t size) {
  static std::map<size_t, std::string> reports;
  std::string& report = reports[size];
  if (!report.empty()) return report;
  report = "\r\n\n   NE-EAST 26-01-15 12:01:00\r\nA  701 REPT EVT PROGRESS\r\n   \"SLOT-3:SWDL,";
  const std::string end = ",TRANSFEREDFILES=4,TOTALNUM=12,:\"\r\n;";
  while (report.size() + end.size() < size)
    report += "STATE=IS,";
  return report += end;
}

// Runs on so many threads, each with what `make` makes for it.
template <typename Make>
void Threads(const std::string& service, Make make) {
  for (const int threads : {1, 2}) {
    const std::string name = "threads/" + service + "/ours/" + std::to_string(threads);
    benchmark::RegisterBenchmark(name.c_str(),
                                 [make](benchmark::State& state) {
                                   auto run = make(state.thread_index());
                                   for (auto _ : state)
                                     benchmark::DoNotOptimize(run());
                                 })
        ->Threads(threads)
        ->UseRealTime();
  }
}

auto OfferReport(int /*thread*/) {
  auto event = std::make_shared<CEvtMsg>();
  event->m_strEvtKey = "*REPT EVT PROGRESS*TOTALNUM=*";
  return [event, report = std::string(ProgressReport(2048))] { return event->IsMyEvt(report.c_str()); };
}

auto ParseMessage(int /*thread*/) {
  return [message = std::make_shared<CTL1NEMsgParse>(ProgressReport(520))] { return message->NEMsgParse(); };
}

auto CollapseText(int /*thread*/) {
  return [input = std::string(ReportText(4096)), copy = std::string()]() mutable {
    copy.assign(input);
    StrCollapse(copy);
    return copy.size();
  };
}

auto ReadHead(int thread) {
  const std::string path = InputFile("thread" + std::to_string(thread) + ".pkg", VARNEL_TEST::SoftwareFile().Bytes());
  return [path] {
    ZEP_FILE_HEAD head;
    std::string link, version;
    unsigned int extension = 0, payload = 0;
    return readZEPFileHead(path, head, link, version, extension, payload);
  };
}

auto BuildCommand(int /*thread*/) {
  return [piece = std::string(ReportText(20))] {
    CCmdStr text;
    for (int i = 0; i < 1000; ++i)
      text.AddMsg(piece.c_str());
    return text.GetMsg()[0];
  };
}

template <typename Object>
using Objects = std::vector<std::unique_ptr<Object>>;

// Gives one object after the other its turn, from run to run: a short run would else come back to the same few.
template <typename Object, typename Make, typename Operate>
void ManyObjects(const std::string& service, size_t count, Make make, Operate operate) {
  const auto objects = std::make_shared<Objects<Object>>();
  const auto next = std::make_shared<size_t>(0);
  const std::string name = "objects/" + service + "/ours/" + std::to_string(count);
  benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
    while (objects->size() < count)
      objects->push_back(make(objects->size()));
    for (auto _ : state) {
      benchmark::DoNotOptimize(operate(*(*objects)[*next]));
      if (++*next == count) *next = 0;
    }
  });
}

std::unique_ptr<CVNPackGuageEvt> MakeEvent(size_t number) {
  auto event = std::make_unique<CVNPackGuageEvt>();
  event->m_strEvtKey = "*REPT EVT PROGRESS*TOTALNUM=*";
  event->m_dwNEID = TL1_ELEMENT + static_cast<unsigned int>(number);
  return event;
}

bool OfferAndHandle(CVNPackGuageEvt& event) {
  const char* report = ProgressReport(300).c_str();
  return event.IsMyEvt(report) && event.HandleReport(report);
}

std::unique_ptr<CTL1NEMsgParse> MakeMessage(size_t /*number*/) {
  return std::make_unique<CTL1NEMsgParse>(ProgressReport(520));
}

}  // namespace

void AddScaling() {
  Threads("IsMyEvt", OfferReport);
  Threads("NEMsgParse", ParseMessage);
  Threads("StrCollapse", CollapseText);
  Threads("readZEPFileHead", ReadHead);
  Threads("CCmdStr", BuildCommand);
  for (const size_t count : {1, 10, 100, 1000, 10000, 100000, 1000000}) {
    ManyObjects<CVNPackGuageEvt>("CVNPackGuageEvt", count, MakeEvent, OfferAndHandle);
    if (count > 100000) continue;
    ManyObjects<CTL1NEMsgParse>("CTL1NEMsgParse", count, MakeMessage,
                                [](CTL1NEMsgParse& message) { return message.NEMsgParse(); });
  }
}

}  // namespace VARNEL_BENCH
