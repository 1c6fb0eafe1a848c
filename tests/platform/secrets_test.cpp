// No password reaches the log, in any spelling and from any function that logs a text of its caller.
#include <sys/stat.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "logged_test.h"
#include "password_spellings.h"
#include "software_file.h"
#include "temp_folder.h"
#include "varnel_common.h"

namespace VARNEL_TEST {
namespace {

using namespace VARNEL_COMMON;

constexpr char PASSWORD[] = "hunter2pass";

// Calls functions that log a text of the caller. The text need not be a path.
struct Reporter {
  const char* name;
  std::function<void(const std::string& text)> report;
  size_t lines;  ///< that each call logs
};

void ReadHeads(const std::string& path) {
  ZEP_FILE_HEAD head;
  std::string link, version;
  unsigned int word = 0, offset = 0;
  unsigned short shortType = 0;
  int type = 0;
  readZEPFileHead(path, head, link, version, word, offset);
  CheckZEPFileHead(path, word, offset, link, shortType, version);
  CheckZEPFileHead(path, type, link, version);
}

void ParseInEveryFailingWay(const std::string& text) {
  const std::string header = "\r\n\n   NE 20-01-01 12:34:56\r\n";
  for (const std::string& message :
       {text, header + text, header + "M  " + text, header + "M  7 " + text, "\r\n\n   " + text + "\r\n",
        "\r\n\n   NE " + text + "\r\n", header + "*C 7 " + text, text + "\r\n<", text + "\r\n>"}) {
    CTL1NEMsgParse parser(message);
    parser.NEMsgParse();
    parser.ParseMsgEndFlg(message);
    parser.ParseMsgEndFlg("");
  }
}

void PutTogether(const std::string& text) {
  CCmdStr command;
  command.SetMsg((text + std::string(10485760, 'x')).c_str());
  command.AddMsg(text.c_str());
  command.AddMsg((std::string(10485760, 'x') + text).c_str());
  command.GetMsg();
}

void Send(const std::string& text) {
  const std::string tooLong = text + std::string(65535, 'x');
  CComNEMsg message(0);
  message.SetMsg(tooLong.data(), static_cast<unsigned int>(tooLong.size()));
  message.AddMsg(tooLong.data(), static_cast<unsigned int>(tooLong.size()));
  message.SetBufLen(static_cast<unsigned int>(tooLong.size()));
}

void HandleReports(const std::string& text) {
  CVNPackGuageEvt package;
  CVNScriptFileGuageEvt script;
  CVNScriptFileEndEvt end;
  for (CEvtMsg* event : std::vector<CEvtMsg*>{&package, &script, &end}) {
    event->m_strEvtKey = text;
    event->m_cmd.SetMsg(text.c_str());
    for (const unsigned int element : {1U, 0x1000001U}) {
      event->m_dwNEID = element;
      event->IsMyEvt(text.c_str());
      event->HandleReport(("EVENT CAM RUN END RSP FAIL 5 " + text).c_str());
      event->HandleReport((text + "FILES_DONE=1,FILES_TOTAL=" + text).c_str());
    }
    delete event->Duplicate();
  }
}

void ReadSlots(const std::string& text) {
  convertSlotDC(text);
  HexStr2Int(text);
  WSlotIDstr2i(text);
  VNRemoveFile("/absent/" + text);
  VNRemoveDir("/absent/" + text);
}

const std::vector<Reporter> REPORTERS{
    {"ToAbsPath, absent", [](const std::string& text) { ToAbsPath("/absent/" + text); }, 1},
    {"ToAbsPath, too long", [](const std::string& text) { ToAbsPath(text + std::string(5000, '/')); }, 1},
    {"heads", [](const std::string& text) { ReadHeads("/absent/" + text); }, 3},
    {"isColdPatch", [](const std::string& text) { isColdPatch("/absent/" + text); }, 1},
    {"package", [](const std::string& text) { CPkgFile("/absent/" + text).ParsePkgFile(); }, 2},
    {"description", [](const std::string& text) { CPkgFile("").ParsePkgSoftInfo("/absent/" + text); }, 1},
    {"TL1 parser", ParseInEveryFailingWay, 9},
    {"events", HandleReports, 0},
    {"slots and removals", ReadSlots, 0},
};

class Secrets : public LoggedTest {
 protected:
  void ExpectAbsent(const std::string& secret, const std::string& where) {
    for (; m_seen < Log().size(); ++m_seen)
      EXPECT_EQ(Log()[m_seen].find(secret), std::string::npos) << where << ": " << Log()[m_seen];
  }

 private:
  size_t m_seen = 0;
};

TEST_F(Secrets, AreMaskedInEverySpellingAndReport) {
  for (const Reporter& reporter : REPORTERS) {
    for (const Spelling& spelling : Spellings()) {
      const size_t before = Log().size();
      const std::string text = spelling.write(PASSWORD);
      ASSERT_NE(text.find(PASSWORD), std::string::npos);
      reporter.report(text);
      EXPECT_GE(Log().size(), before + reporter.lines) << reporter.name;
      ExpectAbsent(PASSWORD, std::string(reporter.name) + ", " + spelling.name);
    }
  }
  EXPECT_GT(Log().size(), 100U);
}

TEST_F(Secrets, AreMaskedInTextsThatAreTooLong) {
  for (const Spelling& spelling : Spellings()) {
    const std::string text = spelling.write(PASSWORD);
    PutTogether(text);
    Send(text);
    ExpectAbsent(PASSWORD, spelling.name);
  }
  EXPECT_GE(Log().size(), 6 * Spellings().size());
}

// A line with the password would contain the unchanged text.
TEST_F(Secrets, GeneratedOnesAreMaskedAsByTheFilter) {
  std::mt19937 random(20201121);
  size_t tried = 0;
  for (int i = 0; i < 500; ++i) {
    const std::string password = GeneratePassword(random);
    for (const Spelling& spelling : Spellings()) {
      const std::string text = spelling.write(password);
      // A path, and the logged path, end at the first NUL.
      if (text.empty() || text.find('\0') != std::string::npos) continue;
      const size_t before = Log().size();
      isColdPatch("/absent/" + text);
      ASSERT_EQ(Log().size(), before + 1);
      EXPECT_EQ(Log().back(),
                "warning publicdata::isColdPatch isColdPatch not find coldpatch, File: /absent/" + spelling.masked)
          << spelling.name << ": " << ::testing::PrintToString(text);
      ++tried;
    }
  }
  RecordProperty("tried", static_cast<int>(tried));
  EXPECT_GT(tried, 2000U);
}

// Files whose names contain the password: they exist, but have the wrong content.
TEST_F(Secrets, AreMaskedInNamesOfExistingFiles) {
  const TempFolder folder;
  SoftwareFile content;
  content.payload = "\n[File Description]\n" + std::string(300, 'c') + ":k:3:4:5:6:7:8\n";
  size_t names = 0;
  for (const Spelling& spelling : Spellings()) {
    const std::string text = spelling.write(PASSWORD);
    const size_t before = Log().size();
    CPkgFile(folder.Write(text, content.Bytes())).ParsePkgFile();
    CPkgFile(folder.Write(text, "\n[File Description]\n")).ParsePkgFile();
    ASSERT_EQ(mkdir(folder.Path(text + "..").c_str(), 0700), 0);
    EXPECT_EQ(ToAbsPath(folder.Path(text + "..")), "");
    EXPECT_GE(Log().size(), before + 3);
    ExpectAbsent(PASSWORD, spelling.name);
    ++names;
  }
  EXPECT_GE(names, 9U);
}

}  // namespace
}  // namespace VARNEL_TEST
