#include "secret_texts.h"

#include <iterator>
#include <utility>

namespace VARNEL_TEST {
namespace {

constexpr const char* NAMES[] = {"op", "prompt", "note", "file", "x"};
constexpr const char* KEYS[] = {"password", "PWD", "user_token", "Secret", "newPasswd", "PSWD"};
constexpr const char* COMMANDS[] = {"ACT-USER", "ED-PID", "ENT-USER-SECU", "ed-user-secu"};
constexpr const char* GAPS[] = {"", "", "", " ", "\n", "\n  "};
constexpr const char* PLAIN[] = {"a",
                                 "x1",
                                 "it's",
                                 "rock 'n roll",
                                 "=",
                                 ", ",
                                 "; ",
                                 ":",
                                 "\n",
                                 " ",
                                 "gr\xC3\xBC\xC3\x9F",
                                 "'",
                                 "\"",
                                 "'x y'",
                                 "\"a b\"",
                                 "(",
                                 "]",
                                 "{}",
                                 "5\" tube",
                                 "-",
                                 "--x",
                                 ".",
                                 "http://h:80/a@b"};
constexpr const char* LOOKALIKES[] = {
    "password:",  "pwd",   "Token = ",  "secret=", "passwd :=", "pwd='",    "password: \"",
    "--password", "pwd=(", "ACT-USER:", "<token>", "\"pwd\": ", "PWD=\"x\""};

template <size_t count>
const char* OneOf(std::mt19937& random, const char* const (&choices)[count]) {
  return choices[random() % count];
}

std::string Replaced(std::string text, const std::string& what, const std::string& by) {
  for (size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
    text.replace(at, what.size(), by);
  return text;
}

std::string Escaped(const std::string& text, char quote) {
  return Replaced(Replaced(text, "\\", "\\\\"), {quote}, {'\\', quote});
}

// Writes one text. Each language has its own syntax for a field; one field contains the password.
class Writer {
 public:
  Writer(std::mt19937& random, bool hasSecret) : m_random(random), m_hasSecret(hasSecret) {}

  std::string Mml() {
    const bool doubles = Chance(3);
    std::string text = "LGI:";
    for (const auto& [name, value] : Fields())
      text += name + "=\"" + (doubles ? Replaced(value, "\"", "\"\"") : Escaped(value, '"')) + "\",";
    text.back() = ';';
    return text;
  }

  std::string Json() {
    std::string text = "{";
    for (const auto& [name, value] : Fields())
      text += Gap() + JsonString(name) + Gap() + ':' + Gap() + JsonValue(value) + Gap() + ',';
    text.back() = '}';
    return text;
  }

  std::string Tl1() {
    std::string text = m_hasSecret ? OneOf(m_random, COMMANDS) : "RTRV-HDR";
    for (int block = 0; block < 4; ++block)
      text += ':' + (Chance(2) ? "NE1" : '"' + Escaped(Value(), '"') + '"');
    text += ':' + (Chance(3) ? std::string(m_hasSecret ? SECRET : "x") : '"' + Escaped(Password(), '"') + '"');
    if (Chance(2)) text += ":NOTE=\"" + Escaped(Value(), '"') + '"';
    return text + ';';
  }

  std::string CommandLine() {
    std::string text = "login";
    for (const auto& [name, value] : Fields())
      text += ' ' + Option(name) + Word(value);
    return text;
  }

  std::string Xml() {
    std::string text = "<u>";
    for (const auto& [name, value] : Fields()) {
      if (Chance(2)) {
        text += '<' + name + '>' + Gap() + Entities(value, Chance(2) ? "" : "\"'") + "</" + name + '>' + Gap();
      } else {
        const char quote = Chance(2) ? '"' : '\'';
        text.append("<e a='1' ").append(name).append(Chance(5) ? " = " : "=");
        text.append(1, quote).append(Entities(value, {quote})).append(1, quote).append("/>");
      }
    }
    return text + "</u>";
  }

  std::string MayWrap(const std::string& text) {
    return Chance(4) ? "{\"cmd\":" + JsonString(text) + ",\"errno\":2}" : text;
  }

 private:
  using Field = std::pair<std::string, std::string>;

  bool Chance(unsigned int oneIn) { return m_random() % oneIn == 0; }
  std::string Gap() { return OneOf(m_random, GAPS); }

  std::string Value() {
    std::string value;
    for (size_t pieces = m_random() % 5; pieces > 0; --pieces)
      value += m_hasSecret && Chance(2) ? OneOf(m_random, LOOKALIKES) : OneOf(m_random, PLAIN);
    return value;
  }

  std::string Password() {
    return m_hasSecret ? (Chance(2) ? Value() : "") + SECRET + (Chance(2) ? Value() : "") : Value();
  }

  std::vector<Field> Fields() {
    std::vector<Field> fields(1 + m_random() % 5);
    for (auto& [name, value] : fields) {
      name = OneOf(m_random, NAMES);
      value = Value();
    }
    if (m_hasSecret) fields[m_random() % fields.size()] = {OneOf(m_random, KEYS), Password()};
    return fields;
  }

  std::string JsonString(const std::string& text) { return '"' + Replaced(Escaped(text, '"'), "\n", "\\n") + '"'; }

  std::string JsonValue(const std::string& text) {
    if (Chance(8)) return "[" + Gap() + JsonString(text) + Gap() + "]";
    if (Chance(8)) return "{\"value\"" + Gap() + ": " + JsonString(text) + "}";
    return JsonString(text);
  }

  std::string Option(const std::string& name) {
    if (Chance(4)) return name + '=';
    return "--" + name + (Chance(2) ? "=" : " ");
  }

  std::string Word(const std::string& text) {
    if (Chance(2)) return '"' + Escaped(text, '"') + '"';
    return '\'' + Replaced(text, "'", Chance(2) ? "'\\''" : "'\"'\"'") + '\'';
  }

  static std::string Entities(const std::string& text, const std::string& quotes) {
    std::string result = Replaced(Replaced(text, "&", "&amp;"), "<", "&lt;");
    if (quotes.find('"') != std::string::npos) result = Replaced(result, "\"", "&quot;");
    if (quotes.find('\'') != std::string::npos) result = Replaced(result, "'", "&apos;");
    return result;
  }

  std::mt19937& m_random;
  bool m_hasSecret;
};

Language LanguageOf(const char* name, std::string (Writer::*write)()) {
  return {name, [write](std::mt19937& random, bool hasSecret) {
            Writer writer(random, hasSecret);
            return writer.MayWrap((writer.*write)());
          }};
}

}  // namespace

const std::vector<Language>& Languages() {
  static const std::vector<Language> languages{
      LanguageOf("MML", &Writer::Mml), LanguageOf("JSON", &Writer::Json), LanguageOf("TL1", &Writer::Tl1),
      LanguageOf("CommandLine", &Writer::CommandLine), LanguageOf("XML", &Writer::Xml)};
  return languages;
}

}  // namespace VARNEL_TEST
