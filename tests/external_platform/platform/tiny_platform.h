#ifndef TINY_PLATFORM_H
#define TINY_PLATFORM_H

#include <string>
#include <vector>

/// The log lines of the library: "<module> <level> <text>".
std::vector<std::string>& CollectedLines();

/// Calls of the file functions.
int& FileCalls();

#endif
