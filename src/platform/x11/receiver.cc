#include "platform/x11/receiver.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <string>

#include <poll.h>
#include <unistd.h>
#include <xcb/res.h>

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

/// The process that opened `window`; none when it is on another machine.
std::optional<uint32_t> ProcessOf(const Session& session, xcb_window_t window) {
  xcb_connection_t* const connection = session.connection();
  const xcb_query_extension_reply_t* data = xcb_get_extension_data(connection, &xcb_res_id);
  if (!data || !data->present) return std::nullopt;
  const xcb_res_client_id_spec_t wanted{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
  const auto version_cookie = xcb_res_query_version(connection, 1, 2);
  const auto ids_cookie = xcb_res_query_client_ids(connection, 1, &wanted);
  const auto version = Await(connection, xcb_res_query_version_reply, version_cookie);
  const auto reply = Await(connection, xcb_res_query_client_ids_reply, ids_cookie);
  if (!version || !reply) return std::nullopt;
  const auto id = xcb_res_query_client_ids_ids_iterator(reply.get());
  if (id.rem < 1 || xcb_res_client_id_value_value_length(id.data) < 1) return std::nullopt;
  return *xcb_res_client_id_value_value(id.data);
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

std::optional<bool> IsWaiting(std::string_view stat) {
  // The name before the state may hold anything.
  const size_t name_end = stat.rfind(") ");
  if (name_end == stat.npos || name_end + 2 >= stat.size()) return std::nullopt;
  return std::string_view("SIZX").find(stat[name_end + 2]) != std::string_view::npos;
}

bool IsAtRest(const Session& session, xcb_window_t window) {
  const auto process = ProcessOf(session, window);
  if (!process || *process == static_cast<uint32_t>(getpid())) return true;
  std::ifstream file("/proc/" + std::to_string(*process) + "/stat");
  std::string stat;
  std::getline(file, stat);
  return IsWaiting(stat).value_or(true);
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

uint32_t FirstPing() { return static_cast<uint32_t>(Clock::now().time_since_epoch().count()); }

std::optional<uint32_t> PongNumber(const xcb_client_message_event_t& message,
                                   const PingAtoms& atoms) {
  const uint32_t* const data = message.data.data32;
  if (message.type != atoms.protocols || data[0] != atoms.ping) return std::nullopt;
  return data[1];
}

void ListenForPongs(const Session& session, bool is_listening) {
  const uint32_t events = is_listening ? XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY : 0;
  xcb_change_window_attributes(session.connection(), session.screen().root, XCB_CW_EVENT_MASK,
                               &events);
}

void WaitForNews(const Session& session, Deadline until) {
  xcb_flush(session.connection());
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now()).count();
  pollfd socket{xcb_get_file_descriptor(session.connection()), POLLIN, 0};
  poll(&socket, 1, static_cast<int>(std::max<int64_t>(left, 0)));
}

}  // namespace deskhand::platform
