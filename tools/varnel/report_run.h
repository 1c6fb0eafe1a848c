#ifndef VARNEL_TOOLS_REPORT_RUN_H
#define VARNEL_TOOLS_REPORT_RUN_H

#include <cstdint>
#include <string>
#include <vector>

#include "byte_source.h"

/// What the command line says about a run.
struct ReportOptions {
  SourceOptions source;
  uint32_t element = 0;           ///< identifier of the element
  std::vector<std::string> keys;  ///< only reports that one of these is for; empty for all
  std::string separator;          ///< what ends a report; empty for the rules of its language
  bool json = false;
};

/// Follows the reports of an element up to the end result and shows the progress.
///
/// @return an exit status
/// @throw CLI::ValidationError  when the options of the source contradict each other
int FollowReports(const ReportOptions& options);

#endif
