// Geometry in the record and in scenes: [x, y, width, height] and [width, height].
#pragma once

#import <CoreFoundation/CoreFoundation.h>

#include "core/value.h"

namespace macdoubles {

inline Value ToValue(NSRect rect) {
  return Value::List{rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

inline Value ToValue(NSSize size) { return Value::List{size.width, size.height}; }

inline NSRect ToRect(const Value& value) {
  const Value::List numbers = value.Items();
  if (numbers.size() != 4) return NSZeroRect;
  return NSMakeRect(numbers[0].Number(), numbers[1].Number(), numbers[2].Number(),
                    numbers[3].Number());
}

}  // namespace macdoubles
