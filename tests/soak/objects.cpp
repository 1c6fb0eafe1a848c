#include <unistd.h>

#include <chrono>
#include <fstream>
#include <memory>
#include <random>

#include "soak.h"
#include "temp_folder.h"
#include "varnel_common.h"

namespace VARNEL_TEST {

namespace {

using namespace VARNEL_COMMON;

constexpr unsigned int FIRST_TL1_ELEMENT = 0x1000000;
constexpr size_t ELEMENTS = 10;
constexpr size_t MOST_GROWTH = 1024;  // KiB: tolerance for the allocator

size_t ResidentKibibytes() {
  std::ifstream statistics("/proc/self/statm");
  size_t whole = 0, resident = 0;
  statistics >> whole >> resident;
  return resident * static_cast<size_t>(sysconf(_SC_PAGESIZE)) / 1024;
}

// Reports as elements mix them: progress and ends in both languages, unexpected reports, and noise.
class Reports {
 public:
  std::string Next() {
    const std::string done = Number(100), total = Number(100), element = std::to_string(m_random() % ELEMENTS);
    switch (m_random() % 8) {
      case 0:
        return "EVT_SFTM_CPYFILE_PROGRESS NE=" + element + " DONE_NUM TOTAL_NUM\n " + done + ' ' + total +
               "\n---    END";
      case 1:
        return "NE=" + element + " status=completed done=" + done + " total=" + total + ";";
      case 2:
        return Message("*C 7 REPT EVT PROGRESS",
                       "NE=" + element + ",TRANSFEREDFILES=" + done + ",TOTALNUM=" + total + ",");
      case 3:
        return "EVENT CAM RUN PROGRESS NE=" + element + " TOTAL    SUCC   = " + total + ' ' + done + "\n;";
      case 4:
        return "EVENT CAM RUN END NE=" + element + " RSP FAIL " + done + " item " + std::string(m_random() % 60, 't');
      case 5:
        return "EVENT CAM RUN END NE=" + element + " RSP SUCCESS " + done;
      case 6:
        return Message("M  " + done + " COMPLD", std::string(m_random() % 2000, 'x'));
      default:
        return Noise();
    }
  }

 private:
  std::string Number(unsigned int end) { return std::to_string(m_random() % end); }

  static std::string Message(const std::string& identification, const std::string& text) {
    return "\r\n\n   NORTH 20-01-01 12:34:56\r\n" + identification + "\r\n   \"" + text + "\"\r\n;";
  }

  std::string Noise() {
    std::string noise(m_random() % 300, '\0');
    for (char& c : noise)
      c = static_cast<char>(1 + m_random() % 255);
    return noise;
  }

  std::mt19937 m_random{20201121};
};

// Waiting objects: events of all kinds, and the parsers of as many sessions.
class Waiting {
 public:
  explicit Waiting(size_t count) {
    for (size_t i = 0; i < count; ++i) {
      m_events.push_back(MakeEvent(i));
      m_events.back()->m_strEvtKey =
          i % 5 == 0 ? "*NE=" + std::to_string(i % ELEMENTS) + "*" : "NE=" + std::to_string(i % ELEMENTS);
      m_events.back()->m_cmd.SetMsg("RTRV-PROGRESS:NE;");
      m_parsers.push_back(std::make_unique<CTL1NEMsgParse>(""));
    }
  }

  void Offer(size_t index, const std::string& report) {
    CEvtMsg& event = *m_events[index];
    if (event.IsMyEvt(report.c_str()) && event.HandleReport(report.c_str())) ++handled;
    if (const auto end = dynamic_cast<CVNScriptFileEndEvt*>(&event)) end->m_strResultText.clear();  // was read
    if (index % 8 == 0) {
      event.m_cmd.AddMsg("and one more;");
      event.m_cmd.SetMsg(event.m_cmd.GetMsgLen() > 1000 ? "RTRV-PROGRESS:NE;" : event.m_cmd.GetMsg());
    }
    if (index % 4 == 0 && m_parsers[index]->ParseMsgEndFlg(report)) ++parsed;
  }

  size_t Count() const { return m_events.size(); }

  size_t handled = 0;
  size_t parsed = 0;

 private:
  static std::unique_ptr<CEvtMsg> MakeEvent(size_t i) {
    std::unique_ptr<CEvtMsg> event;
    if (i % 3 == 0) event = std::make_unique<CVNPackGuageEvt>();
    if (i % 3 == 1) event = std::make_unique<CVNScriptFileGuageEvt>();
    if (i % 3 == 2) event = std::make_unique<CVNScriptFileEndEvt>();
    event->m_dwNEID = i % 6 == 0 ? FIRST_TL1_ELEMENT + static_cast<unsigned int>(i) : static_cast<unsigned int>(i);
    return event;
  }

  std::vector<std::unique_ptr<CEvtMsg>> m_events;
  std::vector<std::unique_ptr<CTL1NEMsgParse>> m_parsers;
};

}  // namespace

void SoakObjects(const SoakSize& size) {
  Waiting waiting(size.objects);
  Reports reports;
  const auto start = std::chrono::steady_clock::now();
  size_t next = 0, warm = 0, most = 0, descriptors = 0;
  for (size_t i = 0; i < size.reports; ++i) {
    if (i == size.reports / 5) {  // every object has received the longest reports by now
      warm = ResidentKibibytes();
      descriptors = OpenDescriptors();
    }
    if (warm > 0 && i % 1000 == 0) most = std::max(most, ResidentKibibytes());
    const std::string report = reports.Next();
    for (size_t offer = 0; offer < size.offers; ++offer)
      waiting.Offer(next++ % waiting.Count(), report);
  }
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  Expect(waiting.handled > size.reports / 4 && waiting.parsed > size.reports / 10,
         std::to_string(size.objects) + " events and as many parsers, " + std::to_string(size.reports) +
             " reports to " + std::to_string(size.offers) + " each: " + std::to_string(waiting.handled) + " handled, " +
             std::to_string(waiting.parsed) + " parsed, " + std::to_string(seconds) + " s");
  Expect(!MEMORY_COUNTS || most <= warm + MOST_GROWTH,
         "resident memory: " + std::to_string(warm) + " KiB when warm, at most " + std::to_string(most) + " KiB later");
  Expect(OpenDescriptors() == descriptors, std::to_string(descriptors) + " descriptors, as before");
}

}  // namespace VARNEL_TEST
