#include "varnel_tl1/alarms.h"

#include <gtest/gtest.h>

#include "streams.h"
#include "varnel_tl1/atags.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_TL1::Alarm;
using VARNEL_TL1::Alarms;
using VARNEL_TL1::Atags;
using VARNEL_TL1::MessageCopy;

std::string AlarmMessage(const std::string& identification, const std::string& text, const std::string& second = "07") {
  return "\r\n\n   A 26-03-04 05:06:" + second + "\r\n" + identification + "\r\n   " + text + "\r\n;";
}

std::string Shown(const Alarm& alarm) {
  std::string shown = alarm.source;
  for (const std::string& field : {alarm.sid, alarm.aid, alarm.condition, alarm.severity, alarm.effect, alarm.raised,
                                   alarm.received, alarm.description})
    shown += "," + field;
  return shown;
}

// The changes that the messages of a stream make, each received at its number.
Texts Changes(Alarms& alarms, const std::string& stream) {
  Texts changes;
  int number = 0;
  for (const MessageCopy& message : CutStream(stream).messages) {
    alarms.Add("S", message.View(), std::to_string(++number), [&](Alarms::Change change, const Alarm& alarm) {
      changes.push_back(std::string(ChangeName(change)) + " " + Shown(alarm));
    });
  }
  return changes;
}

TEST(Tl1Alarms, AreRaisedChangedAndCleared) {
  Alarms alarms;
  EXPECT_EQ(
      Changes(alarms, AlarmMessage("*C 1 REPT ALM EQPT", "\"S-1:CR,LOS,SA,03-04:\\\"no, light\\\",x\"") +
                          AlarmMessage("** 2 REPT ALM EQPT", "\"S-1:MJ,LOS,SA:\\\"no, light\\\"\"", "08") +
                          AlarmMessage("** 3 REPT ALM EQPT", "\"S-1:MJ,LOS,SA:\\\"no, light\\\"\"", "09") +
                          AlarmMessage("** 3 REPT ALM EQPT", "\"S-1:MJ,LOS,NSA:\\\"no, light\\\"\"", "09") +
                          AlarmMessage("*  4 REPT ALM EQPT", "\"S-1:MN,LOF\"", "10") +
                          AlarmMessage("A  5 REPT ALM EQPT", "\"S-1:CL,LOS,SA\"", "11")),
      (Texts{"raised S,A,S-1,LOS,CR,SA,26-03-04 05:06:07,1,no, light",
             "changed S,A,S-1,LOS,MJ,SA,26-03-04 05:06:07,1,no, light",
             "changed S,A,S-1,LOS,MJ,NSA,26-03-04 05:06:07,1,no, light", "raised S,A,S-1,LOF,MN,,26-03-04 05:06:10,5,",
             "cleared S,A,S-1,LOS,CL,NSA,26-03-04 05:06:07,1,no, light"}));
  ASSERT_EQ(alarms.Active().size(), 1U);
  EXPECT_EQ(alarms.Active().begin()->second.condition, "LOF");
}

TEST(Tl1Alarms, CodeAndTextMayDisagree) {
  Alarms alarms;
  Changes(alarms,
          AlarmMessage("*C 1 REPT ALM EQPT", "\"S-1:CR,LOS\"") + AlarmMessage("*C 2 REPT ALM EQPT", "\"S-1:CL,LOS\""));
  EXPECT_TRUE(alarms.Active().empty()) << "severity CL clears with any code";
  Changes(alarms, AlarmMessage("A  1 REPT ALM EQPT", "\"S-1:MN,LOS\""));
  EXPECT_EQ(alarms.Active().size(), 1U) << "code A alone clears nothing";
  Changes(alarms, AlarmMessage("*C 1 REPT ALM EQPT", "\"S-1:MN,LOS,CL\""));
  EXPECT_EQ(alarms.Active().size(), 1U) << "CL elsewhere needs code A";
  Changes(alarms, AlarmMessage("A  1 REPT ALM EQPT", "\"S-1:MN,LOS,CL\""));
  EXPECT_TRUE(alarms.Active().empty()) << "code A with CL";
}

TEST(Tl1Alarms, AreIdentifiedBySourceSidAidAndCondition) {
  Alarms alarms;
  const std::string stream =
      AlarmMessage("*C 1 REPT ALM EQPT", "\"S-1:CR,LOS\"\r\n   \"S-2:CR,LOS\"\r\n   \"S-2:CR,LOF\"") +
      "\r\n\n   B 26-03-04 05:06:07\r\n*C 1 REPT ALM\r\n   \"S-1:CR,LOS\"\r\n;";
  Changes(alarms, stream);
  EXPECT_EQ(alarms.Active().size(), 4U);
  for (const MessageCopy& message : CutStream(stream).messages)
    alarms.Add("other", message.View());
  EXPECT_EQ(alarms.Active().size(), 8U);
}

TEST(Tl1Alarms, OtherMessagesChangeNothing) {
  Alarms alarms;
  EXPECT_EQ(
      Changes(alarms,
              AlarmMessage("A  1 REPT EVT EQPT", "\"S-1:CR,LOS\"") + AlarmMessage("M  1 COMPLD", "\"S-1:CR,LOS\"") +
                  AlarmMessage("A  1 REPT ALMS", "\"S-1:CR,LOS\"") + AlarmMessage("*C 1 REPT ALM", "S-1:CR,LOS") +
                  AlarmMessage("A  1 REPT ALM", "\"S-1:CL,LOS\"")),
      Texts{});
}

TEST(Tl1Atags, GapsAreCountedForEachSid) {
  Atags atags;
  const auto missed = [&atags](const char* sid, const char* atag) {
    VARNEL_TL1::Message message;
    message.type = VARNEL_TL1::MessageType::Autonomous;
    message.sid = sid;
    message.atag = atag;
    const auto count = atags.Missed(message);
    return count ? std::to_string(*count) : "-";
  };
  EXPECT_EQ(missed("A", "10"), "-") << "the first one";
  EXPECT_EQ(missed("A", "11.10"), "0");
  EXPECT_EQ(missed("A", "15"), "3");
  EXPECT_EQ(missed("A", "15"), "0") << "another part, or the same again";
  EXPECT_EQ(missed("B", "17"), "-") << "another SID";
  EXPECT_EQ(missed("A", "2"), "-") << "a restart";
  EXPECT_EQ(missed("A", "4"), "1");
  EXPECT_EQ(missed("A", "x"), "-");
  EXPECT_EQ(missed("A", ""), "-");
  EXPECT_EQ(missed("A", "1000000000000000000"), "-") << "19 digits";
  EXPECT_EQ(missed("A", "5"), "0");
  VARNEL_TL1::Message response;
  response.type = VARNEL_TL1::MessageType::Response;
  response.sid = "A";
  response.atag = "9";
  EXPECT_EQ(atags.Missed(response), std::nullopt);
  EXPECT_EQ(missed("A", "6"), "0");
}

}  // namespace
}  // namespace VARNEL_TEST
