#ifndef VARNEL_TESTS_DESCRIPTION_REFERENCE_H
#define VARNEL_TESTS_DESCRIPTION_REFERENCE_H

#include <ostream>
#include <string>
#include <vector>

namespace VARNEL_TEST {

/// What the list of a package file holds, by value.
struct Entry {
  std::string name;
  std::string kind;
  unsigned int size;
};

bool operator==(const Entry& a, const Entry& b);
std::ostream& operator<<(std::ostream& out, const Entry& entry);

using Entries = std::vector<Entry>;

/// What the list of a package holds, which is a CPkgFile.
template <typename Package>
Entries EntriesIn(const Package& package) {
  Entries entries;
  for (const auto* entry : package.m_lstSoftInfo)
    entries.push_back({entry->strColumn1, entry->strColumn2, entry->uiColumn5});
  return entries;
}

enum class Ending { Complete, SectionMissing, LineNotCorrect, ListEmpty };

struct Description {
  Ending ending;
  Entries entries;
};

namespace Reference {

/// A package description read in the plainest way, with streams only. The library's reading is compared with it.
Description ReadDescription(const std::string& text);

}  // namespace Reference

}  // namespace VARNEL_TEST

#endif
