// What the runtime glue counts, for the end of each test. Thread: any.
#pragma once

#include <atomic>

namespace macdoubles {

/// @autoreleasepool blocks of ARC code that are open now, in all threads.
extern std::atomic<long> open_pools;

/// Those that the calling thread has open.
long OpenPoolsOfThread();

/// Blocks copied to the heap and not yet disposed of.
extern std::atomic<long> live_blocks;

}  // namespace macdoubles
