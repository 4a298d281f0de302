// NSNotificationCenter's observers with blocks, and NSOperationQueue's main queue, which is the
// main dispatch queue's. GNUstep leaks what such a block captured and runs it on another thread.
// Documented at developer.apple.com/documentation/foundation/nsnotificationcenter: the center
// copies the block and holds the token until it is removed; an observer on a queue runs there,
// later.
#include <algorithm>
#include <memory>
#include <mutex>
#include <vector>

#import <Foundation/Foundation.h>

#include "core/methods.h"
#include "core/owned_block.h"
#include "core/recorder.h"
#include "core/tracked_object.h"
#include "main_queue.h"
#include "notifications.h"
#include "objects.h"

using macdoubles::LabelOf;
using macdoubles::Record;
using macdoubles::ToText;

namespace {

using Block = void (^)(NSNotification*);

}  // namespace

@interface DoubleObserver : TrackedObject {
 @public
  std::string* _name;
  id _object;  // not retained, as there
  std::shared_ptr<const void>* _block;
  BOOL _ran;
}
@end

@implementation DoubleObserver

- (void)dispose {
  delete _name;
  delete _block;
}

- (void)runWith:(NSNotification*)notification {
  _ran = YES;
  macdoubles::BlockOf<Block> (*_block)(notification);
}

@end

@interface DoubleMainOperationQueue : NSObject
@end

@implementation DoubleMainOperationQueue
@end

namespace {

struct Center {
  std::mutex mutex;
  std::vector<DoubleObserver*> observers;
};

Center& TheCenter() {
  static Center& center = *new Center;
  return center;
}

id MainOperationQueue() {
  static DoubleMainOperationQueue* const queue = [[DoubleMainOperationQueue alloc] init];
  return queue;
}

bool IsRegistered(const void* observer) {
  Center& center = TheCenter();
  const std::lock_guard lock(center.mutex);
  return std::any_of(center.observers.begin(), center.observers.end(),
                     [&](DoubleObserver* each) { return each == observer; });
}

id MainQueue(id, SEL) {
  Record("+[NSOperationQueue mainQueue]");
  return MainOperationQueue();
}

id AddObserver(id, SEL, NSString* name, id object, NSOperationQueue* queue, Block block) {
  const bool is_main = queue == MainOperationQueue();
  Record("-[NSNotificationCenter addObserverForName:object:queue:usingBlock:]",
         {ToText(name), LabelOf(object), is_main ? "main queue" : LabelOf(queue)});
  if (!is_main) macdoubles::Violate("an observer on another queue than the main one");
  DoubleObserver* observer = [[DoubleObserver alloc] initWithLabel:"observer"];
  observer->_name = new std::string(ToText(name));
  observer->_object = object;
  observer->_block = new std::shared_ptr<const void>(macdoubles::OwnBlock(block));
  Center& center = TheCenter();
  const std::lock_guard lock(center.mutex);
  center.observers.push_back(observer);
  return [[observer retain] autorelease];
}

void (*own_remove_observer)(id, SEL, id);

bool TakeOut(id observer) {
  Center& center = TheCenter();
  const std::lock_guard lock(center.mutex);
  const auto found = std::find(center.observers.begin(), center.observers.end(), observer);
  if (found == center.observers.end()) return false;
  center.observers.erase(found);
  return true;
}

void RemoveObserver(id self, SEL selector, id observer) {
  const std::string label = LabelOf(observer);
  if (label != "observer" && label != "dead observer") {
    if (!observer) Record("-[NSNotificationCenter removeObserver:]", {label});
    own_remove_observer(self, selector, observer);
    return;
  }
  Record("-[NSNotificationCenter removeObserver:]", {label});
  if (TakeOut(observer)) {
    [observer release];
  } else {
    macdoubles::Violate("an observer was removed twice");
  }
}

/// Runs the observer unless it was removed meanwhile.
void Notify(DoubleObserver* observer) {
  if (!IsRegistered(observer)) return;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  NSNotification* notification =
      [[NSNotification notificationWithName:macdoubles::ToNSString(*observer->_name)
                                     object:observer->_object] retain];
  [pool release];
  [observer runWith:notification];
  [notification release];
}

}  // namespace

namespace macdoubles {

void PostNotification(const std::string& name, const void* object) {
  std::vector<DoubleObserver*> due;
  {
    Center& center = TheCenter();
    const std::lock_guard lock(center.mutex);
    for (DoubleObserver* observer : center.observers) {
      const bool is_due = *observer->_name == name && observer->_object == object;
      if (is_due) due.push_back([observer retain]);
    }
  }
  for (DoubleObserver* observer : due) {
    const std::shared_ptr<const void> kept(observer,
                                           [observer](const void*) { [observer release]; });
    RunOnMainQueue([kept, observer] { Notify(observer); });
  }
}

void DropObservers() {
  std::vector<DoubleObserver*> remaining;
  {
    Center& center = TheCenter();
    const std::lock_guard lock(center.mutex);
    remaining.swap(center.observers);
  }
  for (DoubleObserver* observer : remaining) {
    if (observer->_ran) Violate("an observer that ran is still registered");
    [observer release];
  }
}

}  // namespace macdoubles

@interface MacDoublesNotificationCenter : NSObject
@end

@implementation MacDoublesNotificationCenter

+ (void)load {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  Class center = [NSNotificationCenter class];
  macdoubles::ReplaceMethod(center, @selector(addObserverForName:object:queue:usingBlock:),
                            AddObserver);
  own_remove_observer =
      macdoubles::ReplaceMethod(center, @selector(removeObserver:), RemoveObserver);
  macdoubles::ReplaceClassMethod([NSOperationQueue class], @selector(mainQueue), MainQueue);
  [pool release];
}

@end
