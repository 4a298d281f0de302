#include "platform/x11/startup_notification.h"

#include <algorithm>
#include <atomic>
#include <cstring>

#include <unistd.h>

#include "platform/x11/atoms.h"
#include "platform/x11/reply.h"

namespace deskhand::platform {
namespace {

constexpr size_t kPartSize = 20;

/// Sends a text, and the NUL that ends it, to all who listen at the root window.
void Broadcast(const Session& session, const std::string& text) {
  xcb_connection_t* const connection = session.connection();
  const auto first = MakeAtom(connection, "_NET_STARTUP_INFO_BEGIN");
  const auto next = MakeAtom(connection, "_NET_STARTUP_INFO");
  if (!first || !next) return;
  // The parts of one text are told from those of others by the window.
  const xcb_window_t sender = xcb_generate_id(connection);
  const xcb_window_t root = session.screen().root;
  xcb_create_window(connection, XCB_COPY_FROM_PARENT, sender, root, -1, -1, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
  for (size_t at = 0; at <= text.size(); at += kPartSize) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 8;
    event.window = sender;
    event.type = at == 0 ? *first : *next;
    const size_t size = std::min(kPartSize, text.size() - at);
    std::memcpy(event.data.data8, text.data() + at, size);
    xcb_send_event(connection, false, root, XCB_EVENT_MASK_PROPERTY_CHANGE,
                   reinterpret_cast<const char*>(&event));
  }
  xcb_destroy_window(connection, sender);
  Await(connection, xcb_get_input_focus_reply, xcb_get_input_focus(connection));
}

}  // namespace

StartupSequence MakeStartup(const std::string& name, xcb_timestamp_t time) {
  static std::atomic<uint32_t> count{0};
  return {.id = "deskhand-" + std::to_string(getpid()) + "-" + std::to_string(++count) + "_TIME" +
                std::to_string(time),
          .name = name};
}

void AnnounceStartup(const Session& session, const StartupSequence& sequence) {
  Broadcast(session, "new: ID=" + QuoteStartupValue(sequence.id) +
                         " NAME=" + QuoteStartupValue(sequence.name) +
                         " SCREEN=" + std::to_string(session.link().screen_number));
}

void EndStartup(const Session& session, const StartupSequence& sequence) {
  Broadcast(session, "remove: ID=" + QuoteStartupValue(sequence.id));
}

std::string QuoteStartupValue(const std::string& value) {
  std::string quoted = "\"";
  for (const char letter : value) {
    if (letter == '"' || letter == '\\') quoted += '\\';
    quoted += letter;
  }
  return quoted + "\"";
}

}  // namespace deskhand::platform
