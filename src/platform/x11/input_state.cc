#include "platform/x11/input_state.h"

#include <xcb/xtest.h>

#include "platform/x11/reply.h"

namespace deskhand::platform {

InputState* InputState::Of(const Session& session) {
  Link& link = session.link();
  if (link.input) return link.input.get();
  const xcb_query_extension_reply_t* data = xcb_get_extension_data(link.connection, &xcb_test_id);
  if (!data || !data->present) return nullptr;
  const auto version = Await(link.connection, xcb_test_get_version_reply,
                             xcb_test_get_version(link.connection, 2, 2));
  if (!version) return nullptr;
  if (Held().display != link.display) {
    Held() = {};
    Held().display = link.display;
  }
  auto input = std::make_unique<InputState>(link.connection);
  input->keyboard = Keyboard::Start(session);
  link.input = std::move(input);
  return link.input.get();
}

}  // namespace deskhand::platform
