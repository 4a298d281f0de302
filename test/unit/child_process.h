// A process of a test's own, which waits until it is told to go on.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <sys/types.h>

namespace deskhand {

class ChildProcess {
 public:
  /// Runs the program that the first argument names, with `environment` and no other, and returns
  /// when it runs. Its standard input is a pipe, so that `cat` or `read` waits, and ends with us.
  explicit ChildProcess(const std::vector<std::string>& arguments,
                        const std::vector<std::string>& environment = {});
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  uint32_t id() const { return static_cast<uint32_t>(pid_); }
  void SayLine() const;  // to its standard input
  void Kill() const;     // it stays in the table of processes
  void Reap();

 private:
  pid_t pid_ = -1;
  int input_ = -1;
};

}  // namespace deskhand
