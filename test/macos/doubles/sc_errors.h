// Errors as ScreenCaptureKit gives them.
#pragma once

#include <string>

#import <Foundation/Foundation.h>

namespace macdoubles {

/// A new error, owned by the caller, whose description is `text`.
NSError* NewStreamError(const std::string& text);

}  // namespace macdoubles
