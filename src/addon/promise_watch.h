// What the addon lets another library of the process watch: whether promises are pending. Declared
// once for both sides. Threads: any.
#pragma once

namespace deskhand {

/// Told whenever promises begin to be pending and when none is any more. Called with a lock held,
/// on the JavaScript thread of the promise: returns at once, and does not call back.
using PromisesChanged = void (*)(void* data, bool is_any_pending);

/// Watches from now on; `changed` is called at once when promises are pending already.
using WatchPromises = void (*)(PromisesChanged changed, void* data);

/// Ends what was begun with the same two values. `changed` is not running any more on return.
using UnwatchPromises = void (*)(PromisesChanged changed, void* data);

/// As the two functions are exported.
inline constexpr char kWatchPromises[] = "deskhand_watch_promises";
inline constexpr char kUnwatchPromises[] = "deskhand_unwatch_promises";

}  // namespace deskhand
