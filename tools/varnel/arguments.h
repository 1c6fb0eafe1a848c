#ifndef VARNEL_TOOLS_ARGUMENTS_H
#define VARNEL_TOOLS_ARGUMENTS_H

#include <CLI/CLI.hpp>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// Marks an option or operand whose value is the name of a file or folder, for completion. Returns the option.
CLI::Option* TakePaths(CLI::Option* option);
bool TakesPaths(const CLI::Option& option);

/// Makes an option accept numbers within limits, decimal, or hexadecimal after "0x". Returns the option.
CLI::Option* TakeNumbers(CLI::Option* option, uint64_t least, uint64_t most);

/// Makes an option accept numbers of bytes within limits, decimal, with "K" for 1024 and "M" for 1048576. Its variable
/// is a size_t, and gets the largest one if the number does not fit. Returns the option.
CLI::Option* TakeSizes(CLI::Option* option, uint64_t least, uint64_t most);

enum class Zero { Refused, Accepted };

/// Makes an option accept numbers of seconds up to a year, with fractions. Returns the option.
CLI::Option* TakeSeconds(CLI::Option* option, Zero zero = Zero::Refused);

/// Returns the error message for a value: "7x" is not a number.
std::string IsNot(const std::string& value, const std::string& expected);

/// Accepts a value that is one of these.
CLI::Validator OneOf(const std::vector<std::string>& values);

/// Adds --generation CODE, a signed decimal number of 32 bits.
CLI::Option* AddGenerationOption(CLI::App& command, std::optional<int>& generation);

/// Calls `examine` for each text of the command line, and instead of "-" for each line of standard input as it arrives,
/// without its line end (LF or CR LF). Empty lines are skipped.
///
/// @param examine  returns false for a bad text; the other texts are examined nevertheless.
/// @return false if a text was bad or standard input cannot be read.
bool ForEachText(const std::vector<std::string>& texts, const std::function<bool(const std::string& text)>& examine);

#endif
