// NSScreen. The scene's `screens` are objects with `id`, `frame`, `scale` and `name`, primary
// first; without `id` a screen's description lacks "NSScreenNumber", without `name` it has none.
// `mainScreen` is the index of the screen with the active window, null for none.
// Documented at developer.apple.com/documentation/appkit/nsscreen.
#import <AppKit/AppKit.h>

#include "core/recorder.h"
#include "core/tracked_object.h"
#include "geometry.h"

@interface DoubleScreen : TrackedObject {
  macdoubles::Value* _script;
}
- (id)initWithScript:(const macdoubles::Value&)script index:(size_t)index;
@end

using macdoubles::Record;
using macdoubles::RecordFailable;
using macdoubles::Value;

@implementation DoubleScreen

- (id)initWithScript:(const Value&)script index:(size_t)index {
  self = [super initWithLabel:"screen " + std::to_string(index)];
  _script = new Value(script);
  return self;
}

- (void)dispose {
  delete _script;
}

- (NSRect)frame {
  Record("-[NSScreen frame]", {[self label]});
  return macdoubles::ToRect((*_script)["frame"]);
}

- (NSDictionary*)deviceDescription {
  if (RecordFailable("-[NSScreen deviceDescription]", {[self label]})) return nil;
  const Value identifier = (*_script)["id"];
  if (identifier.IsNull()) return [NSDictionary dictionary];
  NSNumber* number =
      [NSNumber numberWithUnsignedInt:static_cast<unsigned int>(identifier.Number())];
  return [NSDictionary dictionaryWithObject:number forKey:@"NSScreenNumber"];
}

- (CGFloat)backingScaleFactor {
  Record("-[NSScreen backingScaleFactor]", {[self label]});
  return (*_script)["scale"].Number(1);
}

- (NSString*)localizedName {
  if (RecordFailable("-[NSScreen localizedName]", {[self label]})) return nil;
  const Value name = (*_script)["name"];
  return name.IsNull() ? nil : [NSString stringWithUTF8String:name.Text().c_str()];
}

@end

namespace {

id MakeScreen(size_t index) {
  const Value::List scripts = macdoubles::SceneOf("screens").Items();
  if (index >= scripts.size()) return nil;
  return [[[DoubleScreen alloc] initWithScript:scripts[index] index:index] autorelease];
}

}  // namespace

@implementation NSScreen

+ (NSArray*)screens {
  NSMutableArray* screens = [NSMutableArray array];
  if (RecordFailable("+[NSScreen screens]")) return screens;
  for (size_t index = 0; id screen = MakeScreen(index); ++index) [screens addObject:screen];
  return screens;
}

+ (NSScreen*)mainScreen {
  if (RecordFailable("+[NSScreen mainScreen]")) return nil;
  const Value index = macdoubles::SceneOf("mainScreen");
  return index.IsNull() ? nil : MakeScreen(static_cast<size_t>(index.Number()));
}

@end
