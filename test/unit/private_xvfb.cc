#include "unit/private_xvfb.h"

#include <atomic>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace deskhand {
namespace {

/// Another for each server of a process, and far from those of other processes: nobody who looks
/// for a server that has gone finds another's.
std::string NextDisplay() {
  static std::atomic<int> count = 0;
  constexpr int kFirst = 20000, kProcesses = 4000, kServersOfProcess = 10;
  return ":" + std::to_string(kFirst + getpid() % kProcesses * kServersOfProcess +
                              count++ % kServersOfProcess);
}

}  // namespace

PrivateXvfb::PrivateXvfb() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return;
  const std::string display = NextDisplay();
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[1], 3);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  // A test that a sanitizer ends runs no destructor: the server must not outlive it.
  const char* const arguments[] = {"setpriv",    "--pdeathsig", "KILL",    "Xvfb", display.c_str(),
                                   "-displayfd", "3",           "-screen", "0",    "1280x720x24",
                                   "-noreset",   "-nolisten",   "tcp",     nullptr};
  const int error = posix_spawnp(&pid_, "setpriv", &actions, nullptr,
                                 const_cast<char* const*>(arguments), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(ends[1]);
  if (error != 0) pid_ = -1;
  // Its number and a line feed, once the server accepts connections.
  bool is_ready = false;
  for (char byte = 0; !is_ready && read(ends[0], &byte, 1) == 1;) is_ready = byte == '\n';
  close(ends[0]);
  if (!is_ready) return;
  display_ = display;
  setenv("DISPLAY", display_.c_str(), 1);
}

PrivateXvfb::~PrivateXvfb() { Kill(); }

void PrivateXvfb::Stop() const { kill(pid_, SIGSTOP); }

void PrivateXvfb::Continue() const { kill(pid_, SIGCONT); }

void PrivateXvfb::Kill() {
  if (pid_ <= 0) return;
  kill(pid_, SIGKILL);
  waitpid(pid_, nullptr, 0);
  pid_ = -1;
}

}  // namespace deskhand
