#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "platform/ns_util.h"
#include "temp_folder.h"
#include "unprivileged.h"

namespace VARNEL_TEST {
namespace {

namespace fs = std::filesystem;
using NS_UTIL::RemoveDir;
using NS_UTIL::RemoveFile;

bool Exists(const std::string& path) {
  return fs::exists(fs::symlink_status(path));
}

class Remove : public ::testing::Test {
 protected:
  std::string MakeFolder(const std::string& name) const {
    fs::create_directories(folder.Path(name));
    return folder.Path(name);
  }
  std::string Link(const std::string& target, const std::string& name) const {
    fs::create_symlink(target, folder.Path(name));
    return folder.Path(name);
  }

  const TempFolder folder;
};

TEST_F(Remove, RemovesAFileOnly) {
  const std::string path = folder.Write("file", "x");
  const std::string other = folder.Write("other", "x");
  EXPECT_EQ(RemoveFile(path), 0);
  EXPECT_FALSE(Exists(path));
  EXPECT_TRUE(Exists(other));
}

TEST_F(Remove, FileOfAnyNameAndKind) {
  for (const char* name : {"\xFF\x80", "a b", "*", "new\nline"})
    EXPECT_EQ(RemoveFile(folder.Write(name, "")), 0) << name;
  const std::string fifo = folder.Path("fifo");
  ASSERT_EQ(mkfifo(fifo.c_str(), 0666), 0);
  EXPECT_EQ(RemoveFile(fifo), 0);
  EXPECT_TRUE(fs::is_empty(folder.Path()));
}

TEST_F(Remove, MissingFile) {
  EXPECT_EQ(RemoveFile(folder.Path("absent")), ENOENT);
  EXPECT_EQ(RemoveFile(folder.Path("absent/file")), ENOENT);
  EXPECT_EQ(RemoveFile(""), ENOENT);
  EXPECT_EQ(RemoveFile(folder.Write("file", "") + "/x"), ENOTDIR);
}

TEST_F(Remove, FileRemovalRefusesAFolder) {
  const std::string path = MakeFolder("empty");
  EXPECT_EQ(RemoveFile(path), EISDIR);
  EXPECT_TRUE(Exists(path));
}

TEST_F(Remove, LinkIsRemovedAndItsTargetKept) {
  const std::string file = folder.Write("file", "x");
  const std::string tree = MakeFolder("tree");
  for (const std::string& target : {file, tree, folder.Path("absent")}) {
    const std::string link = Link(target, "link");
    EXPECT_EQ(RemoveFile(link), 0);
    EXPECT_FALSE(Exists(link));
  }
  EXPECT_TRUE(Exists(file));
  EXPECT_TRUE(Exists(tree));
}

TEST_F(Remove, PathWithANulIsRefused) {
  const std::string file = folder.Write("file", "x");
  const std::string tree = MakeFolder("tree");
  for (const std::string& tail : {std::string("\0", 1), std::string("\0x", 2)}) {
    EXPECT_EQ(RemoveFile(file + tail), EINVAL);
    EXPECT_EQ(RemoveDir(tree + tail), EINVAL);
  }
  EXPECT_TRUE(Exists(file));
  EXPECT_TRUE(Exists(tree));
}

TEST_F(Remove, EmptyFolder) {
  const std::string path = MakeFolder("empty");
  EXPECT_EQ(RemoveDir(path), 0);
  EXPECT_FALSE(Exists(path));
}

TEST_F(Remove, FolderMayBeSpelledWithTrailingSlashes) {
  for (const char* spelling : {"tree/", "tree//", "/tree", "sub/../tree/"}) {
    MakeFolder("sub");
    MakeFolder("tree/inner");
    EXPECT_EQ(RemoveDir(folder.Path(spelling)), 0) << spelling;
    EXPECT_FALSE(Exists(folder.Path("tree"))) << spelling;
  }
}

TEST_F(Remove, DotsAreRefusedBeforeAnythingIsTouched) {
  const std::string file = (MakeFolder("tree/sub"), folder.Write("tree/file", "x"));
  Link("tree", "link");
  for (const char* path : {"tree/.", "tree/./", "tree/sub/..", "tree/sub/..//", "link/.", "link/sub/.."}) {
    EXPECT_EQ(RemoveDir(folder.Path(path)), EINVAL) << path;
    EXPECT_EQ(RemoveFile(folder.Path(path)), EINVAL) << path;
  }
  const fs::path before = fs::current_path();
  fs::current_path(folder.Path("tree/sub"));
  for (const char* path : {".", "..", "./", "../"})
    EXPECT_EQ(RemoveDir(path), EINVAL) << path;
  fs::current_path(before);
  EXPECT_TRUE(Exists(file));
  EXPECT_TRUE(Exists(folder.Path("tree/sub")));
}

TEST_F(Remove, NamesThatBeginOrEndWithDotsAreOrdinary) {
  for (const char* name : {"...", ".a", "a.", "a..", "..a"}) {
    EXPECT_EQ(RemoveFile(folder.Write(name, "")), 0) << name;
    EXPECT_EQ(RemoveDir(MakeFolder(name)), 0) << name;
  }
  EXPECT_TRUE(fs::is_empty(folder.Path()));
}

// The test's folder is the root of the child process.
TEST_F(Remove, RootKeepsItsContents) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can change its root folder";
  const std::string file = folder.Write("file", "x");
  const pid_t child = fork();
  if (child == 0)
    _exit(chroot(folder.Path().c_str()) == 0 && RemoveDir("/") == EBUSY && RemoveDir("//") == EBUSY ? 0 : 1);
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(Exists(file));
}

TEST_F(Remove, FolderAndItsContents) {
  MakeFolder("tree/a/b/c");
  MakeFolder("tree/a/empty");
  MakeFolder("tree/z");
  for (const char* name :
       {"tree/file", "tree/.hidden", "tree/a/\xFF", "tree/a/b/file", "tree/a/b/c/file", "tree/z/..."})
    folder.Write(name, "x");
  ASSERT_EQ(mkfifo(folder.Path("tree/fifo").c_str(), 0666), 0);
  const std::string beside = folder.Write("treefile", "x");
  EXPECT_EQ(RemoveDir(folder.Path("tree")), 0);
  EXPECT_FALSE(Exists(folder.Path("tree")));
  EXPECT_TRUE(Exists(beside));
}

TEST_F(Remove, LinksInsideAFolderAreNotFollowed) {
  const std::string file = folder.Write("outside-file", "x");
  MakeFolder("outside/inner");
  folder.Write("outside/inner/file", "x");
  MakeFolder("tree/sub");
  Link(file, "tree/file");
  Link(folder.Path("outside"), "tree/folder");
  Link("../../outside", "tree/sub/relative");
  Link("..", "tree/sub/up");
  Link("absent", "tree/dangling");
  Link("loop", "tree/loop");
  EXPECT_EQ(RemoveDir(folder.Path("tree")), 0);
  EXPECT_FALSE(Exists(folder.Path("tree")));
  EXPECT_TRUE(Exists(file));
  EXPECT_TRUE(Exists(folder.Path("outside/inner/file")));
}

TEST_F(Remove, LinkToAFolderIsRefusedInEverySpelling) {
  MakeFolder("tree");
  const std::string file = folder.Write("tree/file", "x");
  const std::string link = Link("tree", "link");
  for (const char* tail : {"", "/", "//"})
    EXPECT_EQ(RemoveDir(link + tail), ENOTDIR) << tail;
  EXPECT_TRUE(Exists(link));
  EXPECT_TRUE(Exists(file));
}

TEST_F(Remove, OtherKindsThanFoldersAreKept) {
  const std::string file = folder.Write("file", "x");
  const std::string dangling = Link("absent", "dangling");
  const std::string fifo = folder.Path("fifo");
  ASSERT_EQ(mkfifo(fifo.c_str(), 0666), 0);
  for (const std::string& path : {file, dangling, fifo, file + "/x"}) {
    EXPECT_EQ(RemoveDir(path), ENOTDIR) << path;
  }
  for (const std::string& path : {file, dangling, fifo})
    EXPECT_TRUE(Exists(path)) << path;
}

TEST_F(Remove, MissingFolder) {
  EXPECT_EQ(RemoveDir(folder.Path("absent")), ENOENT);
  EXPECT_EQ(RemoveDir(folder.Path("absent/")), ENOENT);
  EXPECT_EQ(RemoveDir(folder.Path("absent/inner")), ENOENT);
  EXPECT_EQ(RemoveDir(""), ENOENT);
}

TEST_F(Remove, FolderWithoutWriteRights) {
  const std::string file = MakeFolder("tree/inner") + "/file";
  folder.Write("tree/inner/file", "x");
  fs::permissions(folder.Path("tree"), fs::perms::all);
  fs::permissions(folder.Path("tree/inner"), fs::perms(0555));
  EXPECT_TRUE(HoldsUnprivileged([&] {
    return RemoveFile(file) == EACCES && RemoveDir(folder.Path("tree/inner")) == EACCES &&
           RemoveDir(folder.Path("tree")) == EACCES;
  }));
  EXPECT_TRUE(Exists(file));
  fs::permissions(folder.Path("tree/inner"), fs::perms::all);
}

TEST_F(Remove, FolderWithoutReadRights) {
  const std::string tree = MakeFolder("tree");
  folder.Write("tree/file", "x");
  fs::permissions(tree, fs::perms(0333));
  EXPECT_TRUE(HoldsUnprivileged([&] { return RemoveDir(tree) == EACCES; }));
  EXPECT_TRUE(Exists(tree));
  fs::permissions(tree, fs::perms::all);
}

TEST_F(Remove, EmptyFolderNeedsNoReadRights) {
  for (const unsigned int mode : {0000U, 0333U}) {
    for (const char* path : {"tree", "tree/inner"}) {
      const std::string unreadable = MakeFolder(path);
      fs::permissions(folder.Path("tree"), fs::perms::all);
      fs::permissions(unreadable, fs::perms(mode));
      EXPECT_TRUE(HoldsUnprivileged([&] { return RemoveDir(folder.Path("tree")) == 0; })) << path << ' ' << mode;
      EXPECT_FALSE(Exists(folder.Path("tree"))) << path << ' ' << mode;
    }
  }
}

TEST_F(Remove, FolderThatCannotBeRemovedKeepsItsContents) {
  const std::string file = (MakeFolder("tree/inner"), folder.Write("tree/inner/file", "x"));
  fs::permissions(folder.Path("tree/inner"), fs::perms::all);
  fs::permissions(folder.Path("tree"), fs::perms(0555));
  EXPECT_TRUE(HoldsUnprivileged([&] { return RemoveDir(folder.Path("tree/inner")) == EACCES; }));
  EXPECT_TRUE(Exists(file));
  fs::permissions(folder.Path("tree"), fs::perms::all);
}

TEST_F(Remove, NoDescriptorStaysOpen) {
  const size_t open = OpenDescriptors();
  RemoveDir(MakeFolder("tree/a/b"));
  RemoveDir(folder.Path("absent"));
  RemoveDir(folder.Write("file", "x"));
  EXPECT_EQ(OpenDescriptors(), open);
}

// Nested folders, some with a file, a link and a folder next to the next level.
void MakeDeepTree(const std::string& root, int depth) {
  ASSERT_EQ(mkdir(root.c_str(), 0777), 0);
  int here = open(root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  for (int level = 0; level < depth; ++level) {
    if (level % 16 == 0) {
      close(openat(here, "file", O_CREAT | O_WRONLY | O_CLOEXEC, 0666));
      ASSERT_EQ(symlinkat("..", here, "link"), 0);
      ASSERT_EQ(mkdirat(here, "beside", 0777), 0);
    }
    ASSERT_EQ(mkdirat(here, "next", 0777), 0);
    const int next = openat(here, "next", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ASSERT_NE(next, -1);
    close(here);
    here = next;
  }
  close(here);
}

TEST_F(Remove, TreeDeeperThanPathsAndDescriptorsReach) {
  const std::string root = folder.Path("deep");
  ASSERT_NO_FATAL_FAILURE(MakeDeepTree(root, 1000));
  rlimit before;
  getrlimit(RLIMIT_NOFILE, &before);
  rlimit few = before;
  few.rlim_cur = 64;
  setrlimit(RLIMIT_NOFILE, &few);
  EXPECT_EQ(RemoveDir(root), 0);
  setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_FALSE(Exists(root));
}

TEST_F(Remove, MoreEntriesThanAreReadAtOnce) {
  const std::string longName(200, 'x');
  for (int i = 0; i < 200; ++i) {
    folder.Write(longName + std::to_string(i), "");
    MakeFolder(std::to_string(i) + longName);
  }
  EXPECT_EQ(RemoveDir(folder.Path()), 0);
  EXPECT_FALSE(Exists(folder.Path()));
}

}  // namespace
}  // namespace VARNEL_TEST
