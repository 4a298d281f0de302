// A bound on every wait for the X server. Threads: any.
#pragma once

#include <memory>

#include <xcb/xcb.h>

#include "platform/x11/task_thread.h"

namespace deskhand::platform {

/// Breaks `connection` at `deadline` unless destroyed before. XCB has no other way to end a wait
/// for a reply that does not come, or that stops half way; its waiter then finds the connection in
/// error.
class SocketDeadline {
 public:
  SocketDeadline(xcb_connection_t* connection, Deadline deadline);
  ~SocketDeadline();
  SocketDeadline(const SocketDeadline&) = delete;
  SocketDeadline& operator=(const SocketDeadline&) = delete;

  bool expired() const;

 private:
  struct State;

  std::shared_ptr<State> state_;
  TaskThread::Timer timer_;
};

}  // namespace deskhand::platform
