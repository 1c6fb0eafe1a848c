#ifndef VARNEL_TOOLS_LIBRARY_LOG_H
#define VARNEL_TOOLS_LIBRARY_LOG_H

/// Takes over the log lines of the library: to standard error when `visible`, else nowhere, since the command says in
/// its own words what is wrong.
void RouteLibraryLog(bool visible);

#endif
