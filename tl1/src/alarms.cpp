#include "alarms.h"

#include <utility>

#include "text.h"

namespace VARNEL_TL1 {

namespace {

bool IsAlarmReport(const Message& message) {
  constexpr std::string_view VERB = "REPT ALM";
  return message.type == MessageType::Autonomous && message.verb.substr(0, VERB.size()) == VERB &&
         (message.verb.size() == VERB.size() || message.verb[VERB.size()] == ' ');
}

std::string RaisedAt(const Message& message) {
  std::string raised(message.date);
  if (!message.date.empty() && !message.time.empty()) raised += ' ';
  return raised.append(message.time);
}

Alarm ReadAlarm(const QuotedText& text) {
  Alarm alarm;
  alarm.aid = Unescaped(text.Aid());
  alarm.severity = Unescaped(text.Positional(0, 0));
  alarm.condition = Unescaped(text.Positional(0, 1));
  alarm.effect = Unescaped(text.Positional(0, 2));
  alarm.description = Unescaped(text.Positional(1, 0));
  return alarm;
}

bool HasClear(const QuotedText& text) {
  for (const QuotedText::Parameter& parameter : text.Parameters())
    if (parameter.block == 0 && parameter.name.empty() && parameter.value == "CL") return true;
  return false;
}

}  // namespace

void Alarms::Add(std::string_view source, const Message& message, std::string_view received,
                 const ChangeHandler& onChange) {
  if (!IsAlarmReport(message)) return;
  LineReader lines(message.text);
  QuotedText text;
  for (std::string_view line; lines.Next(line);) {
    if (!text.Read(lines.Quoted())) continue;
    Alarm alarm = ReadAlarm(text);
    alarm.source = source;
    alarm.sid = message.sid;
    alarm.raised = RaisedAt(message);
    alarm.received = received;
    const bool clears = alarm.severity == "CL" || (message.code == "A" && HasClear(text));
    Apply(std::move(alarm), clears, onChange);
  }
}

void Alarms::Apply(Alarm alarm, bool clears, const ChangeHandler& onChange) {
  const auto report = [&onChange](Change change, const Alarm& changed) {
    if (onChange) onChange(change, changed);
  };
  Key key(alarm.source, alarm.sid, alarm.aid, alarm.condition);
  const auto active = m_active.find(key);
  if (clears) {
    if (active == m_active.end()) return;
    Alarm cleared = std::move(active->second);
    m_active.erase(active);
    cleared.severity = "CL";
    report(Change::Cleared, cleared);
  } else if (active == m_active.end()) {
    report(Change::Raised, m_active.emplace(std::move(key), std::move(alarm)).first->second);
  } else {
    Alarm& known = active->second;
    const bool same =
        known.severity == alarm.severity && known.effect == alarm.effect && known.description == alarm.description;
    if (same) return;
    alarm.raised = known.raised;
    alarm.received = known.received;
    known = std::move(alarm);
    report(Change::Changed, known);
  }
}

const char* ChangeName(Alarms::Change change) {
  switch (change) {
    case Alarms::Change::Raised:
      return "raised";
    case Alarms::Change::Changed:
      return "changed";
    default:
      return "cleared";
  }
}

}  // namespace VARNEL_TL1
