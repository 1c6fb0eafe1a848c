#ifndef TINY_PLATFORM_H
#define TINY_PLATFORM_H

#include <string>
#include <vector>

/// What the library has logged: "<module> <level> <text>".
std::vector<std::string>& CollectedLines();

/// Calls of the file functions.
int& FileCalls();

#endif
