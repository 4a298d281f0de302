#include "input/mouse_handlers.h"

#include <optional>

#include "addon/arguments.h"
#include "input/lower_case.h"
#include "input/modifier_names.h"
#include "input/mouse_buttons.h"
#include "input/mouse_sequences.h"
#include "platform/input.h"

namespace deskhand {
namespace {

// An argument of the wrong type leaves its error pending, and what it stood for is done with 0 or
// the left button all the same: the caller sees the error afterwards.

MouseButtonInfo ReadButton(const Napi::Value& value) {
  return ParseMouseButton(LowerCase(ReadUtf8(value)));
}

/// The point in the arguments at `index` and behind.
Point ReadPoint(const Napi::CallbackInfo& info, size_t index) {
  const double x = ReadDouble(info[index]);
  const double y = ReadDouble(info[index + 1]);
  return {x, y};
}

Napi::Value True(const Napi::CallbackInfo& info) { return Napi::Boolean::New(info.Env(), true); }

}  // namespace

Napi::Value MouseClick(const Napi::CallbackInfo& info) {
  if (info.Length() < 3) {
    return ThrowUsage<Napi::TypeError>(info, "mouseClick requires (button, x, y)");
  }
  const MouseButtonInfo button = ReadButton(info[0]);
  const Point point = ReadPoint(info, 1);
  const int32_t count = IsNumberAt(info, 3) ? ReadInt32(info[3]) : 1;
  const uint64_t flags = IsStringAt(info, 4) ? ParseModifiers(ReadUtf8(info[4])) : 0;
  Click(button, point, count, flags);
  return True(info);
}

Napi::Value MouseMove(const Napi::CallbackInfo& info) {
  if (info.Length() < 2) return ThrowUsage<Napi::TypeError>(info, "mouseMove requires (x, y)");
  MovePointer(ReadPoint(info, 0));
  return True(info);
}

Napi::Value MouseDrag(const Napi::CallbackInfo& info) {
  if (info.Length() < 4) {
    return ThrowUsage<Napi::TypeError>(info, "mouseDrag requires (startX, startY, endX, endY)");
  }
  const Point start = ReadPoint(info, 0);
  const Point end = ReadPoint(info, 2);
  const MouseButtonInfo button =
      IsStringAt(info, 4) ? ReadButton(info[4]) : ParseMouseButton("left");
  Drag(start, end, button);
  return True(info);
}

Napi::Value MouseDown(const Napi::CallbackInfo& info) {
  if (info.Length() < 3) {
    return ThrowUsage<Napi::TypeError>(info, "mouseDown requires (button, x, y)");
  }
  const MouseButtonInfo button = ReadButton(info[0]);
  PressButton(button, ReadPoint(info, 1));
  return True(info);
}

Napi::Value MouseUp(const Napi::CallbackInfo& info) {
  if (info.Length() < 3) {
    return ThrowUsage<Napi::TypeError>(info, "mouseUp requires (button, x, y)");
  }
  const MouseButtonInfo button = ReadButton(info[0]);
  ReleaseButton(button, ReadPoint(info, 1));
  return True(info);
}

Napi::Value Scroll(const Napi::CallbackInfo& info) {
  if (info.Length() < 2) {
    return ThrowUsage<Napi::TypeError>(info, "scroll requires (deltaX, deltaY)");
  }
  const int32_t horizontal = ReadInt32(info[0]);
  const int32_t vertical = ReadInt32(info[1]);
  std::optional<Point> place;
  if (AreNumbers(info, 2, 3)) place = ReadPoint(info, 2);
  TurnWheel(horizontal, vertical, place);
  return True(info);
}

Napi::Value GetCursorPosition(const Napi::CallbackInfo& info) {
  const Point position = platform::CursorPosition();
  Napi::Object object = Napi::Object::New(info.Env());
  object.Set("x", position.x);
  object.Set("y", position.y);
  return object;
}

}  // namespace deskhand
