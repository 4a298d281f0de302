#include "unit/private_xvfb.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iomanip>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace deskhand {
namespace {

/// Makes the lock of a server this process's own, so that until its end no other server takes the
/// number, and nobody who looks for the one that has gone finds another.
void TakeLock(const std::string& display) {
  const std::string lock = "/tmp/.X" + display.substr(1) + "-lock";
  const std::string own = lock + "-" + std::to_string(getpid());
  std::ofstream(own) << std::setw(10) << getpid() << '\n';
  std::rename(own.c_str(), lock.c_str());
}

}  // namespace

PrivateXvfb::PrivateXvfb() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[1], 3);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  // A test that a sanitizer ends runs no destructor: the server must not outlive it.
  const char* const arguments[] = {"setpriv",   "--pdeathsig", "KILL", "Xvfb",        "-displayfd",
                                   "3",         "-screen",     "0",    "1280x720x24", "-noreset",
                                   "-nolisten", "tcp",         nullptr};
  const int error = posix_spawnp(&pid_, "setpriv", &actions, nullptr,
                                 const_cast<char* const*>(arguments), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(ends[1]);
  if (error != 0) pid_ = -1;
  // The number of the display and a line feed, once the server accepts connections.
  std::string number;
  for (char byte = 0; read(ends[0], &byte, 1) == 1 && byte != '\n';) number += byte;
  close(ends[0]);
  if (number.empty()) return;
  display_ = ":" + number;
  setenv("DISPLAY", display_.c_str(), 1);
}

PrivateXvfb::~PrivateXvfb() { Kill(); }

void PrivateXvfb::Stop() const { kill(pid_, SIGSTOP); }

void PrivateXvfb::Continue() const { kill(pid_, SIGCONT); }

void PrivateXvfb::Kill() {
  if (pid_ <= 0) return;
  if (!display_.empty()) TakeLock(display_);
  kill(pid_, SIGKILL);
  waitpid(pid_, nullptr, 0);
  pid_ = -1;
}

}  // namespace deskhand
