// Follows the alarms of a captured TL1 session: prints each change, and at the end the active alarms.

#include <varnel_tl1/tl1.h>

#include <iostream>

using namespace VARNEL_TL1;

namespace {

void Print(const char* what, const Alarm& alarm) {
  std::cout << what << ' ' << alarm.severity << ' ' << alarm.condition << " on " << alarm.aid << " of " << alarm.sid
            << ", raised " << alarm.raised << '\n';
}

void PrintChange(Alarms::Change change, const Alarm& alarm) {
  Print(ChangeName(change), alarm);
}

}  // namespace

int main() {
  Framer framer;
  Alarms alarms;
  Atags atags;
  bool complete = true;
  const auto takeMessages = [&] {
    for (Message message; framer.Next(message);) {
      complete = complete && message.complete;
      const uint64_t missed = atags.Missed(message).value_or(0);
      if (missed > 0) std::cout << missed << " messages of " << message.sid << " are missing\n";
      alarms.Add("session", message, "", PrintChange);
    }
  };

  char bytes[4096];
  while (std::cin.read(bytes, sizeof bytes) || std::cin.gcount() > 0) {
    framer.Append({bytes, static_cast<size_t>(std::cin.gcount())});
    takeMessages();
  }
  framer.Finish();
  takeMessages();
  for (const auto& [key, alarm] : alarms.Active())
    Print("active", alarm);
  if (!complete) std::cerr << "a message has no end\n";
  return complete ? 0 : 1;
}
