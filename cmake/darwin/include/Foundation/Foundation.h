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

@interface NSString : NSObject <NSCopying>
@property(nullable, readonly) const char* UTF8String __attribute__((objc_returns_inner_pointer));
@end

@interface NSValue : NSObject
@end

@interface NSNumber : NSValue
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

// Collections.

@interface NSArray<__covariant ObjectType> : NSObject <NSFastEnumeration>
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

#pragma clang assume_nonnull end
