#include "tl1_output.h"

#include <ace/Codecs.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <iostream>
#include <memory>
#include <new>

#include "output.h"

using VARNEL_TL1::LineReader;
using VARNEL_TL1::Message;
using VARNEL_TL1::MessageType;

namespace {

std::string Base64(std::string_view bytes) {
  size_t length = 0;
  const auto* data = static_cast<const ACE_Byte*>(static_cast<const void*>(bytes.data()));
  const std::unique_ptr<ACE_Byte[]> encoded(ACE_Base64::encode(data, bytes.size(), &length, false));
  if (encoded == nullptr) throw std::bad_alloc();
  return {encoded.get(), encoded.get() + length};
}

bool NeedsUnescaping(std::string_view raw) {
  const auto holds = [raw](char c) { return raw.find(c) != std::string_view::npos; };
  return holds('\\') || holds('\r') || holds('\n');
}

}  // namespace

std::string CurrentTime() {
  const auto now = std::chrono::system_clock::now();
  const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
  const auto milliseconds =
      std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
  std::tm utc = {};
  gmtime_r(&seconds, &utc);
  char text[32];
  text[std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &utc)] = '\0';
  return text + ('.' + std::to_string(milliseconds + 1000).substr(1)) + 'Z';
}

void Tl1Output::Add(JsonWriter& json, const Message& message, const Tl1Origin& origin) {
  json.Add("type", VARNEL_TL1::TypeName(message.type));
  json.Add("source", origin.source).AddOrNull("received", origin.received);
  json.Add("offset", message.offset).Add("length", message.length).Add("complete", message.complete);
  json.AddOrNull("sid", m_encoding.ToUtf8(message.sid));
  json.AddOrNull("date", m_encoding.ToUtf8(message.date));
  json.AddOrNull("time", m_encoding.ToUtf8(message.time));
  json.AddOrNull("ctag", m_encoding.ToUtf8(message.ctag));
  json.AddOrNull("atag", m_encoding.ToUtf8(message.atag));
  json.AddOrNull("code", m_encoding.ToUtf8(message.code));
  json.AddOrNull("verb", m_encoding.ToUtf8(message.verb));
  AddText(json, message.text);
  json.AddOrNull("severity", m_severity);
  json.Add("missed", origin.missed).Add("continues", message.continues);
  json.AddOrNull("raw", m_encoding.IsValid(message.bytes) ? std::string() : Base64(message.bytes));
}

// The lines, and their parts.
void Tl1Output::AddText(JsonWriter& json, std::string_view text) {
  json.Key("lines");
  json.BeginArray();
  m_quotedTexts.clear();
  LineReader lines(text);
  for (std::string_view line; lines.Next(line);) {
    json.Value(m_encoding.ToUtf8(line));
    m_quotedTexts.push_back(lines.Quoted());
  }
  json.EndArray();
  json.Key("text");
  json.BeginArray();
  bool first = true;
  m_severity = {};
  for (const std::string_view quoted : m_quotedTexts) {
    if (m_quoted.Read(quoted)) {
      if (first) m_severity = VARNEL_TL1::Severity(m_quoted);
      first = false;
      m_hasEscapes = NeedsUnescaping(quoted);
      AddQuoted(json);
    } else {
      json.Value(nullptr);
    }
  }
  json.EndArray();
}

void Tl1Output::AddQuoted(JsonWriter& json) {
  json.BeginObject();
  json.AddOrNull("aid", Meaning(m_quoted.Aid()));
  AddPositional(json);
  AddNamed(json);
  json.EndObject();
}

void Tl1Output::AddPositional(JsonWriter& json) {
  json.Key("positional");
  json.BeginArray();
  auto parameter = m_quoted.Parameters().begin();
  const auto end = m_quoted.Parameters().end();
  for (size_t block = 0; block < m_quoted.Blocks(); ++block) {
    json.BeginArray();
    for (; parameter != end && parameter->block == block; ++parameter)
      if (parameter->name.empty()) json.Value(Meaning(parameter->value));
    json.EndArray();
  }
  json.EndArray();
}

// Sorted by name. If a name occurs twice, the last value is kept.
void Tl1Output::AddNamed(JsonWriter& json) {
  m_names.clear();
  m_named.clear();
  for (const auto& parameter : m_quoted.Parameters()) {
    if (parameter.name.empty()) continue;
    const size_t begin = m_names.size();
    m_names += Meaning(parameter.name);
    m_named.push_back({begin, m_names.size() - begin, parameter.value});
  }
  const auto nameOf = [this](const Named& named) {
    return std::string_view(m_names).substr(named.begin, named.length);
  };
  std::sort(m_named.begin(), m_named.end(), [&nameOf](const Named& a, const Named& b) {
    const int order = nameOf(a).compare(nameOf(b));
    return order < 0 || (order == 0 && a.begin < b.begin);
  });
  json.Key("named");
  json.BeginObject();
  for (size_t i = 0; i < m_named.size(); ++i) {
    const std::string_view name = nameOf(m_named[i]);
    if (i + 1 < m_named.size() && nameOf(m_named[i + 1]) == name) continue;
    json.AnyKey(name);
    json.Value(Meaning(m_named[i].value));
  }
  json.EndObject();
}

// Valid until the next call.
std::string_view Tl1Output::Meaning(std::string_view raw) {
  if (!m_hasEscapes || !NeedsUnescaping(raw)) return m_encoding.ToUtf8(raw);
  m_unescaped.clear();
  VARNEL_TL1::AppendUnescaped(raw, m_unescaped);
  return m_encoding.ToUtf8(m_unescaped);
}

// Only codes of alarms, refusals and success have a colour.
std::string Tl1Output::ColouredCode(const Message& message) {
  const std::string_view code = message.code;
  const std::string shown = Escaped(m_encoding.ToUtf8(code));
  if (message.type == MessageType::Autonomous) {
    if (code == "*C" || code == "**") return Coloured(Colour::Bad, shown);
    if (code.front() == '*') return Coloured(Colour::Warning, shown);
    return code == "A" ? Coloured(Colour::Good, shown) : shown;
  }
  if (code == "COMPLD") return Coloured(Colour::Good, shown);
  const bool refused = code == "DENY" || code == "NA" || code == "NG" || code == "RL";
  return refused ? Coloured(Colour::Bad, shown) : shown;
}

void Tl1Output::AppendField(const char* name, std::string_view field) {
  if (field.empty()) return;
  m_block.append("  ").append(name);
  AppendEscaped(m_block, m_encoding.ToUtf8(field));
}

void Tl1Output::AppendHeading(const Message& message, const Tl1Origin& origin) {
  const bool good = message.complete && message.type != MessageType::Unrecognised;
  const char* type = VARNEL_TL1::TypeName(message.type);
  m_block += good ? type : Coloured(Colour::Warning, type);
  if (!message.code.empty()) m_block += "  " + ColouredCode(message);
  AppendField("", message.verb);
  AppendField("ctag ", message.ctag);
  AppendField("atag ", message.atag);
  if (origin.missed.value_or(0) > 0) m_block += "  (" + std::to_string(*origin.missed) + " missed before)";
  if (message.continues) m_block += "  (continues)";
  if (!message.complete) m_block += "  (incomplete)";
  m_block += '\n';
}

void Tl1Output::Print(const Message& message, const Tl1Origin& origin) {
  m_block.clear();
  AppendHeading(message, origin);
  if (!message.sid.empty() || !message.date.empty() || !message.time.empty()) {
    m_block += "  from";
    AppendField("", message.sid);
    AppendField("", message.date);
    AppendField("", message.time);
    m_block += '\n';
  }
  m_block += "  at    " + std::to_string(message.offset) + ", " + std::to_string(message.length) + " bytes";
  if (!origin.source.empty()) m_block.append(" of ").append(Escaped(origin.source));
  m_block += '\n';
  LineReader lines(message.text);
  for (std::string_view line; lines.Next(line);) {
    m_block += "    ";
    AppendEscaped(m_block, m_encoding.ToUtf8(line));
    m_block += '\n';
  }
  std::cout << (m_block += '\n');
}
