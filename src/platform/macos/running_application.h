// A running application as AppKit has it. Thread: any, inside an autorelease pool.
#pragma once

#include <memory>

#import <AppKit/AppKit.h>

#include "platform/applications.h"

namespace deskhand::platform {

struct RunningApplication {
  NSRunningApplication* application;
};

/// Null for nil.
inline RunningApplicationRef ToRef(NSRunningApplication* application) {
  if (!application) return nullptr;
  return std::make_shared<const RunningApplication>(RunningApplication{application});
}

}  // namespace deskhand::platform
