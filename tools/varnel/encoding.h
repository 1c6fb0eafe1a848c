#ifndef VARNEL_TOOLS_ENCODING_H
#define VARNEL_TOOLS_ENCODING_H

#include <iconv.h>

#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

/// The character encoding of an input.
class Encoding {
 public:
  /// Returns why a name is refused; empty if it is known to iconv(3) and extends ASCII.
  static std::string Check(const std::string& name);

  /// @param name  accepted by Check()
  explicit Encoding(const std::string& name);

  bool IsValid(std::string_view text);

  /// The text in UTF-8, with U+FFFD for each byte that is invalid. Valid until the next call, at most as long as
  /// `text`.
  std::string_view ToUtf8(std::string_view text);

 private:
  struct Close {
    void operator()(iconv_t converter) const { iconv_close(converter); }
  };

  bool Convert(std::string_view text);

  std::unique_ptr<std::remove_pointer_t<iconv_t>, Close> m_converter;  // none for UTF-8
  std::string m_text;
};

#endif
