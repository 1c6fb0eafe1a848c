#ifndef VARNEL_TOOLS_JSON_H
#define VARNEL_TOOLS_JSON_H

#include <rapidjson/allocators.h>
#include <rapidjson/writer.h>

#include <cstddef>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

/// What RapidJSON writes to. Memory exhaustion throws std::bad_alloc.
class JsonText {
 public:
  using Ch = char;

  JsonText() = default;
  JsonText(const JsonText&) = delete;
  JsonText& operator=(const JsonText&) = delete;

  void Put(char c) {
    *Room(1) = c;
    ++m_end;
  }
  void Flush() const {}

  /// The place after the text, for `size` bytes; Use() makes what was written there part of the text.
  char* Room(size_t size) {
    if (static_cast<size_t>(m_limit - m_end) < size) Grow(size);
    return m_end;
  }
  void Use(size_t size) { m_end += size; }

  std::string_view View() const { return {m_memory.data(), static_cast<size_t>(m_end - m_memory.data())}; }
  void Clear() { m_end = m_memory.data(); }

 private:
  void Grow(size_t size);

  std::vector<char> m_memory = std::vector<char>(1024);
  char* m_end = m_memory.data();
  char* m_limit = m_end + m_memory.size();
};

/// Composes JSON objects, each on a line.
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
  template <size_t SIZE, typename T>
  JsonWriter& Add(const char (&key)[SIZE], const T& value) {
    Key(key);
    Value(value);
    return *this;
  }

  /// Adds a text; null if it is empty.
  template <size_t SIZE>
  JsonWriter& AddOrNull(const char (&key)[SIZE], std::string_view text) {
    Key(key);
    ValueOrNull(text);
    return *this;
  }

  /// The parts of larger members: after a key comes one value, which can be an object or array.
  template <size_t SIZE>
  void Key(const char (&key)[SIZE]) {
    m_writer.Name(key);
  }
  void AnyKey(std::string_view key) { m_writer.Text(key); }  ///< for one with special characters
  void BeginObject() { m_writer.StartObject(); }
  void EndObject() { m_writer.EndObject(); }
  void BeginArray() { m_writer.StartArray(); }
  void EndArray() { m_writer.EndArray(); }

  void Value(std::string_view text) { m_writer.Text(text); }
  void Value(const std::string& text) { m_writer.Text(text); }
  void Value(const char* text) { m_writer.Text(text); }
  void Value(std::nullptr_t) { m_writer.Absent(); }
  void Value(bool value) { m_writer.Bool(value); }

  void Value(double number) { m_writer.Double(number); }

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

  /// Appends the object and its line end to a text and begins the next one.
  void AppendTo(std::string& lines);

 private:
  void Begin();
  void End();

  // The levels of objects are kept in memory that is provided here, as RapidJSON does not check what it allocates.
  using Levels = rapidjson::MemoryPoolAllocator<>;

  class Writer : public rapidjson::Writer<JsonText, rapidjson::UTF8<>, rapidjson::UTF8<>, Levels> {
   public:
    using rapidjson::Writer<JsonText, rapidjson::UTF8<>, rapidjson::UTF8<>, Levels>::Writer;

    /// A text in which nothing needs an escape.
    template <size_t SIZE>
    void Name(const char (&name)[SIZE]) {
      Prefix(rapidjson::kStringType);
      char* const to = os_->Room(SIZE + 1);
      to[0] = '"';
      std::memcpy(to + 1, name, SIZE - 1);
      to[SIZE] = '"';
      os_->Use(SIZE + 1);
    }
    void Text(std::string_view text);
    void Absent() {
      Prefix(rapidjson::kNullType);
      std::memcpy(os_->Room(4), "null", 4);
      os_->Use(4);
    }
  };

  char m_memory[2048];
  Levels m_levels{m_memory, sizeof m_memory};
  JsonText m_text;
  Writer m_writer{m_text, &m_levels};
};

#endif
