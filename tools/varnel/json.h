#ifndef VARNEL_TOOLS_JSON_H
#define VARNEL_TOOLS_JSON_H

#include <rapidjson/allocators.h>
#include <rapidjson/writer.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

/// What RapidJSON writes to. Memory exhaustion throws std::bad_alloc.
struct JsonText {
  using Ch = char;
  void Put(char c) { text.push_back(c); }
  void Flush() const {}

  std::string text;
};

/// Composes JSON objects, each on a line of standard output.
///
///     JsonWriter().Add("name", name).Add("size", size).Print();
///
/// The output is valid UTF-8: a byte of a text that is not becomes U+FFFD. Control characters (C0, DEL, C1) and those
/// that change the direction of writing become \uNNNN.
class JsonWriter {
 public:
  JsonWriter() { m_writer.StartObject(); }
  JsonWriter(const JsonWriter&) = delete;
  JsonWriter& operator=(const JsonWriter&) = delete;

  /// Adds a member: a text, number, bool, nullptr, optional value or list of values.
  template <typename T>
  JsonWriter& Add(std::string_view key, const T& value) {
    Key(key);
    Value(value);
    return *this;
  }

  /// Adds a text; null if it is empty.
  JsonWriter& AddOrNull(std::string_view key, std::string_view text) {
    Key(key);
    ValueOrNull(text);
    return *this;
  }

  /// The parts of larger members: after a key comes one value, which can be an object or array.
  void Key(std::string_view key) { m_writer.Bare(key); }
  void AnyKey(std::string_view key) { m_writer.Text(key); }  ///< Key() is for one without special characters
  void BeginObject() { m_writer.StartObject(); }
  void EndObject() { m_writer.EndObject(); }
  void BeginArray() { m_writer.StartArray(); }
  void EndArray() { m_writer.EndArray(); }

  void Value(std::string_view text) { m_writer.Text(text); }
  void Value(const std::string& text) { m_writer.Text(text); }
  void Value(const char* text) { m_writer.Text(text); }
  void Value(std::nullptr_t) { m_writer.Null(); }
  void Value(bool value) { m_writer.Bool(value); }

  template <typename T>
  std::enable_if_t<std::is_integral_v<T>> Value(T number) {
    if constexpr (std::is_signed_v<T>) {
      m_writer.Int64(number);
    } else {
      m_writer.Uint64(number);
    }
  }

  template <typename T>
  void Value(const std::optional<T>& value) {
    if (value) {
      Value(*value);
    } else {
      Value(nullptr);
    }
  }

  template <typename T>
  void Value(const std::vector<T>& list) {
    BeginArray();
    for (const T& item : list)
      Value(item);
    EndArray();
  }

  void ValueOrNull(std::string_view text) {
    if (text.empty()) {
      Value(nullptr);
    } else {
      Value(text);
    }
  }

  /// Prints the object and begins the next one.
  void Print();

 private:
  // The levels of objects are kept in memory that is provided here, as RapidJSON does not check what it allocates.
  using Levels = rapidjson::MemoryPoolAllocator<>;

  class Writer : public rapidjson::Writer<JsonText, rapidjson::UTF8<>, rapidjson::UTF8<>, Levels> {
   public:
    using rapidjson::Writer<JsonText, rapidjson::UTF8<>, rapidjson::UTF8<>, Levels>::Writer;

    /// A text in which nothing needs an escape.
    void Bare(std::string_view text) {
      Prefix(rapidjson::kStringType);
      os_->text.append(1, '"').append(text).append(1, '"');
    }
    void Text(std::string_view text);
  };

  char m_memory[2048];
  Levels m_levels{m_memory, sizeof m_memory};
  JsonText m_line;
  Writer m_writer{m_line, &m_levels};
};

#endif
