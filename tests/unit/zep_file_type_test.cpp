#include <gtest/gtest.h>

#include <cerrno>
#include <fstream>
#include <set>
#include <string>

#include "head_reading.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_COMMON::CheckZEPFileHead;

constexpr unsigned int TYPES = 65536;

bool IsAccepted(unsigned int type) {
  static const std::set<unsigned int> accepted{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 15, 513};
  return accepted.count(type) == 1;
}

/// One file on disk whose type is rewritten in place.
class RetypedFile {
 public:
  explicit RetypedFile(const TempFolder& folder) : m_path(folder.Write("typed.bin", m_bytes)), m_stream(m_path) {}

  const std::string& Path() const { return m_path; }

  void SetType(unsigned int type) {
    PutBig16(m_bytes, HEAD + 32, static_cast<uint16_t>(type));
    RepairSum(m_bytes, HEAD);
    m_stream.seekp(HEAD).write(&m_bytes[HEAD], 64).flush();
  }

 private:
  static constexpr size_t HEAD = 64;

  // Long enough for the extension word of type 2 as well.
  static std::string Bytes() {
    SoftwareFile file;
    file.link = "link -> target";
    file.payload = "payload";
    return file.Bytes();
  }

  std::string m_bytes = Bytes();
  std::string m_path;
  std::fstream m_stream;
};

class ZepFileType : public HeadReading {
 protected:
  unsigned int Check(const std::string& path) { return CheckZEPFileHead(path, fileType, link, version); }
  unsigned int CheckAnyType(const std::string& path) {
    return CheckZEPFileHead(path, extension, payloadOffset, link, anyType, version);
  }
  std::string Write(const SoftwareFile& file) { return folder.Write("file.bin", file.Bytes()); }

  int fileType = -7;
  unsigned short anyType = 4711;
  unsigned int extension = OLD_NUMBER;
  unsigned int payloadOffset = OLD_NUMBER;
  std::string link = OLD_LINK;
  std::string version = OLD_VERSION;
};

TEST_F(ZepFileType, AcceptedTypes) {
  for (const unsigned int type : {0U, 1U, 2U, 12U, 13U, 15U, 513U}) {
    SoftwareFile file;
    file.fileType = static_cast<uint16_t>(type);
    file.payload = "payload";
    EXPECT_EQ(Check(Write(file)), 0U) << type;
    EXPECT_EQ(fileType, static_cast<int>(type));
  }
}

TEST_F(ZepFileType, RefusedTypesAreReturnedNevertheless) {
  for (const unsigned int type : {14U, 16U, 256U, 512U, 514U, 65535U}) {
    SoftwareFile file;
    file.fileType = static_cast<uint16_t>(type);
    EXPECT_EQ(Check(Write(file)), INVALID_HEAD) << type;
    EXPECT_EQ(fileType, static_cast<int>(type));
    EXPECT_EQ(link, "target");
    EXPECT_EQ(version, "2.10");
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(ZepFileType, EveryTypeIsAcceptedOrRefused) {
  RetypedFile file(folder);
  for (unsigned int type = 0; type < TYPES; ++type) {
    file.SetType(type);
    ASSERT_EQ(Check(file.Path()), IsAccepted(type) ? 0U : INVALID_HEAD) << type;
    ASSERT_EQ(fileType, static_cast<int>(type));
    host.encodings.clear();
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(ZepFileType, EveryTypePassesTheCheckWithoutFilter) {
  RetypedFile file(folder);
  for (unsigned int type = 0; type < TYPES; ++type) {
    file.SetType(type);
    ASSERT_EQ(CheckAnyType(file.Path()), 0U) << type;
    ASSERT_EQ(anyType, type);
    host.encodings.clear();
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(ZepFileType, CheckWithoutFilterSetsAllOutputs) {
  EXPECT_EQ(CheckAnyType(Write(FullFile())), 0U);
  EXPECT_EQ(extension, 0xBEEFU);
  EXPECT_EQ(payloadOffset, 206U);
  EXPECT_EQ(link, "main.bin");
  EXPECT_EQ(anyType, 2U);
  EXPECT_EQ(version, "5.31");
}

TEST_F(ZepFileType, FailureLeavesTheType) {
  SoftwareFile noMarker;
  noMarker.link = "none";
  SoftwareFile shortVersion;
  shortVersion.versionLength = 100;
  for (const SoftwareFile& file : {noMarker, shortVersion}) {
    EXPECT_EQ(Check(Write(file)), INVALID_HEAD);
    EXPECT_EQ(CheckAnyType(Write(file)), INVALID_HEAD);
  }
  EXPECT_EQ(fileType, -7);
  EXPECT_EQ(anyType, 4711U);
}

TEST_F(ZepFileType, FailureKeepsTheOutputsReadBefore) {
  SoftwareFile file = FullFile();
  file.versionLength = 65534;
  EXPECT_EQ(CheckAnyType(Write(file)), INVALID_HEAD);
  EXPECT_EQ(extension, 0xBEEFU);
  EXPECT_EQ(payloadOffset, 206U - 13 + 65534);
  EXPECT_EQ(link, "main.bin");
  EXPECT_EQ(version, OLD_VERSION);
}

TEST_F(ZepFileType, FailuresAreReportedByTheReader) {
  const std::string absent = folder.Path("absent");
  EXPECT_EQ(Check(absent), CANNOT_OPEN);
  EXPECT_EQ(CheckAnyType(absent), CANNOT_OPEN);
  const std::string cut = folder.Write("cut.bin", "QX");
  errno = 0;
  EXPECT_EQ(Check(cut), INVALID_HEAD);
  EXPECT_EQ(CheckAnyType(cut), INVALID_HEAD);
  EXPECT_EQ(host.lines, (Lines{OpenFailed(absent, 2), OpenFailed(absent, 2), ShortRead(), ShortRead()}));
  EXPECT_EQ(fileType, -7);
  EXPECT_EQ(anyType, 4711U);
}

TEST_F(ZepFileType, OutputsMayBeThePathItself) {
  link = Write(FullFile());
  EXPECT_EQ(Check(link), 0U);
  EXPECT_EQ(link, "main.bin");
  version = folder.Path("file.bin");
  EXPECT_EQ(CheckAnyType(version), 0U);
  EXPECT_EQ(version, "5.31");
}

}  // namespace
}  // namespace VARNEL_TEST
