// Free functions in many threads, and objects that belong to one thread each, concurrently. Every thread must get the
// same results as a single one; the thread sanitizer detects shared data.
#include <gtest/gtest.h>
#include <spdlog/sinks/null_sink.h>
#include <spdlog/spdlog.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "software_file.h"
#include "temp_folder.h"
#include "varnel_common.h"

namespace VARNEL_TEST {
namespace {

using namespace VARNEL_COMMON;

constexpr size_t THREADS = 8;

class Threads : public ::testing::Test {
 protected:
  Threads() {
    spdlog::register_logger(
        std::make_shared<spdlog::logger>("transcommon_log", std::make_shared<spdlog::sinks::null_sink_mt>()));
    SoftwareFile content;
    content.payload = "\n[File Description]\nmain.bin:board:3:4:5:6:7:8\n[END]\n[COLDPATCH]\n";
    path = folder.Write("package", content.Bytes());
  }
  ~Threads() override { spdlog::drop_all(); }

  // Runs each task many times on each thread. Each thread begins with another task.
  static void RunAtOnce(const std::vector<std::function<std::string()>>& works, int rounds) {
    std::vector<std::string> alone;
    for (const auto& work : works)
      alone.push_back(work());
    std::atomic<size_t> waiting{THREADS};
    std::atomic<size_t> wrong{0};
    std::vector<std::thread> threads;
    for (size_t thread = 0; thread < THREADS; ++thread) {
      threads.emplace_back([&, thread] {
        --waiting;
        while (waiting > 0)
          std::this_thread::yield();
        for (int round = 0; round < rounds; ++round) {
          for (size_t i = 0; i < works.size(); ++i) {
            const size_t chosen = (i + thread) % works.size();
            if (works[chosen]() != alone[chosen]) ++wrong;
          }
        }
      });
    }
    for (std::thread& thread : threads)
      thread.join();
    EXPECT_EQ(wrong, 0U);
  }

  const TempFolder folder;
  std::string path;
};

TEST_F(Threads, FreeFunctionsReturnTheSameInSeveralThreads) {
  RunAtOnce(
      {
          [] { return WSlotIDi2str(0x0305) + WSlotIDi2Hexstr(0x0305) + std::to_string(WSlotIDstr2i("3-5")); },
          [] { return convertSlot2strDC(50000, 0x0305) + std::to_string(convertSlotDC("305")); },
          [] { return std::to_string(GetNESlotID(305)) + std::to_string(HexStr2Int("0x1f")); },
          [] {
            unsigned short shelf = 0, slot = 0;
            ParseTL1SlotID("FAC-1-SLOT-3-5", shelf, slot);
            return std::to_string(shelf) + '-' + std::to_string(slot);
          },
          [] {
            std::string text = "  a\t b \r\n c ";
            StrCollapse(text);
            toUpperCase(text);
            ReplaceString(text, "B", "x");
            return text;
          },
          [] {
            std::vector<std::string> fields;
            SplitStringByChar("a,b,,c", ',', fields);
            return std::to_string(fields.size()) + fields.back();
          },
          [] { return std::to_string(strmcmp("abcabc", "*c*b*")) + std::to_string(strmcmpnocase("abcabc", "*C*")); },
          [] { return std::to_string(IsSccBdName("vcua")) + std::to_string(IsKorvaneNE(50000, "KVA4210")); },
          [] { return MakeTimeFormated(1600000000) + std::to_string(GetCurTimeFormated().size()); },
          [] { return std::to_string(GetCurDateFormated().size()) + std::to_string(GetCurTimeMilSec() > 0); },
          [] { return ToAbsPath("/absent/PWD=x"); },
          [this] { return ToAbsPath(path) + std::to_string(isColdPatch(path)); },
          [] { return std::to_string(isColdPatch("/absent")); },
          [this] {
            std::string link, version;
            int type = 0;
            const unsigned int result = CheckZEPFileHead(path, type, link, version);
            return std::to_string(result) + link + version + std::to_string(type);
          },
          [] { return std::to_string(VNRemoveFile("/absent/x")) + std::to_string(VNRemoveDir("/absent/x")); },
      },
      300);
}

std::string HandleEvents() {
  CVNPackGuageEvt package;
  package.m_dwNEID = 0x1000001;
  package.m_strEvtKey = "*PROGRESS*";
  const char* const report = "REPT EVT PROGRESS TRANSFEREDFILES=3,TOTALNUM=12,";
  if (!package.IsMyEvt(report) || !package.HandleReport(report)) return "not recognised";
  const std::unique_ptr<CEvtMsg> copy(package.Duplicate());
  CVNScriptFileEndEvt end;
  end.HandleReport("EVENT CAM RUN END RSP FAIL 5 item text");
  return std::to_string(package.GetGuage()) + copy->m_strEvtKey + end.m_strResultText;
}

TEST_F(Threads, SeparateObjectsReturnTheSameInSeveralThreads) {
  RunAtOnce({
                [] {
                  CCmdStr command;
                  command.SetMsg("RTRV;\r\n");
                  for (int i = 0; i < 20; ++i)
                    command.AddMsg("piece");
                  CCmdStr copy(command);
                  return std::string(copy.GetMsg()) + std::to_string(command.AddSnMML(5));
                },
                [] {
                  CComNEMsg message(16);
                  for (int i = 0; i < 20; ++i)
                    message.AddMsg("body", 4);
                  CComNEMsg copy(message);
                  copy.ToNetOrder();
                  copy.ToHostOrder();
                  return std::string(copy.m_pMsg, copy.usMsgLen);
                },
                HandleEvents,
                [] {
                  CTL1NEMsgParse parser("");
                  parser.ParseMsgEndFlg("\r\n\n   NE 20-01-01 12:34:56\r\nM  7 COMPLD\r\n   text\r\n;");
                  return parser.GetSID() + parser.GetCtage() + parser.GetTextBlock();
                },
                [] {
                  CTL1NEMsgParse parser("");
                  return std::to_string(parser.NEMsgParse());
                },
                [this] {
                  CPkgFile package(path);
                  const unsigned int result = package.ParsePkgFile();
                  return std::to_string(result) + package.m_lstSoftInfo.front()->strColumn1;
                },
                [this] {
                  Vnifstream file(path);
                  std::string text;
                  char line[100];
                  while (file.GetLine(line, sizeof line))
                    text += line;
                  return text;
                },
            },
            60);
}

}  // namespace
}  // namespace VARNEL_TEST
