#include "platform/x11/window_requests.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <string_view>

#include "platform/x11/active_window.h"
#include "platform/x11/atoms.h"
#include "platform/x11/reply.h"
#include "platform/x11/window_watch.h"

namespace deskhand::platform {
namespace {

// The source of a request that a user has made with another program than the window's own, see the
// Extended Window Manager Hints.
constexpr uint32_t kFromPager = 2;

using MessageData = std::array<uint32_t, 5>;

/// Asks the window manager for something about a window.
void Ask(const Session& session, xcb_window_t window, std::string_view what,
         const MessageData& data) {
  const auto type = MakeAtom(session.connection(), what);
  if (!type) return;
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window;
  event.type = *type;
  std::memcpy(event.data.data32, data.data(), sizeof(data));
  xcb_send_event(session.connection(), false, session.screen().root,
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&event));
}

/// Whether somebody decides about windows; it need not keep to more than the ICCCM.
bool HasManager(const Session& session) {
  xcb_connection_t* const connection = session.connection();
  const auto root = Await(connection, xcb_get_window_attributes_reply,
                          xcb_get_window_attributes(connection, session.screen().root));
  return root && (root->all_event_masks & XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT);
}

/// Resolves when the server has got all requests.
void Finish(const Session& session) {
  xcb_connection_t* const connection = session.connection();
  Await(connection, xcb_get_input_focus_reply, xcb_get_input_focus(connection));
}

void Raise(const Session& session, xcb_window_t window) {
  const uint32_t above = XCB_STACK_MODE_ABOVE;
  xcb_configure_window(session.connection(), window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
}

}  // namespace

void HideWindows(const Session& session, const std::vector<ScreenWindow>& windows) {
  xcb_connection_t* const connection = session.connection();
  const bool has_manager = HasManager(session);
  const auto mark = MakeAtom(connection, "_DESKHAND_HIDDEN");
  if (!mark) return;
  const uint32_t marked = 1;
  for (const ScreenWindow& window : windows) {
    if (window.is_hidden) continue;
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window.id, *mark, XCB_ATOM_CARDINAL, 32,
                        1, &marked);
    if (has_manager) {
      Ask(session, window.id, "WM_CHANGE_STATE", {static_cast<uint32_t>(WindowState::kIconic)});
    } else {
      xcb_unmap_window(connection, window.id);
    }
  }
  Finish(session);
}

void ShowWindows(const Session& session, const std::vector<ScreenWindow>& windows) {
  xcb_connection_t* const connection = session.connection();
  const auto mark = MakeAtom(connection, "_DESKHAND_HIDDEN");
  if (!mark) return;
  const auto is_ours = [](const ScreenWindow& window) {
    return window.is_hidden && window.is_put_away;
  };
  const bool has_ours = std::any_of(windows.begin(), windows.end(), is_ours);
  // The foremost comes last: a window manager may put each on top.
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    if (window->is_put_away) xcb_delete_property(connection, window->id, *mark);
    if (window->is_hidden && (is_ours(*window) || !has_ours)) {
      xcb_map_window(connection, window->id);
    }
  }
  Finish(session);
}

void BringForward(const Session& session, const std::vector<ScreenWindow>& windows) {
  const auto is_visible = [](const ScreenWindow& window) { return !window.is_hidden; };
  auto foremost = std::find_if(windows.begin(), windows.end(), is_visible);
  if (foremost == windows.end()) {
    ShowWindows(session, windows);
    foremost = windows.begin();
  }
  if (foremost == windows.end()) return;
  const bool has_manager = session.link().window_watch->manager() != 0;
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    if (window->is_hidden || window->id == foremost->id) continue;
    if (has_manager) {
      Ask(session, window->id, "_NET_RESTACK_WINDOW", {kFromPager, XCB_NONE, XCB_STACK_MODE_ABOVE});
    } else {
      Raise(session, window->id);
    }
  }
  const xcb_timestamp_t time = ServerTime(session);
  if (has_manager) {
    const xcb_window_t active = ActiveWindow(session).value_or(XCB_NONE);
    Ask(session, foremost->id, "_NET_ACTIVE_WINDOW", {kFromPager, time, active});
  } else {
    Raise(session, foremost->id);
    xcb_set_input_focus(session.connection(), XCB_INPUT_FOCUS_PARENT, foremost->id, time);
  }
  Finish(session);
}

xcb_timestamp_t ServerTime(const Session& session) {
  xcb_connection_t* const connection = session.connection();
  const xcb_window_t window = xcb_generate_id(connection);
  const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, session.screen().root, -1, -1, 1, 1,
                    0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                    &events);
  // Any change makes an event with the time in it.
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING,
                      8, 0, nullptr);
  xcb_destroy_window(connection, window);
  Finish(session);
  TakeEvents(session.link());
  return session.link().window_watch->last_time();
}

}  // namespace deskhand::platform
