// Pictures of the screen without the windows of chosen applications.
// Space: pixels of the root window. Thread: the capture thread.
#pragma once

#include <string>
#include <vector>

#include "platform/x11/grab.h"

namespace deskhand::platform {

/// Takes what of `area` lies on the screen, as if no window of these applications were there. What
/// cannot be left out for certain makes an error, never a picture.
Grab GrabWithout(const std::vector<std::string>& bundle_ids, Session& session,
                 const PixelRect& area, bool with_pointer);

}  // namespace deskhand::platform
