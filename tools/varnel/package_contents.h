#ifndef VARNEL_TOOLS_PACKAGE_CONTENTS_H
#define VARNEL_TOOLS_PACKAGE_CONTENTS_H

#include <optional>
#include <string>
#include <vector>

#include "input_file.h"
#include "software_file.h"

/// A file that a package description lists.
struct Entry {
  std::string name, kind;
  unsigned int size;
};

/// A software file as it was found.
struct Package {
  std::string path;
  std::string error;   ///< why it is bad; empty for a good one
  std::string remark;  ///< what is wrong with its description; no reason to call it bad
  SoftwareFile heads;
  std::optional<bool> coldPatch;
  std::optional<std::vector<Entry>> entries;  ///< absent without a description section
};

/// Checks a software file and reads what it holds.
///
/// @throw std::bad_alloc  for one that is too large: the library loads a file as a whole
Package Examine(const InputFile& input);

/// What stands for a file or folder that cannot be read.
Package Unreadable(const std::string& path, const std::string& why);

#endif
