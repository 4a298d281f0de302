// The part of Foundation that the macOS backend uses, declared from its public documentation.
// The runtime's own part (NSObject, NSInteger, BOOL) comes with the Darwin C library's headers.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <objc/NSObject.h>
#include <os/availability.h>

#define NS_ENUM(type, name) CF_ENUM(type, name)
#define NS_OPTIONS(type, name) CF_OPTIONS(type, name)

#pragma clang assume_nonnull begin

// Geometry.

typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;

#ifdef __cplusplus
extern "C" {
#endif

extern const NSRect NSZeroRect;

#ifdef __cplusplus
}
#endif

static inline NSSize NSMakeSize(CGFloat width, CGFloat height) {
  NSSize size;
  size.width = width;
  size.height = height;
  return size;
}

static inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
  NSRect rect;
  rect.origin.x = x;
  rect.origin.y = y;
  rect.size.width = width;
  rect.size.height = height;
  return rect;
}

// Protocols that the language's own syntax asks for: keys of literals, and `for ... in`.

@protocol NSCopying
- (id)copyWithZone:(nullable struct _NSZone*)zone;
@end

typedef struct {
  unsigned long state;
  id __unsafe_unretained _Nullable* _Nullable itemsPtr;
  unsigned long* _Nullable mutationsPtr;
  unsigned long extra[5];
} NSFastEnumerationState;

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)count;
@end

// Values.

typedef NSUInteger NSStringEncoding;
enum : NSStringEncoding { NSUTF8StringEncoding = 4 };

@interface NSString : NSObject <NSCopying>
@property(nullable, readonly) const char* UTF8String __attribute__((objc_returns_inner_pointer));
@property(readonly, copy) NSString* lowercaseString;
- (nullable instancetype)initWithBytes:(const void*)bytes
                                length:(NSUInteger)length
                              encoding:(NSStringEncoding)encoding;
- (NSUInteger)lengthOfBytesUsingEncoding:(NSStringEncoding)encoding;
// Variable arguments: one object for each %@.
+ (instancetype)stringWithFormat:(NSString*)format, ... __attribute__((format(__NSString__, 1, 2)));
@end

@interface NSValue : NSObject
@end

@interface NSNumber : NSValue
@property(readonly) BOOL boolValue;
@property(readonly) float floatValue;
@property(readonly) int intValue;
@property(readonly) unsigned int unsignedIntValue;
+ (NSNumber*)numberWithDouble:(double)value;
@end

typedef NS_OPTIONS(NSUInteger, NSDataBase64EncodingOptions) {
  NSDataBase64Encoding64CharacterLineLength = 1UL << 0,
  NSDataBase64Encoding76CharacterLineLength = 1UL << 1,
  NSDataBase64EncodingEndLineWithCarriageReturn = 1UL << 4,
  NSDataBase64EncodingEndLineWithLineFeed = 1UL << 5,
};

@interface NSData : NSObject
@property(readonly) NSUInteger length;
- (NSString*)base64EncodedStringWithOptions:(NSDataBase64EncodingOptions)options
    API_AVAILABLE(macos(10.9));
@end

@interface NSError : NSObject
@property(readonly, copy) NSString* localizedDescription;
@end

@interface NSURL : NSObject
@property(nullable, readonly, copy) NSString* path;
@end

// Collections.

@interface NSArray<__covariant ObjectType> : NSObject <NSFastEnumeration>
@property(readonly) NSUInteger count;
@property(nullable, nonatomic, readonly) ObjectType firstObject API_AVAILABLE(macos(10.6));
+ (instancetype)array;
+ (instancetype)arrayWithObjects:(const ObjectType _Nonnull[_Nullable])objects
                           count:(NSUInteger)count;
- (ObjectType)objectAtIndex:(NSUInteger)index;
@end

@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
- (void)addObject:(ObjectType)object;
@end

@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject
+ (instancetype)dictionaryWithObjects:(const ObjectType _Nonnull[_Nullable])objects
                              forKeys:(const KeyType<NSCopying> _Nonnull[_Nullable])keys
                                count:(NSUInteger)count;
- (nullable ObjectType)objectForKey:(KeyType)key;
@end

// Bundles and files.

@interface NSBundle : NSObject
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@property(nullable, readonly, copy) NSDictionary<NSString*, id>* infoDictionary;
+ (nullable instancetype)bundleWithPath:(NSString*)path;
+ (nullable instancetype)bundleWithURL:(NSURL*)url API_AVAILABLE(macos(10.6));
@end

@interface NSFileManager : NSObject
@property(class, readonly, strong) NSFileManager* defaultManager;
- (BOOL)fileExistsAtPath:(NSString*)path;
- (NSString*)displayNameAtPath:(NSString*)path;
@end

// Notifications.

typedef NSString* NSNotificationName;

@class NSNotification;

@interface NSOperationQueue : NSObject
@property(class, readonly, strong) NSOperationQueue* mainQueue API_AVAILABLE(macos(10.6));
@end

@interface NSNotificationCenter : NSObject
@property(class, readonly, strong) NSNotificationCenter* defaultCenter;
- (id<NSObject>)addObserverForName:(nullable NSNotificationName)name
                            object:(nullable id)object
                             queue:(nullable NSOperationQueue*)queue
                        usingBlock:(void (^)(NSNotification* notification))block
    API_AVAILABLE(macos(10.6));
- (void)removeObserver:(id)observer;
@end

// The metadata index.

@interface NSPredicate : NSObject
// Variable arguments: what the format's placeholders stand for.
+ (NSPredicate*)predicateWithFormat:(NSString*)format, ...;
@end

#ifdef __cplusplus
extern "C" {
#endif

extern NSNotificationName const NSMetadataQueryDidFinishGatheringNotification
    API_AVAILABLE(macos(10.4));
extern NSString* const NSMetadataQueryLocalComputerScope API_AVAILABLE(macos(10.4));

#ifdef __cplusplus
}
#endif

API_AVAILABLE(macos(10.4))
@interface NSMetadataQuery : NSObject
@property(nullable, copy) NSPredicate* predicate;
@property(copy) NSArray* searchScopes;
@property(readonly, copy) NSArray* results;
- (BOOL)startQuery;
- (void)stopQuery;
@end

API_AVAILABLE(macos(10.4))
@interface NSMetadataItem : NSObject
- (nullable id)valueForAttribute:(NSString*)key;
@end

#pragma clang assume_nonnull end
