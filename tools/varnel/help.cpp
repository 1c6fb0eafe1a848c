#include "help.h"

#include <algorithm>

#include "command.h"
#include "option_view.h"
#include "wrap.h"

namespace {

constexpr size_t WIDTH = 80;
constexpr size_t TERM_INDENT = 2;
constexpr size_t WIDEST_TERM = 20;       // a longer one has a line of its own
constexpr size_t BELOW_TERM_INDENT = 6;  // where all of them are longer

// Lines after the first begin at `indent`.
void AppendWrapped(std::string& help, const std::string& text, size_t indent) {
  help += CLI::detail::join(Wrapped(text, WIDTH - indent), '\n' + std::string(indent, ' ')) + '\n';
}

void AppendTerm(std::string& help, const Paragraph& paragraph, size_t indent) {
  help += std::string(TERM_INDENT, ' ') + paragraph.term;
  const size_t column = TERM_INDENT + paragraph.term.size();
  help += column + 2 > indent ? '\n' + std::string(indent, ' ') : std::string(indent - column, ' ');
  AppendWrapped(help, paragraph.text, indent);
}

// Where the texts of a section begin behind its terms.
size_t TextIndent(const Section& section) {
  size_t widest = 0;
  for (const Paragraph& paragraph : section.paragraphs) {
    if (paragraph.term.size() <= WIDEST_TERM) widest = std::max(widest, paragraph.term.size());
  }
  return widest == 0 ? BELOW_TERM_INDENT : TERM_INDENT + widest + 2;
}

void AppendSection(std::string& help, const Section& section) {
  if (section.paragraphs.empty()) return;
  help += '\n';
  if (!section.heading.empty()) help += section.heading + ":\n";
  const size_t indent = TextIndent(section);
  for (const Paragraph& paragraph : section.paragraphs) {
    if (paragraph.term.empty()) {
      if (&paragraph != &section.paragraphs.front()) help += '\n';
      const size_t margin = section.heading.empty() ? 0 : TERM_INDENT;
      help += std::string(margin, ' ');
      AppendWrapped(help, paragraph.text, margin);
    } else {
      AppendTerm(help, paragraph, indent);
    }
  }
}

Paragraph ToParagraph(const OptionView& view) {
  std::string term = CLI::detail::join(view.names, ", ");
  if (!term.empty() && !view.argument.empty()) term += ' ';
  term += view.argument;
  if (view.names.empty() && view.repeated) term += "...";
  return {term, view.text};
}

Section ToSection(const std::string& heading, const std::vector<OptionView>& views) {
  Section section{heading, {}};
  for (const OptionView& view : views)
    section.paragraphs.push_back(ToParagraph(view));
  return section;
}

Section SubcommandsOf(const Command& command) {
  Section section{"Subcommands", {}};
  for (const Command* subcommand : Subcommands(command))
    section.paragraphs.push_back({subcommand->get_name(), subcommand->get_description()});
  return section;
}

}  // namespace

std::string HelpFormatter::make_help(const CLI::App* app, std::string /*name*/, CLI::AppFormatMode /*mode*/) const {
  const Command& command = AsCommand(*app);
  std::string help;
  AppendWrapped(help, command.get_description() + '.', 0);
  help += "\nUsage: " + command.FullName() + ' ' + CLI::detail::join(Operands(command), " ") + '\n';
  AppendSection(help, ToSection("Arguments", Arguments(command)));
  AppendSection(help, ToSection("Options", Options(command)));
  AppendSection(help, SubcommandsOf(command));
  for (const Section& section : command.explanation)
    AppendSection(help, section);
  AppendSection(help, command.exitStatus);
  AppendSection(help, command.examples);
  return help;
}
