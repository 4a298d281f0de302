// Foundation strings to plain ones. Thread: any, inside an autorelease pool.
#pragma once

#include <optional>
#include <string>

#import <Foundation/Foundation.h>

namespace deskhand::platform {

/// UTF-8 up to the first NUL; none for nil and for what has no UTF-8 form.
inline std::optional<std::string> ToString(NSString* text) {
  const char* utf8 = text.UTF8String;
  if (!utf8) return std::nullopt;
  return std::string(utf8);
}

/// What the system says of an error; none without an error.
inline std::optional<std::string> Description(NSError* error) {
  if (!error) return std::nullopt;
  return ToString(error.localizedDescription).value_or("");
}

}  // namespace deskhand::platform
