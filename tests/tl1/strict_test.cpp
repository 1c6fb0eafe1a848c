// The reader of streams and the strict parser agree about messages in the strict form.
#include <gtest/gtest.h>
#include <tl1nemsgparse.h>

#include "streams.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_COMMON::CTL1NEMsgParse;
using VARNEL_TL1::Message;
using VARNEL_TL1::MessageCopy;
using VARNEL_TL1::MessageType;

// The fields of the parser; alarm code and atag may have a blank at one end.
std::string Fields(MessageType type, std::initializer_list<std::string> fields) {
  std::string all = TypeName(type);
  for (std::string field : fields) {
    field.erase(0, field.find_first_not_of(' '));
    all += "," + field.substr(0, field.find_last_not_of(' ') + 1);
  }
  return all;
}

std::string ReadStrictly(const CTL1NEMsgParse& parser) {
  const MessageType type = parser.m_nMsgType == 2   ? MessageType::Acknowledgement
                           : parser.m_nMsgType == 3 ? MessageType::Response
                                                    : MessageType::Autonomous;
  return Fields(type, {parser.m_strSID, parser.m_strDate, parser.m_strTime, parser.m_strCtag, parser.m_strAtag,
                       parser.m_strRetRspCode, parser.m_strVerb}) +
         ShownText(parser.m_strTextBlock);
}

std::string ReadTolerantly(const Message& message) {
  const auto text = [](std::string_view field) { return std::string(field); };
  return Fields(message.type, {text(message.sid), text(message.date), text(message.time), text(message.ctag),
                               text(message.atag), text(message.code), text(message.verb)}) +
         ShownText(message.text);
}

TEST(Tl1Strict, AgreesWithTheReaderOfStreams) {
  MessageMaker maker(20260304);
  size_t read = 0;
  for (size_t i = 0; i < 50000; ++i) {
    const std::string bytes = maker.Make().bytes;
    if (bytes.back() == '>' && bytes.find(';') != std::string::npos) continue;  // the parser's text ends there
    CTL1NEMsgParse parser(bytes);
    ASSERT_TRUE(parser.NEMsgParse()) << bytes;
    const Cut cut = CutStream(bytes);
    ASSERT_EQ(cut.messages.size(), 1U) << bytes;
    ASSERT_EQ(ReadTolerantly(cut.messages[0].View()), ReadStrictly(parser)) << bytes;
    ++read;
  }
  EXPECT_GT(read, 40000U);
}

}  // namespace
}  // namespace VARNEL_TEST
