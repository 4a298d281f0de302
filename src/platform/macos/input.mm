#include "platform/input.h"

#import <CoreGraphics/CoreGraphics.h>
#include <unistd.h>

#include "platform/macos/cf_owner.h"

// Quartz Event Services: each event has a private source of its own and goes in where the
// hardware's do. A source that cannot be made is passed on as null; then the event is made without
// one.
namespace deskhand::platform {
namespace {

// The seam has the numbers of Quartz, so that they need no table here.
static_assert(modifier::kShift == kCGEventFlagMaskShift);
static_assert(modifier::kControl == kCGEventFlagMaskControl);
static_assert(modifier::kOption == kCGEventFlagMaskAlternate);
static_assert(modifier::kCommand == kCGEventFlagMaskCommand);
static_assert(modifier::kFunction == kCGEventFlagMaskSecondaryFn);

constexpr bool IsQuartz(MouseEventType type, CGEventType quartz) {
  return static_cast<uint32_t>(type) == static_cast<uint32_t>(quartz);
}
static_assert(IsQuartz(MouseEventType::kLeftDown, kCGEventLeftMouseDown));
static_assert(IsQuartz(MouseEventType::kLeftUp, kCGEventLeftMouseUp));
static_assert(IsQuartz(MouseEventType::kRightDown, kCGEventRightMouseDown));
static_assert(IsQuartz(MouseEventType::kRightUp, kCGEventRightMouseUp));
static_assert(IsQuartz(MouseEventType::kMoved, kCGEventMouseMoved));
static_assert(IsQuartz(MouseEventType::kLeftDragged, kCGEventLeftMouseDragged));
static_assert(IsQuartz(MouseEventType::kRightDragged, kCGEventRightMouseDragged));
static_assert(IsQuartz(MouseEventType::kOtherDown, kCGEventOtherMouseDown));
static_assert(IsQuartz(MouseEventType::kOtherUp, kCGEventOtherMouseUp));
static_assert(IsQuartz(MouseEventType::kOtherDragged, kCGEventOtherMouseDragged));

constexpr bool IsQuartz(MouseButton button, CGMouseButton quartz) {
  return static_cast<uint32_t>(button) == static_cast<uint32_t>(quartz);
}
static_assert(IsQuartz(MouseButton::kLeft, kCGMouseButtonLeft));
static_assert(IsQuartz(MouseButton::kRight, kCGMouseButtonRight));
static_assert(IsQuartz(MouseButton::kCenter, kCGMouseButtonCenter));

using EventSource = CFOwner<CGEventSourceRef>;
using Event = CFOwner<CGEventRef>;

EventSource MakeSource() { return EventSource(CGEventSourceCreate(kCGEventSourceStatePrivate)); }

void Post(const Event& event) { CGEventPost(kCGHIDEventTap, event.get()); }

}  // namespace

InputScope::InputScope(uint64_t, std::u16string_view) {}
InputScope::~InputScope() = default;

void PostMouseEvent(const MouseEvent& event) {
  const EventSource source = MakeSource();
  const Event posted(CGEventCreateMouseEvent(source.get(), static_cast<CGEventType>(event.type),
                                             CGPointMake(event.position.x, event.position.y),
                                             static_cast<CGMouseButton>(event.button)));
  if (!posted) return;
  if (event.click_state) {
    CGEventSetIntegerValueField(posted.get(), kCGMouseEventClickState, *event.click_state);
  }
  if (event.flags) CGEventSetFlags(posted.get(), static_cast<CGEventFlags>(*event.flags));
  Post(posted);
}

void PostWheelEvent(int32_t vertical, int32_t horizontal) {
  constexpr uint32_t kWheels = 2;
  const EventSource source = MakeSource();
  const Event posted(CGEventCreateScrollWheelEvent(source.get(), kCGScrollEventUnitLine, kWheels,
                                                   vertical, horizontal));
  if (posted) Post(posted);
}

void PostKeyEvent(const KeyEvent& event) {
  const EventSource source = MakeSource();
  const Event posted(CGEventCreateKeyboardEvent(source.get(), event.key_code, event.is_down));
  if (!posted) return;
  if (event.flags) CGEventSetFlags(posted.get(), static_cast<CGEventFlags>(*event.flags));
  Post(posted);
}

void PostText(std::u16string_view run) {
  // The text is on the event, whatever its key; one press types it, and nothing is released.
  constexpr CGKeyCode kAnyKey = 0;
  const EventSource source = MakeSource();
  const Event posted(CGEventCreateKeyboardEvent(source.get(), kAnyKey, true));
  if (!posted) return;
  CGEventKeyboardSetUnicodeString(posted.get(), run.size(),
                                  reinterpret_cast<const UniChar*>(run.data()));
  Post(posted);
}

Point CursorPosition() {
  const Event event(CGEventCreate(nullptr));
  if (!event) return {};
  const CGPoint location = CGEventGetLocation(event.get());
  return {location.x, location.y};
}

void Pause(uint32_t microseconds) { usleep(microseconds); }

}  // namespace deskhand::platform
