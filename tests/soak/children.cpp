#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <iostream>
#include <stdexcept>

#include "soak.h"

namespace VARNEL_TEST {

namespace {

[[noreturn]] void Become(const std::vector<std::string>& command) {
  std::vector<char*> arguments;
  for (const std::string& argument : command)
    arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  execv(arguments.front(), arguments.data());
  _exit(127);
}

void RedirectStreams(int errors) {
  const int nothing = open("/dev/null", O_RDWR);
  dup2(nothing, STDIN_FILENO);
  dup2(nothing, STDOUT_FILENO);
  dup2(errors, STDERR_FILENO);
}

std::string ReadAll(int descriptor) {
  std::string text;
  char buffer[4096];
  for (ssize_t count; (count = read(descriptor, buffer, sizeof buffer)) > 0;)
    text.append(buffer, static_cast<size_t>(count));
  return text;
}

}  // namespace

// The system counts the memory that a process had before it became another program. Therefore a
// program of little memory, this one again, starts the command and reports the memory it needed.
Child RunChild(const std::vector<std::string>& command) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("cannot make a pipe");
  std::vector<std::string> measured{"/proc/self/exe", MEASURE};
  measured.insert(measured.end(), command.begin(), command.end());
  const auto start = std::chrono::steady_clock::now();
  const pid_t process = fork();
  if (process < 0) throw std::runtime_error("cannot start a process");
  if (process == 0) {
    RedirectStreams(ends[1]);
    Become(measured);
  }
  close(ends[1]);
  Child child{};
  child.errors = ReadAll(ends[0]);
  close(ends[0]);
  int status = 0;
  waitpid(process, &status, 0);
  child.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  child.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  const size_t last = child.errors.rfind(MEASURE);
  if (last == std::string::npos) throw std::runtime_error("nothing was measured");
  child.kibibytes = std::stoul(child.errors.substr(last + std::strlen(MEASURE)));
  child.errors.resize(last);
  return child;
}

int Measure(const std::vector<std::string>& command) {
  const pid_t process = fork();
  if (process == 0) Become(command);
  int status = 0;
  rusage usage = {};
  wait4(process, &status, 0, &usage);
  std::cerr << MEASURE << usage.ru_maxrss;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace VARNEL_TEST
