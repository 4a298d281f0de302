// Foundation's plain objects in the record and in scenes.
#pragma once

#include <string>

#import <Foundation/Foundation.h>

#include "core/value.h"

namespace macdoubles {

/// The whole text, NULs included; empty for nil.
std::string ToText(NSString* text);

/// The whole text of a string, NULs included; nil for null. Autoreleased.
NSString* ToNSString(const Value& value);

/// A property list: null becomes NSNull. Autoreleased.
id ToObject(const Value& value);

/// The reverse; nil becomes null, and what is no property list the name of its class.
Value ToValue(id object);

}  // namespace macdoubles
