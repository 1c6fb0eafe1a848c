#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "allocation.h"
#include "growth.h"
#include "private_access.h"
#include "publicdata.h"
#include "recording_test.h"
#include "temp_folder.h"
#include "unprivileged.h"

namespace VARNEL_TEST {
namespace {

namespace fs = std::filesystem;
using VARNEL_COMMON::Vnifstream;

VARNEL_PRIVATE_MEMBER(Buffer, Vnifstream, m_pBuffer, char*)
VARNEL_PRIVATE_MEMBER(Size, Vnifstream, m_uiSize, unsigned int)
VARNEL_PRIVATE_MEMBER(Position, Vnifstream, m_uiPos, unsigned int)

using Texts = std::vector<std::string>;

const LogLine COPY_FAILED = Error("ErrorCode:0x22, Vnifstream::GetLine.memcpy_s failed", "publicdata", "GetLine");

/// All remaining lines.
Texts Rest(Vnifstream& file, unsigned int size = 1024) {
  std::vector<char> line(size);
  Texts lines;
  while (file.GetLine(line.data(), size))
    lines.emplace_back(line.data());
  return lines;
}

/// A reader that is never destroyed, therefore it may share its buffer.
class Undestroyed {
 public:
  explicit Undestroyed(const std::string& path) : m_reader(new (m_storage) Vnifstream(path)) {}
  explicit Undestroyed(const Vnifstream& source) : m_reader(new (m_storage) Vnifstream(source)) {}
  Vnifstream& operator*() { return *m_reader; }
  Vnifstream* operator->() { return m_reader; }

 private:
  alignas(Vnifstream) unsigned char m_storage[sizeof(Vnifstream)];
  Vnifstream* m_reader;
};

class LineReader : public RecordingTest {
 protected:
  std::string Write(const std::string& bytes) { return folder.Write("lines.txt", bytes); }

  Texts LinesOf(const std::string& bytes, unsigned int size = 1024) {
    Vnifstream file(Write(bytes));
    return Rest(file, size);
  }

  void ExpectNothingLoaded(Vnifstream& file) {
    EXPECT_EQ(file.*Buffer(), nullptr);
    EXPECT_EQ(file.*Size(), 0U);
    EXPECT_EQ(file.*Position(), 0U);
    char line[8];
    EXPECT_FALSE(file.GetLine(line, sizeof line));
  }

  TempFolder folder;
};

TEST_F(LineReader, SplitsAtLineFeedsOnly) {
  const std::pair<std::string, Texts> files[] = {
      {"", {}},
      {"a", {"a"}},
      {"a\n", {"a"}},
      {"a\nb", {"a", "b"}},
      {"a\r\nb", {"a\r", "b"}},
      {"a\rb\vc\fd", {"a\rb\vc\fd"}},
      {"\n", {""}},
      {"\n\n", {"", ""}},
      {"a\n\nb\n", {"a", "", "b"}},
      {"\na", {"", "a"}},
      {"\r\n", {"\r"}},
      {"\xFF\x80\n\xC3\xA9", {"\xFF\x80", "\xC3\xA9"}},
  };
  for (const auto& [bytes, lines] : files)
    EXPECT_EQ(LinesOf(bytes), lines) << bytes;
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(LineReader, EndStaysTheEnd) {
  for (const char* bytes : {"a", "a\n", ""}) {
    Vnifstream file(Write(bytes));
    Rest(file);
    char line[] = "kept";
    EXPECT_FALSE(file.GetLine(line, sizeof line));
    EXPECT_FALSE(file.GetLine(line, sizeof line));
    EXPECT_STREQ(line, "kept");
  }
}

TEST_F(LineReader, EmptyLineIsEmptyText) {
  Vnifstream file(Write("\n"));
  char line[] = "kept";
  ASSERT_TRUE(file.GetLine(line, sizeof line));
  EXPECT_EQ(std::string(line, sizeof line), std::string("\0ept\0", 5));
}

TEST_F(LineReader, NulsAreOrdinaryBytes) {
  Vnifstream file(Write(std::string("a\0b\n\0c", 6)));
  char line[] = "xxxxxxx";
  ASSERT_TRUE(file.GetLine(line, sizeof line));
  EXPECT_EQ(std::string(line, sizeof line), std::string("a\0b\0xxx\0", 8));
  ASSERT_TRUE(file.GetLine(line, sizeof line));
  EXPECT_EQ(std::string(line, sizeof line), std::string("\0c\0\0xxx\0", 8));
  EXPECT_FALSE(file.GetLine(line, sizeof line));
}

TEST_F(LineReader, LongLinesAreCutAndTheirRestSkipped) {
  const std::string bytes = "abcdef\nabc\nabcd\nab\nuvwxyz";
  EXPECT_EQ(LinesOf(bytes, 4), (Texts{"abc", "abc", "abc", "ab", "uvw"}));
  EXPECT_EQ(LinesOf(bytes, 2), (Texts{"a", "a", "a", "a", "u"}));
  EXPECT_EQ(LinesOf(bytes, 1), (Texts{"", "", "", "", ""}));
  EXPECT_EQ(LinesOf(bytes, 7), (Texts{"abcdef", "abc", "abcd", "ab", "uvwxyz"}));
  EXPECT_EQ(LinesOf(bytes, 6), (Texts{"abcde", "abc", "abcd", "ab", "uvwxy"}));
}

TEST_F(LineReader, NothingIsWrittenBeyondTheLimit) {
  Vnifstream file(Write("abcdef\nabc\n"));
  for (int i = 0; i < 2; ++i) {
    char line[] = "xxxxxxx";
    ASSERT_TRUE(file.GetLine(line, 4));
    EXPECT_EQ(std::string(line, sizeof line), std::string("abc\0xxx\0", 8));
  }
}

TEST_F(LineReader, LinesAroundTheUsualLimit) {
  for (const size_t length : {1022U, 1023U, 1024U, 1025U}) {
    const std::string line(length, 'x');
    EXPECT_EQ(LinesOf(line + "\nnext"), (Texts{line.substr(0, 1023), "next"}));
  }
}

TEST_F(LineReader, LinesOfAMegabyte) {
  const std::string line(1 << 20, 'x');
  EXPECT_EQ(LinesOf(line + "\nshort\n" + line, (1 << 20) + 1), (Texts{line, "short", line}));
  EXPECT_EQ(LinesOf(line + "\nshort\n" + line, 4), (Texts{"xxx", "sho", "xxx"}));
}

TEST_F(LineReader, SizeMayBeTheLargestNumber) {
  Vnifstream file(Write("abc\nd"));
  char line[4];
  EXPECT_TRUE(file.GetLine(line, 0xFFFFFFFF));
  EXPECT_STREQ(line, "abc");
}

TEST_F(LineReader, PositionAfterTheLastLineIsOnePastTheEnd) {
  for (const char* bytes : {"ab\n", "ab\nc", "c"}) {
    Vnifstream file(Write(bytes));
    const unsigned int size = file.*Size();
    Rest(file);
    EXPECT_EQ(file.*Position(), bytes[size - 1] == '\n' ? size : size + 1) << bytes;
  }
}

TEST_F(LineReader, PositionAfterTheLastLineDoesNotWrap) {
  if (sizeof(size_t) == sizeof(uint32_t)) GTEST_SKIP() << "no file is that long";
  constexpr unsigned int LAST = 0xFFFFFFFF;
  void* zeros = mmap(nullptr, LAST, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  ASSERT_NE(zeros, MAP_FAILED);
  Vnifstream file("");
  file.*Buffer() = static_cast<char*>(zeros);
  file.*Size() = LAST;
  file.*Position() = LAST - 1;
  char line[8];
  EXPECT_TRUE(file.GetLine(line, sizeof line));
  EXPECT_EQ(file.*Position(), LAST);
  EXPECT_FALSE(file.GetLine(line, sizeof line));
  file.*Buffer() = nullptr;
  munmap(zeros, LAST);
}

TEST_F(LineReader, LoadingKeepsErrno) {
  const std::string path = Write("abc");
  host.aroundOpening = [](size_t) { errno = ENOSPC; };
  errno = 77;
  const Vnifstream file(path);
  EXPECT_EQ(errno, 77);
}

TEST_F(LineReader, WithoutABufferThePositionStays) {
  Vnifstream file(Write("abc\nd"));
  char line[] = "kept";
  EXPECT_FALSE(file.GetLine(nullptr, 100));
  EXPECT_FALSE(file.GetLine(nullptr, 0));
  EXPECT_FALSE(file.GetLine(line, 0));
  EXPECT_STREQ(line, "kept");
  EXPECT_EQ(Rest(file), (Texts{"abc", "d"}));
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(LineReader, FilesThatCannotBeLoadedHaveNoLines) {
  for (const std::string& path : {folder.Path("absent"), folder.Path("absent/file"), std::string()}) {
    Vnifstream file(path);
    ExpectNothingLoaded(file);
    EXPECT_FALSE(file.ReadFile(path));
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(LineReader, EmptyPathNeedsNoFileCall) {
  EXPECT_FALSE(Undestroyed("")->ReadFile(""));
  EXPECT_EQ(host.encodings, Texts{});
}

TEST_F(LineReader, UnreadableFileHasNoLines) {
  const std::string path = Write("abc");
  fs::permissions(path, fs::perms::none);
  EXPECT_TRUE(HoldsUnprivileged([&] {
    Vnifstream file(path);
    return file.*Buffer() == nullptr && Rest(file).empty() && !file.ReadFile(path) && host.lines.empty();
  }));
}

TEST_F(LineReader, FailingFileCallsLeaveNoLines) {
  const std::string path = Write("abc");
  const size_t descriptors = OpenDescriptors();
  host.stats.FailAt(1);
  {
    Vnifstream file(path);
    ExpectNothingLoaded(file);
  }
  EXPECT_EQ(host.opens.Calls(), 0U);
  host.opens.FailAt(1);
  {
    Vnifstream file(path);
    ExpectNothingLoaded(file);
  }
  EXPECT_EQ(host.lines, Lines{});
  EXPECT_EQ(OpenDescriptors(), descriptors);
}

TEST_F(LineReader, SizesAndOpensThePathAsUtf8) {
  Vnifstream file(Write("abc"));
  EXPECT_EQ(host.encodings, (Texts{"UTF-8", "UTF-8"}));
  EXPECT_EQ(host.stats.Calls(), 1U);
  EXPECT_EQ(host.opens.Calls(), 1U);
}

TEST_F(LineReader, PathEndsAtItsFirstNulForTheHost) {
  Vnifstream file(Write("abc") + std::string("\0x", 2));
  EXPECT_EQ(Rest(file), Texts{"abc"});
}

TEST_F(LineReader, FolderIsReadAsZeros) {
  struct ::stat status;
  ASSERT_EQ(::stat(folder.Path().c_str(), &status), 0);
  Vnifstream file(folder.Path());
  EXPECT_EQ(file.*Size(), status.st_size);
  EXPECT_EQ(Rest(file), status.st_size > 0 ? Texts{""} : Texts{});
}

TEST_F(LineReader, UnreadBytesAreZeros) {
  const std::string path = Write("abc\ndef\n");
  for (size_t readable = 0; readable <= 8; ++readable) {
    host.readableBytes = static_cast<long>(readable);
    Vnifstream file(path);
    ASSERT_EQ(file.*Size(), 8U);
    EXPECT_EQ(std::string(file.*Buffer(), 8),
              std::string("abc\ndef\n").substr(0, readable) + std::string(8 - readable, '\0'));
    EXPECT_EQ(Rest(file).size(), readable < 4 ? 1U : 2U);
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(LineReader, TextIsFollowedBy1024Zeros) {
  for (const std::string& bytes : {std::string(), std::string("abc"), std::string(5000, 'x')}) {
    const Vnifstream file(Write(bytes));
    EXPECT_EQ(std::string(file.*Buffer(), bytes.size() + 1024), bytes + std::string(1024, '\0'));
  }
}

TEST_F(LineReader, LoadsIntoOneAllocationAndReadsLinesWithoutAny) {
  const std::string path = Write("abc\nabcdefghi\n\nlast");
  host.encodings.reserve(2);
  char line[8];
  const AllocationGuard guard;
  Vnifstream file(path);
  EXPECT_EQ(guard.Count(), 1U);
  while (file.GetLine(line, sizeof line)) {
  }
  EXPECT_EQ(guard.Count(), 1U);
}

TEST_F(LineReader, LinesTakeOneCopyAndEmptyLinesNone) {
  Vnifstream file(Write("abc\n\n\nd\n"));
  host.boundedCopies.FailAt(0);
  EXPECT_EQ(Rest(file), (Texts{"abc", "", "", "d"}));
  EXPECT_EQ(host.boundedCopies.Calls(), 2U);
}

TEST_F(LineReader, FailingCopyStopsAtTheLineFeed) {
  for (size_t failing = 1; failing <= 3; ++failing) {
    host.Reset();
    Vnifstream file(Write("one\ntwo\nthree"));
    host.boundedCopies.FailAt(failing);
    Texts before = Rest(file);
    EXPECT_EQ(host.lines, Lines{COPY_FAILED});

    Texts all{"one", "two", "three"};
    EXPECT_EQ(before, Texts(all.begin(), all.begin() + static_cast<long>(failing - 1)));
    // The line feed before the next line remains and is read as an empty line.
    Texts after(all.begin() + static_cast<long>(failing), all.end());
    if (failing < all.size()) after.insert(after.begin(), "");
    EXPECT_EQ(Rest(file), after);
    EXPECT_EQ(host.lines, Lines{COPY_FAILED});
  }
}

TEST_F(LineReader, FailingCopyIsReportedWithItsCode) {
  Vnifstream file(Write("SECRET\n"));
  host.boundedCopies.FailAt(1);
  host.boundedCopyResult = -1;
  EXPECT_EQ(Rest(file), Texts{});
  EXPECT_EQ(host.lines,
            Lines{Error("ErrorCode:0xffffffff, Vnifstream::GetLine.memcpy_s failed", "publicdata", "GetLine")});
  EXPECT_EQ(host.filtered, Texts{"Vnifstream::GetLine.memcpy_s failed"});
}

TEST_F(LineReader, CopySharesTheBufferFromTheSamePositionOn) {
  Vnifstream file(Write("one\ntwo\nthree"));
  char line[8];
  ASSERT_TRUE(file.GetLine(line, sizeof line));
  Undestroyed copy(file);
  EXPECT_EQ((*copy).*Buffer(), file.*Buffer());
  EXPECT_EQ((*copy).*Size(), file.*Size());
  EXPECT_EQ(Rest(*copy), (Texts{"two", "three"}));
  EXPECT_EQ(Rest(file), (Texts{"two", "three"}));
}

TEST_F(LineReader, CopyOfAnEmptyReaderIsEmpty) {
  Vnifstream file(folder.Path("absent"));
  Vnifstream copy(file);
  ExpectNothingLoaded(copy);
}

TEST_F(LineReader, AssignmentSharesTheBufferAndReleasesNone) {
  Vnifstream file(Write("one\ntwo"));
  Undestroyed target(folder.Write("other.txt", "old\n"));
  const std::unique_ptr<char[]> old((*target).*Buffer());
  Vnifstream& result = *target = file;
  EXPECT_EQ(&result, &*target);
  EXPECT_EQ((*target).*Buffer(), file.*Buffer());
  EXPECT_EQ(Rest(*target), (Texts{"one", "two"}));
  EXPECT_EQ(file.*Position(), 0U);
  EXPECT_STREQ(old.get(), "old\n");
}

TEST_F(LineReader, SelfAssignmentChangesNothing) {
  Vnifstream file(Write("one\ntwo"));
  char line[8];
  ASSERT_TRUE(file.GetLine(line, sizeof line));
  const Vnifstream& same = file;
  file = same;
  EXPECT_EQ(Rest(file), Texts{"two"});
}

TEST_F(LineReader, DestructorReleasesTheBuffer) {
  const std::string path = Write("abc");
  host.encodings.reserve(2);
  const size_t before = LiveAllocations();
  {
    const Vnifstream file(path);
    EXPECT_EQ(LiveAllocations(), before + 1);
  }
  EXPECT_EQ(LiveAllocations(), before);
}

TEST_F(LineReader, LoadingAgainStartsOverAndKeepsTheOldBuffer) {
  Vnifstream file(Write("old\nlines"));
  char line[8];
  ASSERT_TRUE(file.GetLine(line, sizeof line));
  const std::unique_ptr<char[]> old(file.*Buffer());
  EXPECT_TRUE(file.ReadFile(folder.Write("other.txt", "new\ntext")));
  EXPECT_STREQ(old.get(), "old\nlines");
  EXPECT_EQ(Rest(file), (Texts{"new", "text"}));
}

TEST_F(LineReader, FailingToLoadAgainLeavesTheReader) {
  const std::string path = Write("one\ntwo");
  Vnifstream file(path);
  char line[8];
  ASSERT_TRUE(file.GetLine(line, sizeof line));
  EXPECT_FALSE(file.ReadFile(""));
  EXPECT_FALSE(file.ReadFile(folder.Path("absent")));
  host.stats.FailAt(1);
  EXPECT_FALSE(file.ReadFile(path));
  host.opens.FailAt(1);
  EXPECT_FALSE(file.ReadFile(path));
  EXPECT_EQ(Rest(file), Texts{"two"});
}

TEST_F(LineReader, ReadsTheContentAtTheTimeOfLoading) {
  Vnifstream file(Write("one\ntwo"));
  Write("changed");
  EXPECT_EQ(Rest(file), (Texts{"one", "two"}));
}

TEST_F(LineReader, ClosesTheFile) {
  const std::string path = Write("abc");
  const size_t before = OpenDescriptors();
  const Vnifstream file(path);
  EXPECT_EQ(OpenDescriptors(), before);
}

TEST_F(LineReader, FailingAllocationLeavesTheReaderAndLeaksNothing) {
  const std::string other = folder.Write("other.txt", "new");
  Vnifstream file(Write("one\ntwo"));
  char line[8];
  ASSERT_TRUE(file.GetLine(line, sizeof line));
  host.Reset();
  host.encodings.reserve(2);
  const size_t descriptors = OpenDescriptors();
  const size_t allocations = LiveAllocations();
  {
    const AllocationGuard guard(1);
    EXPECT_THROW(file.ReadFile(other), std::bad_alloc);
  }
  EXPECT_EQ(LiveAllocations(), allocations);
  EXPECT_EQ(OpenDescriptors(), descriptors);
  EXPECT_EQ(Rest(file), Texts{"two"});
}

TEST_F(LineReader, FailingAllocationsOfTheConstructorLeakNothing) {
  const std::string path = Write("one\ntwo");
  const size_t descriptors = OpenDescriptors();
  const size_t allocations = LiveAllocations();
  const size_t failures = FailEachAllocation([&] { const Vnifstream file(path); },
                                             [&] {
                                               host.Reset();
                                               EXPECT_EQ(LiveAllocations(), allocations);
                                               EXPECT_EQ(OpenDescriptors(), descriptors);
                                             });
  EXPECT_GE(failures, 1U);
}

TEST_F(LineReader, LargeFileIsReadToItsEnd) {
  constexpr size_t SIZE = 300U << 20;
  const std::string path = Write("first\n");
  {
    std::fstream stream(path);
    stream.seekp(SIZE - 12);
    stream << "\nmark\nlast";
  }
  fs::resize_file(path, SIZE);
  Vnifstream file(path);
  char line[1024];
  ASSERT_TRUE(file.GetLine(line, sizeof line));
  EXPECT_STREQ(line, "first");
  ASSERT_TRUE(file.GetLine(line, sizeof line));
  EXPECT_EQ(std::string(line, sizeof line), std::string(1024, '\0'));
  EXPECT_EQ(Rest(file), (Texts{"mark", "last"}));
}

TEST_F(LineReader, FilesBeyond4GibibytesAreReadInPart) {
  constexpr uintmax_t GIB_4 = uintmax_t{1} << 32;
  const std::string path = Write("one\ntwo\nthree");
  for (const auto& [size, lines] :
       {std::pair{0U, Texts{}}, {1U, Texts{"o"}}, {6U, Texts{"one", "tw"}}, {13U, Texts{"one", "two", "three"}}}) {
    fs::resize_file(path, GIB_4 + size);
    Vnifstream file(path);
    EXPECT_EQ(file.*Size(), size);
    EXPECT_EQ(Rest(file), lines);
  }
}

TEST_F(LineReader, SizeBeyondTheAddressSpaceIsRefused) {
  if (sizeof(size_t) > sizeof(uint32_t)) GTEST_SKIP() << "no size is";
  const std::string path = Write("abc");
  fs::resize_file(path, UINT32_MAX);
  EXPECT_THROW(Vnifstream{path}, std::bad_alloc);
}

size_t CountLines(const std::string& path, unsigned int size) {
  Vnifstream file(path);
  std::vector<char> line(size);
  size_t count = 0;
  while (file.GetLine(line.data(), size))
    ++count;
  return count;
}

TEST_F(LineReader, ManyLinesTakeLinearTime) {
  const auto write = [&](size_t count) {
    std::string bytes;
    for (size_t i = 0; i < count; ++i)
      bytes += "a short line\n";
    return std::pair{folder.Write(std::to_string(count), bytes), count};
  };
  const auto read = [](const auto& file) { EXPECT_EQ(CountLines(file.first, 1024), file.second); };
  EXPECT_LT(Growth(20000, write, read), LINEAR_GROWTH);
}

TEST_F(LineReader, OneHugeLineTakesLinearTime) {
  const auto write = [&](size_t size) { return folder.Write(std::to_string(size), std::string(size, 'x')); };
  const auto read = [](const std::string& path) { EXPECT_EQ(CountLines(path, 1024), 1U); };
  // Small enough to keep the larger file in the cache: exceeding the cache would look like growth.
  EXPECT_LT(Growth(1U << 14, write, read), LINEAR_GROWTH);
}

}  // namespace
}  // namespace VARNEL_TEST
