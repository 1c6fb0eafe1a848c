#include "joiner.h"

#include <algorithm>
#include <deque>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace VARNEL_TL1 {

namespace {

// The common fields of the parts of an answer, except the SID, which some parts may lack.
using Tag = std::tuple<MessageType, std::string, std::string, std::string>;
using Key = std::pair<Tag, std::string>;

Tag TagOf(const Message& message) {
  return {message.type, std::string(message.ctag), std::string(message.atag), std::string(message.verb)};
}

bool CanBeLong(const Message& message) {
  return message.type == MessageType::Response || message.type == MessageType::Autonomous;
}

// An answer of one part or more.
class Answer {
 public:
  explicit Answer(const Message& first)
      : m_first(first), m_code(first.code), m_text(first.text), m_bytes(first.bytes), m_last(first) {}

  // The next part begins on a new line.
  void Add(const Message& part) {
    if (!m_text.empty() && m_text.back() != '\n' && m_text.back() != '\r') m_text += "\r\n";
    m_text += part.text;
    m_bytes += part.bytes;
    m_code = part.code;
    m_last = part;
  }

  bool Takes(const Message& part) const { return m_code == part.code || m_code == "RTRV"; }
  size_t Size() const { return m_bytes.size(); }

  Message View() const {
    Message whole = m_first.View();
    whole.code = m_code;
    whole.text = m_text;
    whole.bytes = m_bytes;
    whole.length = m_last.offset + m_last.length - whole.offset;
    whole.continues = m_last.continues;
    whole.complete = m_last.complete && !m_last.continues;
    whole.tooLong = m_last.tooLong;
    return whole;
  }

 private:
  MessageCopy m_first;
  std::string m_code, m_text, m_bytes;
  Message m_last;  // its views are not used
};

}  // namespace

class JoinerAnswers {
 public:
  explicit JoinerAnswers(size_t limit) : m_limit(limit) {}

  void Add(const Message& message) {
    if (m_broken) return;
    m_broken = true;  // until everything succeeded
    if (ready.empty()) m_released.clear();
    if (CanBeLong(message)) {
      AddPart(message);
    } else {
      ready.push_back(message);
    }
    m_broken = false;
  }

  void Finish() {
    if (m_broken) return;
    m_broken = true;
    std::vector<std::map<Key, Answer>::iterator> rest;
    for (auto answer = m_answers.begin(); answer != m_answers.end(); ++answer)
      rest.push_back(answer);
    std::sort(rest.begin(), rest.end(),
              [](auto a, auto b) { return a->second.View().offset < b->second.View().offset; });
    for (const auto& answer : rest)
      Release(answer);
    m_broken = false;
  }

  std::deque<Message> ready;

 private:
  using Place = std::map<Key, Answer>::iterator;

  void AddPart(const Message& part) {
    const Tag tag = TagOf(part);
    const auto latest = part.sid.empty() ? m_latestSid.find(tag) : m_latestSid.end();
    const Key key{tag, latest == m_latestSid.end() ? std::string(part.sid) : latest->second};
    Place answer = m_answers.find(key);
    if (answer != m_answers.end() && !answer->second.Takes(part)) {
      Release(answer);
      answer = m_answers.end();
    }
    if (answer == m_answers.end()) {
      if (!part.continues) {
        ready.push_back(part);
        return;
      }
      answer = m_answers.emplace(key, Answer(part)).first;
    } else {
      answer->second.Add(part);
    }
    m_size += part.bytes.size();
    m_latestSid[tag] = key.second;
    if (!part.continues || m_size > m_limit) Release(answer);
  }

  // Its views stay valid until the next Add().
  void Release(Place place) {
    const auto latest = m_latestSid.find(place->first.first);
    if (latest != m_latestSid.end() && latest->second == place->first.second) m_latestSid.erase(latest);
    const bool tooLong = m_size > m_limit;
    m_size -= place->second.Size();
    m_released.push_back(std::move(place->second));
    m_answers.erase(place);
    ready.push_back(m_released.back().View());
    if (tooLong) ready.back().tooLong = ready.back().continues;
  }

  const size_t m_limit;
  size_t m_size = 0;      // of all unfinished answers
  bool m_broken = false;  // a step failed half-way
  std::map<Key, Answer> m_answers;
  std::map<Tag, std::string> m_latestSid;
  std::deque<Answer> m_released;
};

Joiner::Joiner(size_t limit) : m_answers(std::make_unique<JoinerAnswers>(limit)) {}

Joiner::~Joiner() = default;

void Joiner::Add(const Message& message) {
  m_answers->Add(message);
}

void Joiner::Finish() {
  m_answers->Finish();
}

bool Joiner::Next(Message& message) {
  if (m_answers->ready.empty()) return false;
  message = m_answers->ready.front();
  m_answers->ready.pop_front();
  return true;
}

}  // namespace VARNEL_TL1
