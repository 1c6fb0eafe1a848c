#include <fcntl.h>
#include <gtest/gtest.h>
#include <spdlog/spdlog.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "cmdstr.h"
#include "logged_test.h"
#include "pkgfile.h"
#include "publicdata.h"
#include "software_file.h"
#include "str.h"
#include "temp_folder.h"

namespace VARNEL_TEST {
namespace {

using namespace VARNEL_COMMON;

constexpr unsigned int CANNOT_OPEN = 0x3BA00013;
constexpr unsigned int INVALID_DESCRIPTION = 0x3BA0120F;

class LibraryOnPlatform : public LoggedTest {
 protected:
  std::string MakeFifo() const {
    const std::string path = folder.Path("fifo");
    EXPECT_EQ(mkfifo(path.c_str(), 0666), 0);
    return path;
  }

  const TempFolder folder;
};

TEST_F(LibraryOnPlatform, WarningReachesTheProgramsLogger) {
  CCmdStr text;
  text.SetMsg(std::string(10485761, 'x').c_str());
  EXPECT_EQ(Log(), Lines{"warning cmdstr::SetMsg SetMsg: nDataLen beyond max, nDataLen:10485760"});
}

TEST_F(LibraryOnPlatform, ErrorReportReachesTheProgramsLogger) {
  const std::string absent = folder.Path("absent");
  EXPECT_EQ(ToAbsPath(absent), "");
  EXPECT_EQ(Log(), Lines{"error str::ToAbsPath ErrorCode:0x3b001400, realpath failed. file:" + absent + ". "});
}

TEST_F(LibraryOnPlatform, PasswordInAPathIsMasked) {
  EXPECT_EQ(ToAbsPath("/absent/user=bob;PWD=hunter2;x"), "");
  EXPECT_FALSE(isColdPatch("/absent/token:\"hunter 2\"/x"));
  EXPECT_EQ(Log(),
            (Lines{"error str::ToAbsPath ErrorCode:0x3b001400, realpath failed. file:/absent/user=bob;PWD=******;x. ",
                   "warning publicdata::isColdPatch isColdPatch not find coldpatch, File: "
                   "/absent/token:******"}));
}

TEST_F(LibraryOnPlatform, WithoutALoggerTheLineGoesToStandardError) {
  spdlog::drop_all();
  ::testing::internal::CaptureStderr();
  EXPECT_FALSE(isColdPatch("/absent"));
  const std::string written = ::testing::internal::GetCapturedStderr();
  EXPECT_NE(written.find("[transcommon_log] [warning] [publicdata:isColdPatch:"), std::string::npos) << written;
  EXPECT_NE(written.find("] isColdPatch not find coldpatch, File: /absent\n"), std::string::npos) << written;
}

// Neither a FIFO without a writer nor one with a writer that writes nothing.
class FifoOnPlatform : public LibraryOnPlatform, public ::testing::WithParamInterface<bool> {
 protected:
  FifoOnPlatform() : m_otherEnd(GetParam() ? open(fifo.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC) : -1) {}
  ~FifoOnPlatform() override {
    if (m_otherEnd != -1) close(m_otherEnd);
  }

  std::string OpenFailure() const {
    return "warning publicdata::readZEPFileHead readZEPFileHead(): KELP_OS::fopen failed! filename:" + fifo +
           ". errno:6";
  }

  const std::string fifo = MakeFifo();

 private:
  int m_otherEnd;
};

INSTANTIATE_TEST_SUITE_P(Writer, FifoOnPlatform, ::testing::Bool(),
                         [](const auto& param) { return param.param ? "Silent" : "None"; });

TEST_P(FifoOnPlatform, IsRefusedByHeaderReaders) {
  ZEP_FILE_HEAD head;
  std::string link, version;
  unsigned int extWord = 0, offset = 0;
  unsigned short type = 0;
  int wideType = 0;
  EXPECT_EQ(readZEPFileHead(fifo, head, link, version, extWord, offset), CANNOT_OPEN);
  EXPECT_EQ(CheckZEPFileHead(fifo, extWord, offset, link, type, version), CANNOT_OPEN);
  EXPECT_EQ(CheckZEPFileHead(fifo, wideType, link, version), CANNOT_OPEN);
  EXPECT_EQ(Log(), (Lines{OpenFailure(), OpenFailure(), OpenFailure()}));
}

TEST_P(FifoOnPlatform, HasNoLines) {
  Vnifstream file(fifo);
  char line[16];
  EXPECT_FALSE(file.GetLine(line, sizeof line));
  EXPECT_EQ(Log(), Lines{});
}

TEST_P(FifoOnPlatform, IsNoColdPatch) {
  EXPECT_FALSE(isColdPatch(fifo));
  EXPECT_EQ(Log(), Lines{"warning publicdata::isColdPatch isColdPatch not find coldpatch, File: " + fifo});
}

TEST_P(FifoOnPlatform, IsNoPackage) {
  CPkgFile package(fifo);
  EXPECT_EQ(package.ParsePkgFile(), INVALID_DESCRIPTION);
  EXPECT_EQ(Log(), (Lines{OpenFailure(),
                          "error pkgfile::ParsePkgSoftInfo ErrorCode:0x3ba0120f, "
                          "CPkgFile::ParsePkgSoftInfo(): , not find [File Description], File: " +
                              fifo}));
}

TEST_F(LibraryOnPlatform, PackageIsReadFromStartToEnd) {
  SoftwareFile file;
  file.payload = "\n[File Description]\n a.bin : app :c:d: 7 :f:g:h\n[END]\n[COLDPATCH]\n";
  const std::string path = folder.Write("\xC3\xA9 \xFF", file.Bytes());
  CPkgFile package(path);
  ASSERT_EQ(package.ParsePkgFile(), 0U);
  EXPECT_EQ(package.m_strVersion, "2.10");
  ASSERT_EQ(package.m_lstSoftInfo.size(), 1U);
  EXPECT_EQ(package.m_lstSoftInfo.front()->strColumn1, "a.bin");
  EXPECT_EQ(package.m_lstSoftInfo.front()->uiColumn5, 7U);
  EXPECT_TRUE(isColdPatch(path));
  EXPECT_EQ(Log(), Lines{});
}

TEST_F(LibraryOnPlatform, FilesAndFoldersAreRemoved) {
  EXPECT_EQ(VNRemoveFile(folder.Write("file", "")), 0);
  EXPECT_EQ(VNRemoveFile(folder.Path("file")), ENOENT);
  EXPECT_EQ(VNRemoveDir(folder.Path()), 0);
  EXPECT_EQ(VNRemoveDir(folder.Path()), ENOENT);
}

TEST_F(LibraryOnPlatform, WildcardMatcherIsThatOfThePlatform) {
  EXPECT_NE(strmcmp("DONE=7,TOTAL=9", "*DONE=*TOTAL=*"), 0);
  EXPECT_EQ(strmcmp("done=7", "*DONE=*"), 0);
}

}  // namespace
}  // namespace VARNEL_TEST
