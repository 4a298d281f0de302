// NSBundle. The scene's `bundles` are the bundles by their paths: objects with `bundleId` (null for
// none) and `info`, the information dictionary (null for none). GNUstep knows no bundles laid out
// as on macOS; its own, which Foundation reads for itself, are left to it. Documented at
// developer.apple.com/documentation/foundation/nsbundle: nil where there is no bundle.
#import <Foundation/Foundation.h>

#include "application_locations.h"
#include "core/methods.h"
#include "core/recorder.h"
#include "core/tracked_object.h"
#include "objects.h"

using macdoubles::RecordFailable;
using macdoubles::ToText;
using macdoubles::Value;

@interface DoubleBundle : TrackedObject {
  Value* _script;
}
@end

@implementation DoubleBundle

- (id)initWithPath:(const std::string&)path script:(const Value&)script {
  self = [super initWithLabel:"bundle " + path];
  _script = new Value(script);
  return self;
}

- (void)dispose {
  delete _script;
}

- (NSString*)bundleIdentifier {
  if (RecordFailable("-[NSBundle bundleIdentifier]", {[self label]})) return nil;
  return macdoubles::ToNSString((*_script)["bundleId"]);
}

- (NSDictionary*)infoDictionary {
  if (RecordFailable("-[NSBundle infoDictionary]", {[self label]})) return nil;
  const Value info = (*_script)["info"];
  return info.IsNull() ? nil : macdoubles::ToObject(info);
}

@end

namespace {

id (*own_bundle_with_path)(id, SEL, NSString*);

id MakeBundle(const std::string& path) {
  const Value script = macdoubles::SceneOf("bundles")[path];
  if (script.IsNull()) return nil;
  return [[[DoubleBundle alloc] initWithPath:path script:script] autorelease];
}

bool IsFoundations(const std::string& path) { return path.rfind("/usr/", 0) == 0; }

id BundleWithPath(id self, SEL selector, NSString* path) {
  const std::string text = ToText(path);
  if (IsFoundations(text)) return own_bundle_with_path(self, selector, path);
  return RecordFailable("+[NSBundle bundleWithPath:]", {text}) ? nil : MakeBundle(text);
}

id BundleWithUrl(id, SEL, NSURL* url) {
  if (RecordFailable("+[NSBundle bundleWithURL:]", {macdoubles::LabelOf(url)})) return nil;
  return MakeBundle(macdoubles::PathOfLocation(url));
}

}  // namespace

@interface MacDoublesBundle : NSObject
@end

@implementation MacDoublesBundle

+ (void)load {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  Class bundle = [NSBundle class];
  own_bundle_with_path =
      macdoubles::ReplaceClassMethod(bundle, @selector(bundleWithPath:), BundleWithPath);
  macdoubles::ReplaceClassMethod(bundle, @selector(bundleWithURL:), BundleWithUrl);
  [pool release];
}

@end
