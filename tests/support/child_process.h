#pragma once

// Steps in a child process of the test's: as another user, or stopped at a system call. On Linux.

#include <csignal>
#include <cstdio>
#include <functional>
#include <string>
#include <sys/ptrace.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qorgen::tests {

// What the steps give in a child: the number under 100 that they return; -1 when it didn't end by itself. With a user
// and group other than 0 as those, which only the superuser can bring about.
inline int InChild(uid_t user, gid_t group, const std::function<int()>& steps) {
  const pid_t child = fork();
  if (child == 0) {
    const bool other = user != 0 && (setgid(group) != 0 || setuid(user) != 0);
    _exit(other ? 100 : steps());
  }
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}
inline int InChild(const std::function<int()>& steps) {
  return InChild(0, 0, steps);
}

// Takes the steps in a child that stops as its system call number `n` begins, and lets `atStop` have a look. The child
// then goes on to its end, or ends there when `kills`. False when it has fewer calls.
inline bool StopsAtCall(int n, bool kills, const std::function<void()>& steps,
                        const std::function<void()>& atStop) {
  const pid_t child = fork();
  if (child == 0) {
    ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    raise(SIGSTOP);
    steps();
    _exit(0);
  }
  if (child < 0) return false;
  int status = 0;
  waitpid(child, &status, 0);
  bool reached = true;
  // Each call stops the child twice.
  for (int stop = 0; stop < 2 * n - 1 && reached; ++stop) {
    ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    reached = waitpid(child, &status, 0) == child && WIFSTOPPED(status);
  }
  if (!reached) return false;
  atStop();
  if (kills) {
    kill(child, SIGKILL);
  } else {
    ptrace(PTRACE_DETACH, child, nullptr, nullptr);
  }
  waitpid(child, &status, 0);
  return true;
}

}  // namespace qorgen::tests
