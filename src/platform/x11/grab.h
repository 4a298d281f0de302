// One picture of a part of the screen, fetched from the server.
// Space: see monitors.h. Thread: the capture thread.
#pragma once

#include <memory>
#include <string>

#include "platform/x11/area_scaler.h"
#include "platform/x11/monitors.h"
#include "platform/x11/session.h"

namespace deskhand::platform {

/// The pixels of `area`, or why there are none. `memory` keeps the pixels.
struct Grab {
  PixelRect area;
  Picture picture;
  std::shared_ptr<void> memory;
  std::string error;
};

/// Takes what of `wanted` lies on the screen, with the pointer drawn in when asked; an empty
/// picture when nothing does.
Grab GrabScreen(const Session& session, const PixelRect& wanted, bool with_pointer);

}  // namespace deskhand::platform
