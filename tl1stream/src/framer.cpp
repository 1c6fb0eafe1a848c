#include "tl1framer.h"

#include <utility>

#include "framer_machine.h"

namespace VARNEL_TL1 {

namespace {

// What is in hand when a step fails half-way belongs to no message that could be trusted.
template <typename Step>
void RunOrBreak(FramerMachine& machine, Step step) {
  if (machine.broken) return;
  machine.broken = true;
  step();
  machine.broken = false;
}

}  // namespace

Framer::Framer(size_t limit) : m_machine(std::make_unique<FramerMachine>(limit)) {}

Framer::~Framer() = default;

bool Framer::Feed(std::string_view bytes) {
  RunOrBreak(*m_machine, [&] { m_machine->Feed(bytes); });
  return !m_machine->tooLong && !m_machine->broken;
}

void Framer::Finish() {
  RunOrBreak(*m_machine, [&] { m_machine->Finish(); });
}

bool Framer::Next(Message& message) {
  if (m_machine->messages.empty()) return false;
  message = std::move(m_machine->messages.front());
  m_machine->messages.pop_front();
  return true;
}

bool Framer::TooLong() const {
  return m_machine->tooLong;
}

uint64_t Framer::TooLongOffset() const {
  return m_machine->Start();
}

const Skipped& Framer::GetSkipped() const {
  return m_machine->skipped;
}

}  // namespace VARNEL_TL1
