// Launching the program of a desktop entry, through GIO.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include <xcb/xcb.h>

#include "platform/x11/startup_notification.h"

namespace deskhand::platform {

struct LaunchResult {
  int32_t process_id = 0;  // 0 when another process was asked to start it, over the session bus
  std::optional<std::string> error = {};
};

/// Starts the program in the entry of this file, for this display. It leads a session of its own,
/// outlives this process, and inherits nothing but the environment and the working directory: its
/// standard streams are /dev/null. `announce` is called first when the entry asks for startup
/// notification. May block for as long as the session bus does. Thread: any.
LaunchResult LaunchEntry(const std::string& file, const std::string& display, xcb_timestamp_t time,
                         const std::function<void(const StartupSequence&)>& announce);

}  // namespace deskhand::platform
