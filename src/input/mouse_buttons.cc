#include "input/mouse_buttons.h"

namespace deskhand {

using platform::MouseButton;
using platform::MouseEventType;

MouseButtonInfo ParseMouseButton(std::string_view name) {
  if (name == "right" || name == "1") {
    return {MouseButton::kRight, MouseEventType::kRightDown, MouseEventType::kRightUp,
            MouseEventType::kRightDragged};
  }
  if (name == "middle" || name == "2") {
    return {MouseButton::kCenter, MouseEventType::kOtherDown, MouseEventType::kOtherUp,
            MouseEventType::kOtherDragged};
  }
  return {MouseButton::kLeft, MouseEventType::kLeftDown, MouseEventType::kLeftUp,
          MouseEventType::kLeftDragged};
}

}  // namespace deskhand
