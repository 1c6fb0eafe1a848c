#ifndef VARNEL_BENCH_INPUT_FILES_H
#define VARNEL_BENCH_INPUT_FILES_H

#include <cstddef>
#include <string>

namespace VARNEL_BENCH {

/// A folder of this run, gone when the program ends.
const std::string& InputFolder();

/// Writes a file into that folder and gives its path.
std::string InputFile(const std::string& name, const std::string& bytes);

/// The bytes of a software file whose description has so many entries.
std::string PackageBytes(size_t entries);

}  // namespace VARNEL_BENCH

#endif
