// From the path of a package to its entries, over the bundled platform.
#include <cerrno>
#include <filesystem>
#include <string>

#include "description_reference.h"
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
constexpr unsigned int INVALID_HEAD = 0x3BA00B02;
constexpr unsigned int INVALID_DESCRIPTION = 0x3BA0120F;

SoftwareFile Package() {
  SoftwareFile file;
  file.gaps = {1, 2, 3, 4};
  file.fileType = 2;
  file.extension = 0x1234;
  file.skipped = "skip";
  file.link = "package -> mainboard";
  file.version = "2.10T20260115";
  file.tail = "tail";
  file.payload =
      "\r\n[General]\r\nowner:x\r\n[File Description]\r\n"
      "# name:kind:::size:::\r\n"
      "mainboard.bin : app : c : d : 1048576 : f : g : h\r\n"
      "short:line\r\n"
      "hotfix.bin:patch:c:d:2048:f:g:h\r\n"
      "[END]\r\nlate.bin:app:c:d:1:f:g:h\r\n[COLDPATCH]\r\n";
  return file;
}

class PackageRoad : public LoggedTest {
 protected:
  PackageRoad() : path(folder.Write("sample.pkg", Package().Bytes())) {
    std::filesystem::create_symlink("sample.pkg", folder.Path("link"));
  }

  static std::string HeadFailure(const std::string& text) { return "warning publicdata::readZEPFileHead " + text; }
  static std::string NoSection(const std::string& file) {
    return "error pkgfile::ParsePkgSoftInfo ErrorCode:0x3ba0120f, CPkgFile::ParsePkgSoftInfo(): , not find "
           "[File Description], File: " +
           file;
  }

  static unsigned int CheckHead(const std::string& file) {
    int type = 0;
    std::string link, version;
    return CheckZEPFileHead(file, type, link, version);
  }

  const TempFolder folder;
  const std::string path;
};

TEST_F(PackageRoad, ReadsEntriesThroughALinkInFileOrder) {
  const std::string resolved = ToAbsPath(folder.Path("./link"));
  ASSERT_EQ(resolved, path);
  ASSERT_TRUE(VerifyFilePathAndName(resolved));

  std::string filePath, fileName, stem, extension;
  SplitFilePathAndFileName(resolved, filePath, fileName);
  GetFileLeftNameAndExName(fileName, stem, extension);
  EXPECT_EQ(filePath, folder.Path() + "/");
  EXPECT_EQ(stem, "sample");
  EXPECT_EQ(extension, ".pkg");

  unsigned int extWord = 0;
  unsigned int payloadOffset = 0;
  unsigned short type = 0;
  std::string link, version;
  ASSERT_EQ(CheckZEPFileHead(resolved, extWord, payloadOffset, link, type, version), 0U);
  EXPECT_EQ(extWord, 0x1234U);
  EXPECT_EQ(payloadOffset, 10U + 128 + 4 + 20 + 13 + 4);
  EXPECT_EQ(link, "mainboard");
  EXPECT_EQ(type, 2);
  EXPECT_EQ(version, "2.10");

  CPkgFile package(resolved);
  ASSERT_EQ(package.ParsePkgFile(), 0U);
  EXPECT_EQ(package.m_strVersion, version);
  EXPECT_EQ(EntriesIn(package), (Entries{{"mainboard.bin", "app", 1048576}, {"hotfix.bin", "patch", 2048}}));
  EXPECT_TRUE(isColdPatch(resolved));
  EXPECT_EQ(Log(), Lines{});

  EXPECT_EQ(VNRemoveFile(resolved), 0);
  EXPECT_EQ(ToAbsPath(folder.Path("link")), "");
}

TEST_F(PackageRoad, ParsingAgainAppendsTheEntries) {
  CPkgFile package(path);
  ASSERT_EQ(package.ParsePkgFile(), 0U);
  ASSERT_EQ(package.ParsePkgFile(), 0U);
  EXPECT_EQ(package.m_lstSoftInfo.size(), 4U);
  package.ClearSoftInfo();
  ASSERT_EQ(package.ParsePkgFile(), 0U);
  EXPECT_EQ(package.m_lstSoftInfo.size(), 2U);
}

TEST_F(PackageRoad, RefusesAPathWithTwoDots) {
  EXPECT_FALSE(VerifyFilePathAndName(folder.Path("../sample.pkg")));
  const std::string dotted = folder.Write("a..b", "");
  EXPECT_EQ(ToAbsPath(dotted), "");
  EXPECT_EQ(Log(), Lines{"error str::ToAbsPath ErrorCode:0x3b001400, VerifyFilePathAndName is failed, filename" +
                         dotted + ". "});
}

// CheckZEPFileHead() checks the headers; a package description after damaged ones is read too.
TEST_F(PackageRoad, RefusesEveryDamagedByteOfTheHeaders) {
  const std::string bytes = Package().Bytes();
  const size_t fileHead = Package().FileHeadOffset();
  for (const size_t head : {size_t{0}, fileHead}) {
    for (size_t at = head; at < head + 60; ++at) {
      std::string damaged = bytes;
      ++damaged[at];
      EXPECT_EQ(CheckHead(folder.Write("damaged.pkg", damaged)), INVALID_HEAD) << at;
    }
  }
  EXPECT_EQ(Log(), Lines{});

  CPkgFile package(folder.Path("damaged.pkg"));
  EXPECT_EQ(package.ParsePkgFile(), 0U);
  EXPECT_EQ(package.m_strVersion, "");
  EXPECT_EQ(package.m_lstSoftInfo.size(), 2U);
}

TEST_F(PackageRoad, LogsAShortFile) {
  const std::string cut = folder.Write("cut.pkg", Package().Bytes().substr(0, 70));
  errno = 0;
  EXPECT_EQ(CheckHead(cut), INVALID_HEAD);
  CPkgFile package(cut);
  EXPECT_EQ(package.ParsePkgFile(), INVALID_DESCRIPTION);
  const std::string shortRead = HeadFailure("readZEPFileHead(): ACE_OS::fread failed! errno: 0");
  EXPECT_EQ(Log(), (Lines{shortRead, shortRead, NoSection(cut)}));
  EXPECT_TRUE(package.m_lstSoftInfo.empty());
}

TEST_F(PackageRoad, LogsAMissingFile) {
  const std::string absent = folder.Path("absent.pkg");
  EXPECT_EQ(CheckHead(absent), CANNOT_OPEN);
  EXPECT_EQ(CPkgFile(absent).ParsePkgFile(), INVALID_DESCRIPTION);
  EXPECT_FALSE(isColdPatch(absent));
  const std::string cannotOpen =
      HeadFailure("readZEPFileHead(): KELP_OS::fopen failed! filename:" + absent + ". errno:2");
  EXPECT_EQ(Log(), (Lines{cannotOpen, cannotOpen, NoSection(absent),
                          "warning publicdata::isColdPatch isColdPatch not find coldpatch, File: " + absent}));
}

}  // namespace
}  // namespace VARNEL_TEST
