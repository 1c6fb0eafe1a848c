#include "unprivileged.h"

#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

namespace VARNEL_TEST {

namespace {

constexpr unsigned int NOBODY = 65534;

bool GiveUpRights() {
  if (geteuid() != 0) return true;
  return setgroups(0, nullptr) == 0 && setgid(NOBODY) == 0 && setuid(NOBODY) == 0;
}

}  // namespace

bool HoldsUnprivileged(const std::function<bool()>& check) {
  const pid_t child = fork();
  if (child == -1) throw std::runtime_error("cannot start a child process");
  if (child == 0) _exit(GiveUpRights() && check() ? 0 : 1);
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace VARNEL_TEST
