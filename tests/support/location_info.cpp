// For replacements of the platform's log service, which must not link the rest of it.
#include <platform/log_process.h>

LocationInfo::LocationInfo(const char* module, const char* function, int line)
    : m_module(module), m_function(function), m_line(line) {}

const char* LocationInfo::Module() const {
  return m_module;
}

const char* LocationInfo::Function() const {
  return m_function;
}

int LocationInfo::Line() const {
  return m_line;
}
