#include "platform/x11/grab.h"

#include <optional>
#include <utility>
#include <vector>

#include <xcb/shm.h>
#include <xcb/xfixes.h>

#include "platform/x11/pixel_format.h"
#include "platform/x11/pointer.h"
#include "platform/x11/reply.h"
#include "platform/x11/shared_memory.h"

namespace deskhand::platform {
namespace {

constexpr uint32_t kAllPlanes = ~0u;

/// The pixels as the server delivered them.
struct RawImage {
  uint8_t* pixels = nullptr;
  std::shared_ptr<void> memory;
  XError error;
};

/// Sees to it that the connection has a block of so many bytes. It is kept from one picture to the
/// next, and only ever replaced by a larger one.
void ReserveMemory(Link* link, size_t bytes) {
  if (link->memory && link->memory->size() >= bytes) return;
  if (link->memory) xcb_shm_detach(link->connection, link->memory->segment());
  link->memory = SharedMemory::Create(link->connection, bytes);
  // The server cannot reach our memory, and will not learn to.
  if (!link->memory) link->has_shared_memory = false;
}

RawImage FetchShared(const Session& session, const PixelRect& area, size_t bytes) {
  Link& link = session.link();
  ReserveMemory(&link, bytes);
  if (!link.memory) return {};
  RawImage image;
  const auto reply = Await(link.connection, xcb_shm_get_image_reply,
                           xcb_shm_get_image(link.connection, session.screen().root, area.x, area.y,
                                             area.width, area.height, kAllPlanes,
                                             XCB_IMAGE_FORMAT_Z_PIXMAP, link.memory->segment(), 0),
                           &image.error);
  if (!reply) return image;
  image.pixels = link.memory->data();
  image.memory = link.memory;
  return image;
}

RawImage FetchPlain(const Session& session, const PixelRect& area, size_t bytes) {
  RawImage image;
  std::shared_ptr<xcb_get_image_reply_t> reply =
      Await(session.connection(), xcb_get_image_reply,
            xcb_get_image(session.connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, session.screen().root,
                          area.x, area.y, area.width, area.height, kAllPlanes),
            &image.error);
  if (!reply || size_t(xcb_get_image_data_length(reply.get())) < bytes) return image;
  image.pixels = xcb_get_image_data(reply.get());
  image.memory = std::move(reply);
  return image;
}

std::string Explain(const Session& session, const RawImage& image) {
  std::string lost = session.error();
  if (!lost.empty()) return lost;
  const std::string code = image.error ? std::to_string(image.error->error_code) : "unknown";
  return "the X server refused the picture (error " + code + ")";
}

/// The same picture in the form that is encoded.
RawImage Convert(const PixelFormat& format, const RawImage& raw, const PixelRect& area) {
  const size_t stride = size_t{4} * area.width;
  auto converted = std::make_shared<std::vector<uint8_t>>(stride * area.height);
  for (int32_t y = 0; y < area.height; ++y) {
    ConvertRow(format, raw.pixels + y * format.StrideFor(area.width),
               converted->data() + y * stride, area.width);
  }
  RawImage image;
  image.pixels = converted->data();
  image.memory = std::move(converted);
  return image;
}

}  // namespace

Grab GrabScreen(const Session& session, const PixelRect& wanted, bool with_pointer) {
  Grab grab;
  xcb_connection_t* connection = session.connection();
  std::optional<xcb_xfixes_get_cursor_image_cookie_t> pointer_cookie;
  if (with_pointer && session.link().has_cursor_images) {
    pointer_cookie = xcb_xfixes_get_cursor_image(connection);
  }
  const auto root = Await(connection, xcb_get_geometry_reply,
                          xcb_get_geometry(connection, session.screen().root));
  Reply<xcb_xfixes_get_cursor_image_reply_t> pointer;
  if (pointer_cookie) {
    pointer = Await(connection, xcb_xfixes_get_cursor_image_reply, *pointer_cookie);
  }
  if (!root) {
    grab.error = Explain(session, {});
    return grab;
  }
  grab.area = Intersect(wanted, {0, 0, root->width, root->height});
  if (grab.area.empty()) return grab;
  const auto format = FormatOfRoot(connection, session.screen(), &grab.error);
  if (!format) return grab;

  const size_t bytes = format->StrideFor(grab.area.width) * grab.area.height;
  RawImage raw;
  if (session.link().has_shared_memory) raw = FetchShared(session, grab.area, bytes);
  if (!raw.pixels && session.error().empty()) raw = FetchPlain(session, grab.area, bytes);
  if (!raw.pixels) {
    grab.error = Explain(session, raw);
    return grab;
  }
  size_t stride = format->StrideFor(grab.area.width);
  if (!format->IsBgrx()) {
    raw = Convert(*format, raw, grab.area);
    stride = size_t{4} * grab.area.width;
  }
  if (pointer) DrawPointer(*pointer, grab.area, raw.pixels, stride);
  grab.picture = {raw.pixels, stride, grab.area.width, grab.area.height};
  grab.memory = std::move(raw.memory);
  return grab;
}

}  // namespace deskhand::platform
