// Package descriptions. The files are in the page cache.
#include <pkgfile.h>

#include <algorithm>
#include <memory>

#include "bench.h"
#include "file_peers.h"

namespace VARNEL_BENCH {

namespace {

using namespace VARNEL_COMMON;

struct OurDescription {
  std::shared_ptr<CPkgFile> package;
};

bool operator==(const OurDescription& ours, const Description& other) {
  const auto same = [](const SOFT_INFO* a, const Entry& b) {
    return a->strColumn1 == b.name && a->strColumn2 == b.kind && a->uiColumn5 == b.size;
  };
  const auto& entries = ours.package->m_lstSoftInfo;
  return ours.package->m_strVersion == other.version &&
         std::equal(entries.begin(), entries.end(), other.entries.begin(), other.entries.end(), same);
}

void Describe(size_t entries) {
  const std::string name = std::to_string(entries) + " entries";
  const std::string path = InputFile(name + ".pkg", PackageBytes(entries));
  Row("CPkgFile", name,
      [path] {
        OurDescription ours{std::make_shared<CPkgFile>(path)};
        ours.package->ParsePkgFile();
        return ours;
      })
      .Peer("mmap and memchr", [path] { return DescribeMapped(path); })
      .Peer("getline(3)", [path] { return DescribeByCLines(path); })
      .Peer("std::getline and Boost", [path] { return DescribeByBoost(path); })
      .Limit("read and memchr", [path] { return ReadAndSearch(path); });
}

}  // namespace

void AddPkgFile() {
  Describe(10);
  Describe(100000);
}

}  // namespace VARNEL_BENCH
