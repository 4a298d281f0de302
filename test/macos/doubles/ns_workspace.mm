// NSWorkspace and NSWorkspaceOpenConfiguration. The scene's `frontmost` is the process identifier
// of one of its `running` applications, null for none; `locations` has the path of an application
// for each bundle identifier that the system knows; `open` has `result` ("application", "error",
// "both" or "neither"), `application` (as one of `running`), `error` (its description), and what
// answers.h says of the answer. Documented at developer.apple.com/documentation/appkit/nsworkspace:
// the handler of an opening gets the application or an error, on a concurrent queue.
#import <AppKit/AppKit.h>

#include "application_locations.h"
#include "core/answers.h"
#include "core/owned_block.h"
#include "core/recorder.h"
#include "core/tracked_object.h"
#include "objects.h"
#include "running_applications.h"

using macdoubles::LabelOf;
using macdoubles::Record;
using macdoubles::RecordFailable;
using macdoubles::Value;

namespace {

NSError* NewOpenError(const std::string& text) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  constexpr NSInteger kNoSuchFile = 4;  // NSFileNoSuchFileError
  NSDictionary* info = [NSDictionary dictionaryWithObject:macdoubles::ToNSString(text)
                                                   forKey:NSLocalizedDescriptionKey];
  NSError* error = [[NSError alloc] initWithDomain:NSCocoaErrorDomain
                                              code:kNoSuchFile
                                          userInfo:info];
  [pool release];
  return error;
}

}  // namespace

@interface DoubleOpenConfiguration : TrackedObject
@end

@implementation DoubleOpenConfiguration

- (void)setActivates:(BOOL)activates {
  Record("-[NSWorkspaceOpenConfiguration setActivates:]", {[self label], activates != NO});
}

@end

@implementation NSWorkspaceOpenConfiguration

+ (instancetype)configuration {
  Record("+[NSWorkspaceOpenConfiguration configuration]");
  return static_cast<id>(
      [[[DoubleOpenConfiguration alloc] initWithLabel:"open configuration"] autorelease]);
}

@end

/// The one workspace, which lives as long as the process.
@interface DoubleWorkspace : NSObject
@end

@implementation DoubleWorkspace

- (NSArray*)runningApplications {
  if (RecordFailable("-[NSWorkspace runningApplications]")) return [NSArray array];
  return macdoubles::RunningApplications();
}

- (NSRunningApplication*)frontmostApplication {
  if (RecordFailable("-[NSWorkspace frontmostApplication]")) return nil;
  const Value pid = macdoubles::SceneOf("frontmost");
  if (pid.IsNull()) return nil;
  return macdoubles::RunningApplicationOf(static_cast<pid_t>(pid.Number()));
}

- (NSURL*)URLForApplicationWithBundleIdentifier:(NSString*)bundleIdentifier {
  const std::string identifier = macdoubles::ToText(bundleIdentifier);
  if (RecordFailable("-[NSWorkspace URLForApplicationWithBundleIdentifier:]", {identifier})) {
    return nil;
  }
  const Value path = macdoubles::SceneOf("locations")[identifier];
  return path.IsNull() ? nil : macdoubles::MakeLocation(path.Text());
}

- (void)openApplicationAtURL:(NSURL*)location
               configuration:(NSWorkspaceOpenConfiguration*)configuration
           completionHandler:(void (^)(NSRunningApplication*, NSError*))handler {
  const bool fails =
      RecordFailable("-[NSWorkspace openApplicationAtURL:configuration:completionHandler:]",
                     {LabelOf(location), LabelOf(configuration)});
  const Value script = macdoubles::SceneOf("open");
  const std::string result = fails ? "error" : script["result"].Text();
  const auto owned = macdoubles::OwnBlock(handler);
  macdoubles::Answer("open", [owned, script, result] {
    const bool has_application = result == "application" || result == "both";
    const bool has_error = result == "error" || result == "both";
    NSRunningApplication* application =
        has_application ? macdoubles::NewRunningApplication(script["application"]) : nil;
    NSError* error = has_error ? NewOpenError(script["error"].Text()) : nil;
    macdoubles::BlockOf<decltype(handler)>(owned)(application, error);
    [application release];
    [error release];
  });
}

@end

@implementation NSWorkspace

+ (NSWorkspace*)sharedWorkspace {
  static DoubleWorkspace* const workspace = [[DoubleWorkspace alloc] init];
  Record("+[NSWorkspace sharedWorkspace]");
  return static_cast<id>(workspace);
}

@end
