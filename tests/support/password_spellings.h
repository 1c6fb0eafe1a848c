#ifndef VARNEL_TESTS_PASSWORD_SPELLINGS_H
#define VARNEL_TESTS_PASSWORD_SPELLINGS_H

#include <functional>
#include <random>
#include <string>
#include <vector>

namespace VARNEL_TEST {

/// A spelling of a password in a text, and the expected filtered text.
struct Spelling {
  const char* name;
  std::function<std::string(const std::string& password)> write;  ///< returns "" if it cannot be spelled so
  std::string masked;
};

/// Every spelling that the log filter masks.
const std::vector<Spelling>& Spellings();

/// A password of 1 to 12 characters, including all that could end a value.
std::string GeneratePassword(std::mt19937& random);

}  // namespace VARNEL_TEST

#endif
