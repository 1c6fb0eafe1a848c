#include "str.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "allocation.h"
#include "growth.h"
#include "recording_test.h"
#include "temp_folder.h"
#include "unprivileged.h"

namespace VARNEL_TEST {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

using VARNEL_COMMON::GetFileLeftNameAndExName;
using VARNEL_COMMON::SplitFilePathAndFileName;
using VARNEL_COMMON::ToAbsPath;
using VARNEL_COMMON::VerifyFilePathAndName;
using VARNEL_COMMON::VNRemoveDir;
using VARNEL_COMMON::VNRemoveFile;

constexpr size_t LONGEST = 4096;

// Another working folder for the test; the old one is restored at the end.
class WorkingFolder {
 public:
  explicit WorkingFolder(const std::string& path) : m_before(fs::current_path()) { fs::current_path(path); }
  ~WorkingFolder() { fs::current_path(m_before); }
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;

 private:
  fs::path m_before;
};

class StrPath : public RecordingTest {
 protected:
  // A temporary folder and its path.
  std::string MakeFolder(const std::string& name) const {
    fs::create_directories(folder.Path(name));
    return folder.Path(name);
  }
  std::string MakeLink(const std::string& target, const std::string& name) const {
    fs::create_symlink(target, folder.Path(name));
    return folder.Path(name);
  }

  TempFolder folder;
};

bool Exists(const std::string& path) {
  struct stat ignored;
  return lstat(path.c_str(), &ignored) == 0;
}

LogLine Refusal(const std::string& message) {
  return Error("ErrorCode:0x3b001400, " + message, "str", "ToAbsPath");
}

struct SplitCase {
  std::string path;
  std::string folder;
  std::string name;
};

TEST_F(StrPath, SplitsAtTheLastSeparator) {
  const SplitCase cases[] = {
      {"x\\pkg\\a.bin", "x/pkg/", "a.bin"},
      {"/opt/pkg/a.bin", "/opt/pkg/", "a.bin"},
      {"C:\\pkg/x\\a.bin", "C:/pkg/x/", "a.bin"},
      {"/a.bin", "/", "a.bin"},
      {"\\a.bin", "/", "a.bin"},
      {"/x/", "/x/", ""},
      {"x\\", "x/", ""},
      {"/", "/", ""},
      {"\\", "/", ""},
      {"//", "//", ""},
      {"\\\\x", "//", "x"},
      {"..", "/", ".."},
      {"../x", "../", "x"},
      {" x / y ", " x /", " y "},
      {"x\0y/a\0b"s, "x\0y/"s, "a\0b"s},
      {"x/\0"s, "x/", "\0"s},
      {"\xFF\xE4/\xC0\x80", "\xFF\xE4/", "\xC0\x80"},
  };
  for (const SplitCase& each : cases) {
    std::string filePath = "old", fileName = "old";
    SplitFilePathAndFileName(each.path, filePath, fileName);
    EXPECT_EQ(filePath, each.folder) << each.path;
    EXPECT_EQ(fileName, each.name) << each.path;
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(StrPath, BareNameGetsTheRootFolder) {
  std::string filePath = "old", fileName = "old";
  SplitFilePathAndFileName("a.bin", filePath, fileName);
  EXPECT_EQ(filePath, "/");
  EXPECT_EQ(fileName, "a.bin");
}

TEST_F(StrPath, EmptyPathSplitsIntoEmptyTexts) {
  std::string filePath = "old", fileName = "old";
  SplitFilePathAndFileName("", filePath, fileName);
  EXPECT_EQ(filePath, "");
  EXPECT_EQ(fileName, "");
}

TEST_F(StrPath, OneVariableForBothOutputsKeepsTheLastAssignment) {
  const std::pair<std::string, std::string> paths[] = {{"x\\pkg\\a.bin", "x/pkg/"}, {"a.bin", "/"}, {"", ""}};
  for (const auto& [path, kept] : paths) {
    std::string both = "old";
    SplitFilePathAndFileName(path, both, both);
    EXPECT_EQ(both, kept);
  }
  const std::pair<std::string, std::string> names[] = {{"a.bin", ".bin"}, {"noext", ""}, {"", ""}};
  for (const auto& [name, kept] : names) {
    std::string both = "old";
    GetFileLeftNameAndExName(name, both, both);
    EXPECT_EQ(both, kept);
  }
}

TEST_F(StrPath, SplitMayReplaceThePathItself) {
  for (const std::string& name : {"a.bin"s, std::string(1000, 'n')}) {
    std::string path = "x\\pkg\\" + name, other;
    SplitFilePathAndFileName(path, path, other);
    EXPECT_EQ(path, "x/pkg/");
    EXPECT_EQ(other, name);
    path = "x\\pkg\\" + name;
    SplitFilePathAndFileName(path, other, path);
    EXPECT_EQ(other, "x/pkg/");
    EXPECT_EQ(path, name);
    SplitFilePathAndFileName(path, path, other);
    EXPECT_EQ(path, "/");
    EXPECT_EQ(other, name);
  }
}

TEST_F(StrPath, SplitOfALargePath) {
  const std::string name(1000, 'x');
  std::string path, folders, filePath, fileName;
  for (int i = 0; i < 5000; ++i) {
    path += name + '\\';
    folders += name + '/';
  }
  SplitFilePathAndFileName(path + "a", filePath, fileName);
  EXPECT_EQ(filePath, folders);
  EXPECT_EQ(fileName, "a");
}

TEST_F(StrPath, NameSplitsAtTheLastDot) {
  const SplitCase cases[] = {
      {"a.tar.gz", "a.tar", ".gz"},
      {"a.bin", "a", ".bin"},
      {"noext", "noext", ""},
      {".profile", "", ".profile"},
      {"name.", "name", "."},
      {".", "", "."},
      {"..", ".", "."},
      {"", "", ""},
      {"dir.d/file", "dir", ".d/file"},
      {"dir.d\\file", "dir", ".d\\file"},
      {"a\0.b\0"s, "a\0"s, ".b\0"s},
      {"\xFF.\xE4", "\xFF", ".\xE4"},
  };
  for (const SplitCase& each : cases) {
    std::string leftName = "old", exName = "old";
    GetFileLeftNameAndExName(each.path, leftName, exName);
    EXPECT_EQ(leftName, each.folder) << each.path;
    EXPECT_EQ(exName, each.name) << each.path;
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(StrPath, NameSplitMayReplaceTheNameItself) {
  std::string name = "a.tar.gz", other;
  GetFileLeftNameAndExName(name, name, other);
  EXPECT_EQ(name, "a.tar");
  EXPECT_EQ(other, ".gz");
  GetFileLeftNameAndExName(name, other, name);
  EXPECT_EQ(other, "a");
  EXPECT_EQ(name, ".tar");
}

TEST_F(StrPath, VerifiesPathsWithoutTwoDotsInARow) {
  for (const std::string& path : {"  /opt/pkg/a.bin "s, ""s, " "s, "."s, "./x"s, "x/."s, "./.\\./x"s, ". ."s, ".\0."s,
                                  "a.b.c"s, "/"s, "\\"s, "*?|<>\x01\xFF"s, "C:\\x"s, std::string(100000, 'x')}) {
    EXPECT_TRUE(VerifyFilePathAndName(path)) << path.substr(0, 100);
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(StrPath, RefusesTwoDotsInARow) {
  for (const std::string& path :
       {"/opt/../etc"s, "..\\x"s, "/opt/a..b"s, ".."s, "../x"s, "a/../b"s, "file..txt"s, "x/.."s, "x\\..\\y"s, "  .."s,
        "..  "s, "..."s, "x..y/z"s, "x/y\0..z"s, "\0.."s, std::string(100000, 'x') + ".."}) {
    EXPECT_FALSE(VerifyFilePathAndName(path)) << path.substr(0, 100);
  }
  EXPECT_EQ(host.lines, Lines{}) << "it does not log";
}

TEST_F(StrPath, AbsolutePathStaysItself) {
  const std::string path = folder.Write("a.bin", "x");
  EXPECT_EQ(ToAbsPath(path), path);
  EXPECT_EQ(ToAbsPath(folder.Path()), folder.Path());
  EXPECT_EQ(ToAbsPath("/"), "/");
  EXPECT_EQ(host.lines, Lines{});
  EXPECT_EQ(host.filtered, std::vector<std::string>{});
}

TEST_F(StrPath, RelativePathIsResolvedInTheWorkingFolder) {
  const std::string path = folder.Write("a.bin", "x");
  MakeFolder("inner");
  {
    const WorkingFolder working(folder.Path());
    EXPECT_EQ(ToAbsPath("a.bin"), path);
    EXPECT_EQ(ToAbsPath("."), folder.Path());
  }
  {
    const WorkingFolder working(folder.Path("inner"));
    EXPECT_EQ(ToAbsPath("../a.bin"), path);
    EXPECT_EQ(ToAbsPath(".."), folder.Path());
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(StrPath, DotsAndRepeatedSeparatorsAreResolved) {
  const std::string path = folder.Write("a.bin", "x");
  MakeFolder("inner");
  EXPECT_EQ(ToAbsPath(folder.Path("./inner//.././/a.bin")), path);
  EXPECT_EQ(ToAbsPath(folder.Path("inner/")), folder.Path("inner"));
  EXPECT_EQ(ToAbsPath("/.."), "/");
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(StrPath, SymbolicLinkIsResolvedToItsTarget) {
  const std::string path = MakeFolder("inner") + "/a.bin";
  folder.Write("inner/a.bin", "x");
  EXPECT_EQ(ToAbsPath(MakeLink("inner/a.bin", "to file")), path);
  EXPECT_EQ(ToAbsPath(MakeLink(folder.Path("to file"), "to link")), path);
  EXPECT_EQ(ToAbsPath(MakeLink("inner", "to folder") + "/a.bin"), path);
  EXPECT_EQ(ToAbsPath(MakeLink("inner", "a..b")), folder.Path("inner")) << "only the resolved path is verified";
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(StrPath, NamesNeedNotBeUtf8) {
  const std::string path = folder.Write("\xFF\xE4 \xC0\x80", "x");
  EXPECT_EQ(ToAbsPath(path), path);
  EXPECT_EQ(ToAbsPath(folder.Path("\xFF")), "");
  EXPECT_EQ(host.lines, Lines{Refusal("realpath failed. file:" + folder.Path("\xFF") + ". ")});
}

TEST_F(StrPath, BackslashIsNotASeparatorWhenResolving) {
  const std::string path = folder.Write("a\\b", "x");
  EXPECT_EQ(ToAbsPath(path), path);
}

TEST_F(StrPath, MissingFileIsReported) {
  const std::string path = folder.Path("missing");
  EXPECT_EQ(ToAbsPath(path), "");
  EXPECT_EQ(host.lines, Lines{Refusal("realpath failed. file:" + path + ". ")});
  EXPECT_EQ(host.filtered, std::vector<std::string>{"realpath failed. file:" + path + ". "});
}

TEST_F(StrPath, LogLinesShowThePathAsPassed) {
  const WorkingFolder working(folder.Path());
  EXPECT_EQ(ToAbsPath(" x/..\\./y "), "");
  EXPECT_EQ(host.lines, Lines{Refusal("realpath failed. file: x/..\\./y . ")});
}

TEST_F(StrPath, LogLinesAreFiltered) {
  EXPECT_EQ(ToAbsPath("/missing/SECRET"), "");
  EXPECT_EQ(host.filtered, std::vector<std::string>{"realpath failed. file:/missing/SECRET. "});
  EXPECT_EQ(host.lines, Lines{Refusal("realpath failed. file:/missing/######. ")});
}

TEST_F(StrPath, EmptyPathIsReported) {
  EXPECT_EQ(ToAbsPath(""), "");
  EXPECT_EQ(host.lines, Lines{Refusal("realpath failed. file:. ")});
}

TEST_F(StrPath, FileUsedAsAFolderIsReported) {
  const std::string path = folder.Write("a.bin", "x") + "/b";
  EXPECT_EQ(ToAbsPath(path), "");
  EXPECT_EQ(host.lines, Lines{Refusal("realpath failed. file:" + path + ". ")});
}

TEST_F(StrPath, LinkWithoutATargetIsReported) {
  const std::string path = MakeLink("missing", "link");
  EXPECT_EQ(ToAbsPath(path), "");
  EXPECT_EQ(host.lines, Lines{Refusal("realpath failed. file:" + path + ". ")});
}

TEST_F(StrPath, LinkLoopIsReported) {
  const std::string path = MakeLink("b", "a");
  MakeLink("a", "b");
  EXPECT_EQ(ToAbsPath(path), "");
  EXPECT_EQ(host.lines, Lines{Refusal("realpath failed. file:" + path + ". ")});
}

TEST_F(StrPath, RemovedWorkingFolderIsReported) {
  const std::string gone = MakeFolder("gone");
  const WorkingFolder working(gone);
  fs::remove(gone);
  EXPECT_EQ(ToAbsPath("x"), "");
  EXPECT_EQ(host.lines, Lines{Refusal("realpath failed. file:x. ")});
}

TEST_F(StrPath, FolderWithoutRightsIsReported) {
  const std::string path = MakeFolder("closed") + "/a.bin";
  folder.Write("closed/a.bin", "x");
  fs::permissions(folder.Path("closed"), fs::perms::none);
  EXPECT_TRUE(HoldsUnprivileged(
      [&] { return ToAbsPath(path).empty() && host.lines == Lines{Refusal("realpath failed. file:" + path + ". ")}; }));
  fs::permissions(folder.Path("closed"), fs::perms::owner_all);
  EXPECT_EQ(ToAbsPath(path), path);
}

TEST_F(StrPath, LongestPathIsResolved) {
  std::string path = folder.Path();
  while (path.size() + 2 <= LONGEST)
    path += "/.";
  path.resize(LONGEST, '/');
  EXPECT_EQ(ToAbsPath(path), folder.Path());
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(StrPath, LongestPathThatIsMissingIsAttempted) {
  const std::string path(LONGEST, 'x');
  EXPECT_EQ(ToAbsPath(path), "");
  EXPECT_EQ(host.lines, Lines{Refusal("realpath failed. file:" + path + ". ")});
}

TEST_F(StrPath, PathBeyondTheLongestIsRefused) {
  std::string path = folder.Path();
  path.resize(LONGEST + 1, '/');
  EXPECT_EQ(ToAbsPath(path), "");
  EXPECT_EQ(host.lines, Lines{Refusal("fileName too long file:" + path + ". ")});
  EXPECT_EQ(host.filtered, std::vector<std::string>{"fileName too long file:" + path + ". "});
}

TEST_F(StrPath, SuccessKeepsErrno) {
  errno = 77;
  EXPECT_EQ(ToAbsPath(folder.Path()), folder.Path());
  EXPECT_EQ(errno, 77);
}

TEST_F(StrPath, PathEndsAtItsFirstNul) {
  const std::string path = folder.Write("a.bin", "x");
  EXPECT_EQ(ToAbsPath(path + '\0' + std::string(LONGEST, 'y')), path);
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(StrPath, PathInAReportEndsAtItsFirstNul) {
  const std::string path = "/missing\0x"s;
  EXPECT_EQ(ToAbsPath(path), "");
  const std::string tooLong(LONGEST + 1, 'y');
  EXPECT_EQ(ToAbsPath(tooLong + "\0x"s), "");
  EXPECT_EQ(host.lines,
            (Lines{Refusal("realpath failed. file:/missing. "), Refusal("fileName too long file:" + tooLong + ". ")}));
  EXPECT_EQ(host.filtered.at(0), "realpath failed. file:/missing. ");
}

TEST_F(StrPath, ResolvedPathWithTwoDotsInARowIsRefused) {
  const std::string path = MakeFolder("a..b") + "/c.bin";
  folder.Write("a..b/c.bin", "x");
  EXPECT_EQ(ToAbsPath(path), "");
  EXPECT_EQ(host.lines, Lines{Refusal("VerifyFilePathAndName is failed, filename" + path + ". ")});
  EXPECT_EQ(host.filtered, std::vector<std::string>{"VerifyFilePathAndName is failed, filename" + path + ". "});
}

TEST_F(StrPath, LinkToAPathWithTwoDotsInARowIsRefused) {
  const std::string target = MakeFolder("a..b");
  EXPECT_EQ(ToAbsPath(MakeLink("a..b", "link")), "");
  EXPECT_EQ(host.lines, Lines{Refusal("VerifyFilePathAndName is failed, filename" + target + ". ")})
      << "the report shows the resolved path";
}

// Creates nested folders and enters each: the path of the last may exceed the limit of system calls.
void DescendInto(const std::string& name, int levels) {
  for (int i = 0; i < levels; ++i) {
    ASSERT_EQ(mkdir(name.c_str(), 0777), 0);
    ASSERT_EQ(chdir(name.c_str()), 0);
  }
}

TEST_F(StrPath, PathThatResolvesToAnOverlongOneIsReported) {
  const WorkingFolder working(MakeFolder("top"));
  ASSERT_NO_FATAL_FAILURE(DescendInto(std::string(250, 'x'), 17));
  EXPECT_EQ(ToAbsPath("."), "");
  EXPECT_EQ(host.lines, Lines{Refusal("realpath failed. file:.. ")});
}

TEST_F(StrPath, LongestResolvedPathIsReturnedWhole) {
  const WorkingFolder working(folder.Path());
  ASSERT_NO_FATAL_FAILURE(DescendInto(std::string(250, 'x'), 15));
  const size_t left = LONGEST - 1 - folder.Path().size() - size_t{15} * 251 - 1;
  ASSERT_NO_FATAL_FAILURE(DescendInto(std::string(left / 2, 'y'), 1));
  ASSERT_NO_FATAL_FAILURE(DescendInto(std::string(left - left / 2 - 1, 'z'), 1));
  EXPECT_EQ(ToAbsPath(".").size(), LONGEST - 1);
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(StrPath, RemovesAFile) {
  const std::string path = folder.Write("a.bin", "x");
  EXPECT_EQ(VNRemoveFile(path), 0);
  EXPECT_FALSE(Exists(path));
  EXPECT_EQ(VNRemoveFile(path), ENOENT);
  EXPECT_EQ(VNRemoveFile(""), ENOENT);
}

TEST_F(StrPath, RemovesATree) {
  const std::string tree = MakeFolder("tree");
  MakeFolder("tree/a/b/c");
  folder.Write("tree/a/b/x.bin", "x");
  folder.Write("tree/.hidden", "x");
  folder.Write("beside", "x");
  EXPECT_EQ(VNRemoveDir(tree), 0);
  EXPECT_FALSE(Exists(tree));
  EXPECT_TRUE(Exists(folder.Path("beside")));
  EXPECT_EQ(VNRemoveDir(tree), ENOENT);
  EXPECT_EQ(VNRemoveDir(""), ENOENT);
}

TEST_F(StrPath, RemovesAFolderByRelativePath) {
  MakeFolder("tree/inner");
  const WorkingFolder working(folder.Path());
  EXPECT_EQ(VNRemoveDir("tree"), 0);
  EXPECT_FALSE(Exists(folder.Path("tree")));
}

TEST_F(StrPath, VerifyingAllocatesNothing) {
  const std::string path = "/opt/packages/a folder with a long name/a.bin";
  const AllocationGuard guard;
  VerifyFilePathAndName(path);
  EXPECT_EQ(guard.Count(), 0U);
}

TEST_F(StrPath, AllocationFailureLeavesTheOutputsOfASplit) {
  const size_t live = LiveAllocations();
  {
    const std::string path = std::string(100, 'p') + "\\" + std::string(100, 'n');
    std::string filePath = "old", fileName = "older";
    const auto unchanged = [&] { EXPECT_EQ(filePath + fileName, "oldolder"); };
    EXPECT_GT(FailEachAllocation([&] { SplitFilePathAndFileName(path, filePath, fileName); }, unchanged), 1U);
    EXPECT_EQ(filePath, std::string(100, 'p') + "/");
    EXPECT_EQ(fileName, std::string(100, 'n'));
  }
  EXPECT_EQ(LiveAllocations(), live);
}

TEST_F(StrPath, AllocationFailureLeavesTheOutputsOfANameSplit) {
  const size_t live = LiveAllocations();
  {
    const std::string name = std::string(100, 'n') + "." + std::string(100, 'e');
    std::string leftName = "old", exName = "older";
    const auto unchanged = [&] { EXPECT_EQ(leftName + exName, "oldolder"); };
    EXPECT_GT(FailEachAllocation([&] { GetFileLeftNameAndExName(name, leftName, exName); }, unchanged), 1U);
    EXPECT_EQ(leftName, std::string(100, 'n'));
    EXPECT_EQ(exName, "." + std::string(100, 'e'));
  }
  EXPECT_EQ(LiveAllocations(), live);
}

TEST_F(StrPath, AllocationFailureWhileRefusingPropagates) {
  host.Reset();
  const size_t live = LiveAllocations();
  {
    const std::string path = "/missing/" + std::string(100, 'x');
    std::string resolved = "old";
    EXPECT_GT(FailEachAllocation([&] { resolved = ToAbsPath(path); }, [&] { EXPECT_EQ(resolved, "old"); }), 2U);
    EXPECT_EQ(resolved, "");
    EXPECT_EQ(host.lines.back(), Refusal("realpath failed. file:" + path + ". "));
    host.Reset();
  }
  EXPECT_EQ(LiveAllocations(), live);
}

TEST_F(StrPath, SplittingIsLinear) {
  const auto split = [](const std::string& path) {
    std::string filePath, fileName;
    SplitFilePathAndFileName(path, filePath, fileName);
  };
  EXPECT_LT(Growth(
                MANY_HITS, [](size_t size) { return std::string(size, '\\'); }, split),
            LINEAR_GROWTH);
}

}  // namespace
}  // namespace VARNEL_TEST
