#include "option_view.h"

#include <algorithm>

namespace {

using Names = std::vector<std::string>;

std::string Joined(const Names& words) {
  return CLI::detail::join(words, ", ");
}

// CLI11 keeps other options by address.
Names SortedNames(const std::set<CLI::Option*>& options) {
  Names names;
  for (const CLI::Option* option : options)
    names.push_back(option->get_name());
  std::sort(names.begin(), names.end());
  return names;
}

// The type name ends in ":{a,b}" where OneOf() checks the values.
void SplitTypeName(const CLI::Option& option, OptionView& view) {
  const std::string type = option.get_type_name();
  const size_t list = type.find(":{");
  view.argument = type.substr(0, list);
  if (list != std::string::npos) view.choices = CLI::detail::split(type.substr(list + 2, type.size() - list - 3), ',');
}

Names Remarks(const CLI::Option& option, const OptionView& view) {
  Names remarks;
  if (!view.choices.empty()) remarks.push_back("values: " + Joined(view.choices));
  if (view.delimiter != '\0') {
    remarks.emplace_back("several are separated by commas");
  } else if (view.repeated && !view.names.empty()) {
    remarks.emplace_back("may be repeated");
  }
  if (!option.get_default_str().empty()) remarks.push_back("default: " + option.get_default_str());
  if (!option.get_needs().empty()) remarks.push_back("only with " + Joined(SortedNames(option.get_needs())));
  if (!option.get_excludes().empty()) remarks.push_back("not with " + Joined(SortedNames(option.get_excludes())));
  return remarks;
}

OptionView View(const CLI::Option& option) {
  OptionView view;
  for (const std::string& name : option.get_snames())
    view.names.push_back('-' + name);
  for (const std::string& name : option.get_lnames())
    view.names.push_back("--" + name);
  if (option.get_items_expected_max() > 0) SplitTypeName(option, view);
  if (option.get_positional()) view.argument = option.get_name(true);
  view.required = option.get_required();
  view.repeated = option.get_items_expected_max() >= CLI::detail::expected_max_vector_size;
  if (view.repeated) view.delimiter = option.get_delimiter();
  view.text = option.get_description();
  const Names remarks = Remarks(option, view);
  if (!remarks.empty()) view.text += " (" + CLI::detail::join(remarks, "; ") + ')';
  return view;
}

void AddOptions(const Command& command, bool fromAbove, std::vector<OptionView>& views) {
  for (const CLI::Option* option : command.get_options()) {
    const bool ownOnly = option == command.get_help_ptr() || option == command.get_version_ptr();
    if (option->nonpositional() && !(fromAbove && ownOnly)) views.push_back(View(*option));
  }
  if (command.get_parent() != nullptr) AddOptions(AsCommand(*command.get_parent()), true, views);
}

}  // namespace

// By these names arguments of all subcommands are known for paths.
bool OptionView::TakesPath() const {
  return argument == "FILE" || argument == "PATH" || argument == "OUTPUT";
}

std::vector<OptionView> Arguments(const Command& command) {
  std::vector<OptionView> views;
  for (const CLI::Option* option : command.get_options()) {
    if (option->get_positional()) views.push_back(View(*option));
  }
  return views;
}

std::vector<OptionView> Options(const Command& command) {
  std::vector<OptionView> views;
  AddOptions(command, false, views);
  return views;
}

std::vector<const Command*> Subcommands(const Command& command) {
  std::vector<const Command*> commands;
  for (const CLI::App* app : command.get_subcommands({}))
    commands.push_back(&AsCommand(*app));
  return commands;
}

std::vector<std::string> Operands(const Command& command) {
  Names operands{"[OPTIONS]"};
  if (!Subcommands(command).empty()) operands.emplace_back("SUBCOMMAND");
  for (const OptionView& view : Arguments(command)) {
    const std::string name = view.argument + (view.repeated ? "..." : "");
    operands.push_back(view.required ? name : '[' + name + ']');
  }
  return operands;
}
