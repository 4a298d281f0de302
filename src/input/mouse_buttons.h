// What a button is called and which events it makes. Pure.
#pragma once

#include <string_view>

#include "platform/input.h"

namespace deskhand {

struct MouseButtonInfo {
  platform::MouseButton button;
  platform::MouseEventType down_type;
  platform::MouseEventType up_type;
  platform::MouseEventType drag_type;
};

/// The button with this name, which is in lower case already: "right" or "1", "middle" or "2". Any
/// other name means the left one.
MouseButtonInfo ParseMouseButton(std::string_view name);

}  // namespace deskhand
