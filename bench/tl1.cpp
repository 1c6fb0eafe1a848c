// TL1 streams, cut into messages and read.
#include <re2/re2.h>
#include <varnel_tl1/tl1.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "bench.h"

namespace VARNEL_BENCH {

namespace {

// A summary of the messages, to compare two readers.
struct Tally {
  size_t messages = 0;
  size_t fields = 0;  // characters of SID, tag and code
  size_t lines = 0;
  size_t text = 0;  // characters of the lines

  bool operator==(const Tally& other) const {
    return messages == other.messages && fields == other.fields && lines == other.lines && text == other.text;
  }
};

Tally ReadStream(const std::string& stream) {
  Tally tally;
  VARNEL_TL1::Framer framer;
  VARNEL_TL1::Message message;
  framer.Append(stream);
  framer.Finish();
  while (framer.Next(message)) {
    ++tally.messages;
    for (const std::string_view field : {message.sid, message.ctag, message.atag, message.code})
      tally.fields += field.size();
    VARNEL_TL1::LineReader lines(message.text);
    for (std::string_view line; lines.Next(line);) {
      ++tally.lines;
      tally.text += line.size();
    }
  }
  return tally;
}

// Removes what precedes `end` from the front of a text, and `end` too, and returns it.
std::string_view TakeUpTo(std::string_view& text, std::string_view end) {
  const size_t found = std::min(text.find(end), text.size());
  const std::string_view taken = text.substr(0, found);
  text.remove_prefix(std::min(found + end.size(), text.size()));
  return taken;
}

void CountLines(std::string_view block, Tally& tally) {
  while (!block.empty()) {
    const std::string_view line = TakeUpTo(block, "\r\n");
    ++tally.lines;
    tally.text += line.size() - std::min(line.find_first_not_of(' '), line.size());
  }
}

// These two read the strict form only. They do not support quotes, comments, echoes, telnet bytes or limits.
Tally ReadByViews(std::string_view stream) {
  Tally tally;
  while (!stream.empty()) {
    std::string_view message = TakeUpTo(stream, "\r\n;");
    TakeUpTo(message, "\r\n\n   ");
    ++tally.messages;
    tally.fields += TakeUpTo(message, " ").size();
    TakeUpTo(message, "\r\n");
    std::string_view line = TakeUpTo(message, "\r\n");
    const bool response = TakeUpTo(line, "  ") == "M";
    tally.fields += (response ? 0 : 1) + TakeUpTo(line, " ").size() + (response ? line.size() : 0);
    CountLines(message, tally);
  }
  return tally;
}

Tally ReadByRe2(const std::string& stream) {
  static const RE2 grammar(
      "\r\n\n   ([^ ]+) [^ ]+ [^\r]+\r\n(?:M  ([^ ]+) ([^\r]+)|([^ ]+)  ([^ ]+) [^\r]+)\r\n((?s:.*?))\r\n;",
      RE2::Latin1);
  Tally tally;
  re2::StringPiece rest(stream), sid, ctag, completion, alarm, atag, block;
  while (RE2::Consume(&rest, grammar, &sid, &ctag, &completion, &alarm, &atag, &block)) {
    ++tally.messages;
    tally.fields += sid.size() + ctag.size() + completion.size() + alarm.size() + atag.size();
    CountLines({block.data(), block.size()}, tally);
  }
  return tally;
}

}  // namespace

void AddTl1() {
  const std::string& stream = Keep(Tl1Stream(1 << 20));
  Row("Framer", "stream of 1 MB", [&stream] { return ReadStream(stream); })
      .Other("RE2", [&stream] { return ReadByRe2(stream); })
      .Other("std::string_view", [&stream] { return ReadByViews(stream); })
      .Limit("one copy", [&stream] { return std::string(stream); });
}

}  // namespace VARNEL_BENCH
