// The test's side of the main dispatch queue. Thread: the one that plays the main thread.
#pragma once

#include <cstddef>
#include <functional>

namespace macdoubles {

/// `wake` is called, on any thread, whenever a serviced main queue has work; it has
/// ServiceMainQueue() called soon on the main thread. An empty one detaches the main thread.
void SetMainQueueWake(std::function<void()> wake);

/// Runs the blocks that wait, and those they add; returns how many.
size_t ServiceMainQueue();

/// Has the main queue run `work`, as a framework does that hands something to it.
void RunOnMainQueue(std::function<void()> work);

size_t WaitingMainQueueBlocks();

/// Lets go of the blocks that wait without running them.
void DiscardMainQueue();

}  // namespace macdoubles
