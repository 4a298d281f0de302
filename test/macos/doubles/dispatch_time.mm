// dispatch_time(). The delta is recorded as it was asked for, and then multiplied by the scene's
// `timeScale`, so that a ten-second timeout comes within milliseconds.
// Documented at developer.apple.com/documentation/dispatch/1420519-dispatch_time: nanoseconds from
// the base, DISPATCH_TIME_NOW being the present.
#include "dispatch_time.h"

#include <algorithm>

#include "core/recorder.h"

namespace macdoubles {

using Clock = std::chrono::steady_clock;

Clock::time_point ToTimePoint(dispatch_time_t time) {
  if (time == DISPATCH_TIME_NOW) return Clock::now();
  return Clock::time_point(std::chrono::nanoseconds(time));
}

std::chrono::nanoseconds UntilDispatchTime(dispatch_time_t time) {
  return std::max<std::chrono::nanoseconds>(ToTimePoint(time) - Clock::now(), {});
}

}  // namespace macdoubles

dispatch_time_t dispatch_time(dispatch_time_t when, int64_t delta) {
  macdoubles::Record("dispatch_time",
                     {when == DISPATCH_TIME_NOW ? "DISPATCH_TIME_NOW" : "other", delta});
  const double scale = macdoubles::SceneOf("timeScale").Number(1);
  const auto base = macdoubles::ToTimePoint(when).time_since_epoch();
  return static_cast<dispatch_time_t>(base.count()) +
         static_cast<dispatch_time_t>(static_cast<double>(delta) * scale);
}
