// Waiting for events, on a connection that this thread has for itself.
#pragma once

#include <functional>
#include <optional>

#include <xcb/xcb.h>

#include "platform/x11/reply.h"
#include "platform/x11/task_thread.h"

namespace deskhand::platform {

using EventPtr = Reply<xcb_generic_event_t>;

/// What an event is, whoever sent it.
inline uint8_t TypeOf(const xcb_generic_event_t& event) { return event.response_type & 0x7f; }

/// Any program can send any event; what it tells need not be so.
inline bool IsSent(const xcb_generic_event_t& event) { return (event.response_type & 0x80) != 0; }

/// The next event, or error of a request without a reply; null when none comes until `deadline`, or
/// the connection breaks.
EventPtr AwaitEvent(xcb_connection_t* connection, Deadline deadline);

/// The server's clock, which tells when a selection changed hands: none when the server does not
/// tell it until `deadline`. `window` is ours, selects for changes of its properties, and has
/// `property` to spare. What else comes meanwhile goes to `handle_other`.
std::optional<xcb_timestamp_t> ServerTime(
    xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property, Deadline deadline,
    const std::function<void(const xcb_generic_event_t&)>& handle_other);

}  // namespace deskhand::platform
