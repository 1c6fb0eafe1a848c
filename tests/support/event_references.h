#ifndef VARNEL_TESTS_EVENT_REFERENCES_H
#define VARNEL_TESTS_EVENT_REFERENCES_H

#include <string>

/// The report handlers in the plainest way, with streams and strtoul(). The library's are compared with them.
namespace VARNEL_TEST::Reference {

struct ScriptEnd {
  std::string result;
  std::string item;
  std::string text;
  unsigned int code;
};

bool ClaimsReport(const std::string& key, const std::string& report);

bool ReadMmlPackageProgress(const std::string& report, unsigned int& done, unsigned int& total);
bool ReadTl1PackageProgress(const std::string& report, unsigned int& done, unsigned int& total);
bool ReadScriptProgress(const std::string& report, unsigned int& done, unsigned int& total);
bool ReadScriptEnd(const std::string& report, ScriptEnd& end);

}  // namespace VARNEL_TEST::Reference

#endif
