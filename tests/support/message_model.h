#ifndef VARNEL_TESTS_MESSAGE_MODEL_H
#define VARNEL_TESTS_MESSAGE_MODEL_H

#include <algorithm>
#include <cstddef>
#include <string>

namespace VARNEL_TEST {

/// A plain CComNEMsg: the body as a string, the size of the buffer as a number, and how many warnings there were.
struct MessageModel {
  static constexpr size_t LONGEST = 65534;

  std::string body;
  size_t size = 1024;
  size_t warnings = 0;

  void Set(const std::string& data) {
    warnings += data.size() > LONGEST ? 1U : 0U;
    body = data.substr(0, LONGEST);
    if (size < body.size() + 1) size = body.size() + 1024;
  }

  void Add(const std::string& data) {
    warnings += body.size() + data.size() > LONGEST ? 1U : 0U;
    const std::string fitting = data.substr(0, LONGEST - body.size());
    if (fitting.empty()) return;
    body += fitting;
    if (size < body.size() + 1) size = body.size() + 1024;
  }

  void SetBufLen(size_t length) {
    warnings += length > LONGEST ? 1U : 0U;
    size = std::max(size, std::min(length, LONGEST));
  }
};

}  // namespace VARNEL_TEST

#endif
