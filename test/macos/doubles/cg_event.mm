// Quartz Event Services. The scene's `cursor` is where the pointer is: [x, y]. A mouse event that
// is posted puts it there; nothing else comes of events, and there is nobody to get them.
// Documented at developer.apple.com/documentation/coregraphics/quartz_event_services: a function
// that creates gives NULL when it cannot, and a NULL source is allowed.
#include <cstdarg>

#import <CoreGraphics/CoreGraphics.h>

#include "core/recorder.h"
#include "core/tracked_object.h"
#include "geometry.h"

using macdoubles::LabelOf;
using macdoubles::Record;
using macdoubles::RecordFailable;
using macdoubles::ToValue;
using macdoubles::Value;

@interface DoubleEvent : TrackedObject {
 @public
  BOOL _movesPointer;
  CGPoint _location;
}
@end

@implementation DoubleEvent
@end

namespace {

TrackedObject* ObjectOf(void* reference) { return reinterpret_cast<TrackedObject*>(reference); }

CGEventRef ReferenceTo(DoubleEvent* event) { return reinterpret_cast<CGEventRef>(event); }

CGEventRef MakeEvent() { return ReferenceTo([[DoubleEvent alloc] initWithLabel:"event"]); }

/// Records a call on an event, which must be there and alive.
void RecordOn(CGEventRef event, const std::string& function, Value::List arguments) {
  const std::string label = LabelOf(ObjectOf(event));
  if (label != "event") {
    macdoubles::Violate(function + " of " + (event ? label : std::string("no event")));
  }
  Record(function, std::move(arguments));
}

}  // namespace

CGEventSourceRef CGEventSourceCreate(CGEventSourceStateID stateID) {
  if (RecordFailable("CGEventSourceCreate", {static_cast<int32_t>(stateID)})) return nullptr;
  TrackedObject* source = [[TrackedObject alloc] initWithLabel:"source"];
  return reinterpret_cast<CGEventSourceRef>(source);
}

CGEventRef CGEventCreate(CGEventSourceRef source) {
  if (RecordFailable("CGEventCreate", {LabelOf(ObjectOf(source))})) return nullptr;
  return MakeEvent();
}

CGEventRef CGEventCreateMouseEvent(CGEventSourceRef source, CGEventType mouseType,
                                   CGPoint mouseCursorPosition, CGMouseButton mouseButton) {
  if (RecordFailable("CGEventCreateMouseEvent",
                     {LabelOf(ObjectOf(source)), static_cast<uint32_t>(mouseType),
                      ToValue(mouseCursorPosition), static_cast<uint32_t>(mouseButton)})) {
    return nullptr;
  }
  DoubleEvent* event = [[DoubleEvent alloc] initWithLabel:"event"];
  event->_movesPointer = YES;
  event->_location = mouseCursorPosition;
  return ReferenceTo(event);
}

CGEventRef CGEventCreateKeyboardEvent(CGEventSourceRef source, CGKeyCode virtualKey, bool keyDown) {
  if (RecordFailable("CGEventCreateKeyboardEvent",
                     {LabelOf(ObjectOf(source)), virtualKey, keyDown})) {
    return nullptr;
  }
  return MakeEvent();
}

CGEventRef CGEventCreateScrollWheelEvent(CGEventSourceRef source, CGScrollEventUnit units,
                                         uint32_t wheelCount, int32_t wheel1, ...) {
  Value::List wheels{wheel1};
  va_list further;
  va_start(further, wheel1);
  for (uint32_t wheel = 1; wheel < wheelCount; ++wheel) wheels.push_back(va_arg(further, int32_t));
  va_end(further);
  if (RecordFailable("CGEventCreateScrollWheelEvent",
                     {LabelOf(ObjectOf(source)), static_cast<uint32_t>(units), wheelCount,
                      std::move(wheels)})) {
    return nullptr;
  }
  return MakeEvent();
}

CGPoint CGEventGetLocation(CGEventRef event) {
  RecordOn(event, "CGEventGetLocation", {LabelOf(ObjectOf(event))});
  return macdoubles::ToPoint(macdoubles::SceneOf("cursor"));
}

void CGEventSetFlags(CGEventRef event, CGEventFlags flags) {
  RecordOn(event, "CGEventSetFlags", {LabelOf(ObjectOf(event)), static_cast<uint64_t>(flags)});
}

void CGEventSetIntegerValueField(CGEventRef event, CGEventField field, int64_t value) {
  RecordOn(event, "CGEventSetIntegerValueField",
           {LabelOf(ObjectOf(event)), static_cast<uint32_t>(field), value});
}

// A list of numbers: text may be cut where no character ends.
void CGEventKeyboardSetUnicodeString(CGEventRef event, UniCharCount stringLength,
                                     const UniChar* unicodeString) {
  const Value::List units(unicodeString, unicodeString + stringLength);
  RecordOn(event, "CGEventKeyboardSetUnicodeString",
           {LabelOf(ObjectOf(event)), stringLength, units});
}

void CGEventPost(CGEventTapLocation tap, CGEventRef event) {
  RecordOn(event, "CGEventPost", {static_cast<uint32_t>(tap), LabelOf(ObjectOf(event))});
  DoubleEvent* posted = static_cast<DoubleEvent*>(ObjectOf(event));
  if (posted && posted->_movesPointer)
    macdoubles::ChangeInScene("cursor", ToValue(posted->_location));
}
