// Threads that the frameworks own: completion handlers come on them.
// No autorelease pool is open on one while it calls out: what a handler autoreleases without a pool
// of its own is reported, although the system would get to it some time.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>

namespace macdoubles {

/// Runs `work` on a thread of its own after `delay`, and destroys it there.
void RunOnFrameworkThread(std::function<void()> work, std::chrono::nanoseconds delay = {});

/// How many of these threads have not ended yet.
size_t BusyFrameworkThreads();

}  // namespace macdoubles
