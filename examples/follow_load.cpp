// Follows a package load and a script run: every report of an element is passed to each waiting event.

#include <varnel_common/evtmsg.h>
#include <varnel_common/str.h>

#include <iostream>
#include <string>

using namespace VARNEL_COMMON;

namespace {

// Reads the next report: its body, and the line that ends it, ";" in TL1, "---    END" in MML.
bool NextReport(std::istream& in, std::string& body, std::string& endLine) {
  body.clear();
  while (std::getline(in, endLine)) {
    if (endLine.find(';') == 0 || endLine.find("---    END") == 0) return true;
    body.append(endLine).append("\n");
  }
  return false;
}

template <typename Event>
void PrintProgress(const char* what, const Event& event) {
  std::cout << what << ' ' << event.m_dwDoneNum << " of " << event.m_dwTotalNum << ", " << event.GetGuage() << "%\n";
}

}  // namespace

int main(int argc, char** argv) {
  const std::string language = argc == 2 ? argv[1] : "";
  if (language != "mml" && language != "tl1") {
    std::cerr << "usage: follow_load mml|tl1 < REPORTS\n";
    return 2;
  }
  CVNPackGuageEvt load;
  CVNScriptFileGuageEvt script;
  CVNScriptFileEndEvt end;
  const bool tl1 = language == "tl1";
  load.m_dwNEID = script.m_dwNEID = end.m_dwNEID = tl1 ? 0x1000001 : 0x000001;  // above 0xFFFFFF: TL1
  load.m_strEvtKey = tl1 ? "*REPT EVT *" : "*CPYFILE_PROGRESS*";
  script.m_strEvtKey = "CAM RUN PROGRESS";
  end.m_strEvtKey = "CAM RUN END";

  bool ended = false;
  for (std::string body, endLine; NextReport(std::cin, body, endLine);) {
    // Counts must be followed by a non-blank character. The text of a failure extends to the end of what is passed.
    const std::string report = body + endLine;
    const char* text = report.c_str();
    if (load.IsMyEvt(text) && load.HandleReport(text)) PrintProgress("load", load);
    if (script.IsMyEvt(text) && script.HandleReport(text)) PrintProgress("script", script);
    if (end.IsMyEvt(text) && end.HandleReport(body.c_str())) ended = true;
  }
  if (!ended) return load.GetGuage() == 100 ? 0 : 1;
  std::cout << "end: " << end.m_strResult << ", code " << end.m_dwResultCode << '\n';
  if (end.m_strResult == "SUCCESS") return 0;
  StrTrimRight(end.m_strResultText);
  std::cout << "item " << end.m_strResultItem << ": " << end.m_strResultText << '\n';
  return 1;
}
