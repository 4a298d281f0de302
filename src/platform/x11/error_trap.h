// Learning whether requests without replies have all been carried out.
#pragma once

#include <cstdint>

#include "platform/x11/reply.h"
#include "platform/x11/session.h"

namespace deskhand::platform {

/// Notices every error that the server sends for the connection while it exists.
class ErrorTrap {
 public:
  explicit ErrorTrap(const Session& session) : session_(session) {
    TakeEvents(session.link());
    errors_before_ = session.link().error_count;
  }

  /// Waits until all requests so far have been carried out. False when one was not.
  bool Succeeded() const {
    xcb_connection_t* const connection = session_.connection();
    const auto reply =
        Await(connection, xcb_get_input_focus_reply, xcb_get_input_focus(connection));
    TakeEvents(session_.link());
    return reply && session_.link().error_count == errors_before_;
  }

 private:
  const Session& session_;
  uint64_t errors_before_ = 0;
};

}  // namespace deskhand::platform
