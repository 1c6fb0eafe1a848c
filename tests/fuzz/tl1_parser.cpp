// Messages one after the other, separated by record separators: the parser compared with a plain one, each time by a
// new object and by one that has parsed all messages before.

#include <tl1nemsgparse.h>

#include "check.h"
#include "input.h"
#include "kept_log.h"
#include "replay.h"
#include "string_references.h"
#include "tl1_reference.h"

using VARNEL_COMMON::CTL1NEMsgParse;
using VARNEL_FUZZ::KeptLog;
using VARNEL_TEST::PartsOf;
using VARNEL_TEST::Tl1Parts;
using VARNEL_TEST::Tl1Reference;

namespace {

class Comparison {
 public:
  void Start() {
    KeptLog().clear();
    m_reference.reports.clear();
  }

  bool Parse(const std::string& message) {
    m_parser.m_strNEMsg = m_reference.parts.message = message;
    static VARNEL_FUZZ::Answers answers("NEMsgParse");
    const bool result = m_parser.NEMsgParse();
    answers.Count(result);
    FUZZ_CHECK(result == m_reference.Parse());
    return result;
  }

  bool ParseComplete(const std::string& message) {
    static VARNEL_FUZZ::Answers answers("ParseMsgEndFlg");
    const bool result = m_parser.ParseMsgEndFlg(message);
    answers.Count(result);
    FUZZ_CHECK(result == m_reference.ParseComplete(message));
    return result;
  }

  void Check() const {
    FUZZ_CHECK(PartsOf(m_parser) == m_reference.parts);
    FUZZ_CHECK(KeptLog().size() == m_reference.reports.size());
    for (size_t i = 0; i < KeptLog().size(); ++i) {
      FUZZ_CHECK(KeptLog()[i].function == m_reference.reports[i].function);
      FUZZ_CHECK(KeptLog()[i].text == m_reference.reports[i].text);
    }
  }

  Tl1Parts Parts() const { return PartsOf(m_parser); }

 private:
  CTL1NEMsgParse m_parser{""};
  Tl1Reference m_reference{""};
};

// A fresh object holds only parts of the message.
void CheckWithin(const std::string& message, const Tl1Parts& parts) {
  for (const std::string& part : {parts.sid, parts.date, parts.time, parts.echo, parts.textBlock, parts.verb,
                                  parts.code, parts.ctag, parts.atag}) {
    FUZZ_CHECK(message.find(part) != std::string::npos);
  }
  FUZZ_CHECK(parts.start <= message.size());
}

void CheckFresh(const std::string& message) {
  Comparison plain;
  plain.Start();
  plain.Parse(message);
  plain.Check();
  CheckWithin(message, plain.Parts());

  Comparison complete;
  complete.Start();
  const bool isComplete = complete.ParseComplete(message);
  complete.Check();
  CheckWithin(message, complete.Parts());
  if (!isComplete) return;
  FUZZ_CHECK(complete.Parts().type == 3 || complete.Parts().type == 4);
  FUZZ_CHECK(message.find("\r\n;") != std::string::npos);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  VARNEL_FUZZ::Input input(data, size);
  Comparison used;
  do {
    const std::string message = input.Field();
    CheckFresh(message);
    used.Start();
    used.Parse(message);
    used.Check();
    used.Start();
    used.ParseComplete(message);
    used.Check();
  } while (!input.IsEmpty());
  return 0;
}

// What may follow each step of a message.
void VARNEL_FUZZ::RunGenerated(Runner run) {
  const auto texts = VARNEL_TEST::AllTexts(
      {"\r", "\n", "\r\n", "   ", " ", "M", "7", "A", ";", ">", "<", std::string(1, '\0'), "\xFF"}, 3);
  const std::string header = "\r\n\n   NE1 24-01-02 10:11:12";
  for (const std::string& start : {std::string(), std::string("IP"), std::string("\r\n\n   NE1"), header,
                                   header + "\r\nM  7", header + "\r\nM  7 DENY", header + "\r\nA",
                                   header + "\r\nA 5 M", header + "\r\n*C 5 REPT ALM\r\n   \"S:CR\"M"}) {
    for (const std::string& text : texts) {
      run(start + text);
      run(start + text + "\r\n;");
      run(start + text + "\r\n<");
    }
  }
}
