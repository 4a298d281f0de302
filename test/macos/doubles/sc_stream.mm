// SCContentFilter and SCStreamConfiguration: what is captured and how.
// Documented at developer.apple.com/documentation/screencapturekit/sccontentfilter and
// .../scstreamconfiguration. Neither initialiser is documented to fail; a test may have them do so.
#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include "core/recorder.h"
#include "core/tracked_object.h"
#include "geometry.h"

using macdoubles::LabelOf;
using macdoubles::Record;
using macdoubles::RecordFailable;
using macdoubles::Value;

namespace {

Value LabelsOf(NSArray* objects) {
  Value::List labels;
  for (NSUInteger index = 0; index < [objects count]; ++index) {
    labels.push_back(LabelOf([objects objectAtIndex:index]));
  }
  return labels;
}

}  // namespace

@interface DoubleFilter : TrackedObject {
  id _display;
  NSArray* _applications;
}
@end

@implementation DoubleFilter

- (id)initWithDisplay:(SCDisplay*)display
    excludingApplications:(NSArray*)applications
         exceptingWindows:(NSArray*)windows {
  self = [super initWithLabel:"filter"];
  _display = [display retain];
  _applications = [applications copy];
  if (!RecordFailable("-[SCContentFilter initWithDisplay:excludingApplications:exceptingWindows:]",
                      {LabelOf(display), LabelsOf(applications), LabelsOf(windows)})) {
    return self;
  }
  [self release];
  return nil;
}

- (void)dispose {
  [_display release];
  [_applications release];
}

@end

@implementation SCContentFilter

+ (id)alloc {
  return static_cast<id>([DoubleFilter alloc]);
}

@end

@interface DoubleConfiguration : TrackedObject
@end

@implementation DoubleConfiguration

- (id)init {
  self = [super initWithLabel:"configuration"];
  if (!RecordFailable("-[SCStreamConfiguration init]")) return self;
  [self release];
  return nil;
}

- (void)setWidth:(size_t)width {
  Record("-[SCStreamConfiguration setWidth:]", {width});
}

- (void)setHeight:(size_t)height {
  Record("-[SCStreamConfiguration setHeight:]", {height});
}

- (void)setSourceRect:(CGRect)rect {
  Record("-[SCStreamConfiguration setSourceRect:]", {macdoubles::ToValue(rect)});
}

- (void)setScalesToFit:(BOOL)scales {
  Record("-[SCStreamConfiguration setScalesToFit:]", {scales != NO});
}

- (void)setShowsCursor:(BOOL)shows {
  Record("-[SCStreamConfiguration setShowsCursor:]", {shows != NO});
}

- (void)setCapturesAudio:(BOOL)captures {
  Record("-[SCStreamConfiguration setCapturesAudio:]", {captures != NO});
}

@end

@implementation SCStreamConfiguration

+ (id)alloc {
  return static_cast<id>([DoubleConfiguration alloc]);
}

@end
