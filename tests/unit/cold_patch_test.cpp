#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>

#include "allocation.h"
#include "publicdata.h"
#include "recording_test.h"
#include "temp_folder.h"
#include "unprivileged.h"

namespace VARNEL_TEST {
namespace {

namespace fs = std::filesystem;
using VARNEL_COMMON::isColdPatch;

const std::string MARKER = "[COLDPATCH]";

LogLine NotFound(const std::string& path) {
  return Warning("isColdPatch not find coldpatch, File: " + path, "publicdata", "isColdPatch");
}

class ColdPatch : public RecordingTest {
 protected:
  bool IsColdPatch(const std::string& bytes) { return isColdPatch(folder.Write("patch.txt", bytes)); }

  TempFolder folder;
};

TEST_F(ColdPatch, MarkerAnywhereOnALine) {
  const std::string accepted[] = {
      MARKER,
      MARKER + "\n",
      "x " + MARKER + " y",
      "a\n\n" + MARKER + "\r\n",
      "1\n2\n3\n4\n5\n6\n7\n8\n9\nx [COLDPATCH] y\n11\n",
      "[[COLDPATCH]]",
      "[COLD[COLDPATCH]",
      MARKER + std::string("\0", 1),
      std::string("a\0b\n", 4) + MARKER,
      "\xFF\xFE" + MARKER,
  };
  for (const std::string& bytes : accepted)
    EXPECT_TRUE(IsColdPatch(bytes)) << bytes;
  EXPECT_EQ(host.lines, Lines{});
  EXPECT_EQ(host.filtered, std::vector<std::string>{});
}

TEST_F(ColdPatch, OtherTextsAreNotTheMarker) {
  const std::string refused[] = {
      "",
      "\n",
      "[coldpatch]",
      "[ColdPatch]",
      "COLDPATCH",
      "[COLDPATCH",
      "COLDPATCH]",
      "[COLDPATCH ]",
      "[COLD\nPATCH]",
      "[COLD\r\nPATCH]",
      "[COLD PATCH]",
      std::string("[COLD\0PATCH]", 12),
  };
  for (const std::string& bytes : refused) {
    host.Reset();
    EXPECT_FALSE(IsColdPatch(bytes)) << bytes;
    EXPECT_EQ(host.lines, Lines{NotFound(folder.Path("patch.txt"))}) << bytes;
  }
}

TEST_F(ColdPatch, NulEndsALine) {
  EXPECT_FALSE(IsColdPatch(std::string("a\0", 2) + MARKER));
  EXPECT_FALSE(IsColdPatch(std::string("\0", 1) + MARKER));
}

TEST_F(ColdPatch, MarkerMustBeInTheFirst1023Bytes) {
  for (size_t end = 1020; end <= 1040; ++end) {
    const std::string bytes = "first\n" + std::string(end - MARKER.size(), 'x') + MARKER + " rest of the line\nlast";
    EXPECT_EQ(IsColdPatch(bytes), end <= 1023) << end;
  }
  EXPECT_FALSE(IsColdPatch(std::string(5000, 'x') + MARKER));
}

TEST_F(ColdPatch, LineAfterALongOneIsSearched) {
  EXPECT_TRUE(IsColdPatch(std::string(5000, 'x') + "\n" + MARKER));
}

TEST_F(ColdPatch, MarkerNearTheEndOfALargeFile) {
  const std::string path = folder.Write("large.txt", "");
  fs::resize_file(path, 64U << 20);
  std::ofstream(path, std::ios::app) << '\n' << MARKER;
  EXPECT_TRUE(isColdPatch(path));
}

TEST_F(ColdPatch, FilesThatCannotBeLoadedAreNotColdPatches) {
  const std::string absent = folder.Path("absent");
  EXPECT_FALSE(isColdPatch(absent));
  EXPECT_FALSE(isColdPatch(folder.Path()));
  EXPECT_FALSE(isColdPatch(""));
  EXPECT_EQ(host.lines, (Lines{NotFound(absent), NotFound(folder.Path()), NotFound("")}));
}

TEST_F(ColdPatch, UnreadableFileIsNotAColdPatch) {
  const std::string path = folder.Write("locked.txt", MARKER);
  fs::permissions(path, fs::perms::none);
  EXPECT_TRUE(HoldsUnprivileged([&] { return !isColdPatch(path) && host.lines == Lines{NotFound(path)}; }));
}

TEST_F(ColdPatch, FailingFileCallsReturnFalse) {
  const std::string path = folder.Write("patch.txt", MARKER);
  host.stats.FailAt(1);
  EXPECT_FALSE(isColdPatch(path));
  host.opens.FailAt(1);
  EXPECT_FALSE(isColdPatch(path));
  host.readableBytes = 5;
  EXPECT_FALSE(isColdPatch(path));
  EXPECT_EQ(host.lines, (Lines{NotFound(path), NotFound(path), NotFound(path)}));
}

TEST_F(ColdPatch, FailingCopyEndsTheSearch) {
  const std::string path = folder.Write("patch.txt", "one\n" + MARKER);
  host.boundedCopies.FailAt(1);
  EXPECT_FALSE(isColdPatch(path));
  EXPECT_EQ(host.lines, (Lines{Error("ErrorCode:0x22, Vnifstream::GetLine.memcpy_s failed", "publicdata", "GetLine"),
                               NotFound(path)}));
}

TEST_F(ColdPatch, PathEndsAtItsFirstNulForTheHostAndInTheLog) {
  folder.Write("patch.txt", MARKER);
  EXPECT_TRUE(isColdPatch(folder.Path(std::string("patch.txt\0x", 11))));
  EXPECT_FALSE(isColdPatch(folder.Path(std::string("absent\0x", 8))));
  EXPECT_FALSE(isColdPatch(std::string("\0x", 2)));
  EXPECT_EQ(host.lines, (Lines{NotFound(folder.Path("absent")), NotFound("")}));
}

TEST_F(ColdPatch, WholeWarningGoesThroughTheFilter) {
  EXPECT_FALSE(isColdPatch("SECRET/absent"));
  EXPECT_EQ(host.filtered, std::vector<std::string>{"isColdPatch not find coldpatch, File: SECRET/absent"});
  EXPECT_EQ(host.lines, Lines{NotFound("######/absent")});
}

TEST_F(ColdPatch, SizesAndOpensThePathAsUtf8) {
  IsColdPatch(MARKER);
  EXPECT_EQ(host.encodings, (std::vector<std::string>{"UTF-8", "UTF-8"}));
}

TEST_F(ColdPatch, LeaksNothing) {
  const std::string paths[] = {folder.Write("yes.txt", MARKER), folder.Write("no.txt", "x"), folder.Path("absent")};
  host.Reset();
  const size_t descriptors = OpenDescriptors();
  const size_t allocations = LiveAllocations();
  for (const std::string& path : paths) {
    isColdPatch(path);
    host.Reset();
    EXPECT_EQ(LiveAllocations(), allocations) << path;
    EXPECT_EQ(OpenDescriptors(), descriptors) << path;
  }
}

TEST_F(ColdPatch, FailingAllocationsLeakNothing) {
  const std::string path = folder.Write("no.txt", "no marker");
  const size_t descriptors = OpenDescriptors();
  const size_t allocations = LiveAllocations();
  const size_t failures = FailEachAllocation([&] { isColdPatch(path); },
                                             [&] {
                                               host.Reset();
                                               EXPECT_EQ(LiveAllocations(), allocations);
                                               EXPECT_EQ(OpenDescriptors(), descriptors);
                                             });
  EXPECT_GE(failures, 2U);
}

}  // namespace
}  // namespace VARNEL_TEST
