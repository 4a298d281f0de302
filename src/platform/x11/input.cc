#include "platform/input.h"

#include <chrono>
#include <thread>

namespace deskhand::platform {

InputScope::InputScope(uint64_t, std::u16string_view) {}
InputScope::~InputScope() = default;
void PostMouseEvent(const MouseEvent&) {}
void PostWheelEvent(int32_t, int32_t) {}
void PostKeyEvent(const KeyEvent&) {}
void PostText(std::u16string_view) {}
Point CursorPosition() { return {}; }
void Pause(uint32_t microseconds) {
  std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
}

}  // namespace deskhand::platform
