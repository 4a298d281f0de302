// Opening a connection to the X server within a bounded time.
#pragma once

#include <string>

#include <xcb/xcb.h>

#include "platform/x11/task_thread.h"

namespace deskhand::platform {

struct ConnectResult {
  xcb_connection_t* connection = nullptr;  // owned by the caller; null on failure
  int screen = 0;                          // number of the preferred screen
  std::string error;                       // why there is no connection
};

/// Connects to the server that `display` names, as DISPLAY would. A server that accepts the
/// connection but never answers (stopped, for example) is given up at `deadline`. Thread: any.
ConnectResult ConnectWithin(const std::string& display, Deadline deadline);

}  // namespace deskhand::platform
