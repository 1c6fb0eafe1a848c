#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <exception>
#include <iostream>

#include "command_line.h"
#include "output.h"

namespace {

// A file that is opened later is not to take the place of a closed standard stream. The wrong direction keeps the use
// of that stream an error.
void OccupyClosedStandardStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) == -1) open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

}  // namespace

int main(int argc, char** argv) {
  OccupyClosedStandardStreams();
  std::signal(SIGPIPE, SIG_DFL);  // a reader that goes away ends the command quietly, whatever the parent ignored
  std::ios::sync_with_stdio(false);
  int status = EXIT_BAD;
  try {
    status = CommandLine().Run(argc, argv);
  } catch (const std::exception& error) {
    Complain("failed", error.what());
  }
  if (!std::cout.flush()) {
    Complain("standard output", "cannot write");
    return EXIT_BAD;
  }
  return status;
}
