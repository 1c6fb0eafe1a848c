#include <gtest/gtest.h>
#include <varnel_tl1/command.h>

#include <new>

#include "allocation.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_TL1::Command;

Command Parsed(std::string_view text) {
  Command command;
  EXPECT_EQ(command.Parse(text), nullptr) << text;
  return command;
}

std::string MaskedText(std::string_view text) {
  return Parsed(text).Masked();
}

TEST(Command, ParsesBlocks) {
  const Command command = Parsed("  RTRV-ALM-ALL:NE1:\"a:b;\\\"\":12::NTFNCDE=CR,\"x\":more; ");
  EXPECT_EQ(command.Text(), "RTRV-ALM-ALL:NE1:\"a:b;\\\"\":12::NTFNCDE=CR,\"x\":more;");
  EXPECT_EQ(command.Block(Command::VERB), "RTRV-ALM-ALL");
  EXPECT_EQ(command.Block(Command::TID), "NE1");
  EXPECT_EQ(command.Block(Command::AID), "\"a:b;\\\"\"");
  EXPECT_EQ(command.Block(Command::CTAG), "12");
  EXPECT_EQ(command.Block(Command::GENERAL), "");
  EXPECT_EQ(command.Block(Command::DATA), "NTFNCDE=CR,\"x\"");
  EXPECT_EQ(command.Block(Command::DATA + 1), "more");
  EXPECT_EQ(command.Block(Command::DATA + 2), "");
}

TEST(Command, AddsTheSemicolon) {
  EXPECT_EQ(Parsed("rtrv-hdr").Text(), "rtrv-hdr;");
  EXPECT_EQ(Parsed("RTRV_HDR::\"\xC3\xBC;\"").Text(), "RTRV_HDR::\"\xC3\xBC;\";");
}

TEST(Command, RefusesTextsThatCannotBeSent) {
  using std::string_view_literals::operator""sv;
  for (const std::string_view text : std::initializer_list<std::string_view>{
           ""sv, " ", ";", ":NE1;", "7-UP;", "RTRV ALM;", "A;B", "A;;", "A:;:", "A::\"b;", "A::\"b\\\";", "A:\n;",
           "A:\t;", "A:\0;"sv, "A:\x7F;", "A:\xFF;", "A:::1 2;", "A:::\"1\";", "A:::1\xC3\xBC;"}) {
    Command command = Parsed("RTRV-HDR:NE1;");
    EXPECT_NE(command.Parse(text), nullptr) << text;
    EXPECT_EQ(command.Text(), "RTRV-HDR:NE1;") << "unchanged";
  }
}

TEST(Command, IsLimited) {
  Command command;
  const std::string longest = "A:" + std::string(Command::MAX_LENGTH - 3, 'x');
  EXPECT_EQ(command.Parse(longest), nullptr);
  EXPECT_EQ(command.Text().size(), Command::MAX_LENGTH);
  EXPECT_NE(command.Parse(longest + "x"), nullptr);
  EXPECT_NE(command.Parse(longest + "x;"), nullptr);
  EXPECT_NE(command.SetBlock(std::string::npos, ""), nullptr);
}

TEST(Command, IsBuiltBlockByBlock) {
  Command command;
  EXPECT_NE(command.SetBlock(Command::TID, "NE1"), nullptr) << "no verb yet";
  EXPECT_EQ(command.SetBlock(Command::VERB, "ED-T1"), nullptr);
  EXPECT_EQ(command.SetBlock(Command::CTAG, "7"), nullptr);
  EXPECT_EQ(command.Text(), "ED-T1:::7;");
  EXPECT_EQ(command.SetBlock(Command::TID, "NE1"), nullptr);
  EXPECT_EQ(command.SetBlock(Command::CTAG, "1234"), nullptr);
  EXPECT_EQ(command.Text(), "ED-T1:NE1::1234;");
  EXPECT_EQ(command.SetBlock(Command::TID, command.Block(Command::CTAG)), nullptr) << "a part of itself";
  EXPECT_EQ(command.Text(), "ED-T1:1234::1234;");
  for (const char* const block : {"a:b", "a;b", "\"a", "a\r"}) {
    EXPECT_NE(command.SetBlock(Command::AID, block), nullptr) << block;
    EXPECT_EQ(command.Text(), "ED-T1:1234::1234;");
  }
}

TEST(Command, QuotesParametersWhereNeeded) {
  Command command = Parsed("ED-T1");
  const std::vector<Command::Parameter> parameters = {
      {"", "CR"},         {"", ""},      {"", "SLOT-1/2.3_4"}, {"NAME", "a, b"},
      {"NOTE", "a\"b\\"}, {"EMPTY", ""}, {"", "X=Y:1;"},       {"CITY", "K\xC3\xB6ln"}};
  EXPECT_EQ(command.SetParameters(Command::DATA, parameters), nullptr);
  EXPECT_EQ(command.Text(),
            "ED-T1:::::CR,,SLOT-1/2.3_4,NAME=\"a, b\",NOTE=\"a\\\"b\\\\\",EMPTY=,\"X=Y:1;\",CITY=\"K\xC3\xB6ln\";");
  EXPECT_NE(command.SetParameters(Command::DATA, {{"A B", "1"}}), nullptr);
  EXPECT_NE(command.SetParameters(Command::DATA, {{"A", "1\n2"}}), nullptr);
  EXPECT_EQ(command.SetParameters(Command::DATA, {}), nullptr);
  EXPECT_EQ(command.Text(), "ED-T1:::::;");
}

TEST(Command, MasksThePasswordBlock) {
  EXPECT_EQ(MaskedText("ACT-USER:NE1:joe:1::pass;"), "ACT-USER:NE1:joe:1::******;");
  EXPECT_EQ(MaskedText("act-user:NE1:joe:1::\"a:b;c\\\"\";"), "act-user:NE1:joe:1::******;");
  EXPECT_EQ(MaskedText("ED-PID::\"j:o\":1::old,new;"), "ED-PID::\"j:o\":1::******;");
  EXPECT_EQ(MaskedText("ENT-USER-SECU:::1::pass,,A:x=y;"), "ENT-USER-SECU:::1::******:x=y;");
  EXPECT_EQ(MaskedText("ED-USER-SECU:::1::,pass;"), "ED-USER-SECU:::1::******;");
  for (const char* const text : {"ACT-USER:NE1:joe:1::;", "ACT-USER;", "CANC-USER:::1::x;", "RTRV-USER-SECU:::1::x;"})
    EXPECT_EQ(MaskedText(text), text);
}

TEST(Command, CopiesAreIndependent) {
  Command command = Parsed("RTRV-HDR");
  Command copy(command);
  command.SetBlock(Command::TID, "NE1");
  EXPECT_EQ(copy.Text(), "RTRV-HDR;");
  copy = command;
  EXPECT_EQ(copy.Text(), "RTRV-HDR:NE1;");
  copy = *&copy;
  EXPECT_EQ(copy.Text(), "RTRV-HDR:NE1;");
  copy = Command();
  EXPECT_EQ(copy.Text(), "");
}

TEST(Command, WipesItsText) {
  const FreedTextWatch watch("S3cret");
  {
    Command command = Parsed("ACT-USER:NE1:joe:1::\"S3cret\";");
    const Command copy(command);
    command.SetParameters(Command::DATA, {{"", "S3cret."}});
    command.SetBlock(Command::DATA + 1, "more");
    command = Parsed("RTRV-HDR");
  }
  EXPECT_EQ(watch.Found(), 0U);
}

TEST(Command, IsUnchangedIfMemoryRunsOut) {
  const std::string longText(300, 'x');
  const Command before = Parsed("ED-T1:" + longText);
  Command command = before;
  const auto unchanged = [&] { EXPECT_EQ(command.Text(), before.Text()); };
  size_t failures = FailEachAllocation([&] { command.Parse("RTRV-ALM:" + longText); }, unchanged);
  command = before;
  failures += FailEachAllocation([&] { command.SetParameters(Command::AID, {{"A", longText + "\""}}); }, unchanged);
  command = before;
  const Command other = Parsed("RTRV-HDR");
  failures += FailEachAllocation([&] { command = other; }, unchanged);
  failures += FailEachAllocation([&] { EXPECT_FALSE(before.Masked().empty()); }, [] {});
  EXPECT_GT(failures, 8U);
}

}  // namespace
}  // namespace VARNEL_TEST
