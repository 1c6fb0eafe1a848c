#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "recording_test.h"
#include "string_references.h"
#include "tl1_reference.h"
#include "tl1nemsgparse.h"

namespace VARNEL_TEST {
namespace {

using namespace std::string_literals;

using VARNEL_COMMON::CTL1NEMsgParse;

using Texts = std::vector<std::string>;

constexpr int MESSAGES = 100000;

// What a message is put together from, in the order of a message. Each time one of each row is taken.
const std::vector<Texts> RESPONSE = {{"", "", "RTRV-NE:::7;", "\r\n", "M ", "\0"s},
                                     {"\r\n\n   "},
                                     {"NE1", "NE1", "\"N 1\"", "", "\0"s},
                                     {" "},
                                     {"24-01-02", "24-01-02", "", "\xFF"},
                                     {" "},
                                     {"10:11:12", "10:11:12", ""},
                                     {"\r\n", "\r\n", "\r\n", "\r", "\n"},
                                     {"M  ", "M  ", "M  ", "M", "M ", " M  "},
                                     {"7", "7", "12345678", "", "\0"s},
                                     {" "},
                                     {"COMPLD", "DENY", "", " "},
                                     {"\r\n", "\r\n", "\r\n", "\n", ""},
                                     {"   \"a\"\r\n", "   /* b */\r\n", "", "   \";\"\r\n", "\r\n   >x\r\n"},
                                     {";", ";", ">", ";\r\n", "; ", ""}};
const std::vector<Texts> AUTONOMOUS = {{"", "\r\n<", "x"},
                                       {"\r\n\n   "},
                                       {"NE1 24-01-02 10:11:12"},
                                       {"\r\n", "\r\n", "\n", "\r"},
                                       {"A", "*C", "**", "*", "", "\xFF"},
                                       {" ", " ", " ", "  ", "   "},
                                       {"5", "5", "1234", ""},
                                       {" ", " ", ""},
                                       {"REPT ALM EQPT", "REPT EVT PROGRESS", "", "M"},
                                       {"\r\n   ", "\r\n   ", "\r\n   ", "", "\r\n  "},
                                       {"\"SLOT-1:MJ\"\r\n", "MIN\r\n", "CR;\r\n"},
                                       {";", ";", ">", "\r\n;", "\r\n>", ""}};
const std::vector<Texts> SHORT = {{"", "\r\n", "; ", "IP", "\0"s, "IP", "\xFF"},
                                  {" ", " ", " ", ""},
                                  {"12", "", "1 2", "\0"s},
                                  {"\r\n<", "\r\n<", "\r\n<", "\r\n>", "<", "\r\n\r\n<"},
                                  {"", "", "", " ", ";", "\r\n;"}};

class Messages {
 public:
  explicit Messages(unsigned int seed) : m_random(seed) {}

  std::string Next() {
    std::string message = OneShape();
    if (m_random.Below(16) == 0) message += OneShape();
    if (m_random.Below(4) == 0) Damage(message);
    return message;
  }

 private:
  const std::vector<Texts>& Shape() {
    switch (m_random.Below(8)) {
      case 0:
        return SHORT;
      case 1:
      case 2:
      case 3:
        return AUTONOMOUS;
      default:
        return RESPONSE;
    }
  }

  std::string OneShape() {
    std::string message;
    for (const Texts& choices : Shape()) {
      // Mostly the first, or hardly a message would get far.
      if (m_random.Below(32) != 0) message += choices[m_random.Below(4) == 0 ? m_random.Below(choices.size()) : 0];
    }
    return message;
  }

  void Damage(std::string& message) {
    const size_t at = m_random.Below(message.size() + 1);
    switch (m_random.Below(4)) {
      case 0:
        message.erase(at);
        break;
      case 1:
        message.erase(0, at);
        break;
      case 2:
        message.erase(at, m_random.Below(4));
        break;
      default:
        message.insert(at, m_random.Next(" \r\n;><M\0\xFF"s, 3));
    }
  }

  RandomTexts m_random;
};

class Tl1ParserReference : public RecordingTest {
 protected:
  Lines ExpectedLines(const Tl1Reference& reference) {
    Lines lines;
    for (const Tl1Reference::Report& report : reference.reports)
      lines.push_back(Warning(report.text, "tl1nemsgparse", report.function));
    return lines;
  }

  void Compare(const CTL1NEMsgParse& parser, bool actual, const Tl1Reference& reference, bool expected) {
    ASSERT_EQ(PartsOf(parser), reference.parts);
    ASSERT_EQ(actual, expected) << reference.parts;
    ASSERT_EQ(host.lines, ExpectedLines(reference)) << reference.parts;
    host.Reset();
    ++m_seen[actual ? 1 : 0];
  }

  void TearDown() override {
    EXPECT_GT(m_seen[0], MESSAGES / 10);
    EXPECT_GT(m_seen[1], MESSAGES / 10);
  }

 private:
  int m_seen[2] = {0, 0};
};

TEST_F(Tl1ParserReference, FreshObjects) {
  Messages messages(1);
  for (int i = 0; i < MESSAGES; ++i) {
    const std::string message = messages.Next();
    CTL1NEMsgParse parser(message);
    Tl1Reference reference(message);
    const bool actual = parser.NEMsgParse();
    ASSERT_NO_FATAL_FAILURE(Compare(parser, actual, reference, reference.Parse())) << "message " << i;
  }
}

// Nothing is reset between the messages, so what one leaves shows in the next.
TEST_F(Tl1ParserReference, OneObjectParsingMessageUponMessage) {
  Messages messages(2);
  CTL1NEMsgParse parser("");
  Tl1Reference reference("");
  for (int i = 0; i < MESSAGES; ++i) {
    parser.m_strNEMsg = reference.parts.message = messages.Next();
    reference.reports.clear();
    const bool actual = parser.NEMsgParse();
    ASSERT_NO_FATAL_FAILURE(Compare(parser, actual, reference, reference.Parse())) << "message " << i;
  }
}

TEST_F(Tl1ParserReference, CompletenessByOneObject) {
  Messages messages(3);
  CTL1NEMsgParse parser("");
  Tl1Reference reference("");
  for (int i = 0; i < MESSAGES; ++i) {
    const std::string message = messages.Next();
    reference.reports.clear();
    const bool actual = parser.ParseMsgEndFlg(message);
    ASSERT_NO_FATAL_FAILURE(Compare(parser, actual, reference, reference.ParseComplete(message))) << "message " << i;
  }
}

}  // namespace
}  // namespace VARNEL_TEST
