// A session on a scripted clock: every row of its state table, and unusual elements.
#include <gtest/gtest.h>

#include <set>

#include "talk.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_TL1::Command;
using VARNEL_TL1::Event;
using VARNEL_TL1::EventKind;
using VARNEL_TL1::SessionOptions;

const std::string SHOWN_ALARM = "Message autonomous NORTH1 7 *C REPT ALM T1 | \"a\"";

TEST_F(SessionTest, MatchesTheAnswerAndPassesTheRest) {
  EXPECT_EQ(talk.Send("RTRV-HDR"), "RTRV-HDR:::10;");
  EXPECT_EQ(talk.Hear("banner; with <\r\nRTRV-HDR:::10;\r\n" + Alarm("7") + Answer("99") + Answer("10") + "\r\n< "),
            (Texts{SHOWN_ALARM, "Message response NORTH1 99 COMPLD | \"x\"", std::string("Answer ") + SHOWN_COMPLD}));
  EXPECT_EQ(talk.Hear(Answer("10")), Texts{std::string("Message ") + SHOWN_COMPLD})
      << "only one event for each command";
  EXPECT_EQ(talk.Wait(seconds(1000)), Texts());
}

TEST_F(SessionTest, AcceptsDenyAndAcknowledgementWithoutItsCtag) {
  for (const std::string ctag : {"0", "1", ""}) {
    const std::string mark = ctag.empty() ? "" : " " + ctag;
    const std::string denied = "response NORTH1" + mark + " DENY | IICM";
    const std::string deny = std::string(HEADER) + "M " + mark + " DENY\r\n   IICM\r\n;";
    EXPECT_EQ(talk.Hear(deny), Texts{"Message " + denied}) << "no command is pending";
    talk.Send("RTRV-HDR");
    EXPECT_EQ(talk.Hear(deny), Texts{"Answer " + denied});
    talk.Send("RTRV-HDR");
    EXPECT_EQ(talk.Hear("\r\nPF" + mark + "\r\n<\r\nNG" + mark + "\r\n<"),
              (Texts{"Acknowledgement acknowledgement" + mark + " PF", "Answer acknowledgement" + mark + " NG"}));
  }
  talk.Send("RTRV-HDR");
  EXPECT_EQ(talk.Hear(Answer("0") + Answer("99", "DENY") + "\r\nNA 99\r\n<").size(), 3U);
  EXPECT_EQ(talk.Wait(seconds(30)), Texts{"NoAnswer"}) << "answers with ctag 0 or another ctag are not accepted";
}

TEST_F(SessionTest, AMessageBeforeTheCommandIsNotItsAnswer) {
  talk.Send("RTRV-HDR");
  talk.session.Receive(Answer("0", "DENY") + Answer("0", "DENY"), talk.now);
  Event event;
  ASSERT_TRUE(talk.session.Next(event));
  EXPECT_EQ(event.kind, EventKind::Answer);
  talk.Send("RTRV-HDR");
  EXPECT_EQ(talk.Events(), Texts{"Message response NORTH1 0 DENY | \"x\""});
  EXPECT_EQ(talk.Hear(Answer("11")), Texts{"Answer response NORTH1 11 COMPLD | \"x\""});
}

TEST_F(SessionTest, RefusingAcknowledgementsAreTheAnswer) {
  for (const std::string code : {"NA", "NG", "RL"}) {
    const std::string sent = talk.Send("RTRV-HDR");
    const std::string ctag = sent.substr(sent.size() - 3, 2);
    EXPECT_EQ(talk.Hear("\r\n" + code + " " + ctag + "\r\n<"), Texts{"Answer acknowledgement " + ctag + " " + code});
  }
}

TEST_F(SessionTest, SomeAcknowledgementsProlongTheWait) {
  talk.Send("RTRV-HDR");
  for (const std::string code : {"IP", "PF"}) {
    EXPECT_EQ(talk.Wait(seconds(29)), Texts());
    EXPECT_EQ(talk.Hear("\r\n" + code + " 10\r\n<"), Texts{"Acknowledgement acknowledgement 10 " + code});
  }
  EXPECT_EQ(talk.Wait(seconds(29)), Texts());
  EXPECT_EQ(talk.Hear("\r\nOK 10\r\n<" + Alarm("7")), (Texts{"Acknowledgement acknowledgement 10 OK", SHOWN_ALARM}));
  EXPECT_EQ(talk.Wait(milliseconds(999)), Texts());
  EXPECT_EQ(talk.Wait(milliseconds(1)), Texts{"NoAnswer"}) << "neither OK nor an event prolongs it";
}

TEST_F(SessionTest, RefusesACommandWhileOneIsPending) {
  talk.Send("RTRV-HDR");
  EXPECT_EQ(talk.Send("RTRV-ALM"), "(another command is pending)");
  EXPECT_EQ(talk.LogIn("joe", "pass"), "(another command is pending)");
  talk.Hear(Answer("10"));
  EXPECT_EQ(talk.LogIn("joe", "pass"), "ACT-USER::joe:11::pass;");
  EXPECT_EQ(talk.Send("RTRV-ALM"), "(another command is pending)");
  talk.Hear(Answer("11"));
  EXPECT_EQ(talk.Send("RTRV-ALM"), "RTRV-ALM:::12;");
}

TEST_F(SessionTest, ALateAnswerIsNotTheNextOne) {
  talk.Send("RTRV-HDR");
  EXPECT_EQ(talk.Wait(seconds(30)), Texts{"NoAnswer"});
  talk.Send("RTRV-HDR");
  EXPECT_EQ(talk.Hear(Answer("10") + Answer("11")),
            (Texts{std::string("Message ") + SHOWN_COMPLD, "Answer response NORTH1 11 COMPLD | \"x\""}));
}

TEST_F(SessionTest, EachPartRestartsTheClock) {
  talk.Send("RTRV-HDR");
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(talk.Wait(seconds(29)), Texts());
    EXPECT_EQ(talk.Hear(Answer("10", "COMPLD", "\"" + std::to_string(i) + "\"", '>') + Alarm("7")), Texts{SHOWN_ALARM});
  }
  EXPECT_EQ(talk.Wait(seconds(30)),
            Texts{"Answer response NORTH1 10 COMPLD continues incomplete | \"0\" | \"1\" | \"2\""});
  talk.Send("RTRV-HDR");
  talk.Hear(Answer("11", "COMPLD", "a", '>'));
  EXPECT_EQ(talk.Wait(seconds(30)), Texts{"Answer response NORTH1 11 COMPLD continues incomplete | a"}) << "once more";
}

TEST_F(SessionTest, JoinsPartsWithAndWithoutHeader) {
  talk.Send("RTRV-HDR");
  EXPECT_EQ(talk.Hear(Answer("10", "COMPLD", "a", '>') + "\r\n   b\r\n>" + Alarm("7") + Answer("10", "COMPLD", "c")),
            (Texts{SHOWN_ALARM, "Answer response NORTH1 10 COMPLD | a | b | c"}));
  talk.Send("RTRV-HDR");
  EXPECT_EQ(talk.Hear(Answer("11", "RTRV", "a") + "\r\n< " + Answer("11", "RTRV", "b") + Answer("11", "COMPLD", "c")),
            Texts{"Answer response NORTH1 11 COMPLD | a | b | c"});
}

TEST_F(SessionTest, JoinsAThousandParts) {
  talk.Send("RTRV-HDR");
  std::string expected = "Answer response NORTH1 10 COMPLD";
  for (int i = 0; i < 999; ++i) {
    EXPECT_EQ(talk.Hear(Answer("10", "COMPLD", std::to_string(i), '>')), Texts());
    expected += " | " + std::to_string(i);
  }
  EXPECT_EQ(talk.Hear(Answer("10", "COMPLD", "end")), Texts{expected + " | end"});
}

TEST(Session, ShowsPartsIfTheyAreNotJoined) {
  SessionOptions options = With(8);
  options.join = false;
  Talk talk(options);
  talk.Send("RTRV-HDR");
  EXPECT_EQ(talk.Hear(Answer("10", "COMPLD", "a", '>') + "\r\n   b\r\n;"),
            (Texts{"Part response NORTH1 10 COMPLD continues | a", "Answer response NORTH1 10 COMPLD bare | b"}));
}

TEST_F(SessionTest, APartOfARefusedAnswerIsShownToo) {
  talk.Send("RTRV-HDR");
  EXPECT_EQ(
      talk.Hear(Answer("10", "COMPLD", "a", '>') + Answer("0", "DENY", "IICM")),
      (Texts{"Answer response NORTH1 0 DENY | IICM", "Message response NORTH1 10 COMPLD continues incomplete | a"}));
  talk.Send("RTRV-HDR");
  EXPECT_EQ(talk.Hear(Answer("11", "PRTL", "a", '>') + Answer("11", "COMPLD", "b")),
            (Texts{"Message response NORTH1 11 PRTL continues incomplete | a", "Answer response NORTH1 11 COMPLD | b"}))
      << "parts with another code";
}

TEST(Session, LimitsMessagesAndJoinedAnswers) {
  SessionOptions options = With(8);
  options.limit = 200;
  Talk talk(options);
  talk.Send("RTRV-HDR");
  const std::string part = Answer("10", "COMPLD", std::string(90, 'a'), '>');
  const Texts events = talk.Hear(part + part + part + Answer("10"));
  ASSERT_EQ(events.size(), 3U);
  EXPECT_EQ(events[0].rfind("Answer response NORTH1 10 COMPLD continues incomplete tooLong", 0), 0U) << events[0];
  EXPECT_EQ(events[1].rfind("Message ", 0), 0U);
  EXPECT_EQ(events[2], std::string("Message ") + SHOWN_COMPLD);
  talk.Send("RTRV-HDR");
  EXPECT_NE(talk.Hear(Answer("11", "COMPLD", std::string(300, 'a'))).at(0).find("tooLong"), std::string::npos);
}

TEST_F(SessionTest, AResetCutsTheAnswer) {
  talk.Send("RTRV-HDR");
  EXPECT_EQ(talk.Hear(std::string(HEADER) + "M  10 COMPLD\r\n   half"), Texts());
  EXPECT_EQ(talk.Cut(), Texts{"Answer response NORTH1 10 COMPLD incomplete | half"});
  talk.Send("RTRV-HDR");
  EXPECT_EQ(talk.Hear(Answer("11", "COMPLD", "a", '>') + HEADER + "M  11 COMPLD\r\n   ha"), Texts());
  EXPECT_EQ(talk.Cut(), Texts{"Answer response NORTH1 11 COMPLD incomplete | a | ha"});
  talk.Send("RTRV-HDR");
  EXPECT_EQ(talk.Hear(std::string(HEADER) + "*C 7 REPT ALM T1\r\n   \"a"), Texts());
  EXPECT_EQ(talk.Cut(), (Texts{"Message autonomous NORTH1 7 *C REPT ALM T1 incomplete | \"a", "NoAnswer"}));
}

TEST_F(SessionTest, ANewStreamBeginsAfterACut) {
  talk.Hear("banner\r\n" + std::string(HEADER) + "M  10 COMPLD\r\n   \"half");
  EXPECT_EQ(talk.Cut(), Texts{"Message response NORTH1 10 COMPLD incomplete | \"half"});
  const std::string before = " way\r\n";
  talk.Hear(before);
  talk.Send("RTRV-HDR");
  talk.session.Receive(Answer("10"), talk.now);
  Event event;
  ASSERT_TRUE(talk.session.Next(event));
  EXPECT_EQ(event.kind, EventKind::Answer);
  EXPECT_EQ(
      event.message->offset + event.message->length,
      std::string("banner\r\n" + std::string(HEADER) + "M  10 COMPLD\r\n   \"half" + before + Answer("10")).size());
}

TEST(Session, AssignsCtagsInSequence) {
  for (const unsigned int first : {0U, 999997U, 999998U, ~0U}) {
    Talk talk(With(first));
    std::set<std::string> ctags;
    for (int i = 0; i < 20; ++i) {
      const std::string sent = talk.Send("A");
      const std::string ctag = sent.substr(4, sent.size() - 5);
      EXPECT_TRUE(ctag.size() <= 6 && ctag != "0" && ctag != "1" && ctag[0] != '0') << sent;
      EXPECT_TRUE(ctags.insert(ctag).second) << sent;
      EXPECT_EQ(talk.Hear(Answer(ctag)).size(), 1U);
    }
  }
}

TEST_F(SessionTest, KeepsExplicitCtags) {
  Command later;
  later.Parse("A:::11");
  EXPECT_EQ(talk.session.Prepare(later), nullptr);
  EXPECT_EQ(later.Text(), "A:::11;");
  for (const std::string ctag : {"10", "0012", "x.1", "1"}) {
    EXPECT_EQ(talk.Send("A:::" + ctag), "A:::" + ctag + ";");
    EXPECT_EQ(talk.Hear(Answer(ctag)), Texts{"Answer response NORTH1 " + ctag + " COMPLD | \"x\""});
  }
  EXPECT_EQ(talk.Send("A"), "A:::13;") << "10 to 12 are used";
}

TEST(Session, FillsTheTid) {
  SessionOptions options = With(8);
  options.tid = "NE 1";
  Talk talk(options);
  EXPECT_EQ(talk.LogIn("joe", "pass"), "ACT-USER:\"NE 1\":joe:10::pass;");
  talk.Hear(Answer("10"));
  EXPECT_EQ(talk.Send("RTRV-HDR:OTHER"), "RTRV-HDR:OTHER::11;");
  talk.Hear(Answer("11"));
  EXPECT_EQ(talk.LogOut(), "CANC-USER:\"NE 1\":joe:12;");

  options.tid = "NE\n";
  Talk bad(options);
  EXPECT_EQ(bad.Send("A"), "(control character or byte 255)");
  EXPECT_EQ(bad.LogIn("joe", "pass"), "(control character or byte 255)");
}

class HeartbeatTest : public ::testing::Test {
 protected:
  static SessionOptions Options() {
    SessionOptions options = With(8);
    options.heartbeat = seconds(60);
    return options;
  }
  Talk talk{Options()};
};

TEST_F(HeartbeatTest, IsSentAfterSilence) {
  talk.Wait(seconds(50));
  talk.Hear("x");
  talk.Wait(seconds(20));
  talk.session.Receive("", talk.now);
  EXPECT_EQ(talk.Wait(seconds(39)), Texts());
  EXPECT_EQ(talk.Output(), "");
  EXPECT_EQ(talk.Wait(seconds(1)), Texts());
  EXPECT_EQ(talk.Output(), "RTRV-HDR:::10;");
}

TEST_F(HeartbeatTest, AnyAnswerIsAcceptedWithoutAnEvent) {
  for (const std::string& answer :
       {Answer("10"), Answer("11", "DENY"), Answer("0", "DENY"), Answer("13", "COMPLD", "a", '>') + Answer("13"),
        std::string("\r\nPF\r\n<"), "\r\nPF 15\r\n<" + Answer("15")}) {
    EXPECT_EQ(talk.Wait(seconds(60)), Texts());
    EXPECT_EQ(talk.Output().rfind("RTRV-HDR:::1", 0), 0U);
    EXPECT_EQ(talk.Wait(seconds(59)), Texts());
    EXPECT_EQ(talk.Hear(answer + Alarm("7")), Texts{SHOWN_ALARM});
    EXPECT_EQ(talk.Wait(seconds(59)), Texts());
    EXPECT_EQ(talk.Output(), "");
    talk.Hear("x");
  }
}

TEST_F(HeartbeatTest, WithoutAnAnswerTheConnectionIsLost) {
  talk.LogIn("joe", "pass");
  talk.Hear(Answer("10"));
  talk.Wait(seconds(60));
  talk.Output();
  EXPECT_EQ(talk.Hear(Alarm("7")), Texts{SHOWN_ALARM}) << "no answer";
  EXPECT_EQ(talk.Wait(seconds(59)), Texts());
  EXPECT_EQ(talk.Wait(seconds(1)), Texts{"Lost"});
  EXPECT_EQ(talk.Wait(seconds(1000)), Texts());
  EXPECT_EQ(talk.Send("RTRV-HDR"), "(the session is over)");
  EXPECT_EQ(talk.LogOut(), "(false)");
}

TEST_F(HeartbeatTest, WaitsWhileACommandIsPending) {
  talk.Send("RTRV-ALM");
  EXPECT_EQ(talk.Wait(seconds(30)), Texts{"NoAnswer"});
  EXPECT_EQ(talk.Wait(seconds(59)), Texts());
  EXPECT_EQ(talk.Output(), "");
  talk.Wait(seconds(1));
  EXPECT_EQ(talk.Output(), "RTRV-HDR:::11;");
  EXPECT_EQ(talk.Send("RTRV-ALM"), "RTRV-ALM:::12;") << "replaces the heartbeat";
  EXPECT_EQ(talk.Hear(Answer("11") + Answer("12")), Texts{"Answer response NORTH1 12 COMPLD | \"x\""});
}

TEST_F(HeartbeatTest, AnExplicitCtagMayBeThatOfAHeartbeat) {
  talk.Wait(seconds(60));
  talk.Output();
  talk.Send("RTRV-ALM:::10");
  EXPECT_EQ(talk.Hear(Answer("10")), Texts{std::string("Answer ") + SHOWN_COMPLD});
}

TEST_F(HeartbeatTest, PausesWhileTheClockIsStopped) {
  talk.Wait(seconds(50));
  talk.session.Pause(talk.now);
  EXPECT_FALSE(talk.session.Deadline());
  talk.now += seconds(1000);
  talk.session.Pause(talk.now);
  talk.session.Tick(talk.now);
  EXPECT_EQ(talk.Events(), Texts());
  talk.session.Resume(talk.now);
  talk.session.Resume(talk.now + seconds(1));
  EXPECT_EQ(talk.session.Deadline(), talk.now + seconds(10));

  talk.session.Pause(talk.now);
  talk.now += seconds(1000);
  EXPECT_EQ(talk.Send("RTRV-HDR"), "RTRV-HDR:::10;");
  talk.now += seconds(1000);
  EXPECT_EQ(talk.Hear(Alarm("7")), Texts{SHOWN_ALARM});
  talk.session.Resume(talk.now);
  EXPECT_EQ(talk.session.Deadline(), talk.now + seconds(30)) << "of a command sent during the pause";
  talk.session.Pause(talk.now);
  talk.session.LogIn("joe", "pass", talk.now);
  talk.Cut();
  talk.LogIn("joe", "pass");
  talk.now += seconds(1000);
  talk.LogOut();
  EXPECT_EQ(talk.session.Deadline(), talk.now + seconds(2)) << "logging out starts the clock";
}

TEST(Session, TimesThatCannotBeRepresentedNeverCome) {
  SessionOptions options;
  options.timeout = options.heartbeat = SessionOptions::Duration::max();
  Talk talk(options);
  EXPECT_EQ(talk.session.Deadline(), VARNEL_TL1::Session::Time::max());
  talk.Send("A");
  EXPECT_EQ(talk.session.Deadline(), VARNEL_TL1::Session::Time::max());
}

TEST_F(SessionTest, RefusesEachTelnetOptionOnce) {
  const std::string demands = "\xFF\xFD\x18\xFF\xFB\x01\xFF\xFB\x18";
  const std::string refusals = "\xFF\xFC\x18\xFF\xFE\x01\xFF\xFE\x18";
  talk.Hear(demands, 1);
  EXPECT_EQ(talk.Output(), refusals);
  for (int i = 0; i < 3; ++i)
    talk.Hear(demands + refusals);
  EXPECT_EQ(talk.Output(), "");
  for (int option = 0; option < 256; ++option)
    talk.Hear("\xFF\xFD" + std::string(1, static_cast<char>(option)));
  EXPECT_EQ(talk.Output().size(), 3U * (256 - 1 - 2)) << "10 and 13 are line ends";
}

TEST_F(SessionTest, SendsOutputInPieces) {
  Command command;
  command.Parse("RTRV-HDR");
  talk.session.Send(command, talk.now);
  std::string sent;
  for (; !talk.session.Output().empty(); talk.session.Sent(1))
    sent += talk.session.Output()[0];
  EXPECT_EQ(sent, "RTRV-HDR:::10;");
  talk.session.Sent(1);
  EXPECT_EQ(talk.session.Output(), "");
}

// The output of an element after each command.
struct Turn {
  std::string command;
  std::string answer;
};

const std::vector<Turn> TURNS = {
    {"ACT-USER", "\xFF\xFB\x01login; <\r\nACT-USER::joe:10::Secret1;\r\n\r\nPF 10\r\n<" + Alarm("7") +
                     Answer("10", "COMPLD", "\"Secret1\"") + "\r\n< "},
    {"RTRV-ALM", Answer("11", "COMPLD", "\"a; > b\"", '>') + Alarm("8") + Answer("11", "COMPLD", "c", '>') +
                     "\r\n   d\r\n;\r\nNE1>"},
    {"RTRV-HDR", Answer("0", "DENY", "/* ; */")},
    {"RTRV-T1", "\r\nIP 13\r\n<\r\nNG 13\r\n<"},
    {"RTRV-T2", Answer("99") + Answer("14", "RTRV", "a") + "\r\n< " + Answer("14", "COMPLD", "b")}};

// Plays all turns; the answer of each is cut into pieces, or into two at a position.
Texts Play(size_t pieceSize, size_t cutTurn = std::string::npos, size_t cutAt = 0) {
  Talk talk(With(8));
  Texts all;
  for (size_t i = 0; i < TURNS.size(); ++i) {
    all.push_back(i == 0 ? talk.LogIn("joe", "Secret1") : talk.Send(TURNS[i].command));
    const std::string& answer = TURNS[i].answer;
    const size_t cut = i == cutTurn ? cutAt : 0;
    for (const std::string_view half :
         {std::string_view(answer).substr(0, cut), std::string_view(answer).substr(cut)}) {
      const Texts events = talk.Hear(half, pieceSize);
      all.insert(all.end(), events.begin(), events.end());
    }
    const std::string output = talk.Output();
    if (!output.empty()) all.push_back(output);
  }
  return all;
}

TEST(Session, EventsDoNotDependOnHowTheBytesAreCut) {
  const Texts whole = Play(0);
  EXPECT_EQ(whole.size(), 16U) << ::testing::PrintToString(whole);
  for (size_t pieceSize = 1; pieceSize < 20; ++pieceSize)
    EXPECT_EQ(Play(pieceSize), whole) << pieceSize;
  for (size_t turn = 0; turn < TURNS.size(); ++turn) {
    for (size_t at = 1; at < TURNS[turn].answer.size(); ++at)
      EXPECT_EQ(Play(0, turn, at), whole) << turn << " " << at;
  }
}

}  // namespace
}  // namespace VARNEL_TEST
