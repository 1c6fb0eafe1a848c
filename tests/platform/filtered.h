#ifndef VARNEL_TESTS_FILTERED_H
#define VARNEL_TESTS_FILTERED_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/ns_util.h"

namespace VARNEL_TEST {

inline std::string Filtered(std::string text) {
  NS_UTIL::CDCLogFilter::getInstance()->replaceAllSensInfo(text);
  return text;
}

/// A text and the result of the filter.
struct Case {
  std::string text;
  std::string masked;
};

inline void ExpectMasked(const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    EXPECT_EQ(Filtered(c.text), c.masked) << c.text;
    EXPECT_EQ(Filtered(c.masked), c.masked) << "filtered twice";
  }
}

}  // namespace VARNEL_TEST

#endif
