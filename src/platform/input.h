// Synthetic input, as a window server takes it, and where the pointer is.
// Space: points in the global desktop space, origin at the top-left corner of the primary display,
// y down; any number, nothing is clamped or rounded before it gets here.
// Threads: the JavaScript threads.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/geometry.h"

namespace deskhand::platform {

/// The numbers are those of Quartz Event Services.
enum class MouseEventType : uint32_t {
  kLeftDown = 1,
  kLeftUp = 2,
  kRightDown = 3,
  kRightUp = 4,
  kMoved = 5,
  kLeftDragged = 6,
  kRightDragged = 7,
  kOtherDown = 25,
  kOtherUp = 26,
  kOtherDragged = 27,
};

enum class MouseButton : uint32_t { kLeft = 0, kRight = 1, kCenter = 2 };

/// Masks of modifier flags; the numbers are those of Quartz Event Services.
namespace modifier {
inline constexpr uint64_t kShift = 0x20000;
inline constexpr uint64_t kControl = 0x40000;
inline constexpr uint64_t kOption = 0x80000;
inline constexpr uint64_t kCommand = 0x100000;
inline constexpr uint64_t kFunction = 0x800000;
}  // namespace modifier

struct MouseEvent {
  MouseEventType type = MouseEventType::kMoved;
  Point position = {};
  MouseButton button = MouseButton::kLeft;
  std::optional<int64_t> click_state = {};  // as the event was created when absent
  std::optional<uint64_t> flags = {};       // replaces the event's own; as created when absent
};

struct KeyEvent {
  uint16_t key_code = 0;  // virtual key code: a position on the ANSI keyboard
  bool is_down = false;
  std::optional<uint64_t> flags = {};  // as in MouseEvent
};

/// One call's events, announced before the first: a platform without flags on events presses the
/// modifiers once for all of them, and one that must make keys for characters makes all at once.
/// Nothing on macOS. Scopes of different threads take turns; they do not nest.
class InputScope {
 public:
  /// `flags`: those that events of this call will have. `text`: all that will be typed; it must
  /// outlive the scope.
  explicit InputScope(uint64_t flags = 0, std::u16string_view text = {});
  ~InputScope();
  InputScope(const InputScope&) = delete;
  InputScope& operator=(const InputScope&) = delete;
};

// Each posts one event and reports nothing: what the system cannot make is skipped. They are called
// inside an InputScope.

void PostMouseEvent(const MouseEvent& event);

/// Turns the wheel by lines, the sign as the platform's wheel events have it.
void PostWheelEvent(int32_t vertical, int32_t horizontal);

void PostKeyEvent(const KeyEvent& event);

/// Types UTF-16 text by one key press. A surrogate pair may be cut between two calls.
void PostText(std::u16string_view run);

/// Where the pointer is; the origin when the platform does not say.
Point CursorPosition();

/// Blocks the calling thread.
void Pause(uint32_t microseconds);

}  // namespace deskhand::platform
