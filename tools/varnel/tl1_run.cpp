#include "tl1_run.h"

#include <iostream>

#include "arguments.h"
#include "output.h"
#include "subcommand.h"

using VARNEL_TL1::Message;
using VARNEL_TL1::MessageType;

namespace {

constexpr uint64_t MAX_LIMIT = uint64_t{1} << 40;

}  // namespace

void AddTl1Options(CLI::App& command, Tl1Options& options) {
  AddSourceOptions(command, options.source, Operands::Several);
  command.add_option("--encoding", options.encoding)->check(Encoding::Check);
  TakeSizes(command.add_option("--limit", options.limit), 1, MAX_LIMIT);
  command.add_flag("--json", options.json);
}

int Tl1Run::Run() {
  TimeLimits limits(m_options.source);
  for (const std::string& name : m_options.source.Names()) {
    m_source = name;
    if (!ReadSource(limits)) break;
  }
  return m_failed ? EXIT_BAD : EXIT_DONE;
}

// False if no further source is to be read.
bool Tl1Run::ReadSource(TimeLimits& limits) {
  using Status = ByteSource::Status;
  const auto source = MakeByteSource(m_options.source, m_source, limits);
  const bool live = m_options.source.IsLive(m_source);
  m_found = false;
  StartSource();
  BeginStream();
  std::string bytes;
  Status status = Status::Data;
  while (status == Status::Data || status == Status::Restarted) {
    status = source->Read(bytes);
    if (live) m_received = CurrentTime();
    Append(bytes);
    if (IsDone() || !std::cout.flush()) return false;
    if (status == Status::Data) continue;
    EndStream();
    if (IsDone()) return false;
    if (status != Status::Restarted) break;
    BeginStream();
  }
  if (status == Status::Failed) {
    Fail(source->Error());
  } else if (!m_found) {
    Fail("no TL1 message was found");
  }
  if (m_verbose && status == Status::TimedOut) Complain(m_source, "ended: " + source->Error());
  return status != Status::TimedOut;
}

void Tl1Run::BeginStream() {
  m_framer.emplace(m_options.limit);
  StartStream();
}

void Tl1Run::Append(const std::string& bytes) {
  m_framer->Append(bytes);
  TakeMessages();
}

void Tl1Run::EndStream() {
  m_framer->Finish();
  TakeMessages();
  if (IsDone()) return;
  FinishStream();
  if (m_verbose) ReportSkipped();
}

void Tl1Run::TakeMessages() {
  Message message;
  while (!IsDone() && m_framer->Next(message)) {
    m_found = m_found || message.type != MessageType::Prompt;
    Take(message);
  }
}

void Tl1Run::Examine(const Message& message) {
  if (message.complete) return;
  const std::string at = " at offset " + std::to_string(message.offset);
  if (message.tooLong) {
    Fail("the message" + at + " is longer than " + std::to_string(m_options.limit) + " bytes");
  } else if (message.continues) {
    Fail("the answer" + at + " lacks its last part");
  } else {
    Fail("the message" + at + " has no end");
  }
}

void Tl1Run::Fail(const std::string& what) {
  Complain(m_source, what);
  m_failed = true;
}

void Tl1Run::ReportSkipped() const {
  const VARNEL_TL1::Skipped& skipped = m_framer->GetSkipped();
  Complain(m_source, "skipped " + std::to_string(skipped.bytes) +
                         " bytes between messages: " + std::to_string(skipped.echoes) + " echoes, " +
                         std::to_string(skipped.prompts) + " prompts, " + std::to_string(skipped.lines) +
                         " other lines; " + std::to_string(skipped.telnet) + " telnet sequences");
}
