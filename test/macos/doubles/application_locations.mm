// NSURL, as far as the workspace hands it out.
// Documented at developer.apple.com/documentation/foundation/nsurl/path: nil when there is none.
#include "application_locations.h"

#include "core/recorder.h"
#include "core/tracked_object.h"
#include "objects.h"

@interface DoubleLocation : TrackedObject {
 @public
  std::string* _path;
}
@end

@implementation DoubleLocation

- (void)dispose {
  delete _path;
}

- (NSString*)path {
  if (macdoubles::RecordFailable("-[NSURL path]", {[self label]})) return nil;
  return macdoubles::ToNSString(*_path);
}

@end

namespace macdoubles {

NSURL* MakeLocation(const std::string& path) {
  DoubleLocation* location = [[DoubleLocation alloc] initWithLabel:"location " + path];
  location->_path = new std::string(path);
  return static_cast<id>([location autorelease]);
}

std::string PathOfLocation(NSURL* location) {
  const id object = location;
  if (![object isKindOfClass:[DoubleLocation class]]) {
    Violate("a location that the workspace did not give: " + LabelOf(object));
    return {};
  }
  return *static_cast<DoubleLocation*>(object)->_path;
}

}  // namespace macdoubles
