#include "platform/input.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <thread>

#include "platform/x11/held_input.h"
#include "platform/x11/key_codes.h"
#include "platform/x11/monitors.h"
#include "platform/x11/posting.h"
#include "platform/x11/reply.h"
#include "platform/x11/session.h"

namespace deskhand::platform {
namespace {

// The server may take its time with so many; the JavaScript thread waits for it.
constexpr int64_t kManyClicks = 1000;
constexpr std::chrono::seconds kLongestWheelWait{10};

// One line, one click. So many are a document of ten thousand pages, or a mistake.
constexpr int64_t kMostClicks = 100'000;

// Button numbers of the X protocol and, for the wheel, of everybody's convention.
constexpr uint8_t kLeftButton = 1, kMiddleButton = 2, kRightButton = 3;
constexpr uint8_t kWheelUp = 4, kWheelDown = 5, kWheelLeft = 6, kWheelRight = 7;

uint8_t NumberOf(MouseButton button) {
  switch (button) {
    case MouseButton::kLeft:
      return kLeftButton;
    case MouseButton::kRight:
      return kRightButton;
    case MouseButton::kCenter:
      return kMiddleButton;
  }
  return kLeftButton;
}

/// Whether the event presses or releases a button; none for a movement.
std::optional<bool> IsPress(MouseEventType type) {
  switch (type) {
    case MouseEventType::kLeftDown:
    case MouseEventType::kRightDown:
    case MouseEventType::kOtherDown:
      return true;
    case MouseEventType::kLeftUp:
    case MouseEventType::kRightUp:
    case MouseEventType::kOtherUp:
      return false;
    case MouseEventType::kMoved:
    case MouseEventType::kLeftDragged:
    case MouseEventType::kRightDragged:
    case MouseEventType::kOtherDragged:
      return std::nullopt;
  }
  return std::nullopt;
}

void TurnWheel(const Posting& posting, int64_t lines, uint8_t forward, uint8_t backward) {
  const uint8_t button = lines > 0 ? forward : backward;
  for (int64_t left = std::min(std::abs(lines), kMostClicks); left > 0; --left) {
    posting.device().Button(button, true);
    posting.device().Button(button, false);
  }
}

/// The flag that a modifier key sets by itself; 0 for other keys.
uint64_t OwnFlag(uint16_t key_code) {
  switch (key_code) {
    case virtual_key::kCommand:
    case virtual_key::kRightCommand:
      return modifier::kCommand;
    case virtual_key::kShift:
    case virtual_key::kRightShift:
      return modifier::kShift;
    case virtual_key::kOption:
    case virtual_key::kRightOption:
      return modifier::kOption;
    case virtual_key::kControl:
    case virtual_key::kRightControl:
      return modifier::kControl;
    default:
      return 0;
  }
}

Locks LocksFor(uint16_t key_code) {
  if (key_code == virtual_key::kCapsLock || key_code == virtual_key::kKeypadClear) {
    return Locks::kAsTheyAre;
  }
  return IsOnKeypad(key_code) ? Locks::kNumbers : Locks::kOff;
}

}  // namespace

InputScope::InputScope(uint64_t flags, std::u16string_view text) {
  TurnOfCalls().lock();
  CurrentScope() = {.flags = flags, .text = text};
}

InputScope::~InputScope() {
  const OpenScope& scope = CurrentScope();
  if (scope.is_guarded || scope.is_typing || Held().keys.any()) {
    const Posting posting;
    if (posting) posting.Finish();
  }
  CurrentScope() = {};
  TurnOfCalls().unlock();
}

void PostMouseEvent(const MouseEvent& event) {
  if (std::isnan(event.position.x) || std::isnan(event.position.y)) return;
  const auto is_press = IsPress(event.type);
  const uint8_t button = NumberOf(event.button);
  Posting posting;
  std::optional<ModifierQuestion> question;
  if (posting && is_press && !posting.is_guarded()) {
    question.emplace(posting.session().connection());
  }
  if (!posting || !posting.MoveTo(event.position)) {
    if (is_press == false) Held().overdue_buttons[button] = Held().buttons[button];
    return;
  }
  if (!is_press) return;
  posting.Guard(Locks::kAsTheyAre, CurrentScope().flags, question ? &*question : nullptr);
  posting.device().Button(button, *is_press);
}

void PostWheelEvent(int32_t vertical, int32_t horizontal) {
  if (vertical == 0 && horizontal == 0) return;
  const bool are_many =
      std::max(std::abs(int64_t{vertical}), std::abs(int64_t{horizontal})) > kManyClicks;
  const Posting posting(are_many ? kLongestWheelWait : kLongestWait);
  if (!posting) return;
  posting.Guard(Locks::kAsTheyAre, CurrentScope().flags);
  TurnWheel(posting, vertical, kWheelUp, kWheelDown);
  TurnWheel(posting, horizontal, kWheelLeft, kWheelRight);
}

void PostKeyEvent(const KeyEvent& event) {
  const Posting posting;
  if (!posting || !posting.keyboard()) return;
  const auto key = posting.keyboard()->KeycodeFor(event.key_code);
  if (!key) return;
  posting.Guard(LocksFor(event.key_code), CurrentScope().flags & ~OwnFlag(event.key_code));
  posting.device().Key(*key, event.is_down);
}

void PostText(std::u16string_view run) {
  const Posting posting;
  if (!posting || !posting.keyboard()) return;
  posting.Guard(Locks::kOff, CurrentScope().flags);
  posting.BeginText();
  posting.keyboard()->TypeText(posting.session(), posting.device(), run);
}

Point CursorPosition() {
  const Session session(InputChannel(), Clock::now() + kLongestWait);
  if (!session) return {};
  xcb_connection_t* const connection = session.connection();
  const auto cookie = xcb_query_pointer(connection, session.screen().root);
  const auto monitors = QueryMonitors(session);
  const auto pointer = Await(connection, xcb_query_pointer_reply, cookie);
  if (!pointer || !monitors || monitors->empty()) return {};
  const PixelRect& primary = monitors->front().bounds;
  return {double(pointer->root_x - primary.x), double(pointer->root_y - primary.y)};
}

void Pause(uint32_t microseconds) {
  std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
}

}  // namespace deskhand::platform
