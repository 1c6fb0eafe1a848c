#include <gtest/gtest.h>

#include <climits>
#include <iterator>
#include <string>
#include <vector>

#include "allocation.h"
#include "productdata.h"
#include "publicdata.h"
#include "str.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_COMMON::IsKorvaneNE;
using VARNEL_COMMON::IsSccBdName;

const std::vector<std::string> CONTAINED = {"scc", "sce", "vmcu", "vscu", "vnmcx10"};
const std::vector<std::string> WHOLE = {"vnctl201", "vnmcp01", "vnmcp02", "vnstg01", "vnstg02", "vcu",
                                        "vcua",     "vcub",    "vcuc",    "vcud",    "vcue",    "vpu",
                                        "vmu",      "vmua",    "61vcu",   "vb21",    "vb22"};

std::string Capitals(std::string name) {
  VARNEL_COMMON::toUpperCase(name);
  return name;
}

TEST(SccBoard, TableHasTheAgreedOrder) {
  const std::vector<std::string> expected = {"*scc*",   "*sce*",     "*vmcu*",  "*vscu*",  "vnctl201", "vnmcp01",
                                             "vnmcp02", "*vnmcx10*", "vnstg01", "vnstg02", "vcu",      "vcua",
                                             "vcub",    "vcuc",      "vcud",    "vcue",    "vpu",      "vmu",
                                             "vmua",    "61vcu",     "vb21",    "vb22"};
  const std::vector<std::string> table(std::begin(VARNEL_COMMON::SCC_BOARD_NAMES),
                                       std::end(VARNEL_COMMON::SCC_BOARD_NAMES));
  EXPECT_EQ(table, expected);
  EXPECT_EQ(table.size(), 22U);
}

TEST(SccBoard, NamesMatchInEitherCase) {
  for (const auto* names : {&CONTAINED, &WHOLE}) {
    for (const std::string& name : *names) {
      EXPECT_TRUE(IsSccBdName(name)) << name;
      EXPECT_TRUE(IsSccBdName(Capitals(name))) << name;
      EXPECT_TRUE(IsSccBdName(Capitals(name.substr(0, 1)) + name.substr(1))) << name;
    }
  }
}

TEST(SccBoard, ContainedNamesMatchAnywhere) {
  for (const std::string& name : CONTAINED) {
    for (const std::string& board : {"x" + name, name + "x", "N1" + Capitals(name) + "-2", "  " + name + "\xFF"})
      EXPECT_TRUE(IsSccBdName(board)) << board;
  }
}

TEST(SccBoard, WholeNamesDoNotMatchLongerOrShorterOnes) {
  for (const std::string& name : WHOLE) {
    for (const std::string& board : {"x" + name, name + "x", name + " ", " " + name, "61x" + name, name + "*"})
      EXPECT_FALSE(IsSccBdName(board)) << board;
    const std::string shorter = name.substr(0, name.size() - 1);
    EXPECT_EQ(IsSccBdName(shorter), shorter == "vcu" || shorter == "vmu") << shorter;
  }
}

TEST(SccBoard, OtherNamesDoNotMatch) {
  for (const char* board : {"",
                            " ",
                            "*",
                            "?",
                            "sc",
                            "s cc",
                            "s\xE3"
                            "c",
                            "vcuf",
                            "vpua",
                            "vmub",
                            "61vcua",
                            "62vcu",
                            "vb2",
                            "vb20",
                            "vb23",
                            "vnmcp03",
                            "vnmcx11",
                            "vnstg03",
                            "vnctl202",
                            "vm cu",
                            "kva4210"})
    EXPECT_FALSE(IsSccBdName(board)) << board;
}

TEST(SccBoard, NulEndsAName) {
  EXPECT_TRUE(IsSccBdName(std::string("vcu\0x", 5)));
  EXPECT_FALSE(IsSccBdName(std::string("x\0scc", 5)));
}

TEST(SccBoard, NothingIsAllocated) {
  const std::string name = "a board that is not in the table of known boards";
  const AllocationGuard guard;
  EXPECT_FALSE(IsSccBdName(name));
  EXPECT_FALSE(IsKorvaneNE(52099, name));
  EXPECT_EQ(guard.Count(), 0U);
}

TEST(KorvaneElement, PatternHasTheAgreedForm) {
  const std::string pattern = VARNEL_COMMON::KORVANE_NAME;
  EXPECT_EQ(pattern, "*kva*4210*");
  EXPECT_EQ(pattern.size(), 10U);
}

TEST(KorvaneElement, NamesOfTheFamily) {
  for (const char* name : {"kva4210", "KVA4210", "Kva 4210", "Site 7 KVA-X 4210 v2", "kvakva42104210", "xkva4210x"})
    EXPECT_TRUE(IsKorvaneNE(50000, name)) << name;
  for (const char* name : {"", "kva", "4210", "4210kva", "kva 421", "kv a4210", "kva4 210", "kva*421", "*"})
    EXPECT_FALSE(IsKorvaneNE(50000, name)) << name;
}

TEST(KorvaneElement, SecondGenerationIsNeverKorvane) {
  for (const int generation : {INT_MIN, -1, 0, 50799, 50800, 52099}) {
    EXPECT_TRUE(IsKorvaneNE(generation, "kva4210")) << generation;
    EXPECT_FALSE(IsKorvaneNE(generation, "other")) << generation;
  }
  for (const int generation : {52100, 52101, INT_MAX}) {
    EXPECT_FALSE(IsKorvaneNE(generation, "kva4210")) << generation;
    EXPECT_FALSE(IsKorvaneNE(generation, "other")) << generation;
  }
}

}  // namespace
}  // namespace VARNEL_TEST
