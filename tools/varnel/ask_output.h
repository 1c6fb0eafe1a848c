#ifndef VARNEL_TOOLS_ASK_OUTPUT_H
#define VARNEL_TOOLS_ASK_OUTPUT_H

#include <sstream>
#include <string>
#include <string_view>

#include "signals.h"
#include "tl1_output.h"

/// The output of `ask`. Signals are noticed while standard output is blocked, and a closed pipe ends only the output:
/// there may be a session to log out from.
class AskOutput {
 public:
  /// @param source       the element, as named on the command line
  /// @param showCommand  print commands before their answers, unless as JSON, which always has them
  AskOutput(std::string_view source, bool json, bool showCommand, Signals& signals);
  ~AskOutput();
  AskOutput(const AskOutput&) = delete;
  AskOutput& operator=(const AskOutput&) = delete;

  void ShowCommand(const std::string& masked);
  void ShowAnswer(const std::string& masked, const VARNEL_TL1::Message& message);
  /// Why there is no answer, on standard error too. `masked` may be empty for a command that was not sent.
  void ShowError(const std::string& masked, const std::string& error, bool sent);
  /// On standard error.
  void ShowEvent(const VARNEL_TL1::Message& message);

  /// True if standard output cannot be written any more.
  bool HasFailed() const { return m_error != 0; }

 private:
  void Compose(const std::string* masked, const VARNEL_TL1::Message& message);
  int Write(int file);
  void Print();

  const std::string_view m_source;
  const bool m_json;
  const bool m_showCommand;
  Signals& m_signals;
  std::ostringstream m_composed;  // receives the output of std::cout
  std::streambuf* const m_before;
  Tl1Output m_messages{"UTF-8"};
  JsonWriter m_writer;
  int m_error = 0;  // of writing standard output
};

#endif
