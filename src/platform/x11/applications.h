// Which applications have windows on the screen.
// Threads: those of the session.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/x11/session.h"

namespace deskhand::platform {

/// What a viewable window tells of the application that it belongs to; empty where it tells
/// nothing.
struct ShownWindow {
  std::string wm_instance;
  std::string wm_class;
  std::string gtk_application_id;
  uint32_t process_id = 0;
};

/// The viewable windows that name an application: top-level windows and, inside of window manager
/// frames, their clients. None when the connection is lost.
std::optional<std::vector<ShownWindow>> ShownWindows(const Session& session);

/// The application's identifier as far as the window itself tells it; none when it does not.
std::optional<std::string> BundleIdOf(const ShownWindow& window);

/// Whether `bundle_id` may mean the window's application: by what the window says, or by the
/// desktop entry of that name. Errs on the side of yes.
bool MayBelongTo(const ShownWindow& window, const std::string& bundle_id);

}  // namespace deskhand::platform
