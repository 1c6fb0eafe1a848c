// TL1: messages taken apart, and streams cut into messages.
#include <re2/re2.h>
#include <tl1nemsgparse.h>
#include <varnel_tl1/tl1.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <regex>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "inputs.h"
#include "row.h"
#include "services.h"

namespace VARNEL_BENCH {

namespace {

using namespace VARNEL_COMMON;
using re2::StringPiece;

constexpr int NONE = -1;
constexpr int ACKNOWLEDGEMENT = 2;
constexpr int RESPONSE = 3;
constexpr int AUTONOMOUS = 4;

// The parts of a message, in texts of their own or as views.
template <typename Text>
struct Fields {
  int type = NONE;
  Text message, echo, sid, date, time, line, code, ctag, atag, verb, block;

  auto All() const { return std::tie(type, message, echo, sid, date, time, line, code, ctag, atag, verb, block); }
};

auto All(const CTL1NEMsgParse& parser) {
  return std::tie(parser.m_nMsgType, parser.m_strNEMsg, parser.m_strEcho, parser.m_strSID, parser.m_strDate,
                  parser.m_strTime, parser.m_strRspLine, parser.m_strRetRspCode, parser.m_strCtag, parser.m_strAtag,
                  parser.m_strVerb, parser.m_strTextBlock);
}

// A grammar in pieces, each consumed from where the one before ended: faster than one expression for the whole, whose
// parts RE2 would have to tell apart by its slowest engine in a large message.
struct Grammar {
  RE2 header{"((?s:.*?))\r\n\n   ([^ ]+) ([^ ]+) ([^\r]+)\r\n", RE2::Latin1};
  RE2 response{"M  ([^ ]+) ([^\r]+)\r", RE2::Latin1};
  RE2 event{"([^ ]+) ( ?[^ ]*) ((?s:.*?))\r\n   ", RE2::Latin1};
  RE2 acknowledgement{"([^ ]+) ((?s:.*?))\r\n<", RE2::Latin1};
};

constexpr size_t INDENT = 3;

// The text block, which begins with the LF of the line in front of it.
std::string_view BlockOf(StringPiece rest) {
  const std::string_view block(rest.data(), rest.size());
  return block.substr(0, block.rfind(';'));
}

std::string ResponseLine(const Fields<std::string>& fields) {
  return "\r\nM  " + fields.ctag + ' ' + fields.code;
}

void ParseByRe2(const std::string& message, Fields<std::string>& fields) {
  static const Grammar grammar;
  StringPiece rest(message);
  if (!RE2::Consume(&rest, grammar.header, &fields.echo, &fields.sid, &fields.date, &fields.time)) {
    if (RE2::FullMatch(rest, grammar.acknowledgement, &fields.code, &fields.ctag)) fields.type = ACKNOWLEDGEMENT;
  } else if (RE2::Consume(&rest, grammar.response, &fields.ctag, &fields.code)) {
    fields.type = RESPONSE;
    fields.line = ResponseLine(fields);
    fields.block = BlockOf(rest);
  } else if (RE2::Consume(&rest, grammar.event, &fields.code, &fields.atag, &fields.verb)) {
    fields.type = AUTONOMOUS;
    const char* start = rest.data() - INDENT - 1;
    fields.block = BlockOf({start, static_cast<size_t>(message.data() + message.size() - start)});
  }
}

void ParseByRegex(const std::string& message, Fields<std::string>& fields) {
  static const std::regex response("([^]*?)\r\n\n   ([^ ]+) ([^ ]+) ([^\r]+)\r\nM  ([^ ]+) ([^\r]+)\r(\n[^]*);[^;]*");
  static const std::regex event(
      "([^]*?)\r\n\n   ([^ ]+) ([^ ]+) ([^\r]+)\r\n([^ ]+) ( ?[^ ]*) ([^]*?)\r(\n   [^]*);[^;]*");
  static const std::regex acknowledgement("([^ ]+) ([^]*?)\r\n<");
  const auto fill = [](const std::smatch& match, std::initializer_list<std::string*> texts) {
    size_t group = 0;
    for (std::string* text : texts)
      *text = match[++group].str();
  };
  std::smatch match;
  if (std::regex_match(message, match, response)) {
    fields.type = RESPONSE;
    fill(match, {&fields.echo, &fields.sid, &fields.date, &fields.time, &fields.ctag, &fields.code, &fields.block});
    fields.line = ResponseLine(fields);
  } else if (std::regex_match(message, match, event)) {
    fields.type = AUTONOMOUS;
    fill(match, {&fields.echo, &fields.sid, &fields.date, &fields.time, &fields.code, &fields.atag, &fields.verb,
                 &fields.block});
  } else if (std::regex_match(message, match, acknowledgement)) {
    fields.type = ACKNOWLEDGEMENT;
    fill(match, {&fields.code, &fields.ctag});
  }
}

// Takes what stands before `end` off the front of a text, and the end with it; everything where there is none.
std::string_view TakeUpTo(std::string_view& text, std::string_view end) {
  const size_t found = std::min(text.find(end), text.size());
  const std::string_view taken = text.substr(0, found);
  text.remove_prefix(std::min(found + end.size(), text.size()));
  return taken;
}

void ParseByViews(std::string_view rest, Fields<std::string_view>& fields) {
  if (rest.find("\r\n\n   ") == std::string_view::npos) {
    fields.type = ACKNOWLEDGEMENT;
    fields.code = TakeUpTo(rest, " ");
    fields.ctag = TakeUpTo(rest, "\r\n<");
    return;
  }
  fields.echo = TakeUpTo(rest, "\r\n\n   ");
  fields.sid = TakeUpTo(rest, " ");
  fields.date = TakeUpTo(rest, " ");
  fields.time = TakeUpTo(rest, "\r\n");
  if (rest.substr(0, INDENT) == "M  ") {
    fields.type = RESPONSE;
    rest.remove_prefix(INDENT);
    fields.ctag = TakeUpTo(rest, " ");
    fields.code = TakeUpTo(rest, "\r");
  } else {
    fields.type = AUTONOMOUS;
    fields.code = TakeUpTo(rest, "  ");
    fields.atag = TakeUpTo(rest, " ");
    fields.verb = TakeUpTo(rest, "\r");
  }
  fields.block = rest.substr(0, rest.rfind(';'));
}

// Each parse begins with fresh fields, as for each message that comes.
template <typename Text, typename Parse>
auto Parsing(const std::string& message, Parse parse) {
  return [&message, parse, fields = std::make_shared<std::optional<Fields<Text>>>()] {
    fields->emplace().message = message;
    parse(message, **fields);
    return std::as_const(**fields).All();
  };
}

template <typename Text, typename Parse>
auto ParsingToTheEnd(const std::string& message, Parse parse) {
  return [&message, parse, fields = std::make_shared<std::optional<Fields<Text>>>()] {
    fields->emplace().message = message;
    parse(message, **fields);
    // From the back, where it is soon found.
    const bool ends = (*fields)->type != ACKNOWLEDGEMENT && message.rfind("\r\n;") != std::string::npos;
    return std::tuple_cat(std::make_tuple(ends), std::as_const(**fields).All());
  };
}

auto Copying(const std::string& message) {
  return [&message] { return std::string(message); };
}

void Parse(const std::string& name, const std::string& message) {
  auto row =
      Row("NEMsgParse", name, message.size(), [&message, parser = std::make_shared<std::optional<CTL1NEMsgParse>>()] {
        parser->emplace(message).NEMsgParse();
        return All(**parser);
      });
  row.Peer("RE2", Parsing<std::string>(message, ParseByRe2))
      .Other("views", Parsing<std::string_view>(message, ParseByViews))  // keeps no text of its own
      .Limit("one copy", Copying(message));
  // std::regex recurses for each character and does not survive large messages.
  if (message.size() < 4096) row.Obvious("std::regex", Parsing<std::string>(message, ParseByRegex));
}

// The parse alone, without making and freeing the object and its copy of the message.
void ParseAgain(const std::string& name, const std::string& message) {
  Row("NEMsgParse", name + ", object kept", message.size(),
      [parser = std::make_shared<CTL1NEMsgParse>(message)] {
        parser->NEMsgParse();
        return All(*parser);
      })
      .Peer("RE2",
            [&message, fields = std::make_shared<Fields<std::string>>()] {
              fields->message = message;
              ParseByRe2(message, *fields);
              return std::as_const(*fields).All();
            })
      .Limit("one copy", Copying(message));
}

void ParseEnd(const std::string& name, const std::string& message) {
  auto row = Row("ParseMsgEndFlg", name, message.size(), [&message, parser = std::make_shared<CTL1NEMsgParse>("")] {
    const bool ends = parser->ParseMsgEndFlg(message);
    return std::tuple_cat(std::make_tuple(ends), All(*parser));
  });
  row.Peer("RE2", ParsingToTheEnd<std::string>(message, ParseByRe2))
      .Other("views", ParsingToTheEnd<std::string_view>(message, ParseByViews))
      .Limit("one copy", Copying(message));
  if (message.size() < 4096) row.Obvious("std::regex", ParsingToTheEnd<std::string>(message, ParseByRegex));
}

const char HEADER[] = "\r\n\n   NE-EAST 26-01-15 12:00:00\r\n";

// A response whose text block has about that size.
std::string Response(size_t size, unsigned int ctag) {
  std::string message = HEADER + ("M  " + std::to_string(ctag)) + " COMPLD\r\n";
  const size_t last = message.size() + size;
  for (size_t slot = 1; message.size() < last; ++slot) {
    message += "   \"SLOT-3-" + std::to_string(slot) +
               ":VNCTL201,STATUS=RUNNING,VERSION=1.02,LOAD=" + std::to_string(slot * 37 % 100) + "\"\r\n";
  }
  return message + ';';
}

std::string Autonomous(unsigned int atag) {
  return HEADER + ("A  " + std::to_string(atag)) + " REPT EVT PROGRESS\r\n" +
         "   \"SLOT-3:SWDL,TRANSFEREDFILES=4,TOTALNUM=12,:\"\r\n   \"MODE=FAST,SOURCE=10.0.0.7\"\r\n;";
}

// What is found in a stream: enough to tell that two ways of reading it find the same.
struct Tally {
  size_t messages = 0;
  size_t fields = 0;  // characters
  size_t lines = 0;
  size_t text = 0;  // characters

  bool operator==(const Tally& other) const {
    return std::tie(messages, fields, lines, text) == std::tie(other.messages, other.fields, other.lines, other.text);
  }
};

void Count(const VARNEL_TL1::Message& message, Tally& tally) {
  ++tally.messages;
  for (const std::string_view field :
       {message.sid, message.date, message.time, message.ctag, message.atag, message.code, message.verb})
    tally.fields += field.size();
  VARNEL_TL1::LineReader lines(message.text);
  for (std::string_view line; lines.Next(line);) {
    ++tally.lines;
    tally.text += line.size();
  }
}

Tally ReadStream(const std::string& bytes) {
  Tally tally;
  VARNEL_TL1::Framer framer;
  VARNEL_TL1::Message message;
  framer.Append(bytes);
  framer.Finish();
  while (framer.Next(message))
    Count(message, tally);
  return tally;
}

// Cuts the next message off the front of a stream in the strict form. An acknowledgement begins without a line end.
std::string_view TakeMessage(std::string_view& stream) {
  const char terminator = stream.front() == '\r' ? ';' : '<';
  size_t end = stream.find(terminator);
  while (stream[end - 1] != '\n')
    end = stream.find(terminator, end + 1);
  const std::string_view message = stream.substr(0, end + 1);
  stream.remove_prefix(message.size());
  return message;
}

template <typename Text>
void AddLines(std::string_view block, std::vector<Text>& lines) {
  while (!block.empty()) {
    std::string_view line = TakeUpTo(block, "\r\n");
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    if (!line.empty()) lines.emplace_back(line);
  }
}

template <typename Text>
void Count(const Fields<Text>& fields, const std::vector<Text>& lines, Tally& tally) {
  ++tally.messages;
  for (const Text* field : {&fields.sid, &fields.date, &fields.time, &fields.ctag, &fields.code, &fields.verb})
    tally.fields += field->size();
  tally.fields += fields.atag.size() - (fields.atag.substr(0, 1) == " ");
  tally.lines += lines.size();
  for (const Text& line : lines)
    tally.text += line.size();
}

template <typename Text, typename Kept, typename Parse>
Tally ReadStrictly(std::string_view stream, Parse parse) {
  Tally tally;
  while (!stream.empty()) {
    const Kept message(TakeMessage(stream));
    Fields<Text> fields;
    parse(message, fields);
    std::vector<Text> lines;
    std::string_view block = fields.block;
    block.remove_prefix(std::min<size_t>(block.size(), 1));
    AddLines(block, lines);
    Count(fields, lines, tally);
  }
  return tally;
}

void Stream(const std::string& name, const std::string& bytes) {
  Row("Framer and Reader", name, bytes.size(), [&bytes] { return ReadStream(bytes); })
      // These two understand the strict form only, which these streams have, and keep no watch over quotes, comments,
      // echoes and limits.
      .Other("RE2", [&bytes] { return ReadStrictly<std::string, std::string>(bytes, ParseByRe2); })
      .Other("views", [&bytes] { return ReadStrictly<std::string_view, std::string_view>(bytes, ParseByViews); })
      .Limit("one copy", Copying(bytes));
}

const std::string& LongStream(size_t size) {
  std::string stream;
  for (unsigned int tag = 1; stream.size() < size; ++tag) {
    stream += "IP " + std::to_string(tag) + "\r\n<";
    stream += Response(tag % 8 == 0 ? 4096 : 400, tag);
    stream += Autonomous(tag);
  }
  return Keep(std::move(stream));
}

void GrowthPoints(size_t size) {
  const std::string& message = Keep(Response(size, 100));
  Growth("NEMsgParse", size, [&message] { return CTL1NEMsgParse(message).NEMsgParse(); });
  const std::string& stream = LongStream(size);
  Growth("Framer", size, [&stream] {
    VARNEL_TL1::Framer framer(stream.size());
    VARNEL_TL1::Message message;
    framer.Append(stream);
    return framer.Next(message);
  });
}

}  // namespace

void AddTl1() {
  const std::vector<std::pair<std::string, std::string>> messages = {{"acknowledgement", "IP 100\r\n<"},
                                                                     {"response, 520 B", Response(430, 100)},
                                                                     {"response, 64 KB", Response(64 << 10, 100)},
                                                                     {"autonomous message", Autonomous(701)}};
  for (const auto& [name, bytes] : messages) {
    const std::string& message = Keep(bytes);
    Parse(name, message);
    ParseAgain(name, message);
    ParseEnd(name, message);
    Stream(name, message);
  }
  Stream("stream, 1 MB", LongStream(1 << 20));
  for (const size_t size : GROWTH_SIZES)
    GrowthPoints(size);
}

}  // namespace VARNEL_BENCH
