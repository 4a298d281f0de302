#include "unit/child_process.h"

#include <cstdlib>
#include <fstream>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "unit/entry_folders.h"

namespace deskhand {
namespace {

std::vector<char*> Pointers(const std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (const std::string& text : texts) pointers.push_back(const_cast<char*>(text.c_str()));
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& arguments,
                           const std::vector<std::string>& environment) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return;
  input_ = ends[1];
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[0], 0);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  if (posix_spawnp(&pid_, arguments.front().c_str(), &actions, nullptr, Pointers(arguments).data(),
                   Pointers(environment).data()) != 0) {
    pid_ = -1;
  }
  posix_spawn_file_actions_destroy(&actions);
  close(ends[0]);
  // The process is there before the kernel has given it its arguments.
  const auto has_arguments = [&] {
    return std::ifstream("/proc/" + std::to_string(pid_) + "/cmdline").get() != EOF;
  };
  if (pid_ > 0 && !Eventually(has_arguments)) abort();
}

ChildProcess::~ChildProcess() {
  Kill();
  Reap();
  if (input_ >= 0) close(input_);
}

void ChildProcess::SayLine() const {
  if (write(input_, "\n", 1) != 1) abort();
}

void ChildProcess::Kill() const {
  if (pid_ <= 0) return;
  kill(pid_, SIGKILL);
  siginfo_t info;
  waitid(P_PID, static_cast<id_t>(pid_), &info, WEXITED | WNOWAIT);
}

void ChildProcess::Reap() {
  if (pid_ <= 0) return;
  waitpid(pid_, nullptr, 0);
  pid_ = -1;
}

}  // namespace deskhand
