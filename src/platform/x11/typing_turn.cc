#include "platform/x11/typing_turn.h"

#include <chrono>
#include <thread>

#include "platform/x11/atoms.h"
#include "platform/x11/reply.h"
#include "platform/x11/server_grab.h"

namespace deskhand::platform {
namespace {

// How often the server is asked while another process has the turn.
constexpr std::chrono::milliseconds kInterval{5};
// How long it may take to answer then.
constexpr std::chrono::seconds kLongestAnswer{2};

}  // namespace

std::optional<TypingTurn> TypingTurn::Start(const Session& session) {
  xcb_connection_t* const connection = session.connection();
  const auto selection = MakeAtom(connection, "_DESKHAND_TYPING");
  if (!selection) return std::nullopt;
  const xcb_window_t window = xcb_generate_id(connection);
  const uint32_t is_unmanaged = 1;
  xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, session.screen().root, -1, -1, 1, 1,
                    0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT,
                    &is_unmanaged);
  return TypingTurn(*selection, window);
}

std::optional<bool> TypingTurn::TryTake(const Session& session) const {
  xcb_connection_t* const connection = session.connection();
  // Between the look at the owner and the change nobody else must become it.
  const ServerGrab grab(session);
  const auto reply = Await(connection, xcb_get_selection_owner_reply,
                           xcb_get_selection_owner(connection, selection_));
  if (!reply) return std::nullopt;
  if (reply->owner != XCB_NONE && reply->owner != window_) return false;
  xcb_set_selection_owner(connection, window_, selection_, XCB_CURRENT_TIME);
  return true;
}

bool TypingTurn::Take(const Session& session, Deadline deadline) {
  for (;;) {
    const auto taken = TryTake(session);
    if (!taken || *taken) return taken.has_value();
    if (Clock::now() + kInterval > deadline) return false;
    session.SetDeadline(Clock::now() + kLongestAnswer);
    std::this_thread::sleep_for(kInterval);
  }
}

void TypingTurn::Give(const Session& session) {
  xcb_set_selection_owner(session.connection(), XCB_NONE, selection_, XCB_CURRENT_TIME);
}

}  // namespace deskhand::platform
