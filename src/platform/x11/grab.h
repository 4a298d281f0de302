// One picture of a part of the screen, fetched from the server.
// Space: see monitors.h. Thread: the capture thread.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/x11/area_scaler.h"
#include "platform/x11/monitors.h"
#include "platform/x11/pixel_format.h"
#include "platform/x11/session.h"

namespace deskhand::platform {

/// The pixels of `area`, or why there are none. `memory` keeps the pixels.
struct Grab {
  PixelRect area;
  Picture picture;
  std::shared_ptr<void> memory;
  std::string error;
};

/// Pixels as the server delivered them, or why there are none. `memory` keeps the pixels.
struct RawImage {
  uint8_t* pixels = nullptr;
  std::shared_ptr<void> memory = {};
  std::string error = {};
};

/// Fetches `area` of a drawable of the screen's depth, in the drawable's pixels.
RawImage FetchPixels(const Session& session, xcb_drawable_t drawable, const PixelRect& area,
                     const PixelFormat& format);

/// Sees to it that the connection has a block of memory of so many bytes that the server can write
/// to. It is kept from one picture to the next, and only ever replaced by a larger one.
std::shared_ptr<SharedMemory> ReserveMemory(Link* link, size_t bytes);

/// Delivers `area`, in pixels of the root window.
using PixelSource = std::function<RawImage(const PixelRect& area, const PixelFormat& format)>;

/// Takes what of `wanted` lies on the screen from `source`, with the pointer drawn in when asked;
/// an empty picture when nothing does.
Grab GrabFrom(const PixelSource& source, const Session& session, const PixelRect& wanted,
              bool with_pointer);

/// Takes it from the screen as it is.
Grab GrabScreen(const Session& session, const PixelRect& wanted, bool with_pointer);

}  // namespace deskhand::platform
