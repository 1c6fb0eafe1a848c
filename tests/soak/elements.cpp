#include <csignal>
#include <thread>

#include "scripted_element.h"
#include "soak.h"

namespace VARNEL_TEST {

namespace {

constexpr size_t MOST_KIBIBYTES = 96 * 1024;  // of a command that accepts messages of 10 or 16 MiB
constexpr double MOST_LATE = 2;               // seconds, on a busy machine

struct Case {
  std::string name;
  std::vector<std::string> arguments;
  ElementScript script;
  std::string error;
  double limit = 0;  ///< the seconds of --timeout, 0 for none
};

std::string Repeated(const std::string& text, size_t size) {
  std::string whole;
  while (whole.size() < size)
    whole += text;
  return whole;
}

void Try(const Case& c, const std::string& varnel) {
  ScriptedElement element;
  std::thread serving([&] { element.Serve(c.script); });
  std::vector<std::string> command{varnel};
  command.insert(command.end(), c.arguments.begin(), c.arguments.end());
  command.insert(command.end(), {"--connect", "127.0.0.1:" + std::to_string(element.Port())});
  const Child child = RunChild(command);
  serving.join();
  const bool inTime = c.limit == 0 || (child.seconds >= c.limit && child.seconds < c.limit + MOST_LATE);
  const bool bounded = !MEMORY_COUNTS || child.kibibytes < MOST_KIBIBYTES;
  Expect(child.status == 1 && inTime && bounded && child.errors.find(c.error) != std::string::npos,
         c.name + ": " + std::to_string(child.seconds) + " s, " + std::to_string(child.kibibytes) +
             " KiB at most, status " + std::to_string(child.status) + ", " +
             child.errors.substr(0, child.errors.size() - 1));
}

ElementScript Once(const std::string& bytes) {
  ElementScript script;
  script.bytes = bytes;
  return script;
}

ElementScript ForEver(const std::string& bytes, std::chrono::milliseconds pause = {}, size_t piece = 0) {
  ElementScript script;
  script.bytes = bytes;
  script.forEver = true;
  script.pause = pause;
  script.pieceSize = piece;
  return script;
}

}  // namespace

void SoakElements(const SoakSize& size, const std::string& varnel) {
  std::signal(SIGPIPE, SIG_IGN);
  const std::string message = std::to_string(size.message);
  const std::string seconds = std::to_string(size.seconds);
  const std::string start = "\r\n\n   NORTH 20-01-01 12:34:56\r\nM  1 COMPLD\r\n   \"";
  const std::string noEnd = Repeated("no end in sight ", 65536);
  const std::string lines = Repeated("a line without an end of its report\r\n", 65536);
  const std::string messages = Repeated(start + "text\"\r\n;", 65536);
  const std::string parts = Repeated(start + "text\"\r\n>", 65536);
  const std::string echoes = Repeated("RTRV-ALM-ALL:::1;\r\n> \xFF\xFB\x01", 65536);
  const std::chrono::milliseconds second{1000};
  const std::string tl1 = "0x1000001";
  const std::string over = "time limit reached after";
  const std::string longReport = "a report is longer than 10485760 bytes";
  const auto run = [&](const Case& c) { Try(c, varnel); };
  run({"report, never a line end", {"report"}, ForEver(noEnd), longReport});
  run({"report, never a report's end", {"report"}, ForEver(lines), longReport});
  run({"report, never the separator", {"report", "--separator", "%%"}, ForEver(lines), longReport});
  run({"report, TL1 message without an end",
       {"report", "--ne", tl1},
       Once(start + Repeated("x", 20000000)),
       longReport});
  run({"report, reports without an end result",
       {"report", "--ne", tl1, "--timeout", seconds},
       ForEver(messages),
       over,
       size.seconds});
  run({"report, a byte a second", {"report", "--timeout", seconds}, ForEver(noEnd, second, 1), over, size.seconds});
  run({"tl1, message without an end", {"tl1"}, Once(start + Repeated("x", 20000000)), "is longer than 16777216 bytes"});
  run({"tl1, a limit of one's own",
       {"tl1", "--limit", "100000"},
       Once(start + Repeated("x", 20000000)),
       "is longer than 100000 bytes"});
  run({"tl1, quote without an end",
       {"tl1", "--limit", message},
       Once(start + Repeated("x;\r\n", 20000000)),
       "is longer than " + message + " bytes"});
  run({"tl1, parts without an end",
       {"tl1", "--join", "--limit", message, "--timeout", seconds},
       ForEver(parts),
       "is longer than " + message + " bytes",
       size.seconds});
  run({"tl1, a byte a second",
       {"tl1", "--timeout", "0.5"},
       ForEver(noEnd, second, 1),
       "no TL1 message was found",
       0.5});
  run({"report, echoes and prompts for ever",
       {"report", "--ne", tl1, "--timeout", seconds},
       ForEver(echoes),
       over,
       size.seconds});
}

}  // namespace VARNEL_TEST
