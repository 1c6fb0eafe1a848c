#include <gtest/gtest.h>

#include "arguments.h"
#include "man_page.h"
#include "option_view.h"
#include "wrap.h"

namespace VARNEL_TEST {

namespace {

using Lines = std::vector<std::string>;

std::string PageOf(const std::string& text) {
  Command command("Show a thing", "show");
  command.explanation = {{"", {{"", text}}}};
  return ManPage(command, "");
}

bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST(Wrapped, CutsAtBlanksBeforeTheWidthIsExceeded) {
  EXPECT_EQ((Lines{"one two", "three"}), Wrapped("one two three", 7));
  EXPECT_EQ((Lines{"one", "two", "three"}), Wrapped("one  two three", 6));
}

TEST(Wrapped, LeavesLongWordsWhole) {
  EXPECT_EQ((Lines{"a", "lengthy", "b"}), Wrapped("a lengthy b", 3));
  EXPECT_EQ(Lines{""}, Wrapped("", 3));
}

TEST(ManPage, EscapesWhatTroffTakesForItsOwn) {
  EXPECT_TRUE(Holds(PageOf("a \\n 'b' --c \"d\" `^~"), "\na \\en \\(aqb\\(aq \\-\\-c \\(dqd\\(dq \\(ga\\(ha\\(ti\n"));
}

TEST(ManPage, LetsNoTextBecomeARequest) {
  const std::string page = PageOf(".so x. .TH y. 'z");
  EXPECT_TRUE(Holds(page, "\n\\&.so x.\n\\&.TH y.\n\\(aqz\n")) << page;
}

TEST(ManPage, LetsNoWrappedLineBecomeARequest) {
  EXPECT_TRUE(Holds(PageOf(std::string(70, 'x') + " .requested"), "x\n\\&.requested\n"));
}

TEST(ManPage, BeginsTheNameInLowerCase) {
  EXPECT_TRUE(Holds(PageOf("text"), ".SH NAME\nshow \\- show a thing\n"));
}

TEST(ManPage, RefusesWhatItCannotPrint) {
  EXPECT_THROW(PageOf("caf\xC3\xA9"), std::invalid_argument);
  EXPECT_THROW(PageOf("a\tb"), std::invalid_argument);
}

class OptionViewTest : public testing::Test {
 protected:
  OptionView TheOption() const { return Options(m_command).at(1); }  // behind --help

  Command m_command{"Show a thing", "show"};
  std::string m_text = "five";
  std::vector<std::string> m_list;
  bool m_flag = false;
};

TEST_F(OptionViewTest, TellsTheDefault) {
  m_command.add_option("-n,--name", m_text, "A name")->capture_default_str()->type_name("TEXT");
  const OptionView view = TheOption();
  EXPECT_EQ((Lines{"-n", "--name"}), view.names);
  EXPECT_EQ("TEXT", view.argument);
  EXPECT_EQ("A name (default: five)", view.text);
}

TEST_F(OptionViewTest, TellsTheValuesOfAList) {
  m_command.add_option("--kind", m_list, "Kinds")->type_name("LIST")->delimiter(',')->check(OneOf({"old", "new"}));
  const OptionView view = TheOption();
  EXPECT_EQ("LIST", view.argument);
  EXPECT_EQ((Lines{"old", "new"}), view.choices);
  EXPECT_EQ("Kinds (values: old, new; several are separated by commas)", view.text);
}

TEST_F(OptionViewTest, TellsWhatGoesTogetherInTheSameOrderAlways) {
  CLI::Option* first = m_command.add_flag("--first", m_flag, "First");
  for (const char* name : {"--d", "--b", "--c", "--a"})
    first->excludes(m_command.add_flag(name));
  EXPECT_EQ("First (not with --a, --b, --c, --d)", TheOption().text);
  EXPECT_EQ("", TheOption().argument);
}

TEST_F(OptionViewTest, KeepsColonsOfAnArgument) {
  m_command.add_option("--connect", m_text, "Where")->type_name("HOST:PORT");
  EXPECT_EQ("HOST:PORT", TheOption().argument);
  EXPECT_TRUE(TheOption().choices.empty());
}

TEST_F(OptionViewTest, ShowsOperandsAsTheyMayBeGiven) {
  m_command.add_option("FILE", m_text, "A file")->required();
  m_command.add_option("TEXT", m_list, "Texts");
  EXPECT_EQ((Lines{"[OPTIONS]", "FILE", "[TEXT...]"}), Operands(m_command));
}

}  // namespace

}  // namespace VARNEL_TEST
