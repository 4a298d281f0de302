// The part of libdispatch that the macOS backend uses, with dispatch objects as Objective-C
// objects.
#pragma once

#include <Foundation/Foundation.h>
#include <stdint.h>

@protocol OS_dispatch_queue <NSObject>
@end
@protocol OS_dispatch_semaphore <NSObject>
@end

typedef NSObject<OS_dispatch_queue>* dispatch_queue_t;
typedef NSObject<OS_dispatch_semaphore>* dispatch_semaphore_t;
typedef void (^dispatch_block_t)(void);
typedef uint64_t dispatch_time_t;
typedef intptr_t dispatch_once_t;

#define DISPATCH_TIME_NOW (0ull)
#define DISPATCH_TIME_FOREVER (~0ull)

#ifdef __cplusplus
extern "C" {
#endif

dispatch_queue_t dispatch_get_main_queue(void);
void dispatch_async(dispatch_queue_t queue, dispatch_block_t block);
void dispatch_after(dispatch_time_t when, dispatch_queue_t queue, dispatch_block_t block);
dispatch_time_t dispatch_time(dispatch_time_t when, int64_t delta);
dispatch_semaphore_t dispatch_semaphore_create(intptr_t value) __attribute__((ns_returns_retained));
intptr_t dispatch_semaphore_wait(dispatch_semaphore_t semaphore, dispatch_time_t timeout);
intptr_t dispatch_semaphore_signal(dispatch_semaphore_t semaphore);
void dispatch_once(dispatch_once_t* predicate, dispatch_block_t block);

#ifdef __cplusplus
}
#endif
