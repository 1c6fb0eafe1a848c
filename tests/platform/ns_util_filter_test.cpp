#include <gtest/gtest.h>

#include <random>
#include <string>
#include <thread>
#include <vector>

#include "filtered.h"
#include "growth.h"
#include "password_spellings.h"
#include "platform/ns_util.h"

namespace VARNEL_TEST {
namespace {

using NS_UTIL::CDCLogFilter;

TEST(LogFilter, IsOneObject) {
  CDCLogFilter* filter = CDCLogFilter::getInstance();
  EXPECT_NE(filter, nullptr);
  EXPECT_EQ(CDCLogFilter::getInstance(), filter);
  std::thread([filter] { EXPECT_EQ(CDCLogFilter::getInstance(), filter); }).join();
}

TEST(LogFilter, EveryKeyInAnyCase) {
  for (const char* key : {"PASSWORD", "PASSWD", "PWD", "PSWD", "SECRET", "TOKEN", "password", "Passwd", "pWd", "psWD",
                          "Secret", "token"}) {
    for (const char* separator : {"=", ":", " = ", " : ", "= ", " =", "\t=\t", ":  "})
      EXPECT_EQ(Filtered(std::string("a ") + key + separator + "hunter2 b"),
                std::string("a ") + key + separator + "****** b");
  }
}

TEST(LogFilter, ValuesWithoutQuotes) {
  ExpectMasked({
      {"PWD=hunter2", "PWD=******"},
      {"PWD=x", "PWD=******"},
      {"PWD=hunter2,USER=bob", "PWD=******,USER=bob"},
      {"PWD=hunter2;USER=bob", "PWD=******;USER=bob"},
      {"PWD=hunter2\nUSER=bob", "PWD=******\nUSER=bob"},
      {"PWD=hunter2\r\n", "PWD=******\r\n"},
      {"PWD=h=u:n\"t'e/r\\2", "PWD=******"},
      {"PWD==x", "PWD=******"},
      {"PWD:=x", "PWD:******"},
      {"LOGIN:NAME=bob,PWD=hunter2;", "LOGIN:NAME=bob,PWD=******;"},
      {"https://host/?token=hunter2&x=1 GET", "https://host/?token=****** GET"},
  });
}

TEST(LogFilter, QuotedValues) {
  ExpectMasked({
      {R"(PWD="hunter 2",USER="bob")", R"(PWD="******",USER="bob")"},
      {R"(PWD='hunter 2',USER='bob')", R"(PWD='******',USER='bob')"},
      {R"(PWD = "a;b, c" x)", R"(PWD = "******" x)"},
      {R"(PWD="it's" x)", R"(PWD="******" x)"},
      {R"(PWD='say "x"' y)", R"(PWD='******' y)"},
      {R"(PWD="" x)", R"(PWD="******" x)"},
      {R"(PWD='', x)", R"(PWD='******', x)"},
      {"PWD=\"two\nlines\" x", "PWD=\"******\" x"},
  });
}

TEST(LogFilter, EscapedAndDoubledQuotes) {
  ExpectMasked({
      {R"(PWD="a\"b c" x)", R"(PWD="******" x)"},
      {R"(PWD='a\'b c' x)", R"(PWD='******' x)"},
      {R"(PWD="a\\" x)", R"(PWD="******" x)"},
      {R"(PWD="a\\\"b c" x)", R"(PWD="******" x)"},
      {R"(PWD="a""b c" x)", R"(PWD="******" x)"},
      {R"(PWD='a''b c' x)", R"(PWD='******' x)"},
      {R"(PWD="""a b""" x)", R"(PWD="******" x)"},
  });
}

TEST(LogFilter, UnclosedQuotesExtendToTheEnd) {
  ExpectMasked({
      {"PWD=\"hunter 2; x", "PWD=\"******"},
      {"PWD='hunter 2; x", "PWD='******"},
      {"PWD=\"", "PWD=\"******"},
      {"PWD=\"hunter\\", "PWD=\"******"},
      {"PWD=\"hunter\\\" 2", "PWD=\"******"},
      {"PWD=\"it's 'x' y", "PWD=\"******"},
      {R"(PWD=\"hunter 2; x)", R"(PWD=\"******)"},
      {R"(PWD=\"hunter 2\)", R"(PWD=\"******)"},
  });
}

TEST(LogFilter, Json) {
  ExpectMasked({
      {R"({"user":"bob","password":"hunter 2"})", R"({"user":"bob","password":"******"})"},
      {R"({"token" : "a\"b\\", "x": 1})", R"({"token" : "******", "x": 1})"},
      {R"({'secret': 'hunter 2'})", R"({'secret': '******'})"},
      {R"({"pwd":123,"x":1})", R"({"pwd":******,"x":1})"},
      {R"({"token": {"secret": "hunter 2"}, "x": 1})", R"({"token": ******, "x": 1})"},
  });
}

TEST(LogFilter, JsonInsideAQuotedText) {
  ExpectMasked({
      {R"("{\"password\":\"hunter, 2\",\"x\":1}")", R"("{\"password\":\"******\",\"x\":1}")"},
      {R"("{\"password\": \"a\\\"b c\", \"x\": 1}")", R"("{\"password\": \"******\", \"x\": 1}")"},
      {R"("{\"password\":\"a b\\\\\",\"x\":1}")", R"("{\"password\":\"******\",\"x\":1}")"},
      {R"("{\"password\":\"a\nb\\nc\"}")", R"("{\"password\":\"******\"}")"},
  });
}

TEST(LogFilter, KeysWithAPrefix) {
  ExpectMasked({
      {"NEW_PASSWORD=hunter2", "NEW_PASSWORD=******"},
      {"OLDPWD=a,NEWPWD=b", "OLDPWD=******,NEWPWD=******"},
      {"--db.password=hunter2", "--db.password=******"},
      {"\"access_token\":\"hunter2\"", "\"access_token\":\"******\""},
  });
}

TEST(LogFilter, KeyInTheValueOfAKey) {
  ExpectMasked({
      {"PWD=TOKEN=hunter2 x", "PWD=****** x"},
      {"invalid password: PWD = hunter2 x", "invalid password: ****** x"},
      {"invalid password: PWD = \"hunter 2\" x", "invalid password: ****** x"},
      {"invalid password: PWD=\"hunter 2\" x", "invalid password: ****** x"},
      {"invalid password: {PWD: 'hunter 2', x}", "invalid password: ******"},
      {"token:(secret:pwd: hunter2)", "token:******"},
      {R"(password: {\"PWD\": \"hunter 2\"} x)", "password: ****** x"},
  });
}

TEST(LogFilter, QuotedKeyAsAValue) {
  ExpectMasked({
      {R"(PWD= "PASSWORD"="hunter 2" x)", R"(PWD= "******" x)"},
      {R"(pwd: 'user_token' : 'hunter 2' x)", R"(pwd: '******' x)"},
      {R"(pwd:\"token\":\"hunter 2\" x)", R"(pwd:\"******\" x)"},
      {R"(pwd="token"="secret":hunter2 x)", R"(pwd=****** x)"},
      {R"(pwd="a token=b c" x)", R"(pwd="******" x)"},
      {R"(pwd="token\"=b c" x)", R"(pwd="******" x)"},
      {R"(secret=apwd: "passwd" : "hunter 2"; z)", R"(secret=******; z)"},
  });
}

TEST(LogFilter, SeveralInOneText) {
  ExpectMasked({
      {"PWD=a TOKEN:b SECRET='c d',PASSWD=\"e f\";PSWD=g",
       "PWD=****** TOKEN:****** SECRET='******',PASSWD=\"******\";PSWD=******"},
      {"PWD=a;ACT-USER:NE1:bob:1::b c;PWD=d", "PWD=******;ACT-USER:NE1:bob:1::******;PWD=******"},
  });
}

TEST(LogFilter, BytesOfEveryKind) {
  using namespace std::string_literals;
  ExpectMasked({
      {"\0\0PWD=hunter2 \0x"s, "\0\0PWD=****** \0x"s},
      {"PWD=a\0b\0 x"s, "PWD=****** x"s},
      {"PWD=\"a\0b c\"\0"s, "PWD=\"******\"\0"s},
      {"\xFFPWD=\x80\xFF\xA3\xA3 \xFF", "\xFFPWD=****** \xFF"},
      {"ACT-USER:\xFF:\0:1::\x80\0b;\xFF"s, "ACT-USER:\xFF:\0:1::******;\xFF"s},
  });
}

TEST(LogFilter, Tl1Commands) {
  ExpectMasked({
      {"ACT-USER:NE1:bob:100::hunter2;", "ACT-USER:NE1:bob:100::******;"},
      {"ACT-USER::bob:::hunter2;", "ACT-USER::bob:::******;"},
      {"ACT-USER:::::hunter2", "ACT-USER:::::******"},
      {"act-user:ne1:bob:100::hunter2;", "act-user:ne1:bob:100::******;"},
      {"> ACT-USER:NE1:bob:100:GB=1:hunter2:X=1;", "> ACT-USER:NE1:bob:100:GB=1:******:X=1;"},
      {"ED-PID:NE1:bob:100::hunter2,hunter3;", "ED-PID:NE1:bob:100::******;"},
      {"ENT-USER-SECU:NE1:bob:100::hunter2,,UAP3:TMOUT=1;", "ENT-USER-SECU:NE1:bob:100::******:TMOUT=1;"},
      {"ED-USER-SECU::bob:100::,hunter2,,;", "ED-USER-SECU::bob:100::******;"},
  });
}

TEST(LogFilter, Tl1QuotedBlocks) {
  ExpectMasked({
      {R"(ACT-USER:"a:b;":"bo:b":100::hunter2;)", R"(ACT-USER:"a:b;":"bo:b":100::******;)"},
      {R"(ACT-USER:NE1:"say \":\"":100::hunter2;)", R"(ACT-USER:NE1:"say \":\"":100::******;)"},
      {R"(ACT-USER:NE1:bob:100::"a:b;c";)", R"(ACT-USER:NE1:bob:100::******;)"},
      {R"(ACT-USER:NE1:bob:100::"a\";b";)", R"(ACT-USER:NE1:bob:100::******;)"},
      {R"(ACT-USER:NE1:bob:100::"a"";b";)", R"(ACT-USER:NE1:bob:100::******;)"},
      {R"(ED-PID:NE1:bob:100::"a;b","c:d";)", R"(ED-PID:NE1:bob:100::******;)"},
      {R"(ACT-USER:NE1:bob:100::"never closed; x)", R"(ACT-USER:NE1:bob:100::******)"},
      {R"(ACT-USER:NE"1:bob:100::hunter2;)", R"(ACT-USER:NE"1:bob:100::******;)"},
      {R"(ACT-USER:NE1:pwd:100::"hunter 2; x";)", R"(ACT-USER:NE1:pwd:******;)"},
  });
}

TEST(LogFilter, SeveralTl1Commands) {
  ExpectMasked({
      {"ACT-USER:NE1:bob:1::a;ED-PID:NE1:bob:2::a,b;RTRV-HDR:NE1::3;",
       "ACT-USER:NE1:bob:1::******;ED-PID:NE1:bob:2::******;RTRV-HDR:NE1::3;"},
      {"ACT-USER:NE1:bob:1::;ACT-USER:NE1:bob:1::a;", "ACT-USER:NE1:bob:1::;ACT-USER:NE1:bob:1::******;"},
      {"ACT-USER:ACT-USER:NE1:bob:1::a;", "ACT-USER:ACT-USER:NE1:bob:1::******;"},
  });
}

TEST(LogFilter, Tl1NameBeforeTheCommand) {
  ExpectMasked({
      {"ED-PID: ED-PID:NE1:bob:7:g:hunter2;", "ED-PID: ED-PID:NE1:bob:7:******:******;"},
      {"PWD=\"ED-PID:x\" ED-PID::::g:\"hunter2\"; y", "PWD=\"******\" ED-PID::::g:******; y"},
      {"ACT-USER:NE1:bob:7::\"a ED-PID:b\"; ED-PID:::::c;", "ACT-USER:NE1:bob:7::******; ED-PID:::::******;"},
  });
}

// A key must not hide the password of a command, nor a command that of a key: the blocks of a command could extend to
// the next key, the quote of a value to the next quote.
TEST(LogFilter, CommandInTheValueOfAKey) {
  ExpectMasked({
      {R"(\"PASSWORD\" : \"ED-PID:x\"; a:b:c, Pwd : hunter2, Pwd : secret2, z)",
       R"(\"PASSWORD\" : \"******\"; a:b:c, Pwd : ******, Pwd : ******, z)"},
      {"pwd=ED-PID:a b:c:d:e, pwd: f", "pwd=****** b:c:d:e, pwd:******"},
  });
}

TEST(LogFilter, KeyInThePasswordOfACommand) {
  ExpectMasked({
      {"ACT-USER:::::\"pwd='\"; PASSWORD='hunter2' z", "ACT-USER:::::******; PASSWORD='******' z"},
      {"ACT-USER:NE1:PWD=a:b c::hunter2; z", "ACT-USER:NE1:PWD=****** c::******; z"},
  });
}

TEST(LogFilter, OtherTextsAreUnchanged) {
  for (const char* text : {"",
                           "COMPLETE",
                           "COMPLD",
                           "=:=:\"'",
                           "\"keyword\"",
                           "keyword=x",
                           "PWDX=1",
                           "PASSWORDS: 3",
                           "secretary: Bob",
                           "password",
                           "the password has changed",
                           "PWD=",
                           "PWD= ",
                           "PWD=;x",
                           "PWD=,x",
                           "PWD=\nx",
                           "PWD\n=x",
                           "PWD=,x=1",
                           "line \"PWD:\" is not correct, file /a/b.pkg, errno 2",
                           "{\"msg\":\"enter password:\",\"file\":\"/a/b.pkg\"}",
                           "PWD x=1",
                           "\"PWD\",\"x\"",
                           "ACT-USER:NE1:bob:100::;",
                           "ACT-USER:NE1:bob:100;",
                           "ACT-USER",
                           "CANC-USER:NE1:bob:100::x;",
                           "RTRV-USER-SECU:NE1:bob:100::x;",
                           "SetMsg: nDataLen beyond max, nDataLen:10485760, m_nBufLen:7",
                           "GetMsg:m_nBufLen < offset,m_nBufLen:12,offset:20",
                           "readZEPFileHead(): KELP_OS::fopen failed! filename:/opt/a.bin. errno:2",
                           "CPkgFile::ParsePkgSoftInfo(): , not find [File Description], File: /opt/pkg",
                           "isColdPatch not find coldpatch, File: /opt/it's \"here\"",
                           "realpath failed. file:/opt/passwd. "})
    EXPECT_EQ(Filtered(text), text);
}

TEST(LogFilter, GeneratedPasswordsAreMaskedInEverySpelling) {
  std::mt19937 random(20200101);
  std::vector<size_t> tried(Spellings().size());
  for (int i = 0; i < 3000; ++i) {
    const std::string password = GeneratePassword(random);
    for (size_t s = 0; s < Spellings().size(); ++s) {
      const Spelling& spelling = Spellings()[s];
      const std::string text = spelling.write(password);
      if (text.empty()) continue;
      ++tried[s];
      ASSERT_EQ(Filtered(text), spelling.masked) << spelling.name << ": " << ::testing::PrintToString(text);
    }
  }
  for (size_t s = 0; s < tried.size(); ++s)
    EXPECT_GT(tried[s], 300U) << Spellings()[s].name;
}

TEST(LogFilter, TimeIsLinear) {
  for (const char* unit : {"ACT-USER:",
                           "ACT-USER:a\"",
                           "ACT-USER:a\"::::x",
                           "ACT-USER:::::x\"",
                           "ACT-USER:\"\\",
                           "ACT-USER:\\\"a:b:c:d:e;",
                           "ACT-USER:\"a:b:c:d:e;",
                           "ACT-USER ",
                           "ACT-USER:\n",
                           "PWD=",
                           "PWD=x ",
                           "PWD=\"",
                           "PWD='",
                           "PWD=\\\"",
                           "PWD=\"\"",
                           "PWD=\"'",
                           "PWD: ",
                           "PWD",
                           "\"",
                           "'",
                           "\"\"",
                           "\\",
                           "\\\"",
                           ":",
                           "=",
                           " ",
                           "\n",
                           "PWD ",
                           "\"PWD\"\n",
                           "PWD\\",
                           "PWD=\"\\",
                           "PWD= =",
                           "PWD=\\n",
                           "token:{",
                           "token:(\"",
                           "x",
                           "PWD=\"a\" '",
                           "--pwd ",
                           "--pwd \\\n",
                           "<pwd>",
                           "<pwd>x</pwd>",
                           "<pwd ",
                           "<a pwd=",
                           "</pwd",
                           "</pwd><pwd>",
                           "<![CDATA[",
                           "<x>'PWD=\"",
                           "a://b:c",
                           "a://b:@",
                           "`",
                           "PWD=\u201C",
                           "PWD=&quot;",
                           "PWD=\\u0022\\\\u0022",
                           "PWD='\\''",
                           "'\"'\"'",
                           "\"PWD='"}) {
    const auto prepare = [&](size_t size) {
      std::string text;
      while (text.size() < size)
        text += unit;
      return text;
    };
    EXPECT_LT(Growth(4096, prepare, [](const std::string& text) { EXPECT_FALSE(Filtered(text).empty()); }),
              LINEAR_GROWTH)
        << unit;
  }
}

TEST(LogFilter, ThreadsMayFilterConcurrently) {
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([] {
      for (int i = 0; i < 500; ++i) {
        const std::string number = std::to_string(i);
        EXPECT_EQ(Filtered("PWD=\"x y\" " + number + " ACT-USER:a:b:c::d;"),
                  "PWD=\"******\" " + number + " ACT-USER:a:b:c::******;");
      }
    });
  }
  for (std::thread& thread : threads)
    thread.join();
}

}  // namespace
}  // namespace VARNEL_TEST
