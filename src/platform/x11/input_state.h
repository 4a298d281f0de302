// What input needs of a connection, for as long as the connection lasts.
// Thread: whoever has a session on the input channel.
#pragma once

#include <memory>
#include <optional>

#include "platform/x11/input_device.h"
#include "platform/x11/keyboard.h"
#include "platform/x11/modifiers.h"
#include "platform/x11/monitors.h"
#include "platform/x11/session.h"

namespace deskhand::platform {

struct InputState {
  explicit InputState(xcb_connection_t* connection) : device(connection, Held()) {}

  InputDevice device;
  std::unique_ptr<Keyboard> keyboard;  // null: this server does not tell of one
  std::optional<ModifierGuard> guard;  // of the scope that is open
  std::optional<PixelRect> primary;    // monitor, where it was found last

  /// That of the session's connection, made when there is none; null when nothing can be posted.
  static InputState* Of(const Session& session);
};

}  // namespace deskhand::platform
