#ifndef VARNEL_TOOLS_WRAP_H
#define VARNEL_TOOLS_WRAP_H

#include <string>
#include <vector>

/// Cuts a text at its blanks into lines of `width` at most; a longer word has a line of its own. At least one line.
std::vector<std::string> Wrapped(const std::string& text, size_t width);

#endif
