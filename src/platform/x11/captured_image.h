// A picture of a part of the screen, as it came from the server, the pointer drawn in.
#pragma once

#include <memory>

#include "platform/x11/area_scaler.h"
#include "platform/x11/shared_memory.h"

namespace deskhand::platform {

struct CapturedImage {
  std::shared_ptr<void> memory;  // keeps the pixels
  Picture picture;               // may be empty: then all of the window is black
  Window window;                 // the part that was asked for, in pixels of `picture`
};

}  // namespace deskhand::platform
