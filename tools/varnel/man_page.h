#ifndef VARNEL_TOOLS_MAN_PAGE_H
#define VARNEL_TOOLS_MAN_PAGE_H

#include <string>

#include "command.h"

/// "varnel-slot", the name of a command's page.
std::string PageName(const Command& command);

/// The manual page of a command in section 1, for groff and mandoc.
///
/// @param date  "2026-01-31", or empty for none
/// @throw std::invalid_argument  for a text that is not printable ASCII
std::string ManPage(const Command& command, const std::string& date);

#endif
