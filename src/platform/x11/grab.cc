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

/// The server writes the pixels into memory that it shares with us.
RawImage FetchShared(const Session& session, xcb_drawable_t drawable, const PixelRect& area,
                     size_t bytes, XError* error) {
  Link& link = session.link();
  const auto memory = ReserveMemory(&link, bytes);
  if (!memory) return {};
  const auto reply =
      Await(link.connection, xcb_shm_get_image_reply,
            xcb_shm_get_image(link.connection, drawable, area.x, area.y, area.width, area.height,
                              kAllPlanes, XCB_IMAGE_FORMAT_Z_PIXMAP, memory->segment(), 0),
            error);
  if (!reply) return {};
  return {.pixels = memory->data(), .memory = memory};
}

RawImage FetchPlain(const Session& session, xcb_drawable_t drawable, const PixelRect& area,
                    size_t bytes, XError* error) {
  std::shared_ptr<xcb_get_image_reply_t> reply =
      Await(session.connection(), xcb_get_image_reply,
            xcb_get_image(session.connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, drawable, area.x, area.y,
                          area.width, area.height, kAllPlanes),
            error);
  if (!reply || size_t(xcb_get_image_data_length(reply.get())) < bytes) return {};
  uint8_t* const pixels = xcb_get_image_data(reply.get());
  return {.pixels = pixels, .memory = std::move(reply)};
}

std::string Explain(const Session& session, const XError& error) {
  std::string lost = session.error();
  if (!lost.empty()) return lost;
  const std::string code = error ? std::to_string(error->error_code) : "unknown";
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
  uint8_t* const pixels = converted->data();
  return {.pixels = pixels, .memory = std::move(converted)};
}

}  // namespace

std::shared_ptr<SharedMemory> ReserveMemory(Link* link, size_t bytes) {
  if (!link->has_shared_memory) return nullptr;
  if (link->memory && link->memory->size() >= bytes) return link->memory;
  if (link->memory) xcb_shm_detach(link->connection, link->memory->segment());
  link->memory = SharedMemory::Create(link->connection, bytes);
  // The server cannot reach our memory, and will not learn to.
  if (!link->memory) link->has_shared_memory = false;
  return link->memory;
}

RawImage FetchPixels(const Session& session, xcb_drawable_t drawable, const PixelRect& area,
                     const PixelFormat& format) {
  const size_t bytes = format.StrideFor(area.width) * area.height;
  XError error;
  RawImage image = FetchShared(session, drawable, area, bytes, &error);
  if (!image.pixels && session.error().empty()) {
    image = FetchPlain(session, drawable, area, bytes, &error);
  }
  if (!image.pixels) image.error = Explain(session, error);
  return image;
}

Grab GrabFrom(const PixelSource& source, const Session& session, const PixelRect& wanted,
              bool with_pointer) {
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

  RawImage raw = source(grab.area, *format);
  if (!raw.pixels) {
    grab.error = std::move(raw.error);
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

Grab GrabScreen(const Session& session, const PixelRect& wanted, bool with_pointer) {
  return GrabFrom(
      [&session](const PixelRect& area, const PixelFormat& format) {
        return FetchPixels(session, session.screen().root, area, format);
      },
      session, wanted, with_pointer);
}

}  // namespace deskhand::platform
