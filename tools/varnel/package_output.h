#ifndef VARNEL_TOOLS_PACKAGE_OUTPUT_H
#define VARNEL_TOOLS_PACKAGE_OUTPUT_H

#include "package_contents.h"

/// Prints all that is known of a package as one JSON object.
void PrintAsJson(const Package& package);

/// Prints it as rows of fields, with a table of its entries.
void PrintAsTable(const Package& package);

#endif
