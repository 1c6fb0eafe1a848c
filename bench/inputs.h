#ifndef VARNEL_BENCH_INPUTS_H
#define VARNEL_BENCH_INPUTS_H

#include <cstddef>
#include <string>

namespace VARNEL_BENCH {

/// Keeps an input until the program ends, so that what runs need only refer to it.
const std::string& Keep(std::string input);

/// Text of reports: words in upper and lower case, most of them separated by one blank, some by runs of blanks, tabs
/// or line ends. The same in every run.
const std::string& ReportText(size_t size);

/// "64 B", "2 KB", "4 MB".
std::string SizeName(size_t bytes);

}  // namespace VARNEL_BENCH

#endif
