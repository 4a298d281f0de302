// A time in which the X server serves nobody else.
#pragma once

#include "platform/x11/session.h"

namespace deskhand::platform {

/// Windows stay as they are while it exists. Every other program waits, so it must be short. A
/// connection that breaks ends it, too.
class ServerGrab {
 public:
  explicit ServerGrab(const Session& session) : connection_(session.connection()) {
    xcb_grab_server(connection_);
  }
  ~ServerGrab() {
    xcb_ungrab_server(connection_);
    xcb_flush(connection_);
  }
  ServerGrab(const ServerGrab&) = delete;
  ServerGrab& operator=(const ServerGrab&) = delete;

 private:
  xcb_connection_t* const connection_;
};

}  // namespace deskhand::platform
