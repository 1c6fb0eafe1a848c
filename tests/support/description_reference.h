#ifndef VARNEL_TESTS_DESCRIPTION_REFERENCE_H
#define VARNEL_TESTS_DESCRIPTION_REFERENCE_H

#include <ostream>
#include <string>
#include <vector>

namespace VARNEL_TEST {

/// The entries of a package file, by value.
struct Entry {
  std::string name;
  std::string kind;
  unsigned int size;
};

bool operator==(const Entry& a, const Entry& b);
std::ostream& operator<<(std::ostream& out, const Entry& entry);

using Entries = std::vector<Entry>;

/// The entries of a CPkgFile.
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

/// A plain reader of package descriptions, with streams only. The library is compared with it.
Description ReadDescription(const std::string& text);

}  // namespace Reference

}  // namespace VARNEL_TEST

#endif
