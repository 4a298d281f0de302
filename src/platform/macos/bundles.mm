#include "platform/bundles.h"

#include <utility>

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

#include "platform/macos/application_location.h"
#include "platform/macos/strings.h"

namespace deskhand::platform {

struct Bundle {
  NSBundle* bundle;
};

struct IndexedApplications {
  NSArray<NSMetadataItem*>* items;
};

namespace {

BundleRef ToRef(NSBundle* bundle) {
  if (!bundle) return nullptr;
  return std::make_shared<const Bundle>(Bundle{bundle});
}

/// An entry that is missing, or that knows nothing of truth, is false. Texts know: "1" is true.
bool IsTrue(const Bundle& bundle, NSString* key) {
  const id value = [bundle.bundle.infoDictionary objectForKey:key];
  return [value respondsToSelector:@selector(boolValue)] && [value boolValue];
}

std::optional<std::string> TextAt(const IndexedApplications& applications, size_t index,
                                  NSString* attribute) {
  const id value = [[applications.items objectAtIndex:index] valueForAttribute:attribute];
  if (![value isKindOfClass:[NSString class]]) return std::nullopt;
  return ToString(value);
}

}  // namespace

ApplicationLocationRef LocationOfApplication(const std::string& bundle_id) {
  NSURL* url =
      [NSWorkspace.sharedWorkspace URLForApplicationWithBundleIdentifier:ToNSString(bundle_id)];
  if (!url) return nullptr;
  return std::make_shared<const ApplicationLocation>(ApplicationLocation{url});
}

std::optional<std::string> PathOf(const ApplicationLocation& location) {
  return ToString(location.url.path);
}

BundleRef BundleAt(const ApplicationLocation& location) {
  return ToRef([NSBundle bundleWithURL:location.url]);
}

BundleRef BundleAtPath(const std::string& path) {
  return ToRef([NSBundle bundleWithPath:ToNSString(path)]);
}

std::optional<std::string> BundleId(const Bundle& bundle) {
  return ToString(bundle.bundle.bundleIdentifier);
}

bool IsBackgroundOnly(const Bundle& bundle) { return IsTrue(bundle, @"LSBackgroundOnly"); }

bool IsAgent(const Bundle& bundle) { return IsTrue(bundle, @"LSUIElement"); }

std::vector<std::string> ApplicationFolders() { return {"/Applications", "/System/Applications"}; }

std::string PathInFolder(const std::string& folder, const std::string& name) {
  return ToWholeString(
      [NSString stringWithFormat:@"%@/%@.app", ToNSString(folder), ToNSString(name)]);
}

bool PathExists(const std::string& path) {
  return [NSFileManager.defaultManager fileExistsAtPath:ToNSString(path)];
}

std::optional<std::string> DisplayNameAtPath(const std::string& path) {
  return ToString([NSFileManager.defaultManager displayNameAtPath:ToNSString(path)]);
}

std::string LowerCase(const std::string& text) {
  return ToWholeString(ToNSString(text).lowercaseString);
}

size_t CountOf(const IndexedApplications& applications) { return applications.items.count; }

std::optional<std::string> PathAt(const IndexedApplications& applications, size_t index) {
  return TextAt(applications, index, @"kMDItemPath");
}

std::optional<std::string> DisplayNameAt(const IndexedApplications& applications, size_t index) {
  return TextAt(applications, index, @"kMDItemDisplayName");
}

// The observer is what keeps the query alive, and the notification center the observer, until
// gathering is over, however long nobody waits any more.
void QueryApplicationIndex(IndexHandler handler) {
  const auto shared = std::make_shared<const IndexHandler>(std::move(handler));
  NSMetadataQuery* query = [[NSMetadataQuery alloc] init];
  query.predicate =
      [NSPredicate predicateWithFormat:@"kMDItemContentType == 'com.apple.application-bundle'"];
  query.searchScopes = @[ NSMetadataQueryLocalComputerScope ];
  // Not retained: the center holds it until it is removed, and it holds the block.
  __block __unsafe_unretained id observer = nil;
  observer = [NSNotificationCenter.defaultCenter
      addObserverForName:NSMetadataQueryDidFinishGatheringNotification
                  object:query
                   queue:NSOperationQueue.mainQueue
              usingBlock:^(NSNotification*) {
                @autoreleasepool {
                  // The block goes with its observer, and what it captured with the block.
                  const auto answer = shared;
                  [query stopQuery];
                  NSArray<NSMetadataItem*>* items = [query.results copy];
                  [NSNotificationCenter.defaultCenter removeObserver:observer];
                  (*answer)(
                      std::make_shared<const IndexedApplications>(IndexedApplications{items}));
                }
              }];
  [query startQuery];
}

}  // namespace deskhand::platform
