#ifndef VARNEL_TOOLS_ASK_RUN_H
#define VARNEL_TOOLS_ASK_RUN_H

#include <command.h>
#include <session.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "ask_output.h"
#include "dialogue.h"
#include "line_input.h"
#include "password.h"

struct AskOptions {
  std::string address;
  std::vector<std::string> commands;  ///< "-" for those of standard input
  std::string tid;
  std::string user;  ///< empty for no log-in
  std::string passwordFile;
  double timeout = 30;  ///< in seconds
  bool keepGoing = false;
  bool events = false;
  bool dryRun = false;
  bool json = false;
};

/// Returns why a user name or password is refused; empty if both are accepted.
std::string CheckLogIn(std::string_view user, std::string_view password);

/// Runs a session with an element: log-in, commands, log-out.
class AskRun {
 public:
  /// @throw CLI::ValidationError  if a command is wrong
  explicit AskRun(const AskOptions& options);

  /// @return the exit status
  int Run();

 private:
  /// @return whether the run continues
  using Use = std::function<bool(VARNEL_TL1::Command& command)>;

  void PrepareCommands();
  bool ForEachCommand(const Use& use);
  bool ForEachLine(const Use& use);
  bool UseLine(std::string_view line, const Use& use);
  bool WaitForInput();

  void ShowAll();
  void ShowOutput();
  bool ReadPassword();
  bool Connect();
  bool LogIn();
  bool Send(VARNEL_TL1::Command& command);
  void LogOut();

  bool IsOver() { return m_signals.Arrived() != 0 || m_output.HasFailed(); }
  void Await();
  void TakeEvents();
  void Take(const VARNEL_TL1::Event& event);
  void TakeAnswer(const VARNEL_TL1::Message& message);
  std::string NoAnswer() const;
  void Fail(const std::string& error);

  const AskOptions& m_options;
  Signals m_signals;
  Dialogue m_dialogue;
  AskOutput m_output;
  LineInput m_input;
  Password m_password;
  std::vector<VARNEL_TL1::Command> m_commands;  // an empty one for those of standard input
  std::string m_masked;                         // the command of the next error; empty for none
  bool m_sent = false;                          // that command was or will be sent
  bool m_pending = false;                       // a log-in, command or log-out
  bool m_completed = false;                     // the last one of them
  int m_status;
};

#endif
