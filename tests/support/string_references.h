#ifndef VARNEL_TESTS_STRING_REFERENCES_H
#define VARNEL_TESTS_STRING_REFERENCES_H

#include <optional>
#include <random>
#include <string>
#include <vector>

/// Plain versions of the string functions, slow and obviously correct. The library is compared with them for generated
/// texts.
namespace VARNEL_TEST::Reference {

void TrimLeft(std::string& s);
void TrimRight(std::string& s);
void Trim(std::string& s);

/// Whole-text match where "*" is the only wildcard.
bool MatchesStars(const std::string& text, const std::string& pattern);

/// The matcher that ignores case, a cursor at a time.
int MatchNoCase(const char* text, const char* pattern);

/// Replaces the first occurrence until none is left; absent if that needs more than `limit` replacements.
std::optional<std::string> Replace(std::string s, const std::string& from, const std::string& to, size_t limit);

void Collapse(std::string& s);
void UpperCase(std::string& s);
std::string CleanLineEnds(const char* text);
bool AttributeValue(const char* text, const std::string& name, std::string& value);
void Split(const char* text, char separator, std::vector<std::string>& fields);

}  // namespace VARNEL_TEST::Reference

namespace VARNEL_TEST {

/// All texts of 0 to `longest` pieces.
std::vector<std::string> AllTexts(const std::vector<std::string>& pieces, size_t longest);
/// All texts of 0 to `longest` characters out of `alphabet`.
std::vector<std::string> AllTexts(const std::string& alphabet, size_t longest);

/// Texts that are the same in every run.
class RandomTexts {
 public:
  explicit RandomTexts(unsigned int seed) : m_engine(seed) {}

  /// A number below `limit`.
  size_t Below(size_t limit) { return m_engine() % limit; }
  /// A text of 0 to `longest` characters out of `alphabet`.
  std::string Next(const std::string& alphabet, size_t longest);

 private:
  std::mt19937 m_engine;
};

}  // namespace VARNEL_TEST

#endif
