// How many promises of all environments of the process are pending, for those who want to know.
// Threads: any.
#pragma once

#include "addon/promise_watch.h"

namespace deskhand {

/// Counts as one pending promise for as long as it lives.
class PendingPromise {
 public:
  PendingPromise();
  ~PendingPromise();
  PendingPromise(const PendingPromise&) = delete;
  PendingPromise& operator=(const PendingPromise&) = delete;
};

void WatchPendingPromises(PromisesChanged changed, void* data);
void UnwatchPendingPromises(PromisesChanged changed, void* data);

}  // namespace deskhand
