// Foundation strings to plain ones and back. Thread: any, inside an autorelease pool.
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

/// UTF-8, NULs included; empty for nil and for what has no UTF-8 form.
inline std::string ToWholeString(NSString* text) {
  const char* utf8 = text.UTF8String;
  if (!utf8) return {};
  return {utf8, [text lengthOfBytesUsingEncoding:NSUTF8StringEncoding]};
}

/// The whole of a UTF-8 text, NULs included; empty for what is no UTF-8. Never nil.
inline NSString* ToNSString(const std::string& text) {
  NSString* string = [[NSString alloc] initWithBytes:text.data()
                                              length:text.size()
                                            encoding:NSUTF8StringEncoding];
  return string ? string : @"";
}

/// What the system says of an error; none without an error.
inline std::optional<std::string> Description(NSError* error) {
  if (!error) return std::nullopt;
  return ToString(error.localizedDescription).value_or("");
}

}  // namespace deskhand::platform
