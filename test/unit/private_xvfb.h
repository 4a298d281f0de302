// An X server of a test's own.
#pragma once

#include <string>

#include <sys/types.h>

namespace deskhand {

/// Starts Xvfb on a free display and points DISPLAY at it; ends it when destroyed.
class PrivateXvfb {
 public:
  PrivateXvfb();
  ~PrivateXvfb();
  PrivateXvfb(const PrivateXvfb&) = delete;
  PrivateXvfb& operator=(const PrivateXvfb&) = delete;

  /// False when it could not be started.
  bool is_running() const { return pid_ > 0 && !display_.empty(); }
  void Stop() const;      // as if it hung
  void Continue() const;  // as if it came round
  void Kill();

 private:
  pid_t pid_ = -1;
  std::string display_;
};

}  // namespace deskhand
