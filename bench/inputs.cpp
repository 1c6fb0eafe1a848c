#include <deque>
#include <map>
#include <random>

#include "bench.h"
#include "software_file.h"
#include "temp_folder.h"

namespace VARNEL_BENCH {

namespace {

const VARNEL_TEST::TempFolder& Folder() {
  static const VARNEL_TEST::TempFolder folder;
  return folder;
}

}  // namespace

const std::string& Keep(std::string input) {
  static std::deque<std::string> inputs;
  return inputs.emplace_back(std::move(input));
}

const std::string& ReportText(size_t size) {
  static std::map<size_t, std::string> texts;
  std::string& text = texts[size];
  if (!text.empty()) return text;
  constexpr const char* WORDS[] = {"EVENT", "slot=3-5", "board", "VNCTL201", "status=running", "load", "of", "file",
                                   "M01",   "TOTAL",    "done",  "element",  "NE-EAST",        "is",   "at", "7860"};
  constexpr const char* GAPS[] = {" ", " ", " ", " ", " ", " ", "  ", "   ", "\t", "\r\n   "};
  std::mt19937 engine(2026);
  while (text.size() < size)
    text.append(WORDS[engine() % std::size(WORDS)]).append(GAPS[engine() % std::size(GAPS)]);
  text.resize(size);
  return text;
}

std::string Tl1Stream(size_t size) {
  std::string stream;
  for (unsigned int tag = 100; stream.size() < size; ++tag) {
    const std::string number = std::to_string(tag);
    const std::string header = "\r\n\n   NE-EAST 26-01-15 12:00:00\r\n";
    stream += header + "M  " + number +
              " COMPLD\r\n   \"SLOT-3-4:VNCTL201,STATUS=RUNNING,VERSION=1.02,LOAD=37\"\r\n   "
              "\"SLOT-3-5:VNCTL201,STATUS=RUNNING\"\r\n;";
    stream += header + "A  " + number +
              " REPT EVT PROGRESS\r\n   \"SLOT-3:SWDL,TRANSFEREDFILES=4,TOTALNUM=12,:\"\r\n   "
              "\"MODE=FAST,SOURCE=10.0.0.7\"\r\n;";
  }
  return stream;
}

const std::string& InputFolder() {
  return Folder().Path();
}

std::string InputFile(const std::string& name, const std::string& bytes) {
  return Folder().Write(name, bytes);
}

std::string PackageBytes(size_t entries) {
  VARNEL_TEST::SoftwareFile file;
  file.payload = "\n[File Description]\n";
  for (size_t i = 0; i < entries; ++i) {
    const std::string number = std::to_string(100000 + i);
    file.payload += "board" + number + ".bin:app:1.02:20260115:" + number + ":0:0:1\n";
  }
  file.payload += "[END]\n";
  return file.Bytes();
}

}  // namespace VARNEL_BENCH
