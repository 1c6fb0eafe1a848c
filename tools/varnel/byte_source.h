#ifndef VARNEL_TOOLS_BYTE_SOURCE_H
#define VARNEL_TOOLS_BYTE_SOURCE_H

#include <CLI/CLI.hpp>
#include <chrono>
#include <memory>
#include <string>

/// Where bytes come from while they are still being written or sent.
class ByteSource {
 public:
  enum class Status {
    Data,      ///< `bytes` is what arrived; empty only when there is a tick and it is time for it
    End,       ///< nothing more will come
    TimedOut,  ///< the time limit is over; Error() says which
    Failed,    ///< Error() says why
  };

  ByteSource() = default;
  virtual ~ByteSource() = default;
  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;

  /// Waits for bytes and replaces `bytes` by what arrived, nothing for any other status than Data.
  virtual Status Read(std::string& bytes) = 0;

  /// What went wrong, in words; empty after Data and End.
  const std::string& Error() const { return m_error; }

 protected:
  std::string m_error;
};

/// What the command line says about a source.
struct SourceOptions {
  std::string file = "-";  ///< "-" is standard input
  std::string address;     ///< HOST:PORT to connect to, instead of a file
  bool follow = false;     ///< go on as the file grows
  double timeout = 0;      ///< limit in seconds; 0 for none

  /// What messages call the source.
  const std::string& Name() const { return address.empty() ? file : address; }
};

/// Adds FILE, --connect, --follow and --timeout to a command.
void AddSourceOptions(CLI::App& command, SourceOptions& options);

/// What the time limit of a source is for. Connecting, with the look-up of the name, counts in both.
enum class Limit {
  WholeRun,  ///< from the making of the source on, however many bytes come
  Silence,   ///< for each wait for further bytes
};

/// Makes the source that the options name. It is opened by the first Read(), which also tells what is wrong with it.
///
/// @param tick  0, or the time after which Read() comes back without bytes
/// @throw CLI::ValidationError  when the options contradict each other
std::unique_ptr<ByteSource> MakeByteSource(const SourceOptions& options, Limit limit,
                                           std::chrono::milliseconds tick = std::chrono::milliseconds(0));

#endif
