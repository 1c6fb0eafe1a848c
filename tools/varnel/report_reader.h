#ifndef VARNEL_TOOLS_REPORT_READER_H
#define VARNEL_TOOLS_REPORT_READER_H

#include <evtmsg.h>

#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "report_splitter.h"

/// Identifies a load or run. A part that a report lacks is empty.
struct LoadName {
  std::string sid;   ///< the element: the SID in TL1, the word after "+++" in MML
  std::string load;  ///< the AID in TL1, the number in a line TASK_ID in MML

  bool operator<(const LoadName& other) const { return std::tie(sid, load) < std::tie(other.sid, other.load); }
};

/// The content of a report.
struct ReportEvent {
  enum class Kind { Package, Script, End };

  ReportEvent(Kind ofKind, LoadName ofName) : kind(ofKind), name(std::move(ofName)) {}

  Kind kind;
  LoadName name;
  unsigned int done = 0, total = 0, percent = 0;  ///< of package and script
  std::string result, item, text;                 ///< of an end; item and text only of a failure
  unsigned int code = 0;                          ///< of an end
  bool failed = false;                            ///< of an end
};

/// Recognises reports of one language, by the events of the library.
class ReportReader {
 public:
  /// @param keys  only reports that match one of these; empty for all
  ReportReader(Language language, std::vector<std::string> keys);

  /// All events of a report; empty for an unknown report.
  std::vector<ReportEvent> Read(const Report& report);

 private:
  bool IsWanted(const char* report);
  void ReadMml(const Report& report, std::vector<ReportEvent>& events);
  void ReadTl1(const Report& report, std::vector<ReportEvent>& events);
  bool ReadPackage(const LoadName& name, const std::string& text, std::vector<ReportEvent>& events);
  void ReadScript(const LoadName& name, const Report& report, std::vector<ReportEvent>& events);

  Language m_language;
  std::vector<std::string> m_keys;
  VARNEL_COMMON::CEvtMsg m_any;
  VARNEL_COMMON::CVNPackGuageEvt m_package;
  VARNEL_COMMON::CVNScriptFileGuageEvt m_script;
  std::map<LoadName, std::pair<unsigned int, unsigned int>> m_loads;  // done and total as reported last
};

#endif
