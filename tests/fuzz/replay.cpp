// Runs a target in ctest, under any compiler: replay CORPUS DICTIONARY COUNT [--show]. First come the inputs of the
// corpus, then those that the target generates, then COUNT random ones, which are the same in every run. The input that
// breaks a property is shown as a line for the corpus; --show prints each input before it runs, to find one that
// crashes.

#include "replay.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "check.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
extern "C" [[gnu::weak]] size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize, unsigned int seed);

namespace {

using Texts = std::vector<std::string>;

constexpr size_t LONGEST = 4096;

std::string g_input;
bool g_showAll = false;
size_t g_count = 0;

void ShowInput() {
  std::string line;
  for (const char c : g_input) {
    constexpr char HEX[] = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') line += '\\';
    line += c >= ' ' && c <= '~' ? std::string(1, c) : std::string("\\x") + HEX[byte / 16] + HEX[byte % 16];
  }
  std::fprintf(stderr, "\"%s\"\n", line.c_str());
}

void Run(const std::string& input) {
  g_input = input;
  if (g_showAll) ShowInput();
  LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(g_input.data()), g_input.size());
  ++g_count;
}

// a\"\x0Ab → a, quote, line feed, b
std::string Unescaped(const std::string& text) {
  std::string bytes;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && text[++i] == 'x') {
      bytes += static_cast<char>(std::strtoul(text.substr(i + 1, 2).c_str(), nullptr, 16));
      i += 2;
    } else {
      bytes += text[i];
    }
  }
  return bytes;
}

// The texts of a corpus or a dictionary. Each line is NAME="TEXT", "TEXT", or a comment without a quote.
Texts TextsOf(const char* path) {
  Texts texts;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    const size_t start = line.find('"') + 1;
    if (start > 0) texts.push_back(Unescaped(line.substr(start, line.rfind('"') - start)));
  }
  if (texts.empty()) {
    std::fprintf(stderr, "%s: no text in it (expected lines NAME=\"TEXT\")\n", path);
    std::exit(1);
  }
  return texts;
}

// Inputs that random changes make out of those of the corpus, or out of nothing.
class RandomInputs {
 public:
  RandomInputs(Texts corpus, Texts words) : m_corpus(std::move(corpus)), m_words(std::move(words)) {}

  std::string Next() {
    std::string input = Below(4) == 0 ? "" : OneOf(m_corpus);
    for (size_t changes = 1 + Below(1 + Below(8)); changes > 0; --changes)
      LLVMFuzzerCustomMutator == nullptr ? Change(input) : ChangeByTarget(input);
    return input;
  }

  void Change(std::string& input) {
    const size_t at = Below(input.size() + 1);
    switch (Below(8)) {
      case 0:
        input.erase(at, Below(2) == 0 ? 1 : Below(16));
        break;
      case 1:
        input.insert(at, 1, static_cast<char>(Below(256)));
        break;
      case 2:
        if (at < input.size()) input[at] = static_cast<char>(Below(256));
        break;
      case 3:
        input.insert(at, PartOf(OneOf(m_corpus)));
        break;
      case 4:
        input.insert(at, PartOf(input));
        break;
      default:
        input.insert(at, OneOf(m_words));
    }
    input.resize(std::min(input.size(), LONGEST));
  }

 private:
  size_t Below(size_t limit) { return m_random() % limit; }
  const std::string& OneOf(const Texts& texts) { return texts[Below(texts.size())]; }
  std::string PartOf(const std::string& text) { return text.substr(Below(text.size() + 1), Below(64)); }

  void ChangeByTarget(std::string& input) {
    const size_t size = input.size();
    input.resize(LONGEST);
    input.resize(LLVMFuzzerCustomMutator(reinterpret_cast<uint8_t*>(input.data()), size, LONGEST,
                                         static_cast<unsigned int>(m_random())));
  }

  Texts m_corpus, m_words;
  std::mt19937 m_random{1};
};

RandomInputs* g_random = nullptr;

}  // namespace

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize) {
  std::string input(reinterpret_cast<const char*>(data), size);
  g_random->Change(input);
  input.resize(std::min(input.size(), maxSize));
  std::copy(input.begin(), input.end(), data);
  return input.size();
}

int main(int argc, char** argv) {
  if (argc < 4) {
    std::fputs("usage: replay CORPUS DICTIONARY COUNT [--show]\n", stderr);
    return 2;
  }
  VARNEL_FUZZ::g_showInput = ShowInput;
  g_showAll = argc > 4;
  const Texts corpus = TextsOf(argv[1]);
  RandomInputs random(corpus, TextsOf(argv[2]));
  g_random = &random;
  std::for_each(corpus.begin(), corpus.end(), Run);
  if (VARNEL_FUZZ::RunGenerated != nullptr) VARNEL_FUZZ::RunGenerated(Run);
  for (size_t left = std::strtoul(argv[3], nullptr, 10); left > 0; --left)
    Run(random.Next());
  std::printf("%zu inputs\n", g_count);
  return VARNEL_FUZZ::Answers::AreMixed() ? 0 : 1;
}
