#include "man_page.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>

#include "option_view.h"
#include "wrap.h"

namespace {

constexpr size_t SOURCE_WIDTH = 78;  // with what escapes the beginning of a line

// A character as troff prints it and nothing else. All hyphens are what the keyboard gives, so that options and
// commands can be copied and searched.
std::string Escape(char c) {
  if (c < ' ' || c > '~') throw std::invalid_argument("a text of the manual is not printable ASCII");
  switch (c) {
    case '\\':
      return "\\e";
    case '-':
      return "\\-";
    case '\'':
      return "\\(aq";
    case '"':
      return "\\(dq";
    case '`':
      return "\\(ga";
    case '^':
      return "\\(ha";
    case '~':
      return "\\(ti";
    default:
      return std::string(1, c);
  }
}

std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char c : text)
    escaped += Escape(c);
  return escaped;
}

std::string Bold(const std::string& text) {
  return "\\fB" + Escaped(text) + "\\fR";
}

std::string Italic(const std::string& text) {
  return "\\fI" + Escaped(text) + "\\fR";
}

std::string Upper(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::toupper(c); });
  return text;
}

// A line of text, which is no request though it begins with a period.
std::string Line(const std::string& escaped) {
  return (escaped.compare(0, 1, ".") == 0 ? "\\&" : "") + escaped + '\n';
}

std::string Lines(const std::string& sentence) {
  std::string lines;
  for (const std::string& line : Wrapped(Escaped(sentence), SOURCE_WIDTH))
    lines += Line(line);
  return lines;
}

// Each sentence begins a line, so that troff sets them apart.
std::string Sentences(const std::string& text) {
  std::string lines;
  size_t begin = 0;
  for (size_t end; (end = text.find(". ", begin)) != std::string::npos; begin = end + 2)
    lines += Lines(text.substr(begin, end + 1 - begin));
  return lines + Lines(text.substr(begin));
}

class Page {
 public:
  Page(const Command& command, const std::string& date) : m_command(command) {
    const CLI::App* top = command.get_parent() == nullptr ? &command : command.get_parent();
    m_text = ".TH " + Escaped(Upper(PageName(command))) + " 1 \"" + date + "\" \"" + Escaped(top->version()) +
             "\" \"User Commands\"\n.nh\n.ad l\n";
  }

  std::string Write() {
    WriteName();
    WriteSynopsis();
    WriteDescription();
    WriteOptions("ARGUMENTS", Arguments(m_command));
    WriteOptions("OPTIONS", Options(m_command));
    WriteSubcommands();
    WriteSection(".SH", m_command.exitStatus);
    WriteSection(".SH", m_command.examples);
    WriteSeeAlso();
    return m_text;
  }

 private:
  // "name \- purpose", which the indexes of manual pages are made of.
  void WriteName() {
    std::string purpose = m_command.get_description();
    purpose[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(purpose[0])));
    m_text += ".SH NAME\n" + Line(Escaped(PageName(m_command)) + " \\- " + Escaped(purpose));
  }

  void WriteSynopsis() {
    m_text += ".SH SYNOPSIS\n" + Bold(m_command.FullName());
    for (const std::string& operand : Operands(m_command))
      m_text += ' ' + Operand(operand);
    m_text += '\n';
  }

  // Brackets and dots stand in upright letters around the name.
  static std::string Operand(const std::string& operand) {
    const size_t begin = operand.find_first_not_of('[');
    const size_t end = operand.find_last_not_of(".]") + 1;
    return operand.substr(0, begin) + Italic(operand.substr(begin, end - begin)) + operand.substr(end);
  }

  void WriteDescription() {
    m_text += ".SH DESCRIPTION\n" + Sentences(m_command.get_description() + '.');
    for (const Section& section : m_command.explanation)
      WriteSection(".SS", section);
  }

  void WriteSection(const std::string& macro, const Section& section) {
    if (section.paragraphs.empty()) return;
    const std::string heading = macro == ".SH" ? Upper(section.heading) : section.heading;
    if (!heading.empty()) m_text += macro + ' ' + Escaped(heading) + '\n';
    for (const Paragraph& paragraph : section.paragraphs) {
      const bool first = !heading.empty() && &paragraph == &section.paragraphs.front();
      if (!paragraph.term.empty()) {
        WriteTerm(Bold(paragraph.term), paragraph.text);
      } else {
        m_text += (first ? "" : ".PP\n") + Sentences(paragraph.text);
      }
    }
  }

  void WriteTerm(const std::string& term, const std::string& text) { m_text += ".TP\n" + Line(term) + Sentences(text); }

  void WriteOptions(const std::string& heading, const std::vector<OptionView>& views) {
    if (views.empty()) return;
    m_text += ".SH " + heading + '\n';
    for (const OptionView& view : views) {
      std::string term;
      for (const std::string& name : view.names)
        term += (term.empty() ? "" : ", ") + Bold(name);
      if (!view.argument.empty()) term += (term.empty() ? "" : " ") + Italic(view.argument);
      if (view.names.empty() && view.repeated) term += "...";
      WriteTerm(term, view.text + '.');
    }
  }

  void WriteSubcommands() {
    if (Subcommands(m_command).empty()) return;
    m_text += ".SH SUBCOMMANDS\n";
    for (const Command* subcommand : Subcommands(m_command))
      WriteTerm(Bold(subcommand->get_name()), subcommand->get_description() + '.');
  }

  // The pages of the family without this one.
  void WriteSeeAlso() {
    const CLI::App* parent = m_command.get_parent();
    const Command& top = parent == nullptr ? m_command : AsCommand(*parent);
    std::vector<const Command*> others = Subcommands(top);
    others.insert(others.begin(), &top);
    others.erase(std::remove(others.begin(), others.end(), &m_command), others.end());
    m_text += ".SH SEE ALSO\n";
    for (const Command* other : others)
      m_text += ".BR " + Escaped(PageName(*other)) + " (1)" + (other == others.back() ? "\n" : ",\n");
  }

  const Command& m_command;
  std::string m_text;
};

}  // namespace

std::string PageName(const Command& command) {
  std::string name = command.FullName();
  std::replace(name.begin(), name.end(), ' ', '-');
  return name;
}

std::string ManPage(const Command& command, const std::string& date) {
  return Page(command, date).Write();
}
