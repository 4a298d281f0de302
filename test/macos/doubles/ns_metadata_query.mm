// NSMetadataQuery, NSMetadataItem and NSPredicate. The scene's `query` has `results` (objects with
// `path` and `displayName`, null for nil) and what answers.h says of the answer, which is that
// gathering finished. GNUstep's query is abstract; its predicates are real, and their formats are
// recorded.
// Documented at developer.apple.com/documentation/foundation/nsmetadataquery: a query posts its
// notifications itself, gathers for as long as nobody stops it, and stops when it is released.
#include <atomic>
#include <cstdarg>
#include <memory>

#import <Foundation/Foundation.h>

#include "core/answers.h"
#include "core/methods.h"
#include "core/recorder.h"
#include "core/tracked_object.h"
#include "notifications.h"
#include "objects.h"

using macdoubles::LabelOf;
using macdoubles::Record;
using macdoubles::RecordFailable;
using macdoubles::ToText;
using macdoubles::Value;

@interface DoubleMetadataItem : TrackedObject {
  Value* _script;
}
@end

@implementation DoubleMetadataItem

- (id)initWithScript:(const Value&)script index:(size_t)index {
  self = [super initWithLabel:"item " + std::to_string(index)];
  _script = new Value(script);
  return self;
}

- (void)dispose {
  delete _script;
}

- (id)valueForAttribute:(NSString*)key {
  const std::string attribute = ToText(key);
  if (RecordFailable("-[NSMetadataItem valueForAttribute:]", {[self label], attribute})) return nil;
  Value value;
  if (attribute == "kMDItemPath") value = (*_script)["path"];
  if (attribute == "kMDItemDisplayName") value = (*_script)["displayName"];
  return value.IsNull() ? nil : macdoubles::ToObject(value);
}

@end

namespace {

/// What is between the start of a query and the end of its gathering.
struct Gathering {
  std::atomic<bool> is_over{false};
};

Value LabelOfScope(id scope) {
  if (scope == NSMetadataQueryLocalComputerScope) return "NSMetadataQueryLocalComputerScope";
  return macdoubles::ToValue(scope);
}

}  // namespace

@interface DoubleMetadataQuery : TrackedObject {
  std::weak_ptr<Gathering>* _gathering;
}
@end

@implementation DoubleMetadataQuery

- (id)init {
  self = [super initWithLabel:"query"];
  _gathering = new std::weak_ptr<Gathering>;
  Record("-[NSMetadataQuery init]");
  return self;
}

- (void)dispose {
  // Nothing is left of it when the test has ended.
  const std::shared_ptr<Gathering> gathering = _gathering->lock();
  if (gathering && !gathering->is_over) macdoubles::Violate("a query was released as it gathered");
  delete _gathering;
}

- (void)setPredicate:(NSPredicate*)predicate {
  Record("-[NSMetadataQuery setPredicate:]", {[self label], ToText([predicate predicateFormat])});
}

- (void)setSearchScopes:(NSArray*)scopes {
  Value::List labels;
  for (id scope in scopes) labels.push_back(LabelOfScope(scope));
  Record("-[NSMetadataQuery setSearchScopes:]", {[self label], labels});
}

- (BOOL)startQuery {
  if (RecordFailable("-[NSMetadataQuery startQuery]", {[self label]})) return NO;
  const auto gathering = std::make_shared<Gathering>();
  *_gathering = gathering;
  // Not retained: whoever lets go of a query gets no answer.
  const void* const self_address = self;
  macdoubles::Answer("query", [gathering, self_address] {
    gathering->is_over = true;
    macdoubles::PostNotification(ToText(NSMetadataQueryDidFinishGatheringNotification),
                                 self_address);
  });
  return YES;
}

- (void)stopQuery {
  Record("-[NSMetadataQuery stopQuery]", {[self label]});
}

- (NSArray*)results {
  NSMutableArray* items = [NSMutableArray array];
  if (RecordFailable("-[NSMetadataQuery results]", {[self label]})) return items;
  for (const Value& script : macdoubles::SceneOf("query")["results"].Items()) {
    id item = [[DoubleMetadataItem alloc] initWithScript:script index:[items count]];
    [items addObject:item];
    [item release];
  }
  return items;
}

@end

namespace {

id AllocQuery(id, SEL) { return [DoubleMetadataQuery alloc]; }

NSPredicate* PredicateWithFormat(id, SEL, NSString* format, ...) {
  Record("+[NSPredicate predicateWithFormat:]", {ToText(format)});
  va_list arguments;
  va_start(arguments, format);
  NSPredicate* predicate = [NSPredicate predicateWithFormat:format arguments:arguments];
  va_end(arguments);
  return predicate;
}

}  // namespace

@interface MacDoublesMetadataQuery : NSObject
@end

@implementation MacDoublesMetadataQuery

+ (void)load {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  macdoubles::ReplaceClassMethod([NSMetadataQuery class], @selector(alloc), AllocQuery);
  macdoubles::ReplaceClassMethod([NSPredicate class], @selector(predicateWithFormat:),
                                 PredicateWithFormat);
  [pool release];
}

@end
