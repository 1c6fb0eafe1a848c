// Single TL1 messages in strict form.
#include <re2/re2.h>
#include <tl1nemsgparse.h>

#include <memory>
#include <regex>
#include <string_view>
#include <tuple>

#include "bench.h"

namespace VARNEL_BENCH {

namespace {

using namespace VARNEL_COMMON;
using re2::StringPiece;

constexpr int ACKNOWLEDGEMENT = 2;
constexpr int RESPONSE = 3;
constexpr int AUTONOMOUS = 4;

// The parts of a message, each in a separate text, as in CTL1NEMsgParse.
struct Fields {
  int type = -1;
  std::string message, echo, sid, date, time, line, code, ctag, atag, verb, block;

  auto All() const { return std::tie(type, message, echo, sid, date, time, line, code, ctag, atag, verb, block); }
};

auto All(const CTL1NEMsgParse& parser) {
  return std::tie(parser.m_nMsgType, parser.m_strNEMsg, parser.m_strEcho, parser.m_strSID, parser.m_strDate,
                  parser.m_strTime, parser.m_strRspLine, parser.m_strRetRspCode, parser.m_strCtag, parser.m_strAtag,
                  parser.m_strVerb, parser.m_strTextBlock);
}

// Pieces, each consumed from the end of the one before: RE2 is slower with one expression for the whole message.
struct Grammar {
  RE2 header{"((?s:.*?))\r\n\n   ([^ ]+) ([^ ]+) ([^\r]+)\r\n", RE2::Latin1};
  RE2 response{"M  ([^ ]+) ([^\r]+)\r", RE2::Latin1};
  RE2 event{"([^ ]+) ( ?[^ ]*) ((?s:.*?))\r", RE2::Latin1};
  RE2 acknowledgement{"([^ ]+) ((?s:.*?))\r\n<", RE2::Latin1};
};

void ParseByRe2(const std::string& message, Fields& fields) {
  static const Grammar grammar;
  StringPiece rest(message);
  if (!RE2::Consume(&rest, grammar.header, &fields.echo, &fields.sid, &fields.date, &fields.time)) {
    if (RE2::FullMatch(rest, grammar.acknowledgement, &fields.code, &fields.ctag)) fields.type = ACKNOWLEDGEMENT;
    return;
  }
  if (RE2::Consume(&rest, grammar.response, &fields.ctag, &fields.code)) {
    fields.type = RESPONSE;
    fields.line = "\r\nM  " + fields.ctag + ' ' + fields.code;
  } else if (RE2::Consume(&rest, grammar.event, &fields.code, &fields.atag, &fields.verb)) {
    fields.type = AUTONOMOUS;
  }
  const std::string_view block(rest.data(), rest.size());
  fields.block = block.substr(0, block.rfind(';'));
}

void ParseByRegex(const std::string& message, Fields& fields) {
  static const std::regex response("([^]*?)\r\n\n   ([^ ]+) ([^ ]+) ([^\r]+)\r\nM  ([^ ]+) ([^\r]+)\r(\n[^]*);[^;]*");
  std::smatch match;
  if (!std::regex_match(message, match, response)) return;
  fields.type = RESPONSE;
  size_t group = 0;
  for (auto part :
       {&Fields::echo, &Fields::sid, &Fields::date, &Fields::time, &Fields::ctag, &Fields::code, &Fields::block}) {
    fields.*part = match[++group].str();
  }
  fields.line = "\r\nM  " + fields.ctag + ' ' + fields.code;
}

// Each parse uses a new object, as for each message of an element.
template <typename Parse>
auto Parsing(const std::string& message, Parse parse) {
  return [&message, parse, fields = std::make_shared<Fields>()] {
    *fields = Fields();
    fields->message = message;
    parse(message, *fields);
    return std::as_const(*fields).All();
  };
}

template <typename Parse>
auto ParsingToTheEnd(const std::string& message, Parse parse) {
  return [&message, parsing = Parsing(message, parse)] {
    const bool ends = message.rfind("\r\n;") != std::string::npos;
    return std::tuple_cat(std::make_tuple(ends), parsing());
  };
}

auto Parse(const std::string& name, const std::string& message) {
  return Row("NEMsgParse", name,
             [&message, parser = std::make_shared<std::unique_ptr<CTL1NEMsgParse>>()] {
               *parser = std::make_unique<CTL1NEMsgParse>(message);
               (*parser)->NEMsgParse();
               return All(**parser);
             })
      .Peer("RE2", Parsing(message, ParseByRe2))
      .Limit("one copy", [&message] { return std::string(message); });
}

void ParseAgain(const std::string& name, const std::string& message) {
  Row("NEMsgParse", name + ", object kept", [parser = std::make_shared<CTL1NEMsgParse>(message)] {
    parser->NEMsgParse();
    return All(*parser);
  }).Peer("RE2", [&message, fields = std::make_shared<Fields>()] {
    fields->message = message;
    ParseByRe2(message, *fields);
    return std::as_const(*fields).All();
  });
}

void ParseEnd(const std::string& name, const std::string& message) {
  Row("ParseMsgEndFlg", name,
      [&message, parser = std::make_shared<CTL1NEMsgParse>("")] {
        const bool ends = parser->ParseMsgEndFlg(message);
        return std::tuple_cat(std::make_tuple(ends), All(*parser));
      })
      .Peer("RE2", ParsingToTheEnd(message, ParseByRe2))
      .Peer("std::regex", ParsingToTheEnd(message, ParseByRegex));
}

auto OneOf(size_t count, const std::string& message) {
  return EachInTurn(
      count, [&message](size_t) { return std::make_unique<CTL1NEMsgParse>(message); },
      [](CTL1NEMsgParse& parser) { return parser.NEMsgParse(); });
}

const std::string HEADER = "\r\n\n   NE-EAST 26-01-15 12:00:00\r\n";

// A response whose text block has about this size.
std::string Response(size_t size) {
  std::string message = HEADER + "M  100 COMPLD\r\n";
  const size_t last = message.size() + size;
  for (size_t slot = 1; message.size() < last; ++slot) {
    message += "   \"SLOT-3-" + std::to_string(slot) +
               ":VNCTL201,STATUS=RUNNING,VERSION=1.02,LOAD=" + std::to_string(slot * 37 % 100) + "\"\r\n";
  }
  return message + ';';
}

}  // namespace

void AddTl1NEMsgParse() {
  Parse("acknowledgement", Keep("IP 100\r\n<"));
  Parse("autonomous message, 150 B",
        Keep(HEADER + "A  701 REPT EVT PROGRESS\r\n   \"SLOT-3:SWDL,TRANSFEREDFILES=4,TOTALNUM=12,:\"\r\n"
                      "   \"MODE=FAST,SOURCE=10.0.0.7\"\r\n;"));
  const std::string& response = Keep(Response(430));
  Parse("response, 520 B", response).Peer("std::regex", Parsing(response, ParseByRegex));
  ParseAgain("response, 520 B", response);
  ParseEnd("response, 520 B", response);
  Parse("response, 64 KB", Keep(Response(64 << 10)));
  Row("NEMsgParse", "100000 messages alive", OneOf(100000, response)).Limit("one message", OneOf(1, response));
}

}  // namespace VARNEL_BENCH
