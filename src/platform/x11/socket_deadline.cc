#include "platform/x11/socket_deadline.h"

#include <mutex>

#include <sys/socket.h>

namespace deskhand::platform {

struct SocketDeadline::State {
  const int fd;
  std::mutex mutex;
  bool armed = true;
  bool expired = false;
};

SocketDeadline::SocketDeadline(xcb_connection_t* connection, Deadline deadline)
    : state_(new State{.fd = xcb_get_file_descriptor(connection), .mutex = {}}) {
  timer_ = DisplayThread().RunAt(deadline, [state = state_] {
    const std::lock_guard lock(state->mutex);
    if (!state->armed) return;  // the number may belong to another file by now
    state->expired = true;
    shutdown(state->fd, SHUT_RDWR);
  });
}

SocketDeadline::~SocketDeadline() {
  {
    const std::lock_guard lock(state_->mutex);
    state_->armed = false;
  }
  DisplayThread().Cancel(timer_);
}

bool SocketDeadline::expired() const {
  const std::lock_guard lock(state_->mutex);
  return state_->expired;
}

}  // namespace deskhand::platform
