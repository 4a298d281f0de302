#include "platform/applications.h"

#include <utility>

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>
#include <unistd.h>

#include "platform/macos/application_location.h"
#include "platform/macos/running_application.h"
#include "platform/macos/strings.h"

namespace deskhand::platform {
namespace {

// NSApplicationActivateIgnoringOtherApps, whose name is deprecated in macOS 14: there the system
// decides for itself, before it brings the application forward as asked.
constexpr auto kIgnoringOtherApplications = static_cast<NSApplicationActivationOptions>(1UL << 1);

}  // namespace

std::vector<RunningApplicationRef> RunningApplications() {
  std::vector<RunningApplicationRef> running;
  for (NSRunningApplication* application in NSWorkspace.sharedWorkspace.runningApplications) {
    running.push_back(ToRef(application));
  }
  return running;
}

RunningApplicationRef FrontmostApplication() {
  return ToRef(NSWorkspace.sharedWorkspace.frontmostApplication);
}

bool IsRegular(const RunningApplication& application) {
  return application.application.activationPolicy == NSApplicationActivationPolicyRegular;
}

std::optional<std::string> BundleId(const RunningApplication& application) {
  return ToString(application.application.bundleIdentifier);
}

std::optional<std::string> LocalizedName(const RunningApplication& application) {
  return ToString(application.application.localizedName);
}

int32_t ProcessId(const RunningApplication& application) {
  return application.application.processIdentifier;
}

bool IsHidden(const RunningApplication& application) { return application.application.hidden; }

void Hide(const RunningApplication& application) { [application.application hide]; }

void Unhide(const RunningApplication& application) { [application.application unhide]; }

void OpenApplication(const ApplicationLocation& location, OpenHandler handler) {
  const auto shared = std::make_shared<const OpenHandler>(std::move(handler));
  NSWorkspaceOpenConfiguration* configuration = [NSWorkspaceOpenConfiguration configuration];
  configuration.activates = YES;
  [NSWorkspace.sharedWorkspace
      openApplicationAtURL:location.url
             configuration:configuration
         completionHandler:^(NSRunningApplication* application, NSError* error) {
           @autoreleasepool {
             (*shared)(ToRef(application), Description(error));
           }
         }];
}

void Activate(const RunningApplication& application) {
  [application.application activateWithOptions:kIgnoringOtherApplications];
}

int32_t OwnProcessId() { return getpid(); }

}  // namespace deskhand::platform
