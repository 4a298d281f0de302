// Geometry in the record and in scenes: [x, y, width, height], [width, height] and [x, y].
#pragma once

#import <CoreFoundation/CoreFoundation.h>

#include "core/value.h"

namespace macdoubles {

inline Value ToValue(NSRect rect) {
  return Value::List{rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

inline Value ToValue(NSSize size) { return Value::List{size.width, size.height}; }

inline Value ToValue(NSPoint point) { return Value::List{point.x, point.y}; }

inline NSPoint ToPoint(const Value& value) {
  const Value::List numbers = value.Items();
  if (numbers.size() != 2) return NSZeroPoint;
  return NSMakePoint(numbers[0].Number(), numbers[1].Number());
}

inline NSRect ToRect(const Value& value) {
  const Value::List numbers = value.Items();
  if (numbers.size() != 4) return NSZeroRect;
  return NSMakeRect(numbers[0].Number(), numbers[1].Number(), numbers[2].Number(),
                    numbers[3].Number());
}

}  // namespace macdoubles
