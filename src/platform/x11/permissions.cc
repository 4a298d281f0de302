#include "platform/permissions.h"

#include <chrono>

#include <xcb/xtest.h>

#include "platform/x11/reply.h"
#include "platform/x11/session.h"

namespace deskhand::platform {
namespace {

// The JavaScript thread waits for these answers.
constexpr std::chrono::seconds kLongestWait{2};

}  // namespace

bool HasAccessibility() {
  const Session session(QueryChannel(), Clock::now() + kLongestWait);
  if (!session) return false;
  xcb_connection_t* const connection = session.connection();
  const xcb_query_extension_reply_t* data = xcb_get_extension_data(connection, &xcb_test_id);
  if (!data || !data->present) return false;
  // It may be there and yet be denied to this client.
  const auto version =
      Await(connection, xcb_test_get_version_reply, xcb_test_get_version(connection, 2, 2));
  return version != nullptr;
}

bool HasScreenRecording() {
  const Session session(QueryChannel(), Clock::now() + kLongestWait);
  if (!session) return false;
  xcb_connection_t* const connection = session.connection();
  const uint32_t all_planes = ~0U;
  const auto pixel = Await(connection, xcb_get_image_reply,
                           xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP,
                                         session.screen().root, 0, 0, 1, 1, all_planes));
  return pixel != nullptr;
}

// There is nobody to ask: whoever can reach the server may do what it can.

bool RequestAccessibility() { return HasAccessibility(); }

bool RequestScreenRecording() { return HasScreenRecording(); }

}  // namespace deskhand::platform
