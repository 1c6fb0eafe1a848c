#include "tl1joiner.h"

#include <algorithm>
#include <deque>
#include <iterator>
#include <map>
#include <tuple>
#include <utility>

namespace VARNEL_TL1 {

namespace {

// What the parts of an answer have in common, apart from the SID, which some of them may lack.
using Tag = std::tuple<MessageType, std::string, std::string, std::string>;
using Key = std::pair<Tag, std::string>;

Tag TagOf(const Parts& parts) {
  return {parts.type, parts.ctag.value_or(""), parts.atag.value_or(""), parts.verb.value_or("")};
}

bool CanBeLong(const Parts& parts) {
  return parts.type == MessageType::Response || parts.type == MessageType::Autonomous;
}

}  // namespace

class JoinerAnswers {
 public:
  explicit JoinerAnswers(size_t limit) : m_limit(limit) {}

  bool Add(Parts parts) {
    if (m_tooLong || m_broken) return false;
    m_broken = true;  // unless all goes well: a part that was added half-way spoils the answer
    if (CanBeLong(parts)) {
      AddPart(std::move(parts));
    } else {
      ready.push_back(std::move(parts));
    }
    m_broken = false;
    return !m_tooLong;
  }

  void Finish() {
    if (m_broken) return;
    m_broken = true;
    std::vector<Parts> rest;
    for (auto& [key, answer] : m_answers)
      rest.push_back(std::move(answer.whole));
    m_answers.clear();
    std::sort(rest.begin(), rest.end(), [](const Parts& a, const Parts& b) { return a.offset < b.offset; });
    std::move(rest.begin(), rest.end(), std::back_inserter(ready));
    m_broken = false;
  }

  std::deque<Parts> ready;

 private:
  struct Answer {
    Parts whole;
    size_t bytes = 0;
  };

  void AddPart(Parts part) {
    const Tag tag = TagOf(part);
    const auto latest = part.sid ? m_latestSid.end() : m_latestSid.find(tag);
    const Key key{tag, latest == m_latestSid.end() ? part.sid.value_or("") : latest->second};
    auto answer = m_answers.find(key);
    if (answer != m_answers.end() && !Fits(answer->second.whole, part)) {
      Release(answer);
      answer = m_answers.end();
    }
    if (answer == m_answers.end()) {
      Start(key, std::move(part));
    } else {
      Extend(answer, std::move(part));
    }
  }

  static bool Fits(const Parts& whole, const Parts& part) { return whole.code == part.code || whole.code == "RTRV"; }

  void Start(const Key& key, Parts part) {
    if (!part.continues) {
      ready.push_back(std::move(part));
      return;
    }
    const auto bytes = static_cast<size_t>(part.length);
    Count(bytes);
    m_latestSid[key.first] = key.second;
    m_answers[key] = {std::move(part), bytes};
  }

  void Extend(std::map<Key, Answer>::iterator answer, Parts part) {
    Parts& whole = answer->second.whole;
    whole.code = std::move(part.code);
    std::move(part.lines.begin(), part.lines.end(), std::back_inserter(whole.lines));
    whole.length = part.offset + part.length - whole.offset;
    whole.continues = part.continues;
    answer->second.bytes += static_cast<size_t>(part.length);
    Count(static_cast<size_t>(part.length));
    if (!whole.continues) {
      Release(answer);
    } else {
      m_latestSid[answer->first.first] = answer->first.second;
    }
  }

  void Release(std::map<Key, Answer>::iterator answer) {
    m_bytes -= answer->second.bytes;
    const auto latest = m_latestSid.find(answer->first.first);
    if (latest != m_latestSid.end() && latest->second == answer->first.second) m_latestSid.erase(latest);
    ready.push_back(std::move(answer->second.whole));
    m_answers.erase(answer);
  }

  void Count(size_t bytes) {
    m_bytes += bytes;
    m_tooLong = m_bytes > m_limit;
  }

  const size_t m_limit;
  size_t m_bytes = 0;  // of all answers in hand
  bool m_tooLong = false;
  bool m_broken = false;  // a step failed half-way
  std::map<Key, Answer> m_answers;
  std::map<Tag, std::string> m_latestSid;
};

Joiner::Joiner(size_t limit) : m_inHand(std::make_unique<JoinerAnswers>(limit)) {}

Joiner::~Joiner() = default;

bool Joiner::Add(Parts parts) {
  return m_inHand->Add(std::move(parts));
}

void Joiner::Finish() {
  m_inHand->Finish();
}

bool Joiner::Next(Parts& parts) {
  if (m_inHand->ready.empty()) return false;
  parts = std::move(m_inHand->ready.front());
  m_inHand->ready.pop_front();
  return true;
}

}  // namespace VARNEL_TL1
