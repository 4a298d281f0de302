#include "input/mouse_sequences.h"

#include <cmath>

#include "platform/input.h"

namespace deskhand {
namespace {

using platform::MouseButton;
using platform::MouseEventType;

constexpr uint32_t kButtonPauseUs = 50'000;
constexpr uint32_t kDragStepPauseUs = 10'000;
constexpr uint32_t kWheelPauseUs = 10'000;
constexpr int kDragSteps = 10;

void Post(MouseEventType type, Point point, MouseButton button) {
  platform::PostMouseEvent({.type = type, .position = point, .button = button});
}

void PostMove(Point point) { Post(MouseEventType::kMoved, point, MouseButton::kLeft); }

/// The press or release of the `click_state`th click in a row.
void PostMouseEvent(MouseEventType type, Point point, MouseButton button, int64_t click_state,
                    uint64_t flags) {
  platform::MouseEvent event{.type = type, .position = point, .button = button};
  // The first click keeps what its events are made with.
  if (click_state >= 2) event.click_state = click_state;
  if (flags != 0) event.flags = flags;
  platform::PostMouseEvent(event);
}

}  // namespace

void Click(const MouseButtonInfo& button, Point point, int32_t count, uint64_t flags) {
  // Without a click no event has flags.
  const platform::InputScope scope(count > 0 ? flags : 0);
  PostMove(point);
  for (int64_t click = 1; click <= count; ++click) {
    PostMouseEvent(button.down_type, point, button.button, click, flags);
    platform::Pause(kButtonPauseUs);
    PostMouseEvent(button.up_type, point, button.button, click, flags);
    if (click < count) platform::Pause(kButtonPauseUs);
  }
}

void MovePointer(Point point) {
  const platform::InputScope scope;
  PostMove(point);
}

void PressButton(const MouseButtonInfo& button, Point point) {
  const platform::InputScope scope;
  Post(button.down_type, point, button.button);
}

void ReleaseButton(const MouseButtonInfo& button, Point point) {
  const platform::InputScope scope;
  Post(button.up_type, point, button.button);
}

void Drag(Point start, Point end, const MouseButtonInfo& button) {
  const double dx = end.x - start.x;
  const double dy = end.y - start.y;
  const platform::InputScope scope;
  PostMove(start);
  platform::Pause(kButtonPauseUs);
  Post(button.down_type, start, button.button);
  platform::Pause(kButtonPauseUs);
  for (int step = 1; step <= kDragSteps; ++step) {
    // One rounding for each coordinate, on every target alike: the fused form is asked for by name,
    // and the sum of the last step has no product that a compiler could fuse.
    const double t = step / double{kDragSteps};
    const Point point = step < kDragSteps
                            ? Point{std::fma(dx, t, start.x), std::fma(dy, t, start.y)}
                            : Point{dx + start.x, dy + start.y};
    Post(button.drag_type, point, button.button);
    platform::Pause(kDragStepPauseUs);
  }
  platform::Pause(kButtonPauseUs);
  Post(button.up_type, end, button.button);
}

void TurnWheel(int32_t horizontal, int32_t vertical, std::optional<Point> place) {
  const platform::InputScope scope;
  if (place) {
    PostMove(*place);
    platform::Pause(kWheelPauseUs);
  }
  platform::PostWheelEvent(vertical, horizontal);
}

}  // namespace deskhand
