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
    m_writer.Member(key);
    Write(value);
    return *this;
  }
  template <size_t SIZE, typename T>
  JsonWriter& Add(const char (&key)[SIZE], const std::vector<T>& list) {
    Key(key);
    BeginArray();
    for (const T& item : list)
      Value(item);
    EndArray();
    return *this;
  }

  /// Adds a text; null if it is empty.
  template <size_t SIZE>
  JsonWriter& AddOrNull(const char (&key)[SIZE], std::string_view text) {
    m_writer.Member(key);
    WriteOrNull(text);
    return *this;
  }

  /// The parts of larger members: after a key comes one value, which can be an object or array.
  template <size_t SIZE>
  void Key(const char (&key)[SIZE]) {
    m_writer.Name(key);
  }
  void AnyKey(std::string_view key) { Value(key); }  ///< for one with special characters
  void BeginObject() { m_writer.StartObject(); }
  void EndObject() { m_writer.EndObject(); }
  void BeginArray() { m_writer.StartArray(); }
  void EndArray() { m_writer.EndArray(); }

  template <typename T>
  void Value(const T& value) {
    m_writer.Separate();
    Write(value);
  }
  void ValueOrNull(std::string_view text) {
    m_writer.Separate();
    WriteOrNull(text);
  }

  /// Prints the object and begins the next one.
  void Print();

  /// Appends the object and its line end to a text and begins the next one.
  void AppendTo(std::string& lines);

 private:
  void Begin();
  void End();

  template <typename T>
  void Write(const T& value) {
    if constexpr (std::is_same_v<T, bool>) {
      m_writer.WriteBool(value);
    } else if constexpr (std::is_same_v<T, std::nullptr_t>) {
      m_writer.WriteNull();
    } else if constexpr (std::is_floating_point_v<T>) {
      m_writer.WriteDouble(value);
    } else if constexpr (std::is_signed_v<T>) {
      m_writer.WriteInt64(value);
    } else if constexpr (std::is_unsigned_v<T>) {
      m_writer.WriteUint64(value);
    } else {
      m_writer.WriteText(value);
    }
  }
  template <typename T>
  void Write(const std::optional<T>& value) {
    if (value) {
      Write(*value);
    } else {
      Write(nullptr);
    }
  }
  void WriteOrNull(std::string_view text) {
    if (text.empty()) {
      Write(nullptr);
    } else {
      Write(text);
    }
  }

  // The levels of objects are kept in memory that is provided here, as RapidJSON does not check what it allocates.
  using Levels = rapidjson::MemoryPoolAllocator<>;

  using Base = rapidjson::Writer<JsonText, rapidjson::UTF8<>, rapidjson::UTF8<>, Levels>;

  class Writer : public Base {
   public:
    using Base::Base;
    using Base::WriteBool;
    using Base::WriteDouble;
    using Base::WriteInt64;
    using Base::WriteUint64;

    /// A key in which nothing needs an escape. A value follows, after Separate().
    template <size_t SIZE>
    void Name(const char (&name)[SIZE]) {
      WriteName(name, 1);
    }
    /// The same and the colon: a Write...() follows, without Separate().
    template <size_t SIZE>
    void Member(const char (&name)[SIZE]) {
      WriteName(name, 2);
      os_->Put(':');
    }
    void Separate() { Prefix(rapidjson::kStringType); }
    void WriteText(std::string_view text);
    void WriteNull() {
      std::memcpy(os_->Room(4), "null", 4);
      os_->Use(4);
    }

   private:
    // `written` is how many of key and value count as written.
    template <size_t SIZE>
    void WriteName(const char (&name)[SIZE], size_t written) {
      size_t& count = level_stack_.template Top<Level>()->valueCount;
      const size_t comma = count > 0 ? 1 : 0;
      count += written;
      char* const to = os_->Room(SIZE + 2);
      to[0] = ',';
      to[comma] = '"';
      std::memcpy(to + comma + 1, name, SIZE - 1);
      to[comma + SIZE] = '"';
      os_->Use(comma + SIZE + 1);
    }
  };

  char m_memory[2048];
  Levels m_levels{m_memory, sizeof m_memory};
  JsonText m_text;
  Writer m_writer{m_text, &m_levels};
};

#endif
