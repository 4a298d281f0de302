// faulty.node: code with every fault that the harness must detect, and the calls of libdispatch
// that the backend does not make yet. Compiled as the backend is, with ARC; never part of the
// product. Thread: the JavaScript thread.
#include <cstdlib>
#include <memory>
#include <thread>

#import <AppKit/AppKit.h>
#import <CoreFoundation/CoreFoundation.h>
#import <CoreGraphics/CoreGraphics.h>
#import <ScreenCaptureKit/ScreenCaptureKit.h>
#include <dispatch/dispatch.h>
#include <napi.h>

extern "C" void* objc_autoreleasePoolPush(void);

namespace {

/// A tracked object at count +1 that ARC knows nothing of.
CFTypeRef NewObject() {
  @autoreleasepool {
    return (__bridge_retained CFTypeRef)[[SCStreamConfiguration alloc] init];
  }
}

void LeakObject() { static_cast<void>(NewObject()); }

void OverRelease() {
  const CFTypeRef object = NewObject();
  CFRelease(object);
  CFRelease(object);
}

void ReleaseNull() { CFRelease(nullptr); }

void LeakEvent() { static_cast<void>(CGEventCreate(nullptr)); }

void PostNoEvent() { CGEventPost(kCGHIDEventTap, nullptr); }

void PostDeadEvent() {
  const CGEventRef event = CGEventCreate(nullptr);
  CFRelease(event);
  CGEventPost(kCGHIDEventTap, event);
}

void MessageTheDead() {
  @autoreleasepool {
    const CFTypeRef object = NewObject();
    CFRelease(object);
    __unsafe_unretained SCStreamConfiguration* const dead = (__bridge SCStreamConfiguration*)object;
    dead.width = 1;
  }
}

// A message whose result is a structure, returned in memory.
void AskTheDeadForFrame() {
  __unsafe_unretained NSScreen* dead = nil;
  @autoreleasepool {
    dead = NSScreen.mainScreen;
  }
  @autoreleasepool {
    static_cast<void>(dead.frame);
  }
}

void RetainTheDead() {
  const CFTypeRef object = NewObject();
  CFRelease(object);
  CFRetain(object);
}

// The array is autoreleased, and no pool is open.
void ForgetPool() { static_cast<void>([NSMutableArray array]); }

// Nothing is autoreleased here, but the framework might do so.
void MessageWithoutPool() { NSGraphicsContext.currentContext = nil; }

// On a thread of its own: a pool that stayed open here would serve the faults that follow.
void LeavePoolOpen() {
  std::thread([] { static_cast<void>(objc_autoreleasePoolPush()); }).join();
}

void LeakBlock() {
  @autoreleasepool {
    int captured = 1;
    void (^block)(void) = ^{
      static_cast<void>(captured);
    };
    static_cast<void>((__bridge_retained CFTypeRef)block);
  }
}

// A block that owns what owns the block.
void LeakCycle() {
  @autoreleasepool {
    SCStreamConfiguration* const object = [[SCStreamConfiguration alloc] init];
    struct Owner {
      void (^block)(void);
    };
    const auto owner = std::make_shared<Owner>();
    owner->block = ^{
      static_cast<void>(object);
      static_cast<void>(owner);
    };
  }
}

void RestoreWithoutSaving() {
  @autoreleasepool {
    [NSGraphicsContext restoreGraphicsState];
  }
}

void LeaveContextCurrent() {
  @autoreleasepool {
    NSBitmapImageRep* bitmap =
        [[NSBitmapImageRep alloc] initWithBitmapDataPlanes:NULL
                                                pixelsWide:1
                                                pixelsHigh:1
                                             bitsPerSample:8
                                           samplesPerPixel:4
                                                  hasAlpha:YES
                                                  isPlanar:NO
                                            colorSpaceName:NSDeviceRGBColorSpace
                                               bytesPerRow:0
                                              bitsPerPixel:0];
    NSGraphicsContext.currentContext = [NSGraphicsContext graphicsContextWithBitmapImageRep:bitmap];
  }
}

void ReleaseSemaphoreInUse() {
  @autoreleasepool {
    dispatch_semaphore_t semaphore = dispatch_semaphore_create(1);
    dispatch_semaphore_wait(semaphore, DISPATCH_TIME_FOREVER);
  }
}

void LeakWindowList() {
  static_cast<void>(CGWindowListCopyWindowInfo(kCGWindowListOptionOnScreenOnly, kCGNullWindowID));
}

void MakeRectOfText() {
  CGRect rect;
  const auto text = (__bridge CFTypeRef) @"0, 0, 1, 1";
  CGRectMakeWithDictionaryRepresentation(static_cast<CFDictionaryRef>(text), &rect);
}

id ObserveGathering(NSMetadataQuery* query) {
  return [NSNotificationCenter.defaultCenter
      addObserverForName:NSMetadataQueryDidFinishGatheringNotification
                  object:query
                   queue:NSOperationQueue.mainQueue
              usingBlock:^(NSNotification*){
              }];
}

// Nothing holds the query any more when it should tell what it found.
void ForgetQuery() {
  @autoreleasepool {
    [[[NSMetadataQuery alloc] init] startQuery];
  }
}

// The observer runs, and is never removed.
void KeepObserving() {
  @autoreleasepool {
    NSMetadataQuery* query = [[NSMetadataQuery alloc] init];
    [NSNotificationCenter.defaultCenter
        addObserverForName:NSMetadataQueryDidFinishGatheringNotification
                    object:query
                     queue:NSOperationQueue.mainQueue
                usingBlock:^(NSNotification*) {
                  static_cast<void>(query);
                }];
    [query startQuery];
  }
}

void RemoveObserverTwice() {
  @autoreleasepool {
    const id observer = ObserveGathering([[NSMetadataQuery alloc] init]);
    [NSNotificationCenter.defaultCenter removeObserver:observer];
    [NSNotificationCenter.defaultCenter removeObserver:observer];
  }
}

// Memory that only the leak detector of a sanitizer sees.
void LeakMemory() {
  volatile char* const memory = static_cast<char*>(std::malloc(12345));
  memory[0] = 1;
}

void LeakFoundationString() {
  @autoreleasepool {
    NSString* text = [[NSMutableString alloc] initWithCapacity:54321];
    static_cast<void>((__bridge_retained CFTypeRef)text);
  }
}

void ReadFreedMemory() {
  volatile char* const memory = static_cast<char*>(std::malloc(16));
  std::free(const_cast<char*>(memory));
  static_cast<void>(memory[0]);
}

void OverflowInteger() {
  volatile int number = 2147483647;
  number = number + 1;
}

// No fault: what the doubles of libdispatch must do.
void RunOnce() {
  static dispatch_once_t once;
  dispatch_once(&once, ^{
    @autoreleasepool {
      static_cast<void>(NSScreen.mainScreen);
    }
  });
}

void RunLater() {
  dispatch_after(dispatch_time(DISPATCH_TIME_NOW, 5000000000), dispatch_get_main_queue(), ^{
    @autoreleasepool {
      static_cast<void>(NSScreen.mainScreen);
    }
  });
}

// No fault: blocks are objects, and hold what they capture.
void KeepBlocksInArray() {
  @autoreleasepool {
    SCStreamConfiguration* const object = [[SCStreamConfiguration alloc] init];
    NSArray* blocks = @[
      ^{
        static_cast<void>(object);
      },
      ^{
      }
    ];
    for (void (^block)(void) in blocks) block();
    static_cast<void>([blocks.firstObject copy]);
  }
}

template <void (*kFunction)()>
Napi::Value Call(const Napi::CallbackInfo& info) {
  kFunction();
  return info.Env().Undefined();
}

Napi::Object Init(Napi::Env env, Napi::Object exports) {
  exports.Set("leakObject", Napi::Function::New(env, Call<LeakObject>));
  exports.Set("overRelease", Napi::Function::New(env, Call<OverRelease>));
  exports.Set("releaseNull", Napi::Function::New(env, Call<ReleaseNull>));
  exports.Set("leakEvent", Napi::Function::New(env, Call<LeakEvent>));
  exports.Set("postNoEvent", Napi::Function::New(env, Call<PostNoEvent>));
  exports.Set("postDeadEvent", Napi::Function::New(env, Call<PostDeadEvent>));
  exports.Set("messageTheDead", Napi::Function::New(env, Call<MessageTheDead>));
  exports.Set("askTheDeadForFrame", Napi::Function::New(env, Call<AskTheDeadForFrame>));
  exports.Set("retainTheDead", Napi::Function::New(env, Call<RetainTheDead>));
  exports.Set("forgetPool", Napi::Function::New(env, Call<ForgetPool>));
  exports.Set("messageWithoutPool", Napi::Function::New(env, Call<MessageWithoutPool>));
  exports.Set("leavePoolOpen", Napi::Function::New(env, Call<LeavePoolOpen>));
  exports.Set("leakBlock", Napi::Function::New(env, Call<LeakBlock>));
  exports.Set("leakCycle", Napi::Function::New(env, Call<LeakCycle>));
  exports.Set("restoreWithoutSaving", Napi::Function::New(env, Call<RestoreWithoutSaving>));
  exports.Set("leaveContextCurrent", Napi::Function::New(env, Call<LeaveContextCurrent>));
  exports.Set("releaseSemaphoreInUse", Napi::Function::New(env, Call<ReleaseSemaphoreInUse>));
  exports.Set("leakWindowList", Napi::Function::New(env, Call<LeakWindowList>));
  exports.Set("makeRectOfText", Napi::Function::New(env, Call<MakeRectOfText>));
  exports.Set("forgetQuery", Napi::Function::New(env, Call<ForgetQuery>));
  exports.Set("keepObserving", Napi::Function::New(env, Call<KeepObserving>));
  exports.Set("removeObserverTwice", Napi::Function::New(env, Call<RemoveObserverTwice>));
  exports.Set("leakMemory", Napi::Function::New(env, Call<LeakMemory>));
  exports.Set("leakFoundationString", Napi::Function::New(env, Call<LeakFoundationString>));
  exports.Set("readFreedMemory", Napi::Function::New(env, Call<ReadFreedMemory>));
  exports.Set("overflowInteger", Napi::Function::New(env, Call<OverflowInteger>));
  exports.Set("runOnce", Napi::Function::New(env, Call<RunOnce>));
  exports.Set("runLater", Napi::Function::New(env, Call<RunLater>));
  exports.Set("keepBlocksInArray", Napi::Function::New(env, Call<KeepBlocksInArray>));
  return exports;
}

NODE_API_MODULE(faulty, Init)

}  // namespace
