// Captured pictures: to the backend a CGImageRef that it borrows and cannot look into.
#pragma once

#import <CoreGraphics/CoreGraphics.h>

#include "core/tracked_object.h"

namespace macdoubles {

inline CGImageRef ReferenceTo(TrackedObject* image) { return reinterpret_cast<CGImageRef>(image); }
inline TrackedObject* ImageOf(CGImageRef image) { return reinterpret_cast<TrackedObject*>(image); }

}  // namespace macdoubles
