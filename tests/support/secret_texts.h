#ifndef VARNEL_TESTS_SECRET_TEXTS_H
#define VARNEL_TESTS_SECRET_TEXTS_H

#include <functional>
#include <random>
#include <string>
#include <vector>

namespace VARNEL_TEST {

/// A part of every password in a generated text.
constexpr char SECRET[] = "s3cr3t";

/// A language whose well-formed texts can be generated.
struct Language {
  const char* name;

  /// Writes a text of some values, a quarter of them inside a JSON text. With a secret, the text has one password,
  /// which contains SECRET, at a random position among values that look like keys, quotes and separators. Without one,
  /// the text has no key and no TL1 command with a password, only the other values.
  std::function<std::string(std::mt19937& random, bool hasSecret)> write;
};

const std::vector<Language>& Languages();

}  // namespace VARNEL_TEST

#endif
