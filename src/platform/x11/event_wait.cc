#include "platform/x11/event_wait.h"

#include <chrono>

#include <poll.h>

namespace deskhand::platform {

EventPtr AwaitEvent(xcb_connection_t* connection, Deadline deadline) {
  xcb_flush(connection);
  for (;;) {
    EventPtr event(xcb_poll_for_event(connection));
    if (event || xcb_connection_has_error(connection)) return event;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    if (left.count() <= 0) return nullptr;
    pollfd socket{xcb_get_file_descriptor(connection), POLLIN, 0};
    poll(&socket, 1, static_cast<int>(left.count()));
  }
}

std::optional<xcb_timestamp_t> ServerTime(
    xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property, Deadline deadline,
    const std::function<void(const xcb_generic_event_t&)>& handle_other) {
  // Every change is told with its time, also one that adds nothing.
  const auto cookie = xcb_change_property(connection, XCB_PROP_MODE_APPEND, window, property,
                                          XCB_ATOM_STRING, 8, 0, nullptr);
  while (const EventPtr event = AwaitEvent(connection, deadline)) {
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
    if (event->response_type == XCB_PROPERTY_NOTIFY && change.window == window &&
        change.atom == property && event->full_sequence == cookie.sequence) {
      return change.time;
    }
    handle_other(*event);
  }
  return std::nullopt;
}

}  // namespace deskhand::platform
