#include <varnel_tl1/tl1.h>

#include <algorithm>
#include <iostream>
#include <memory>
#include <vector>

#include "arguments.h"
#include "byte_source.h"
#include "output.h"
#include "subcommands.h"
#include "tl1_output.h"
#include "tl1_strict.h"

using VARNEL_TL1::Framer;
using VARNEL_TL1::Joiner;
using VARNEL_TL1::Message;
using VARNEL_TL1::MessageCopy;
using VARNEL_TL1::Skipped;

namespace {

constexpr uint64_t MAX_LIMIT = uint64_t{1} << 40;

struct Tl1Options {
  SourceOptions source;
  bool json = false;
  bool join = false;
  bool strict = false;
  uint64_t limit = VARNEL_TL1::DEFAULT_LIMIT;
  std::vector<std::string> types, ctags, codes;
};

bool Passes(const std::vector<std::string>& wanted, std::string_view value) {
  return wanted.empty() || std::find(wanted.begin(), wanted.end(), value) != wanted.end();
}

// One run: from the source through framer, reader, joiner and filters to standard output.
class Tl1Run {
 public:
  Tl1Run(const Tl1Options& options, bool verbose)
      : m_options(options), m_verbose(verbose), m_framer(options.limit), m_joiner(options.limit) {}

  int Run() {
    const auto source = MakeByteSource(m_options.source, Limit::Silence);
    std::string bytes;
    while (source->Read(bytes) == ByteSource::Status::Data)
      Take(bytes);
    End();
    if (!source->Error().empty()) Fail(source->Error());
    if (m_verbose) TellSkipped(m_framer.GetSkipped());
    return m_failed ? EXIT_BAD : EXIT_DONE;
  }

 private:
  void Take(const std::string& bytes) {
    m_framer.Append(bytes);
    TakeMessages();
    std::cout.flush();
  }

  void End() {
    m_framer.Finish();
    TakeMessages();
    m_joiner.Finish();
    PrintJoined();
  }

  void Fail(const std::string& what) {
    Complain(m_options.source.Name(), what);
    m_failed = true;
  }

  void TakeMessages() {
    Message message;
    while (m_framer.Next(message))
      TakeMessage(message);
  }

  void TakeMessage(const Message& message) {
    const MessageCopy strict = m_options.strict ? ReadStrictly(message) : MessageCopy();
    const Message& read = m_options.strict ? strict.View() : message;
    if (!m_options.join) {
      Print(read);
      return;
    }
    m_joiner.Add(read);
    PrintJoined();
  }

  void PrintJoined() {
    Message message;
    while (m_joiner.Next(message))
      Print(message);
  }

  void Print(const Message& message) {
    const std::string place = "the message at offset " + std::to_string(message.offset);
    if (message.tooLong) {
      Fail(TooLong(place));
    } else if (!message.complete) {
      Fail(place + " has no end");
    }
    const bool wanted = Passes(m_options.types, VARNEL_TL1::TypeName(message.type)) &&
                        Passes(m_options.ctags, message.ctag) && Passes(m_options.codes, message.code);
    if (!wanted) return;
    if (m_options.json) {
      PrintJson(MessageToJson(message));
    } else {
      PrintBlock(message);
    }
  }

  std::string TooLong(const std::string& what) const {
    return what + " is longer than " + std::to_string(m_options.limit) + " bytes";
  }

  void TellSkipped(const Skipped& skipped) const {
    Complain(m_options.source.Name(),
             "skipped " + std::to_string(skipped.bytes) + " bytes between messages: " + std::to_string(skipped.echoes) +
                 " echoes, " + std::to_string(skipped.prompts) + " prompts, " + std::to_string(skipped.lines) +
                 " other lines; " + std::to_string(skipped.telnet) + " telnet sequences");
  }

  const Tl1Options& m_options;
  const bool m_verbose;
  Framer m_framer;
  Joiner m_joiner;
  bool m_failed = false;
};

class Tl1Command {
 public:
  explicit Tl1Command(Command& command) : m_app(command) {
    AddSourceOptions(command, m_options.source, "Give up after so many seconds without a byte");
    command.add_flag("--json", m_options.json, "Print one JSON object per message");
    command.add_flag("--join", m_options.join, "Make one message of the parts of an answer");
    command.add_flag("--strict", m_options.strict, "Read messages with the library's strict parser");
    AddList("--type", m_options.types, "Only messages of these types")
        ->check(OneOf({"acknowledgement", "response", "autonomous", "prompt", "unrecognised"}));
    AddList("--ctag", m_options.ctags, "Only messages with these correlation tags");
    AddList("--code", m_options.codes, "Only messages with these codes, such as COMPLD or *C");
    TakeNumbers(command.add_option("--limit", m_options.limit, "The longest message taken"), 1, MAX_LIMIT)
        ->type_name("BYTES")
        ->capture_default_str();
    Explain(command);
  }

  int Run() const { return Tl1Run(m_options, m_app.get_parent()->count("--verbose") > 0).Run(); }

 private:
  static void Explain(Command& command) {
    command.explanation = {
        {"",
         {{"",
           "Line ends of every kind are taken; echoes, banners, prompts and telnet bytes between messages are "
           "skipped. What is cut out as a message but cannot be read is shown as unrecognised. A message "
           "without its end is shown too, and reported on standard error. A message is shown when it passes all "
           "filters."}}},
        {"JSON objects",
         {{"type", "acknowledgement, response, autonomous, prompt or unrecognised."},
          {"offset, length", "Where the message stands in the stream, in bytes."},
          {"sid, date, time", "From the header."},
          {"ctag, atag", "The correlation tag of an answer; the tag of an autonomous message."},
          {"code, verb", "The completion or alarm code; what an autonomous message reports."},
          {"lines", "A list of the lines of its text."},
          {"continues", "True when more parts of the answer follow."},
          {"", "What a message does not have is null."}}}};
    command.SetExitStatus("The whole stream was read.",
                          "A message has no end or is too long, the time is over, or the input is "
                          "unreadable");
    command.examples.paragraphs = {{"varnel tl1 capture.log", "Show all messages of a file."},
                                   {"varnel tl1 --json --type autonomous --code '*C,**' capture.log",
                                    "Show critical and major alarms, for a program."},
                                   {"varnel tl1 --connect 192.0.2.7:1400 --timeout 60",
                                    "Show what an element sends until it is silent for a minute."}};
  }

  CLI::Option* AddList(const char* name, std::vector<std::string>& list, const char* help) {
    return m_app.add_option(name, list, help)->type_name("LIST")->delimiter(',')->allow_extra_args(false);
  }

  CLI::App& m_app;
  Tl1Options m_options;
};

}  // namespace

std::function<int()> AddTl1(Command& command) {
  const auto tl1 = std::make_shared<Tl1Command>(command);
  return [tl1] { return tl1->Run(); };
}
