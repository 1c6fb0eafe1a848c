// Reads a captured TL1 session: cuts the bytes into messages, tells their parts and joins answers of several messages.

#include <varnel_common/tl1stream.h>

#include <iostream>

using namespace VARNEL_TL1;

namespace {

void Print(const Parts& message) {
  std::cout << TypeName(message.type) << " at " << message.offset << ", " << message.length << " bytes\n  "
            << message.code.value_or("?") << ' ' << message.ctag.value_or(message.atag.value_or("?"));
  if (message.verb) std::cout << ' ' << *message.verb;
  if (message.sid) std::cout << " from " << *message.sid;
  std::cout << '\n';
  for (const std::string& line : message.lines)
    std::cout << "    " << line << '\n';
}

void PrintWhole(Joiner& joiner) {
  for (Parts message; joiner.Next(message);)
    Print(message);
}

}  // namespace

int main() {
  Framer framer;
  Reader reader;
  Joiner joiner;
  bool withinLimits = true;
  const auto join = [&] {
    for (Message message; framer.Next(message);) {
      if (!message.complete) std::cerr << "cut off: the last message\n";
      withinLimits = joiner.Add(reader.Read(message)) && withinLimits;
    }
    PrintWhole(joiner);
  };

  // However the bytes come in, the messages are the same.
  char bytes[512];
  while (withinLimits && (std::cin.read(bytes, sizeof bytes) || std::cin.gcount() > 0)) {
    withinLimits = framer.Feed({bytes, static_cast<size_t>(std::cin.gcount())});
    join();
  }
  framer.Finish();
  join();
  joiner.Finish();
  PrintWhole(joiner);
  if (framer.TooLong()) std::cerr << "a message without end at " << framer.TooLongOffset() << '\n';
  std::cout << framer.GetSkipped().echoes << " echoed commands skipped\n";
  return withinLimits && !framer.TooLong() ? 0 : 1;
}
