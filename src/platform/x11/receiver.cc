#include "platform/x11/receiver.h"

#include <algorithm>

#include "platform/x11/atoms.h"
#include "platform/x11/reply.h"

namespace deskhand::platform {
namespace {

// No window lies deeper, and a tree that changes meanwhile must not keep us.
constexpr int kDeepestWindow = 100;

constexpr uint32_t kMostProtocols = 64;

/// The innermost window under the pointer, which keys go to when the focus follows it.
xcb_window_t WindowUnderPointer(const Session& session) {
  xcb_connection_t* const connection = session.connection();
  xcb_window_t window = session.screen().root;
  for (int depth = 0; depth < kDeepestWindow; ++depth) {
    const auto reply =
        Await(connection, xcb_query_pointer_reply, xcb_query_pointer(connection, window));
    if (!reply || reply->child == XCB_NONE) break;
    window = reply->child;
  }
  return window;
}

}  // namespace

std::optional<PingAtoms> QueryPingAtoms(xcb_connection_t* connection) {
  const auto protocols = MakeAtom(connection, "WM_PROTOCOLS");
  const auto ping = MakeAtom(connection, "_NET_WM_PING");
  if (!protocols || !ping) return std::nullopt;
  return PingAtoms{*protocols, *ping};
}

std::optional<Receiver> LookUpReceiver(const Session& session, const PingAtoms& atoms,
                                       xcb_window_t window) {
  xcb_connection_t* const connection = session.connection();
  const auto reply = Await(connection, xcb_get_property_reply,
                           xcb_get_property(connection, false, window, atoms.protocols,
                                            XCB_ATOM_ATOM, 0, kMostProtocols));
  if (!reply) return std::nullopt;
  if (reply->format != 32) return Receiver{window, false};
  const auto* const protocols = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
  const auto* const end = protocols + reply->value_len;
  return Receiver{window, std::find(protocols, end, atoms.ping) != end};
}

Receiver FindReceiver(const Session& session, const PingAtoms& atoms, xcb_window_t focus) {
  xcb_connection_t* const connection = session.connection();
  if (focus == XCB_INPUT_FOCUS_NONE) return {};
  xcb_window_t window = focus == XCB_INPUT_FOCUS_POINTER_ROOT ? WindowUnderPointer(session) : focus;
  const Receiver innermost{window, false};
  // The focus is often on a window inside of the one that a program is pinged by.
  for (int depth = 0; depth < kDeepestWindow && window != session.screen().root; ++depth) {
    const auto tree_cookie = xcb_query_tree(connection, window);
    const auto receiver = LookUpReceiver(session, atoms, window);
    const auto tree = Await(connection, xcb_query_tree_reply, tree_cookie);
    if (receiver && receiver->answers_pings) return *receiver;
    if (!tree || tree->parent == XCB_NONE) break;
    window = tree->parent;
  }
  return innermost;
}

std::optional<xcb_window_t> QueryFocus(const Session& session) {
  const auto reply = Await(session.connection(), xcb_get_input_focus_reply,
                           xcb_get_input_focus(session.connection()));
  if (!reply) return std::nullopt;
  return reply->focus;
}

void SendPing(const Session& session, const PingAtoms& atoms, xcb_window_t window,
              uint32_t number) {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = atoms.protocols;
  message.data.data32[0] = atoms.ping;
  message.data.data32[1] = number;
  message.data.data32[2] = window;
  xcb_send_event(session.connection(), false, window, XCB_EVENT_MASK_NO_EVENT,
                 reinterpret_cast<const char*>(&message));
}

}  // namespace deskhand::platform
