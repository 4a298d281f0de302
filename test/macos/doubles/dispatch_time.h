// Points in time as dispatch_time() makes them. Thread: any.
#pragma once

#include <chrono>

#include <dispatch/dispatch.h>

namespace macdoubles {

/// The moment that `time` names, on this machine's clock.
std::chrono::steady_clock::time_point ToTimePoint(dispatch_time_t time);

/// How long it is from now to `time`; nothing when it has passed.
std::chrono::nanoseconds UntilDispatchTime(dispatch_time_t time);

}  // namespace macdoubles
