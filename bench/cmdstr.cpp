// Command texts that are built piece by piece and wiped before they are freed.
#include <absl/strings/cord.h>
#include <cmdstr.h>

#include <cstring>
#include <optional>
#include <string_view>

#include "bench.h"

namespace VARNEL_BENCH {

namespace {

using namespace VARNEL_COMMON;

class Ours {
 public:
  void Add(const char* text) { m_text.AddMsg(text); }
  std::string_view Text() {
    const char* whole = m_text.GetMsg();
    return {whole, m_text.GetMsgLen()};
  }

 private:
  CCmdStr m_text;
};

// A std::string that wipes its memory before freeing it.
class WipedString {
 public:
  ~WipedString() { Wipe(); }

  void Add(const char* text) {
    const size_t length = std::strlen(text);
    if (m_text.size() + length > m_text.capacity()) Grow(m_text.size() + length);
    m_text.append(text, length);
  }

  std::string_view Text() { return m_text; }

 private:
  void Grow(size_t size) {
    std::string larger;
    larger.reserve(std::max(size, 2 * m_text.capacity()));
    larger.append(m_text);
    Wipe();
    m_text.swap(larger);
  }

  void Wipe() { explicit_bzero(m_text.data(), m_text.size()); }

  std::string m_text;
};

class PlainString {
 public:
  void Add(const char* text) { m_text += text; }
  std::string_view Text() { return m_text; }

 private:
  std::string m_text;
};

class Cord {
 public:
  void Add(const char* text) { m_text.Append(text); }
  std::string_view Text() {
    const absl::string_view flat = m_text.Flatten();
    return {flat.data(), flat.size()};
  }

 private:
  absl::Cord m_text;
};

// Builds a new text in each run, after the one of the run before is destroyed.
template <typename Text>
auto Adding(const char* piece, size_t count) {
  return [=, text = std::make_shared<std::optional<Text>>()] {
    text->emplace();
    for (size_t i = 0; i < count; ++i)
      (*text)->Add(piece);
    return (*text)->Text();
  };
}

void Build(const std::string& name, size_t count, size_t size) {
  const char* piece = ReportText(size).c_str();
  Row("CCmdStr", name, Adding<Ours>(piece, count))
      .Peer("std::string, wiped", Adding<WipedString>(piece, count))
      // These two wipe nothing.
      .Other("absl::Cord", Adding<Cord>(piece, count))
      .Other("std::string", Adding<PlainString>(piece, count));
}

}  // namespace

void AddCmdStr() {
  Build("AddMsg of 40 B and GetMsg", 1, 40);
  Build("1000 AddMsg of 20 B and GetMsg", 1000, 20);
}

}  // namespace VARNEL_BENCH
