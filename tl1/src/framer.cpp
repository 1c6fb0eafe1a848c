#include "framer.h"

#include <utility>

#include "framer_machine.h"

namespace VARNEL_TL1 {

Framer::Framer(size_t limit) : m_machine(std::make_unique<FramerMachine>(limit)) {}

Framer::~Framer() = default;

void Framer::OnNegotiation(NegotiationHandler handler) {
  m_machine->buffer.onNegotiation = std::move(handler);
}

void Framer::Append(std::string_view bytes) {
  m_machine->Append(bytes);
}

void Framer::Finish() {
  m_machine->Finish();
}

bool Framer::Next(Message& message) {
  return m_machine->Next(message);
}

const Skipped& Framer::GetSkipped() const {
  return m_machine->skipped;
}

}  // namespace VARNEL_TL1
