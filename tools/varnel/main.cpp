#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <exception>
#include <iostream>

#include "command_line.h"
#include "output.h"

namespace {

// Replaces closed standard streams, so that no file opened later gets their descriptors. The direction is the wrong
// one: using the stream is still an error.
void OccupyClosedStandardStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) == -1) open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

}  // namespace

int main(int argc, char** argv) {
  OccupyClosedStandardStreams();
  std::signal(SIGPIPE, SIG_DFL);  // a closed pipe ends the command quietly, even if the parent ignored SIGPIPE
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
