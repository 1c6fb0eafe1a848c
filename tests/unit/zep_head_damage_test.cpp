#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>

#include "allocation.h"
#include "head_reading.h"
#include "unprivileged.h"

namespace VARNEL_TEST {
namespace {

namespace fs = std::filesystem;

class DamagedZepHead : public HeadReading {
 protected:
  bool HeadIsUntouched() const {
    const std::string bytes(reinterpret_cast<const char*>(&head), sizeof head);
    return bytes == std::string(sizeof head, '\xEE');
  }

  const SoftwareFile full = FullFile();
  const size_t fileHead = full.FileHeadOffset();
  const size_t extension = fileHead + 64;
  const size_t link = extension + 2 + full.skipped.size();
  const size_t version = link + full.link.size();
  const size_t tail = version + full.version.size();
  const unsigned int payloadOffset = 206;
  std::string linkTarget, versionText;
  unsigned int extWord = 0, offset = 0;
  const Outcome valid{0, "main.bin", "5.31", 0xBEEF, payloadOffset};

  // The outcome when only the first `size` bytes of the full file can be read.
  Outcome OutcomeOfPrefix(size_t size) const {
    if (size >= tail) return valid;
    Outcome outcome{INVALID_HEAD};
    if (size < extension) return outcome;
    outcome.payloadOffset = payloadOffset;
    outcome.extension = size < extension + 2 ? 0 : 0xBEEF;
    if (size >= version) outcome.link = valid.link;
    return outcome;
  }

  void ExpectRefused(const std::string& bytes, size_t damagedAt) {
    EXPECT_EQ(ReadBytes(bytes), Outcome{INVALID_HEAD}) << "byte " << damagedAt;
  }
};

TEST_F(DamagedZepHead, EveryPrefixFailsWhereItEnds) {
  const std::string bytes = full.Bytes();
  const std::string path = folder.Write("cut.bin", bytes);
  const size_t descriptors = OpenDescriptors();
  for (size_t size = bytes.size(); size-- > 0;) {
    host.Reset();
    fs::resize_file(path, size);
    EXPECT_EQ(ReadPath(path), OutcomeOfPrefix(size)) << size;
    EXPECT_EQ(host.lines, size < tail ? Lines{ShortRead()} : Lines{}) << size;
    EXPECT_EQ(OpenDescriptors(), descriptors) << size;
  }
}

TEST_F(DamagedZepHead, ReadErrorAfterEveryByteIsReported) {
  const std::string bytes = full.Bytes();
  const std::string path = folder.Write("broken.bin", bytes);
  const size_t descriptors = OpenDescriptors();
  for (size_t size = 0; size <= bytes.size(); ++size) {
    host.Reset();
    host.readableBytes = static_cast<long>(size);
    EXPECT_EQ(ReadPath(path), OutcomeOfPrefix(size)) << size;
    EXPECT_EQ(host.lines, size < tail ? Lines{ShortRead(5)} : Lines{}) << size;
    EXPECT_EQ(OpenDescriptors(), descriptors) << size;
  }
}

// The reading end of a pipe with some bytes: a file that can be read but cannot seek.
class Unseekable {
 public:
  explicit Unseekable(const std::string& bytes) {
    EXPECT_EQ(pipe(m_ends.data()), 0);
    EXPECT_EQ(write(m_ends[1], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    close(m_ends[1]);
  }
  ~Unseekable() { close(m_ends[0]); }
  Unseekable(const Unseekable&) = delete;
  Unseekable& operator=(const Unseekable&) = delete;
  std::string Path() const { return "/proc/self/fd/" + std::to_string(m_ends[0]); }

 private:
  std::array<int, 2> m_ends{-1, -1};
};

TEST_F(DamagedZepHead, StreamThatCannotSeekIsReadFromItsPosition) {
  std::string bytes = full.Bytes();
  bytes.erase(link - full.skipped.size(), full.skipped.size());
  bytes.erase(64, fileHead - 64);
  EXPECT_EQ(ReadPath(Unseekable(bytes).Path()), valid);
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(DamagedZepHead, EndOfTheFileReportsTheCallersErrno) {
  const std::string path = folder.Write("short.bin", "QXDD");
  host.aroundOpening = [](size_t) { errno = ENOSPC; };
  EXPECT_EQ(ReadPath(path), Outcome{INVALID_HEAD});
  EXPECT_EQ(host.lines, Lines{ShortRead(ENOSPC)});
}

TEST_F(DamagedZepHead, SuccessKeepsErrno) {
  const std::string path = folder.Write("good.bin", full.Bytes());
  host.aroundOpening = [](size_t) { errno = ENOSPC; };
  errno = 77;
  EXPECT_EQ(VARNEL_COMMON::readZEPFileHead(path, head, linkTarget, versionText, extWord, offset), 0U);
  EXPECT_EQ(errno, 77);
}

TEST_F(DamagedZepHead, FileHeaderCutShortIsReturnedAsRead) {
  const std::string bytes = full.Bytes().substr(0, fileHead + 10);
  EXPECT_EQ(ReadBytes(bytes), Outcome{INVALID_HEAD});
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(&head), 10), bytes.substr(fileHead, 10));
}

TEST_F(DamagedZepHead, DamagedDirectoryHeaderLeavesTheOutputUnchanged) {
  std::string bytes = full.Bytes();
  bytes[0] = 'x';
  EXPECT_EQ(ReadBytes(bytes), Outcome{INVALID_HEAD});
  EXPECT_TRUE(HeadIsUntouched());
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(DamagedZepHead, RefusedFileHeaderIsReturnedConverted) {
  std::string bytes = full.Bytes();
  PutBig32(bytes, fileHead, 0x51584647);
  EXPECT_EQ(ReadBytes(bytes), Outcome{INVALID_HEAD});
  EXPECT_EQ(head.ulMagic, 0x51584647U);
  EXPECT_EQ(head.usFileType, 2U);
}

TEST_F(DamagedZepHead, EachByteOfEachMagicWordIsChecked) {
  for (const size_t start : {size_t{0}, fileHead}) {
    for (size_t i = start; i < start + 4; ++i) {
      for (const int change : {0x01, 0x20, 0x80}) {
        std::string bytes = full.Bytes();
        bytes[i] = static_cast<char>(bytes[i] ^ change);
        ExpectRefused(bytes, i);
      }
    }
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(DamagedZepHead, ExchangedMagicWordsAreRefused) {
  std::string bytes = full.Bytes();
  bytes.replace(0, 4, "QXFF");
  EXPECT_EQ(ReadBytes(bytes), Outcome{INVALID_HEAD});
  bytes = full.Bytes();
  bytes.replace(fileHead, 4, "QXDD");
  EXPECT_EQ(ReadBytes(bytes), Outcome{INVALID_HEAD});
}

TEST_F(DamagedZepHead, SumOffByOne) {
  for (const size_t start : {size_t{0}, fileHead}) {
    for (const int change : {1, -1}) {
      std::string bytes = full.Bytes();
      bytes[start + 7] = static_cast<char>(bytes[start + 7] + change);
      ExpectRefused(bytes, start + 7);
    }
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(DamagedZepHead, EachByteOfEachSumIsChecked) {
  for (const size_t start : {size_t{0}, fileHead}) {
    for (size_t i = start + 4; i < start + 8; ++i) {
      std::string bytes = full.Bytes();
      bytes[i] = static_cast<char>(bytes[i] ^ 0x40);
      ExpectRefused(bytes, i);
    }
  }
}

TEST_F(DamagedZepHead, SumsCoverBytes8To59) {
  for (const size_t start : {size_t{0}, fileHead}) {
    for (size_t i = start + 8; i < start + 60; ++i) {
      std::string bytes = full.Bytes();
      bytes[i] = static_cast<char>(bytes[i] ^ 0x80);
      ExpectRefused(bytes, i);
    }
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(DamagedZepHead, SumsLeaveOutBytes60To63) {
  for (const size_t start : {size_t{0}, fileHead}) {
    for (size_t i = start + 60; i < start + 64; ++i) {
      std::string bytes = full.Bytes();
      bytes[i] = '\xFF';
      EXPECT_EQ(ReadBytes(bytes), valid) << i;
    }
  }
}

TEST_F(DamagedZepHead, SumsAddUnsignedBytes) {
  std::string bytes = full.Bytes();
  for (size_t i = 38; i < 60; ++i)
    bytes[i] = '\xFF';
  RepairSum(bytes, 0);
  EXPECT_EQ(ReadBytes(bytes), valid);
}

TEST_F(DamagedZepHead, MissingFile) {
  const std::string path = folder.Path("absent.bin");
  EXPECT_EQ(ReadPath(path), Outcome{CANNOT_OPEN});
  EXPECT_TRUE(HeadIsUntouched());
  EXPECT_EQ(host.lines, Lines{OpenFailed(path, ENOENT)});
}

TEST_F(DamagedZepHead, EmptyPath) {
  EXPECT_EQ(ReadPath(""), Outcome{CANNOT_OPEN});
  EXPECT_EQ(host.lines, Lines{OpenFailed("", ENOENT)});
}

TEST_F(DamagedZepHead, UnreadableFile) {
  const std::string path = folder.Write("locked.bin", full.Bytes());
  fs::permissions(path, fs::perms::none);
  EXPECT_TRUE(HoldsUnprivileged(
      [&] { return ReadPath(path) == Outcome{CANNOT_OPEN} && host.lines == Lines{OpenFailed(path, EACCES)}; }));
}

TEST_F(DamagedZepHead, OpenFailureNamesTheErrorOfTheHost) {
  const std::string path = folder.Write("file.bin", full.Bytes());
  host.opens.FailAt(1);
  EXPECT_EQ(ReadPath(path), Outcome{CANNOT_OPEN});
  EXPECT_EQ(host.lines, Lines{OpenFailed(path, 5)});
  EXPECT_EQ(host.lines.at(0).text, "readZEPFileHead(): KELP_OS::fopen failed! filename:" + path + ". errno:5");
}

TEST_F(DamagedZepHead, WholeWarningGoesThroughTheFilter) {
  const std::string path = "SECRET/absent.bin";
  EXPECT_EQ(ReadPath(path), Outcome{CANNOT_OPEN});
  EXPECT_EQ(host.filtered, std::vector<std::string>{OpenFailed(path, ENOENT).text});
  EXPECT_EQ(host.lines, Lines{OpenFailed("######/absent.bin", ENOENT)});
}

TEST_F(DamagedZepHead, ShortReadGoesThroughTheFilter) {
  ReadBytes("");
  EXPECT_EQ(host.filtered, std::vector<std::string>{"readZEPFileHead(): ACE_OS::fread failed! errno: 0"});
}

TEST_F(DamagedZepHead, Folder) {
  const size_t descriptors = OpenDescriptors();
  EXPECT_EQ(ReadPath(folder.Path()), Outcome{INVALID_HEAD});
  EXPECT_EQ(host.lines, Lines{ShortRead(EISDIR)});
  EXPECT_EQ(OpenDescriptors(), descriptors);
}

TEST_F(DamagedZepHead, PathEndsAtItsFirstNulForTheHostAndIsLoggedWhole) {
  folder.Write("file.bin", full.Bytes());
  EXPECT_EQ(ReadPath(folder.Path(std::string("file.bin\0x", 10))), valid);

  const std::string absent = folder.Path(std::string("absent\0x", 8));
  EXPECT_EQ(ReadPath(absent), Outcome{CANNOT_OPEN});
  EXPECT_EQ(host.lines, Lines{OpenFailed(absent, ENOENT)});
}

TEST_F(DamagedZepHead, FailingAllocationsLeakNothing) {
  SoftwareFile file;
  file.link = "-> " + std::string(100, 'l');
  file.version.assign(100, 'v');
  const std::string path = folder.Write("file.bin", file.Bytes());
  const size_t descriptors = OpenDescriptors();
  const size_t allocations = LiveAllocations();
  const size_t failures = FailEachAllocation([&] { ReadPath(path); },
                                             [&] {
                                               host.Reset();
                                               EXPECT_EQ(LiveAllocations(), allocations);
                                               EXPECT_EQ(OpenDescriptors(), descriptors);
                                             });
  EXPECT_GE(failures, 3U);
}

}  // namespace
}  // namespace VARNEL_TEST
