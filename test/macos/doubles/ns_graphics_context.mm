// NSGraphicsContext: the current context of each thread, with its stack of saved states.
// Documented at developer.apple.com/documentation/appkit/nsgraphicscontext: the context is nil when
// the bitmap cannot be drawn into; restoring takes the context back that was current when it was
// saved; context and stack belong to the thread.
#include <vector>

#import <AppKit/AppKit.h>

#include "core/recorder.h"
#include "core/tracked_object.h"

using macdoubles::LabelOf;
using macdoubles::Record;

namespace {

thread_local id current_context = nil;
thread_local std::vector<id> saved_contexts;

void MakeCurrent(id context) {
  [context retain];
  [current_context release];
  current_context = context;
}

}  // namespace

@implementation NSGraphicsContext

+ (NSGraphicsContext*)graphicsContextWithBitmapImageRep:(NSBitmapImageRep*)bitmap {
  const bool fails = macdoubles::RecordFailable(
      "+[NSGraphicsContext graphicsContextWithBitmapImageRep:]", {LabelOf(bitmap)});
  if (fails || !bitmap) return nil;
  id context = [[[TrackedObject alloc] initWithLabel:"graphics context"] autorelease];
  return static_cast<NSGraphicsContext*>(context);
}

+ (void)saveGraphicsState {
  Record("+[NSGraphicsContext saveGraphicsState]");
  saved_contexts.push_back([current_context retain]);
}

+ (void)restoreGraphicsState {
  Record("+[NSGraphicsContext restoreGraphicsState]");
  if (saved_contexts.empty()) {
    macdoubles::Violate("graphics state restored that was not saved");
    return;
  }
  MakeCurrent(saved_contexts.back());
  [saved_contexts.back() release];
  saved_contexts.pop_back();
}

+ (void)setCurrentContext:(NSGraphicsContext*)context {
  Record("+[NSGraphicsContext setCurrentContext:]", {LabelOf(context)});
  MakeCurrent(context);
}

+ (NSGraphicsContext*)currentContext {
  return [[current_context retain] autorelease];
}

@end
