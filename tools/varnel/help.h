#ifndef VARNEL_TOOLS_HELP_H
#define VARNEL_TOOLS_HELP_H

#include <CLI/CLI.hpp>
#include <string>

/// Prints what a Command tells of itself as plain text of 80 columns.
class HelpFormatter : public CLI::FormatterBase {
 public:
  std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override;
};

#endif
