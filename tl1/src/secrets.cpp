#include "secrets.h"

#include <array>
#include <utility>

#include "chars.h"
#include "command_text.h"

namespace VARNEL_TL1 {

namespace {

constexpr std::string_view MASK = "******";

// The lower-case character for each compared byte, else NUL.
constexpr std::array<char, 256> COUNTED = [] {
  std::array<char, 256> counted{};
  for (size_t byte = 0; byte < counted.size(); ++byte) {
    const char c = static_cast<char>(byte);
    counted[byte] = c == ' ' || c == '"' || c == '\\' || IsUnsendable(c) ? '\0' : VARNEL_UTIL::ToLower(c);
  }
  return counted;
}();

char Counted(char c) {
  return COUNTED[static_cast<unsigned char>(c)];
}

// The start of the last `count` compared characters before `end`.
size_t BeginOf(std::string_view text, size_t end, size_t count) {
  while (count > 0) {
    --end;
    if (Counted(text[end]) != '\0') --count;
  }
  return end;
}

// Removes the first parameter of a block and returns it.
std::string_view TakeParameter(std::string_view& block) {
  size_t end = 0;
  while (end < block.size() && block[end] != ',')
    end = block[end] == '"' ? std::min(FindQuote(block, end + 1) + 1, block.size()) : end + 1;
  const std::string_view parameter = block.substr(0, end);
  block.remove_prefix(std::min(end + 1, block.size()));
  return parameter;
}

}  // namespace

bool Secrets::Add(std::string_view password) {
  Secret secret;
  for (size_t i = 0; i < password.size() && secret.counted.View().size() < MAX_COUNTED; ++i) {
    const char c = Counted(password[i]);
    if (c != '\0') secret.counted.Append({&c, 1});
  }
  const std::string_view counted = secret.counted.View();
  if (counted.empty()) return false;
  for (const Secret& known : m_secrets) {
    if (known.counted.View() == counted) return true;
  }
  secret.borders.resize(counted.size());
  for (size_t i = 1, border = 0; i < counted.size(); ++i) {
    while (border > 0 && counted[i] != counted[border])
      border = secret.borders[border - 1];
    if (counted[i] == counted[border]) ++border;
    secret.borders[i] = static_cast<uint16_t>(border);
  }
  m_secrets.reserve(MAX_SECRETS);
  if (m_secrets.size() == MAX_SECRETS) m_secrets.erase(m_secrets.begin() + 1);
  m_secrets.push_back(std::move(secret));
  return true;
}

// The block is PASSWORD in ACT-USER, where a "," belongs to it, OLD,NEW in ED-PID, PASSWORD,... in ENT-USER-SECU, and
// USER,PASSWORD,... or PASSWORD,... in ED-USER-SECU.
void Secrets::AddFrom(const Command& command) {
  const std::string_view verb = command.Block(Command::VERB);
  if (!HasPassword(verb)) return;
  std::string_view block = command.Block(Command::DATA);
  if (IsSameIgnoringCase(verb, "ACT-USER")) {
    Add(block);
    return;
  }
  Add(TakeParameter(block));
  if (!IsSameIgnoringCase(verb, "ENT-USER-SECU")) Add(TakeParameter(block));
}

bool Secrets::Mask(std::string_view text, bool cut, std::string& masked) const {
  bool any = false;
  for (const Secret& secret : m_secrets) {
    std::string other;
    if (!MaskOne(secret, any ? std::string_view(masked) : text, cut, other)) continue;
    masked.swap(other);
    any = true;
  }
  return any;
}

bool Secrets::MaskOne(const Secret& secret, std::string_view text, bool cut, std::string& masked) {
  const std::string_view counted = secret.counted.View();
  size_t matched = 0, done = 0;
  const auto mask = [&](size_t end) {
    masked.append(text.substr(done, BeginOf(text, end, matched) - done)).append(MASK);
    done = end;
    matched = 0;
  };
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = Counted(text[i]);
    if (c == '\0') continue;
    while (matched > 0 && c != counted[matched])
      matched = secret.borders[matched - 1];
    if (c == counted[matched]) ++matched;
    if (matched == counted.size()) mask(i + 1);
  }
  if (cut && matched > 0 && 2 * matched >= counted.size()) mask(text.size());
  if (done == 0) return false;
  masked.append(text.substr(done));
  return true;
}

}  // namespace VARNEL_TL1
