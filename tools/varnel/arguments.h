#ifndef VARNEL_TOOLS_ARGUMENTS_H
#define VARNEL_TOOLS_ARGUMENTS_H

#include <CLI/CLI.hpp>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// Lets an option take numbers within limits, decimal or hexadecimal behind "0x", and its help tell the limits.
CLI::Option* TakeNumbers(CLI::Option* option, uint64_t least, uint64_t most);

/// Takes a value that is one of these.
CLI::Validator OneOf(const std::vector<std::string>& values);

/// Adds --generation CODE, a signed decimal number of 32 bits.
CLI::Option* AddGenerationOption(CLI::App& command, std::optional<int>& generation, const std::string& help);

/// Hands over each text of the command line, and in place of "-" each line of standard input as it comes, without its
/// line end (LF or CR LF). Empty lines are passed over.
///
/// @param examine  false for a text that is bad; the others are handed over all the same.
/// @return false when one was bad or standard input cannot be read.
bool ForEachText(const std::vector<std::string>& texts, const std::function<bool(const std::string& text)>& examine);

#endif
