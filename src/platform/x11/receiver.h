// Who gets what is typed. Thread: whoever has a session on the input channel.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/x11/session.h"

namespace deskhand::platform {

struct PingAtoms {
  xcb_atom_t protocols;  // WM_PROTOCOLS
  xcb_atom_t ping;       // _NET_WM_PING
};

/// None when the server does not say.
std::optional<PingAtoms> QueryPingAtoms(xcb_connection_t* connection);

/// A top-level window, or what has the focus when none is found; none when nothing has.
struct Receiver {
  xcb_window_t window = XCB_NONE;
  bool answers_pings = false;
};

/// Where key presses go now. `focus` is what the server says has the focus.
Receiver FindReceiver(const Session& session, const PingAtoms& atoms, xcb_window_t focus);

/// The window that has the focus, or one of XCB_INPUT_FOCUS_NONE and _POINTER_ROOT. All that was
/// sent before has been carried out then. None when the connection is broken.
std::optional<xcb_window_t> QueryFocus(const Session& session);

/// Whether `window` is there, and answers pings.
std::optional<Receiver> LookUpReceiver(const Session& session, const PingAtoms& atoms,
                                       xcb_window_t window);

/// Whether the program of `window` waits for something, as it does when it has handled its events.
/// True when that cannot be known: it runs on another machine, is this one, or is gone.
bool IsAtRest(const Session& session, xcb_window_t window);

/// Whether a process waits, by /proc/PID/stat (see proc(5)); none when it is not of that form.
std::optional<bool> IsWaiting(std::string_view stat);

/// Asks the window's program to answer, with `number`, to the root window.
void SendPing(const Session& session, const PingAtoms& atoms, xcb_window_t window, uint32_t number);

/// To count pings from: window managers send some, too, and number them by the server's time.
uint32_t FirstPing();

/// The number of the ping that this message answers; none when it is something else.
std::optional<uint32_t> PongNumber(const xcb_client_message_event_t& message,
                                   const PingAtoms& atoms);

/// Answers are heard while the root window's events are; not for longer than need be, as the server
/// sends every window's changes along.
void ListenForPongs(const Session& session, bool is_listening);

/// Waits for the server to send something.
void WaitForNews(const Session& session, Deadline until);

}  // namespace deskhand::platform
