#include "platform/input.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "platform/x11/call_snapshot.h"
#include "platform/x11/input_state.h"
#include "platform/x11/monitors.h"
#include "platform/x11/reply.h"
#include "platform/x11/session.h"

namespace deskhand::platform {
namespace {

// The JavaScript thread waits for each event to be handed over.
constexpr std::chrono::seconds kLongestWait{2};
// The server may be slow with so many; the JavaScript thread waits for it to take them.
constexpr std::chrono::seconds kLongestWheelWait{10};

// One line, one click. So many are a document of ten thousand pages, or a mistake.
constexpr int64_t kMostClicks = 100'000;

// Button numbers of the X protocol and, for the wheel, of everybody's convention.
constexpr uint8_t kLeftButton = 1, kMiddleButton = 2, kRightButton = 3;
constexpr uint8_t kWheelUp = 4, kWheelDown = 5, kWheelLeft = 6, kWheelRight = 7;

/// Whose turn it is: one call's events at a time.
std::mutex& TurnOfCalls() {
  static std::mutex& mutex = *new std::mutex;
  return mutex;
}

/// What the scope that is open on this thread announced.
struct OpenScope {
  uint64_t flags = 0;
  std::u16string_view text;
  bool is_typing = false;  // the keyboard was told of the text
  bool is_guarded = false;
};

OpenScope& CurrentScope() {
  thread_local OpenScope scope;
  return scope;
}

/// The pixel of the root window where a point lies.
std::pair<int16_t, int16_t> ToPixel(const Point& point, const PixelRect& primary) {
  const auto round = [](double value) {
    return static_cast<int16_t>(std::clamp(std::round(value), -32768.0, 32767.0));
  };
  return {round(primary.x + point.x), round(primary.y + point.y)};
}

/// One event's use of the input connection.
class Posting {
 public:
  explicit Posting(std::chrono::seconds longest = kLongestWait)
      : session_(InputChannel(), Clock::now() + longest),
        state_(session_ ? InputState::Of(session_) : nullptr) {}

  /// Waits until the server has the events: whatever is asked next, on any connection, comes after.
  ~Posting() {
    if (!state_ || state_->device.count() == settled_count_) return;
    Await(session_.connection(), xcb_get_input_focus_reply,
          xcb_get_input_focus(session_.connection()));
  }

  Posting(const Posting&) = delete;
  Posting& operator=(const Posting&) = delete;

  /// False when nothing can be posted.
  explicit operator bool() const { return state_ != nullptr; }

  const Session& session() const { return session_; }
  InputDevice& device() const { return state_->device; }
  Keyboard* keyboard() const { return state_->keyboard.get(); }

  /// Moves the pointer. False when it is not known where the point lies.
  bool MoveTo(const Point& point) {
    if (std::isnan(point.x) || std::isnan(point.y)) return false;
    CallSnapshot alone;
    CallSnapshot& snapshot = CurrentCallSnapshot() ? *CurrentCallSnapshot() : alone;
    // Monitors hardly ever change: the pointer moves as if they had not while they are asked for.
    const auto guess = state_->primary;
    if (guess) Move(ToPixel(point, *guess));
    if (!snapshot.monitors) {
      snapshot.monitors = QueryMonitors(session_);
      settled_count_ = state_->device.count();
    }
    if (!snapshot.monitors || snapshot.monitors->empty()) return false;
    const PixelRect& primary = snapshot.monitors->front().bounds;
    if (guess != primary) Move(ToPixel(point, primary));
    state_->primary = primary;
    return true;
  }

  bool is_guarded() const { return CurrentScope().is_guarded || !state_->keyboard; }

  /// From here to the end of the scope, of all modifiers just those with `flags` are down. The
  /// first event that needs it decides. `question`: asked before, or none.
  void Guard(uint64_t flags, Locks locks, ModifierQuestion* question = nullptr) const {
    if (is_guarded()) return;
    EndGuard();  // of a scope that could not reach the server at its end
    const auto modifiers =
        question ? question->Take() : ModifierQuestion(session_.connection()).Take();
    if (!modifiers) return;
    state_->guard.emplace(session_, state_->device, *state_->keyboard, *modifiers, flags, locks);
    CurrentScope().is_guarded = true;
  }

  /// Tells the keyboard of the scope's text, once.
  void BeginText() const {
    if (std::exchange(CurrentScope().is_typing, true)) return;
    keyboard()->BeginText(session_, CurrentScope().text);
  }

  void EndText() const {
    if (keyboard() && CurrentScope().is_typing) keyboard()->EndText(session_, device());
  }

  void EndGuard() const {
    if (!state_->guard) return;
    state_->guard->End(session_, state_->device);
    state_->guard.reset();
  }

 private:
  void Move(const std::pair<int16_t, int16_t>& pixel) const {
    state_->device.MoveTo(pixel.first, pixel.second);
  }

  const Session session_;
  InputState* const state_;
  std::optional<uint64_t> settled_count_ = {};  // of events, when the server has all of this one
};

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

// Virtual key codes.
constexpr uint16_t kCapsLock = 57, kKeypadClear = 71;
constexpr uint16_t kKeypad[] = {65, 67, 69, 75, 76, 78, 81, 82, 83, 84, 85, 86, 87, 88, 89, 91, 92};

/// The flag that a modifier key sets by itself; 0 for other keys.
uint64_t OwnFlag(uint16_t key_code) {
  switch (key_code) {
    case 54:
    case 55:
      return modifier::kCommand;
    case 56:
    case 60:
      return modifier::kShift;
    case 58:
    case 61:
      return modifier::kOption;
    case 59:
    case 62:
      return modifier::kControl;
    default:
      return 0;
  }
}

Locks LocksFor(uint16_t key_code) {
  if (key_code == kCapsLock || key_code == kKeypadClear) return Locks::kAsTheyAre;
  const bool is_keypad =
      std::find(std::begin(kKeypad), std::end(kKeypad), key_code) != std::end(kKeypad);
  return is_keypad ? Locks::kNumbers : Locks::kOff;
}

}  // namespace

InputScope::InputScope(uint64_t flags, std::u16string_view text) {
  TurnOfCalls().lock();
  CurrentScope() = {.flags = flags, .text = text};
}

InputScope::~InputScope() {
  if (CurrentScope().is_guarded || CurrentScope().is_typing) {
    const Posting posting;
    if (posting) {
      posting.EndText();
      posting.EndGuard();
    }
  }
  CurrentScope() = {};
  TurnOfCalls().unlock();
}

void PostMouseEvent(const MouseEvent& event) {
  Posting posting;
  if (!posting) return;
  const auto is_press = IsPress(event.type);
  std::optional<ModifierQuestion> question;
  if (is_press && !posting.is_guarded()) question.emplace(posting.session().connection());
  if (!posting.MoveTo(event.position) || !is_press) return;
  posting.Guard(CurrentScope().flags, Locks::kAsTheyAre, question ? &*question : nullptr);
  posting.device().Button(NumberOf(event.button), *is_press);
}

void PostWheelEvent(int32_t vertical, int32_t horizontal) {
  const Posting posting(kLongestWheelWait);
  if (!posting || (vertical == 0 && horizontal == 0)) return;
  posting.Guard(CurrentScope().flags, Locks::kAsTheyAre);
  TurnWheel(posting, vertical, kWheelUp, kWheelDown);
  TurnWheel(posting, horizontal, kWheelLeft, kWheelRight);
}

void PostKeyEvent(const KeyEvent& event) {
  const Posting posting;
  if (!posting || !posting.keyboard()) return;
  const auto key = posting.keyboard()->KeycodeFor(event.key_code);
  if (!key) return;
  posting.Guard(CurrentScope().flags & ~OwnFlag(event.key_code), LocksFor(event.key_code));
  posting.device().Key(*key, event.is_down);
}

void PostText(std::u16string_view run) {
  const Posting posting;
  if (!posting || !posting.keyboard()) return;
  posting.Guard(CurrentScope().flags, Locks::kOff);
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
