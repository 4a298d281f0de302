// Running applications as AppKit hands them out.
#pragma once

#import <AppKit/AppKit.h>

#include "core/value.h"

namespace macdoubles {

/// A new one, owned by the caller, that answers as the script says (see ns_running_application.mm).
NSRunningApplication* NewRunningApplication(const Value& script);

/// Those of the scene, autoreleased, in its order.
NSArray* RunningApplications();

/// The one of the scene with a process identifier, autoreleased; nil when there is none.
NSRunningApplication* RunningApplicationOf(pid_t pid);

}  // namespace macdoubles
