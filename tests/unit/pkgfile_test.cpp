#include "pkgfile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string>
#include <type_traits>
#include <vector>

#include "allocation.h"
#include "description_reference.h"
#include "growth.h"
#include "package_reports.h"
#include "recording_test.h"
#include "software_file.h"
#include "temp_folder.h"
#include "unprivileged.h"

namespace VARNEL_TEST {
namespace {

namespace fs = std::filesystem;
using VARNEL_COMMON::CPkgFile;

const std::string SECTION = "[File Description]\n";

class PackageFile : public RecordingTest {
 protected:
  // Parses a description text into `package`.
  unsigned int Parse(const std::string& text) { return package.ParsePkgSoftInfo(folder.Write("package.txt", text)); }
  unsigned int ParseSection(const std::string& lines) { return Parse(SECTION + lines); }

  // The entries of a section, parsed into an empty list.
  Entries EntriesOf(const std::string& lines) {
    package.ClearSoftInfo();
    ParseSection(lines);
    return EntriesIn(package);
  }

  TempFolder folder;
  const std::string path = folder.Path("package.txt");
  CPkgFile package{path};
};

TEST_F(PackageFile, FreshObjectIsEmpty) {
  EXPECT_EQ(package.m_strFilePath, path);
  EXPECT_EQ(package.m_strExtra, "");
  EXPECT_EQ(package.m_strVersion, "");
  EXPECT_EQ(package.m_lstSoftInfo.size(), 0U);
  EXPECT_EQ(host.encodings, std::vector<std::string>{});
}

TEST_F(PackageFile, FreshEntryHasNoSize) {
  const VARNEL_COMMON::SOFT_INFO entry;
  EXPECT_EQ(entry.strColumn1 + entry.strColumn2, "");
  EXPECT_EQ(entry.uiColumn5, 0U);
}

TEST_F(PackageFile, CannotBeCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<CPkgFile>);
  EXPECT_FALSE(std::is_copy_assignable_v<CPkgFile>);
}

TEST_F(PackageFile, SampleDescription) {
  EXPECT_EQ(Parse("[Package Info]\n"
                  "early.bin:app:x:y:1:a:b:c\n"
                  "[File Description]\n"
                  "#name:kind:c3:c4:size:c6:c7:c8\n"
                  "mainboard.bin : app : x : y : 1048576 : a : b : c\n"
                  "\n"
                  "patch.bin:pat:x:y:2048:a:b\n"
                  "[END]\n"
                  "late.bin:app:x:y:1:a:b:c\n"),
            0U);
  EXPECT_EQ(EntriesIn(package), (Entries{{"mainboard.bin", "app", 1048576}}));
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(PackageFile, ColumnsAreTrimmed) {
  EXPECT_EQ(EntriesOf("a:b:c:d:5:f:g:h\n"), (Entries{{"a", "b", 5}}));
  EXPECT_EQ(EntriesOf(" a : b :c:d: 7 :f:g:h\r\n"), (Entries{{"a", "b", 7}}));
  EXPECT_EQ(EntriesOf("\ta\v:\fb\t:c:d:\t8\r:f:g:h\r"), (Entries{{"a", "b", 8}}));
  EXPECT_EQ(EntriesOf(" a b : c  d :::9:::\n"), (Entries{{"a b", "c  d", 9}}));
}

TEST_F(PackageFile, EmptyColumnsAreColumns) {
  EXPECT_EQ(EntriesOf(":::::::\n"), (Entries{{"", "", 0}}));
  EXPECT_EQ(EntriesOf(" : : : : : : : \r\n"), (Entries{{"", "", 0}}));
}

TEST_F(PackageFile, BytesAbove7FAreOrdinary) {
  EXPECT_EQ(EntriesOf("\xC3\xA9\xFF:\x85\xA0:c:d:5:f:g:h\n"), (Entries{{"\xC3\xA9\xFF", "\x85\xA0", 5}}));
}

TEST_F(PackageFile, Column5IsReadAsANumber) {
  const std::pair<std::string, unsigned int> numbers[] = {
      {"0", 0},
      {"007", 7},
      {"+7", 7},
      {"7x", 7},
      {"7 8", 7},
      {"7.9", 7},
      {"1,000", 1},
      {"0x10", 0},
      {"1048576", 1048576},
      {"4294967295", 4294967295},
      {"4294967296", 4294967295},
      {"99999999999999999999999999", 4294967295},
      {"-1", 4294967295},
      {"-2", 4294967294},
      {"abc", 0},
      {"x7", 0},
      {"-", 0},
      {"", 0},
      {"  \t", 0},
  };
  for (const auto& [text, number] : numbers)
    EXPECT_EQ(EntriesOf("a:b:c:d:" + text + ":f:g:h\n"), (Entries{{"a", "b", number}})) << text;
}

TEST_F(PackageFile, EntriesKeepTheirOrder) {
  EXPECT_EQ(EntriesOf("b:1:::1:::\na:2:::2:::\nb:1:::1:::\n"), (Entries{{"b", "1", 1}, {"a", "2", 2}, {"b", "1", 1}}));
}

TEST_F(PackageFile, LinesWithoutExactly8ColumnsAreSkipped) {
  const std::string skipped[] = {
      "x",  "a:b:c:d:5:f:g", "a:b:c:d:5:f:g:h:", "a:b:c:d:5:f:g:h:i", "C:\\a:b:c:d:5:f:g:h", " ",
      "\r", "::::::",        "::::::::",         "a b c d 5 f g h"};
  for (const std::string& line : skipped) {
    EXPECT_EQ(EntriesOf(line + "\na:b:::1:::\n"), (Entries{{"a", "b", 1}})) << line;
    EXPECT_EQ(host.lines, Lines{}) << line;
  }
}

TEST_F(PackageFile, LongColumnsOfOtherLinesAreIgnored) {
  const std::string wide(300, 'x');
  EXPECT_EQ(EntriesOf(wide + ":b:c:d:5:f:g\n" + wide + ":b:c:d:5:f:g:h:i\n#" + wide + ":::::::\na:b:::1:::\n"),
            (Entries{{"a", "b", 1}}));
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(PackageFile, CommentsAreSkipped) {
  const std::string comments[] = {"#a:b:c:d:5:f:g:h",
                                  "#:b:c:d:5:f:g:h",
                                  "  #a:b:c:d:5:f:g:h",
                                  "\t\r#a:b:c:d:5:f:g:h",
                                  "\xA3\xA3:b:c:d:5:f:g:h",
                                  "\xA3\xA3"
                                  "a:b:c:d:5:f:g:h",
                                  "a\xA3\xA3z:b:c:d:5:f:g:h",
                                  "a \xA3\xA3\xA3 :b:c:d:5:f:g:h"};
  for (const std::string& line : comments)
    EXPECT_EQ(EntriesOf(line + "\na:b:::1:::\n"), (Entries{{"a", "b", 1}})) << line;
}

TEST_F(PackageFile, CommentSignsElsewhereAreText) {
  EXPECT_EQ(EntriesOf("a#:#b:#:#:5:#:#:#\n"), (Entries{{"a#", "#b", 5}}));
  EXPECT_EQ(EntriesOf("a:\xA3\xA3:\xA3\xA3:d:5:f:g:\xA3\xA3\n"), (Entries{{"a", "\xA3\xA3", 5}}));
  EXPECT_EQ(EntriesOf("\xA3:b:c:d:5:f:g:h\n"), (Entries{{"\xA3", "b", 5}}));
  EXPECT_EQ(EntriesOf("\xA3 \xA3:b:c:d:5:f:g:h\n"), (Entries{{"\xA3 \xA3", "b", 5}}));
}

TEST_F(PackageFile, SectionEndsAtTheEndMark) {
  for (const char* end :
       {"[END]", "[END]\r", "x[END]y", " [END]", "#[END]", "a:b:c:d:5:f:g:[END]", "a:[END]:c:d:5:f:g:h"}) {
    EXPECT_EQ(EntriesOf("a:b:::1:::\n" + std::string(end) + "\nc:d:::2:::\n"), (Entries{{"a", "b", 1}})) << end;
  }
}

TEST_F(PackageFile, SectionEndsAtALineThatBeginsWithABracket) {
  for (const char* end : {"[Other]", "[", "[a:b:c:d:5:f:g:h", "[File Description]"}) {
    EXPECT_EQ(EntriesOf("a:b:::1:::\n" + std::string(end) + "\nc:d:::2:::\n"), (Entries{{"a", "b", 1}})) << end;
  }
}

TEST_F(PackageFile, OtherLinesDoNotEndTheSection) {
  for (const char* line : {" [Other]", "\t[Other]", "x[Other]", " [end]", "END", "END]", " [ END ]", "]"}) {
    EXPECT_EQ(EntriesOf("a:b:::1:::\n" + std::string(line) + "\nc:d:::2:::\n"), (Entries{{"a", "b", 1}, {"c", "d", 2}}))
        << line;
  }
  EXPECT_EQ(EntriesOf(" [Other] a:b:::1:::\n"), (Entries{{"[Other] a", "b", 1}}));
}

TEST_F(PackageFile, SectionEndsWithTheFile) {
  EXPECT_EQ(EntriesOf("a:b:::1:::\nc:d:::2:::"), (Entries{{"a", "b", 1}, {"c", "d", 2}}));
}

TEST_F(PackageFile, SectionNameMayBeInsideALine) {
  for (const char* line :
       {"[File Description]", "x [File Description] y", "[[File Description]]", "#[File Description]\r",
        "[Package][File Description]", "a:b:c:d:5:f:g:[File Description]"}) {
    package.ClearSoftInfo();
    EXPECT_EQ(Parse("first\n" + std::string(line) + "\na:b:::1:::\n"), 0U) << line;
    EXPECT_EQ(EntriesIn(package), (Entries{{"a", "b", 1}})) << line;
  }
}

TEST_F(PackageFile, OnlyTheFirstSectionIsRead) {
  EXPECT_EQ(EntriesOf("a:b:::1:::\n[END]\n[File Description]\nc:d:::2:::\n"), (Entries{{"a", "b", 1}}));
}

TEST_F(PackageFile, WithoutSectionNameNothingIsFound) {
  const std::string refused[] = {"",
                                 "\n",
                                 "a:b:::1:::\n",
                                 "[file description]\na:b:::1:::\n",
                                 "[File  Description]\na:b:::1:::\n",
                                 "[File\nDescription]\na:b:::1:::\n",
                                 "File Description\na:b:::1:::\n"};
  for (const std::string& text : refused) {
    host.Reset();
    EXPECT_EQ(Parse(text), INVALID_DESCRIPTION) << text;
    EXPECT_EQ(host.lines, Lines{SectionMissing(path)}) << text;
    EXPECT_EQ(EntriesIn(package), Entries{});
  }
}

TEST_F(PackageFile, SectionNameAfterANulIsIgnored) {
  EXPECT_EQ(Parse(std::string("x\0", 2) + SECTION + "a:b:::1:::\n"), INVALID_DESCRIPTION);
  EXPECT_EQ(host.lines, Lines{SectionMissing(path)});
}

TEST_F(PackageFile, SectionNameMustBeInTheFirst1023Bytes) {
  for (size_t end = 1020; end <= 1026; ++end) {
    package.ClearSoftInfo();
    const unsigned int result = Parse(std::string(end - 18, 'x') + SECTION + "a:b:::1:::\n");
    EXPECT_EQ(result, end <= 1023 ? 0U : INVALID_DESCRIPTION) << end;
  }
}

TEST_F(PackageFile, NulEndsALine) {
  EXPECT_EQ(EntriesOf(std::string("\0a:b:::1:::\nc:d:::2:::\0:\n", 25)), (Entries{{"c", "d", 2}}));
  EXPECT_EQ(EntriesOf(std::string("a:b:::1:\0::\n", 12)), Entries{});
  EXPECT_EQ(EntriesOf(std::string("x\0[END]\na:b:::1:::x\0[END]\n", 26)), (Entries{{"a", "b", 1}}));
}

TEST_F(PackageFile, EntryLinesAreCutAt1023Bytes) {
  const std::string four = "a:" + std::string(250, 'b') + ":" + std::string(250, 'c') + ":" + std::string(250, 'd');
  const std::string seven = four + ":5:" + std::string(250, 'f') + ":";
  ASSERT_EQ(seven.size(), 1008U);
  const Entries entry{{"a", std::string(250, 'b'), 5}};
  // The cut removes the surplus of a last column of any length.
  EXPECT_EQ(EntriesOf(seven + "g:" + std::string(300, 'h') + "\n"), entry);
  EXPECT_EQ(host.lines, Lines{});
  // The last separator is byte 1023 or byte 1024.
  EXPECT_EQ(EntriesOf(seven + std::string(14, 'g') + ":h\n"), entry);
  EXPECT_EQ(EntriesOf(seven + std::string(15, 'g') + ":h\n"), Entries{});
  // A ninth column after the cut.
  EXPECT_EQ(EntriesOf(seven + "g:" + std::string(14, 'h') + ":i\n"), entry);
}

std::string LineWithColumn(size_t column, const std::string& text) {
  std::string line;
  for (size_t i = 0; i < 8; ++i)
    line += (i == 0 ? "" : ":") + (i == column ? text : std::string("1"));
  return line + "\n";
}

TEST_F(PackageFile, ColumnsOf255BytesAreAccepted) {
  for (size_t column = 0; column < 8; ++column) {
    for (const std::string& text : {std::string(255, '7'), "\t " + std::string(255, '7') + "  \r"}) {
      package.ClearSoftInfo();
      EXPECT_EQ(ParseSection(LineWithColumn(column, text)), 0U) << column;
      EXPECT_EQ(package.m_lstSoftInfo.size(), 1U) << column;
    }
  }
  EXPECT_EQ(EntriesOf(LineWithColumn(1, std::string(255, '7'))), (Entries{{"1", std::string(255, '7'), 1}}));
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(PackageFile, ColumnsOf256BytesFailTheParse) {
  for (size_t column = 0; column < 8; ++column) {
    host.Reset();
    EXPECT_EQ(ParseSection(LineWithColumn(column, std::string(256, '7'))), INVALID_DESCRIPTION) << column;
    EXPECT_EQ(host.lines, Lines{LineNotCorrect(path)}) << column;
    EXPECT_EQ(EntriesIn(package), Entries{});
  }
}

TEST_F(PackageFile, InnerBlanksAreColumnBytes) {
  EXPECT_EQ(ParseSection(LineWithColumn(3, "a" + std::string(254, ' ') + "b")), INVALID_DESCRIPTION);
}

TEST_F(PackageFile, EntriesBeforeABadLineStay) {
  EXPECT_EQ(ParseSection("a:b:::1:::\nc:d:::2:::\n" + LineWithColumn(7, std::string(256, 'x')) + "e:f:::3:::\n"),
            INVALID_DESCRIPTION);
  EXPECT_EQ(EntriesIn(package), (Entries{{"a", "b", 1}, {"c", "d", 2}}));
  EXPECT_EQ(host.lines, Lines{LineNotCorrect(path)});
}

TEST_F(PackageFile, SectionWithoutEntriesFails) {
  const std::string empty[] = {"[File Description]",
                               SECTION,
                               SECTION + "\n\n",
                               SECTION + "[END]\na:b:::1:::\n",
                               SECTION + "#a:b:::1:::\n",
                               SECTION + "a:b\n",
                               SECTION + "[Other]\na:b:::1:::\n"};
  for (const std::string& text : empty) {
    host.Reset();
    EXPECT_EQ(Parse(text), INVALID_DESCRIPTION) << text;
    EXPECT_EQ(host.lines, Lines{ListEmpty(path)}) << text;
  }
}

TEST_F(PackageFile, EarlierEntriesMakeAnEmptySectionSucceed) {
  ASSERT_EQ(ParseSection("a:b:::1:::\n"), 0U);
  EXPECT_EQ(Parse(SECTION), 0U);
  EXPECT_EQ(EntriesIn(package), (Entries{{"a", "b", 1}}));
  package.ClearSoftInfo();
  EXPECT_EQ(Parse(SECTION), INVALID_DESCRIPTION);
}

TEST_F(PackageFile, FailureKeepsEarlierEntries) {
  ASSERT_EQ(ParseSection("a:b:::1:::\n"), 0U);
  EXPECT_EQ(package.ParsePkgSoftInfo(folder.Path("absent")), INVALID_DESCRIPTION);
  EXPECT_EQ(EntriesIn(package), (Entries{{"a", "b", 1}}));
}

TEST_F(PackageFile, ParsingTwiceDoublesTheList) {
  ParseSection("a:b:::1:::\nc:d:::2:::\n");
  EXPECT_EQ(package.ParsePkgSoftInfo(path), 0U);
  EXPECT_EQ(EntriesIn(package), (Entries{{"a", "b", 1}, {"c", "d", 2}, {"a", "b", 1}, {"c", "d", 2}}));
}

TEST_F(PackageFile, ClearSoftInfoEmptiesTheListForANewParse) {
  package.ClearSoftInfo();
  ParseSection("a:b:::1:::\n");
  package.ClearSoftInfo();
  EXPECT_EQ(package.m_lstSoftInfo.size(), 0U);
  package.ClearSoftInfo();
  EXPECT_EQ(package.ParsePkgSoftInfo(path), 0U);
  EXPECT_EQ(package.m_lstSoftInfo.size(), 1U);
}

TEST_F(PackageFile, ClearSoftInfoAndTheDestructorReleaseTheEntries) {
  const std::string text = SECTION + "a longer name than fits:a longer kind than fits:::1:::\nc:d:::2:::\n";
  folder.Write("package.txt", text);
  host.encodings.reserve(10);
  const size_t before = LiveAllocations();
  package.ParsePkgSoftInfo(path);
  EXPECT_GT(LiveAllocations(), before);
  package.ClearSoftInfo();
  EXPECT_EQ(LiveAllocations(), before);
  {
    CPkgFile other(path);
    ASSERT_EQ(other.ParsePkgSoftInfo(path), 0U);
  }
  EXPECT_EQ(LiveAllocations(), before);
}

TEST_F(PackageFile, NullElementsAreAccepted) {
  ParseSection("a:b:::1:::\n");
  package.m_lstSoftInfo.push_back(nullptr);
  package.ClearSoftInfo();
  EXPECT_EQ(package.m_lstSoftInfo.size(), 0U);
}

TEST_F(PackageFile, PathOfTheObjectDoesNotMatterToParsePkgSoftInfo) {
  const std::string other = folder.Path("other.txt");
  EXPECT_EQ(package.ParsePkgSoftInfo(other), INVALID_DESCRIPTION);
  EXPECT_EQ(host.lines, Lines{SectionMissing(other)});
  EXPECT_EQ(package.m_strFilePath, path);
}

TEST_F(PackageFile, PathMayBeAColumnOfAnEntry) {
  ParseSection(path + ":b:::1:::\n");
  ASSERT_EQ(package.m_lstSoftInfo.size(), 1U);
  EXPECT_EQ(package.ParsePkgSoftInfo(package.m_lstSoftInfo.front()->strColumn1), 0U);
  EXPECT_EQ(package.m_lstSoftInfo.size(), 2U);
}

TEST_F(PackageFile, FilesThatCannotBeLoadedHaveNoSection) {
  for (const std::string& unreadable : {folder.Path("absent"), folder.Path(), std::string()}) {
    host.Reset();
    EXPECT_EQ(package.ParsePkgSoftInfo(unreadable), INVALID_DESCRIPTION);
    EXPECT_EQ(host.lines, Lines{SectionMissing(unreadable)});
  }
}

TEST_F(PackageFile, UnreadableFileHasNoSection) {
  folder.Write("package.txt", SECTION + "a:b:::1:::\n");
  fs::permissions(path, fs::perms::none);
  EXPECT_TRUE(HoldsUnprivileged([&] {
    return package.ParsePkgSoftInfo(path) == INVALID_DESCRIPTION && host.lines == Lines{SectionMissing(path)};
  }));
}

TEST_F(PackageFile, FailingFileCallsLeaveNoSection) {
  folder.Write("package.txt", SECTION + "a:b:::1:::\n");
  host.stats.FailAt(1);
  EXPECT_EQ(package.ParsePkgSoftInfo(path), INVALID_DESCRIPTION);
  host.opens.FailAt(1);
  EXPECT_EQ(package.ParsePkgSoftInfo(path), INVALID_DESCRIPTION);
  host.readableBytes = 10;
  EXPECT_EQ(package.ParsePkgSoftInfo(path), INVALID_DESCRIPTION);
  EXPECT_EQ(host.lines, (Lines{SectionMissing(path), SectionMissing(path), SectionMissing(path)}));
}

TEST_F(PackageFile, FailingCopyEndsTheReading) {
  const LogLine copyFailed = Error("ErrorCode:0x22, Vnifstream::GetLine.memcpy_s failed", "publicdata", "GetLine");
  const std::pair<LogLine, Entries> endings[] = {
      {SectionMissing(path), {}}, {ListEmpty(path), {}}, {copyFailed, {{"a", "b", 1}}}};
  for (size_t failing = 1; failing <= 3; ++failing) {
    host.Reset();
    host.boundedCopies.FailAt(failing);
    const auto& [report, entries] = endings[failing - 1];
    EXPECT_EQ(EntriesOf("a:b:::1:::\nc:d:::2:::\n"), entries) << failing;
    EXPECT_EQ(host.lines, failing < 3 ? (Lines{copyFailed, report}) : Lines{copyFailed}) << failing;
  }
}

TEST_F(PackageFile, PathEndsAtItsFirstNulForTheHost) {
  ParseSection("a:b:::1:::\n");
  EXPECT_EQ(package.ParsePkgSoftInfo(path + std::string("\0x", 2)), 0U);
  EXPECT_EQ(package.m_lstSoftInfo.size(), 2U);
}

TEST_F(PackageFile, MessagesGoThroughTheFilter) {
  const std::string text = "CPkgFile::ParsePkgSoftInfo(): , not find [File Description], File: ";
  EXPECT_EQ(package.ParsePkgSoftInfo("SECRET/absent"), INVALID_DESCRIPTION);
  EXPECT_EQ(host.filtered, std::vector<std::string>{text + "SECRET/absent"});
  EXPECT_EQ(host.lines, Lines{Error("ErrorCode:0x3ba0120f, " + text + "######/absent", "pkgfile", "ParsePkgSoftInfo")});
}

TEST_F(PackageFile, ClosesItsFiles) {
  SoftwareFile file;
  const size_t descriptors = OpenDescriptors();
  for (const std::string& payload : {std::string(), SECTION, "\n" + SECTION + "a:b:::1:::\n",
                                     "\n" + SECTION + LineWithColumn(0, std::string(256, 'x'))}) {
    file.payload = payload;
    folder.Write("package.txt", file.Bytes());
    package.ParsePkgFile();
    EXPECT_EQ(OpenDescriptors(), descriptors) << payload;
  }
  package.ParsePkgSoftInfo(folder.Path("absent"));
  EXPECT_EQ(OpenDescriptors(), descriptors);
}

TEST_F(PackageFile, ManyEntriesAreReadInOrder) {
  std::string lines;
  for (size_t i = 0; i < 100000; ++i)
    lines += "name" + std::to_string(i) + ":kind:c:d:" + std::to_string(i * 3) + ":f:g:h\n";
  ASSERT_EQ(ParseSection(lines), 0U);
  ASSERT_EQ(package.m_lstSoftInfo.size(), 100000U);
  size_t i = 0;
  for (const auto* entry : package.m_lstSoftInfo) {
    ASSERT_EQ(entry->strColumn1, "name" + std::to_string(i));
    ASSERT_EQ(entry->strColumn2, "kind");
    ASSERT_EQ(entry->uiColumn5, i * 3);
    ++i;
  }
}

TEST_F(PackageFile, ManyEntriesTakeLinearTime) {
  const auto write = [&](size_t count) {
    std::string text = SECTION;
    for (size_t i = 0; i < count; ++i)
      text += "name:kind:c:d:5:f:g:h\n";
    return folder.Write(std::to_string(count), text);
  };
  const auto parse = [](const std::string& file) {
    CPkgFile parsed(file);
    EXPECT_EQ(parsed.ParsePkgSoftInfo(file), 0U);
  };
  EXPECT_LT(Growth(2000, write, parse), LINEAR_GROWTH);
}

TEST_F(PackageFile, FailingAllocationsLeaveAWholeList) {
  const std::string name(40, 'n');
  const std::string kind(40, 'k');
  std::string text = SECTION;
  for (const char* size : {"1", "2", "3"})
    text += name + ":" + kind + ":c:d:" + size + ":f:g:h\n";
  folder.Write("package.txt", text);
  const Entries all{{name, kind, 1}, {name, kind, 2}, {name, kind, 3}};
  const size_t descriptors = OpenDescriptors();
  const size_t allocations = LiveAllocations();

  const size_t failures = FailEachAllocation([&] { package.ParsePkgSoftInfo(path); },
                                             [&] {
                                               host.Reset();
                                               const Entries entries = EntriesIn(package);
                                               ASSERT_LE(entries.size(), all.size());
                                               EXPECT_TRUE(std::equal(entries.begin(), entries.end(), all.begin()));
                                               EXPECT_EQ(OpenDescriptors(), descriptors);
                                               package.ClearSoftInfo();
                                               EXPECT_EQ(package.ParsePkgSoftInfo(path), 0U);
                                               EXPECT_EQ(EntriesIn(package), all);
                                               package.ClearSoftInfo();
                                               host.Reset();
                                             });
  EXPECT_EQ(EntriesIn(package), all);
  EXPECT_GT(failures, 3 * 4U);
  package.ClearSoftInfo();
  host.Reset();
  EXPECT_EQ(LiveAllocations(), allocations);
}

TEST_F(PackageFile, FailingAllocationsOfFailingParsesLeakNothing) {
  for (const std::string& text : {std::string(), SECTION, SECTION + LineWithColumn(4, std::string(256, '1'))}) {
    folder.Write("package.txt", text);
    host.Reset();
    const size_t allocations = LiveAllocations();
    const size_t failures = FailEachAllocation([&] { package.ParsePkgSoftInfo(path); },
                                               [&] {
                                                 host.Reset();
                                                 EXPECT_EQ(LiveAllocations(), allocations);
                                               });
    EXPECT_GE(failures, 2U);
  }
}

class WholePackage : public PackageFile {
 protected:
  unsigned int ParseFile(const SoftwareFile& file) {
    folder.Write("package.txt", file.Bytes());
    return package.ParsePkgFile();
  }

  static SoftwareFile File() {
    SoftwareFile file;
    file.payload = "\n" + SECTION + "a:b:::1:::\n";
    return file;
  }

  const Entries entries{{"a", "b", 1}};
  const LogLine shortRead =
      Warning("readZEPFileHead(): ACE_OS::fread failed! errno: 0", "publicdata", "readZEPFileHead");
};

TEST_F(WholePackage, ReadsVersionAndEntries) {
  EXPECT_EQ(ParseFile(File()), 0U);
  EXPECT_EQ(package.m_strVersion, "2.10");
  EXPECT_EQ(EntriesIn(package), entries);
  EXPECT_EQ(package.m_strFilePath, path);
  EXPECT_EQ(package.m_strExtra, "");
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(WholePackage, OpensThePathAsUtf8) {
  ParseFile(File());
  EXPECT_EQ(host.encodings, (std::vector<std::string>{"UTF-8", "UTF-8", "UTF-8"}));
}

TEST_F(WholePackage, RefusedTypesAreParsedWithTheirVersion) {
  SoftwareFile file = File();
  file.fileType = 14;
  EXPECT_EQ(ParseFile(file), 0U);
  EXPECT_EQ(package.m_strVersion, "2.10");
  EXPECT_EQ(EntriesIn(package), entries);
}

TEST_F(WholePackage, DamagedHeadersAreParsedWithoutVersion) {
  for (const size_t damaged : {0U, 4U, 20U, 64U, 68U, 90U}) {
    std::string bytes = File().Bytes();
    bytes[damaged] = static_cast<char>(bytes[damaged] ^ 0x11);
    folder.Write("package.txt", bytes);
    package.ClearSoftInfo();
    EXPECT_EQ(package.ParsePkgFile(), 0U) << damaged;
    EXPECT_EQ(package.m_strVersion, "");
    EXPECT_EQ(EntriesIn(package), entries);
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(WholePackage, HeadersAreNotNeeded) {
  Parse(SECTION + "a:b:::1:::\n");
  package.ClearSoftInfo();
  errno = 0;
  EXPECT_EQ(package.ParsePkgFile(), 0U);
  EXPECT_EQ(package.m_strVersion, "");
  EXPECT_EQ(EntriesIn(package), entries);
  EXPECT_EQ(host.lines, Lines{shortRead});
}

TEST_F(WholePackage, VersionIsEmptyIfTheFileHasNone) {
  package.m_strVersion = "old";
  SoftwareFile file = File();
  file.version.clear();
  EXPECT_EQ(ParseFile(file), 0U);
  EXPECT_EQ(package.m_strVersion, "");
}

TEST_F(WholePackage, VersionStaysWhenTheSectionFails) {
  SoftwareFile file = File();
  file.payload = "no section";
  EXPECT_EQ(ParseFile(file), INVALID_DESCRIPTION);
  EXPECT_EQ(package.m_strVersion, "2.10");
  EXPECT_EQ(host.lines, Lines{SectionMissing(path)});
}

TEST_F(WholePackage, ParsingAgainReplacesTheVersionAndAddsTheEntries) {
  SoftwareFile file = File();
  ParseFile(file);
  file.version = "3.0";
  EXPECT_EQ(ParseFile(file), 0U);
  EXPECT_EQ(package.m_strVersion, "3.0");
  EXPECT_EQ(EntriesIn(package), (Entries{entries[0], entries[0]}));
  fs::remove(path);
  EXPECT_EQ(package.ParsePkgFile(), INVALID_DESCRIPTION);
  EXPECT_EQ(package.m_strVersion, "");
}

TEST_F(WholePackage, AbsentFileIsReportedByBothReaders) {
  EXPECT_EQ(package.ParsePkgFile(), INVALID_DESCRIPTION);
  EXPECT_EQ(host.lines, (Lines{Warning("readZEPFileHead(): KELP_OS::fopen failed! filename:" + path + ". errno:2",
                                       "publicdata", "readZEPFileHead"),
                               SectionMissing(path)}));
}

TEST_F(WholePackage, ChangedPathMemberIsUsed) {
  ParseFile(File());
  package.m_strFilePath = folder.Write("other.txt", SECTION + "c:d:::2:::\n");
  package.ClearSoftInfo();
  EXPECT_EQ(package.ParsePkgFile(), 0U);
  EXPECT_EQ(EntriesIn(package), (Entries{{"c", "d", 2}}));
}

TEST_F(WholePackage, FailingAllocationsLeakNothing) {
  SoftwareFile file = File();
  file.version.assign(50, 'v');
  folder.Write("package.txt", file.Bytes());
  package.m_strVersion.reserve(100);
  const size_t descriptors = OpenDescriptors();
  const size_t allocations = LiveAllocations();
  const size_t failures = FailEachAllocation([&] { package.ParsePkgFile(); },
                                             [&] {
                                               package.ClearSoftInfo();
                                               host.Reset();
                                               EXPECT_EQ(LiveAllocations(), allocations);
                                               EXPECT_EQ(OpenDescriptors(), descriptors);
                                             });
  EXPECT_GT(failures, 5U);
  EXPECT_EQ(package.m_strVersion, file.version);
  EXPECT_EQ(EntriesIn(package), entries);
}

}  // namespace
}  // namespace VARNEL_TEST
