// Reads a captured TL1 session: cuts the bytes into messages and joins answers of several messages.

#include <varnel_tl1/tl1.h>

#include <iostream>

using namespace VARNEL_TL1;

namespace {

void Print(const Message& message) {
  std::cout << TypeName(message.type) << " at " << message.offset << ", " << message.length << " bytes";
  if (!message.complete) std::cout << ", incomplete";
  std::cout << "\n  " << message.code << ' ' << (message.ctag.empty() ? message.atag : message.ctag);
  if (!message.verb.empty()) std::cout << ' ' << message.verb;
  if (!message.sid.empty()) std::cout << " from " << message.sid;
  std::cout << '\n';
  LineReader lines(message.text);
  for (std::string_view line; lines.Next(line);)
    std::cout << "    " << line << '\n';
}

void PrintJoined(Joiner& joiner) {
  for (Message message; joiner.Next(message);)
    Print(message);
}

void JoinMessages(Framer& framer, Joiner& joiner) {
  for (Message message; framer.Next(message);) {
    joiner.Add(message);
    PrintJoined(joiner);
  }
}

}  // namespace

int main() {
  Framer framer;
  Joiner joiner;
  // The messages do not depend on how the bytes are divided.
  char bytes[512];
  while (std::cin.read(bytes, sizeof bytes) || std::cin.gcount() > 0) {
    framer.Append({bytes, static_cast<size_t>(std::cin.gcount())});
    JoinMessages(framer, joiner);
  }
  framer.Finish();
  JoinMessages(framer, joiner);
  joiner.Finish();
  PrintJoined(joiner);
  std::cout << framer.GetSkipped().echoes << " echoed commands skipped\n";
}
