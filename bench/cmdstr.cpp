// Command texts that are put together piece by piece and wiped before they are freed.
#include <absl/strings/cord.h>
#include <cmdstr.h>

#include <cstring>
#include <optional>
#include <string_view>
#include <vector>

#include "inputs.h"
#include "row.h"
#include "services.h"

namespace VARNEL_BENCH {

namespace {

using namespace VARNEL_COMMON;

constexpr size_t MAX_LENGTH = 10 << 20;

// A std::string that wipes what it frees, as far as characters were ever written to it.
class WipedString {
 public:
  WipedString() = default;
  WipedString(const WipedString&) = default;
  WipedString& operator=(const WipedString&) = delete;
  ~WipedString() { Wipe(); }

  void Add(const char* text) {
    const size_t length = std::strlen(text);
    if (m_text.size() + length > m_text.capacity()) Grow(m_text.size() + length);
    m_text.append(text, length);
  }

  std::string_view Text() const { return m_text; }

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

std::string_view TextOf(CCmdStr& text) {
  const char* whole = text.GetMsg();
  return {whole, text.GetMsgLen()};
}

// Fills a new object in each run. That of the run before is destroyed first, so that an answer stays valid.
template <typename Text, typename Fill>
auto Making(Fill fill) {
  return [fill, text = std::optional<Text>()]() mutable { return fill(text.emplace()); };
}

auto CopyAndWipe(size_t size) {
  const std::string& input = ReportText(size);
  return [&input, buffer = std::vector<char>(size)]() mutable {
    std::memcpy(buffer.data(), input.data(), input.size());
    benchmark::ClobberMemory();
    explicit_bzero(buffer.data(), buffer.size());
    return buffer.data();
  };
}

void Add(const std::string& name, size_t count, size_t size) {
  const char* piece = ReportText(size).c_str();
  Row("CCmdStr", name, count * size, Making<CCmdStr>([=](CCmdStr& text) {
        for (size_t i = 0; i < count; ++i)
          text.AddMsg(piece);
        return TextOf(text);
      }))
      .Peer("std::string, wiped", Making<WipedString>([=](WipedString& text) {
              for (size_t i = 0; i < count; ++i)
                text.Add(piece);
              return text.Text();
            }))
      // Neither of the two wipes anything.
      .Other("absl::Cord", Making<absl::Cord>([=](absl::Cord& text) {
               for (size_t i = 0; i < count; ++i)
                 text.Append(piece);
               return text.Flatten();
             }))
      .Other("std::string", Making<std::string>([=](std::string& text) {
               for (size_t i = 0; i < count; ++i)
                 text += piece;
               return std::string_view(text);
             }))
      .Limit("memcpy and explicit_bzero", CopyAndWipe(count * size));
}

auto Setting(const char* input) {
  return Making<CCmdStr>([=](CCmdStr& text) {
    text.SetMsg(input);
    return TextOf(text);
  });
}

void Set(size_t size) {
  const char* input = ReportText(size).c_str();
  Row("CCmdStr", "SetMsg of " + SizeName(size), size, Setting(input))
      .Peer("std::string, wiped", Making<WipedString>([=](WipedString& text) {
              text.Add(input);
              return text.Text();
            }))
      .Other("absl::Cord", Making<absl::Cord>([=](absl::Cord& text) {
               text = input;
               return text.Flatten();
             }))
      .Other("std::string", Making<std::string>([=](std::string& text) {
               text = input;
               return std::string_view(text);
             }))
      .Limit("memcpy and explicit_bzero", CopyAndWipe(size));
}

}  // namespace

void AddCmdStr() {
  Add("1000 x AddMsg of 20 B and GetMsg", 1000, 20);
  Add("1000000 x AddMsg of 10 B and GetMsg", 1000000, 10);
  Set(40);
  Set(MAX_LENGTH);
  for (const size_t size : GROWTH_SIZES) {
    if (size <= MAX_LENGTH) Growth("CCmdStr::SetMsg", size, Setting(ReportText(size).c_str()));
  }
}

}  // namespace VARNEL_BENCH
