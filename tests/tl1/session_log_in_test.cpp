// Logging in and out, and masking and wiping of passwords.
#include <gtest/gtest.h>

#include <array>

#include "allocation.h"
#include "talk.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_TL1::Command;
using VARNEL_TL1::Event;

TEST_F(SessionTest, LogsInAndOut) {
  EXPECT_EQ(talk.LogOut(), "(false)");
  EXPECT_EQ(talk.LogIn("joe", "Secret1"), "ACT-USER::joe:10::Secret1;");
  EXPECT_EQ(talk.Hear("\r\nPF 10\r\n<" + Answer("10", "COMPLD", "hello")),
            (Texts{"Acknowledgement acknowledgement 10 PF", "LoggedIn response NORTH1 10 COMPLD | hello"}));
  EXPECT_EQ(talk.LogOut(), "CANC-USER::joe:11;");
  EXPECT_EQ(talk.LogOut(), "(false)");
  EXPECT_EQ(talk.Hear("\r\nPF 11\r\n<"), Texts{"Acknowledgement acknowledgement 11 PF"});
  EXPECT_EQ(talk.Hear(Answer("11")), Texts{"LoggedOut response NORTH1 11 COMPLD | \"x\""});
  EXPECT_EQ(talk.Send("RTRV-HDR"), "(the session is over)");
  EXPECT_EQ(talk.LogOut(), "(false)");
  EXPECT_FALSE(talk.session.Deadline());
}

TEST_F(SessionTest, ARefusedLogInCanBeTriedAgain) {
  talk.LogIn("joe", "Secret1");
  EXPECT_EQ(talk.Hear(Answer("0", "DENY", "PIUI")), Texts{"LogInRefused response NORTH1 0 DENY | PIUI"});
  EXPECT_EQ(talk.LogOut(), "(false)");
  talk.LogIn("joe", "Secret1");
  EXPECT_EQ(talk.Hear("\r\nRL 11\r\n<"), Texts{"LogInRefused acknowledgement 11 RL"});
  talk.LogIn("joe", "Secret1");
  EXPECT_EQ(talk.Wait(seconds(30)), Texts{"LogInRefused"});
  EXPECT_EQ(talk.LogOut(), "CANC-USER::joe:13;") << "the log-in may still have been accepted";
}

TEST_F(SessionTest, LogOutAbandonsAPendingCommand) {
  talk.LogIn("joe", "Secret1");
  EXPECT_EQ(talk.LogOut(), "CANC-USER::joe:11;") << "while logging in";
  EXPECT_EQ(talk.Hear(Answer("10")), Texts{std::string("Message ") + SHOWN_COMPLD});
  EXPECT_EQ(talk.Hear("\r\nPF 11\r\n<").size(), 1U);
  EXPECT_EQ(talk.Wait(milliseconds(1999)), Texts());
  EXPECT_EQ(talk.Wait(milliseconds(1)), Texts{"LoggedOut"}) << "which PF does not prolong";

  Talk other(With(8));
  other.LogIn("joe", "Secret1");
  other.Hear(Answer("10"));
  other.Send("RTRV-ALM");
  other.Hear(Answer("11", "COMPLD", "a", '>'));
  EXPECT_EQ(other.LogOut(), "CANC-USER::joe:12;");
  EXPECT_EQ(other.Hear(Answer("12")), (Texts{"Message response NORTH1 11 COMPLD continues incomplete | a",
                                             "LoggedOut response NORTH1 12 COMPLD | \"x\""}));
}

TEST_F(SessionTest, QuotesUserAndPassword) {
  const std::vector<std::array<std::string, 3>> rows = {
      {"joe", "a1B2", "joe:10::a1B2"},
      {"j-o", "1abc", "\"j-o\":11::\"1abc\""},
      {"joe:12::x;CANC-USER", "a\"b\\c;:", "\"joe:12::x;CANC-USER\":12::\"a\\\"b\\\\c;:\""},
      {"\"", "\xC3\xA9 1", "\"\\\"\":13::\"\xC3\xA9 1\""}};
  for (const auto& [user, password, sent] : rows) {
    EXPECT_EQ(talk.LogIn(user, password), "ACT-USER::" + sent + ";");
    talk.Cut();
  }
  talk.LogIn("joe:12::x;CANC-USER", "x");
  EXPECT_EQ(talk.LogOut(), "CANC-USER::\"joe:12::x;CANC-USER\":15;");
}

TEST_F(SessionTest, RefusesALogInThatCannotBeSent) {
  using std::string_literals::operator""s;
  for (const auto& [user, password] :
       std::vector<std::pair<std::string, std::string>>{{"", "x"},
                                                        {"joe\n", "x"},
                                                        {"joe\xFF", "x"},
                                                        {"joe", ""},
                                                        {"joe", "x\ry"},
                                                        {"joe", "x\0"s},
                                                        {"joe", " \"\\"},
                                                        {"joe", std::string(1025, 'x')}}) {
    EXPECT_EQ(talk.LogIn(user, password).front(), '(') << user << password;
    EXPECT_EQ(talk.Output(), "");
  }
  EXPECT_EQ(talk.LogOut(), "(false)");
}

TEST(Session, MasksThePasswordInEveryForm) {
  const std::string password = "Pa\"s:s \\word";
  for (const std::string echo :
       {"Pa\"s:s \\word", "\"Pa\\\"s:s \\\\word\"", "\"ACT-USER:NE1:joe:10::\\\"Pa\\\\\\\"s:s \\\\\\\\word\\\";\"",
        "PA\"S:S \\WORD", "Pa\"\"s:s \\word", "\"x Pa\\\"s:\r\n   s \\\\word\"", "/* Pa\"s:s \\word */"}) {
    Talk talk(With(8));
    talk.LogIn("joe", password);
    const Texts events = talk.Hear(Answer("10", "DENY", echo) + Answer("99", "COMPLD", echo) + HEADER + "*C " +
                                   "7 REPT ALM\r\n   " + echo + "\r\n;");
    ASSERT_EQ(events.size(), 3U) << echo;
    for (const std::string& event : events) {
      EXPECT_NE(event.find("******"), std::string::npos) << event;
      EXPECT_EQ(event.find("word"), std::string::npos) << event;
      EXPECT_EQ(event.find("Pa"), std::string::npos) << event;
    }
  }
}

TEST_F(SessionTest, MasksThePasswordInEveryFieldAndInACutMessage) {
  talk.LogIn("joe", "Secret1");
  talk.session.Receive(
      "\r\n\n   \"Secret1\" 26-03-04 05:06:07\r\n*C 7.secret1 REPT SECRET1\r\n   a secret1secret1 \r\n;", talk.now);
  Event event;
  ASSERT_TRUE(talk.session.Next(event));
  EXPECT_EQ(event.message->sid, "******");
  EXPECT_EQ(event.message->atag, "7.******");
  EXPECT_EQ(event.message->verb, "REPT ******");
  EXPECT_EQ(event.message->text, "   a ************ \r\n");
  EXPECT_EQ(event.message->bytes,
            "\r\n\n   \"******\" 26-03-04 05:06:07\r\n*C 7.****** REPT ******\r\n   a ************ \r\n;");
  talk.Hear(std::string(HEADER) + "M  99 COMPLD\r\n   echo Secr");
  EXPECT_EQ(talk.Cut(), (Texts{"Message response NORTH1 99 COMPLD incomplete | echo ******", "LogInRefused"}));
  talk.Hear(std::string(HEADER) + "M  99 COMPLD\r\n   echo Sec");
  EXPECT_EQ(talk.Cut(), Texts{"Message response NORTH1 99 COMPLD incomplete | echo Sec"});
}

TEST_F(SessionTest, MasksPasswordsThatAUserTyped) {
  const auto echo = [this](const std::string& command, const std::string& text) {
    talk.Send(command);
    talk.Cut();
    const Texts events = talk.Hear(Answer("99", "COMPLD", text));
    return events.at(0).substr(events.at(0).find('|') + 2);
  };
  EXPECT_EQ(echo("ACT-USER::joe:::pa1,;", "joe pa1,"), "joe ******");
  EXPECT_EQ(echo("ed-pid::joe:::\"old,2\",new2;", "old,2 or new2"), "****** or ******");
  EXPECT_EQ(echo("ENT-USER-SECU::joe:::pid3,,MAINT;", "pid3 MAINT"), "****** MAINT");
  EXPECT_EQ(echo("ED-USER-SECU::joe:::,pid4,,MAINT;", "pid4 MAINT"), "****** MAINT");
  EXPECT_EQ(echo("RTRV-USER-SECU::joe:::none;", "none pid4"), "none ******");
  EXPECT_EQ(echo("ACT-USER::joe:::aab5;", "aaab5 aab6 aaaab5"), "a****** aab6 aa******");
}

TEST_F(SessionTest, KeepsALimitedNumberOfTypedPasswords) {
  talk.LogIn("joe", "Secret1");
  talk.Hear(Answer("10"));
  for (int i = 0; i < 100; ++i) {
    talk.Send("ACT-USER::joe:::pass" + std::to_string(100 + i));
    talk.Cut();
  }
  EXPECT_EQ(talk.Hear(Answer("99", "COMPLD", "Secret1 pass100 pass199")),
            Texts{"Message response NORTH1 99 COMPLD | ****** pass100 ******"});
}

TEST(Session, WipesPasswords) {
  const FreedTextWatch watch("S3cret");
  {
    Talk talk;
    talk.session.LogIn("joe", "S3cret 1", talk.now);
    talk.session.Sent(10);
    talk.session.Sent(talk.session.Output().size());
    talk.Cut();
    Command command;
    command.Parse("ED-PID::joe:::\"S3cret 2\",\"S3cret 3\";");
    talk.session.Send(command, talk.now);
  }
  EXPECT_EQ(watch.Found(), 0U);
}

}  // namespace
}  // namespace VARNEL_TEST
