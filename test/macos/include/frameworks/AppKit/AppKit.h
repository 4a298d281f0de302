// The part of AppKit that the macOS backend uses, declared from its public documentation.
#pragma once

#include <CoreGraphics/CoreGraphics.h>
#include <Foundation/Foundation.h>
#include <os/availability.h>
#include <sys/types.h>

#pragma clang assume_nonnull begin

#ifdef __cplusplus
extern "C" {
#endif

// Names of properties, of colour spaces and of what a pasteboard holds.

typedef NSString* NSBitmapImageRepPropertyKey;
typedef NSString* NSColorSpaceName;
typedef NSString* NSDeviceDescriptionKey;
typedef NSString* NSPasteboardType;

extern NSBitmapImageRepPropertyKey const NSImageCompressionFactor;
extern NSColorSpaceName const NSDeviceRGBColorSpace;
extern NSPasteboardType const NSPasteboardTypeString API_AVAILABLE(macos(10.6));

#ifdef __cplusplus
}
#endif

// Applications.

typedef NS_ENUM(NSInteger, NSApplicationActivationPolicy) {
  NSApplicationActivationPolicyRegular = 0,
  NSApplicationActivationPolicyAccessory = 1,
  NSApplicationActivationPolicyProhibited = 2,
};

typedef NS_OPTIONS(NSUInteger, NSApplicationActivationOptions) {
  NSApplicationActivateAllWindows = 1 << 0,
  NSApplicationActivateIgnoringOtherApps API_DEPRECATED("ignored by the system",
                                                        macos(10.6, 14.0)) = 1 << 1,
};

API_AVAILABLE(macos(10.6))
@interface NSRunningApplication : NSObject
@property(readonly, getter=isHidden) BOOL hidden;
@property(readonly) NSApplicationActivationPolicy activationPolicy;
@property(nullable, readonly, copy) NSString* localizedName;
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@property(readonly) pid_t processIdentifier;
- (BOOL)hide;
- (BOOL)unhide;
- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options;
+ (nullable instancetype)runningApplicationWithProcessIdentifier:(pid_t)pid;
@end

API_AVAILABLE(macos(10.15))
@interface NSWorkspaceOpenConfiguration : NSObject
@property BOOL activates;
+ (instancetype)configuration;
@end

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
@property(readonly, copy)
    NSArray<NSRunningApplication*>* runningApplications API_AVAILABLE(macos(10.6));
@property(nullable, readonly, strong)
    NSRunningApplication* frontmostApplication API_AVAILABLE(macos(10.7));
- (nullable NSURL*)URLForApplicationWithBundleIdentifier:(NSString*)bundleIdentifier
    API_AVAILABLE(macos(10.6));
- (void)openApplicationAtURL:(NSURL*)applicationURL
               configuration:(NSWorkspaceOpenConfiguration*)configuration
           completionHandler:(nullable void (^)(NSRunningApplication* _Nullable application,
                                                NSError* _Nullable error))completionHandler
    API_AVAILABLE(macos(10.15));
@end

// The clipboard.

@interface NSPasteboard : NSObject
@property(class, readonly, strong) NSPasteboard* generalPasteboard;
- (NSInteger)clearContents;
- (BOOL)setString:(NSString*)string forType:(NSPasteboardType)dataType;
- (nullable NSString*)stringForType:(NSPasteboardType)dataType;
@end

// Screens.

@interface NSScreen : NSObject
@property(class, readonly, copy) NSArray<NSScreen*>* screens;
@property(class, readonly, strong, nullable) NSScreen* mainScreen;
@property(readonly) NSRect frame;
@property(readonly, copy) NSDictionary<NSDeviceDescriptionKey, id>* deviceDescription;
@property(readonly) CGFloat backingScaleFactor API_AVAILABLE(macos(10.7));
@property(readonly, copy) NSString* localizedName API_AVAILABLE(macos(10.15));
@end

// Bitmaps, contexts to draw into them, and images to draw.

typedef NS_ENUM(NSUInteger, NSBitmapImageFileType) {
  NSBitmapImageFileTypeTIFF = 0,
  NSBitmapImageFileTypeBMP = 1,
  NSBitmapImageFileTypeGIF = 2,
  NSBitmapImageFileTypeJPEG = 3,
  NSBitmapImageFileTypePNG = 4,
  NSBitmapImageFileTypeJPEG2000 = 5,
};

@interface NSImageRep : NSObject
@end

@interface NSBitmapImageRep : NSImageRep
- (nullable instancetype)initWithBitmapDataPlanes:(unsigned char* _Nullable* _Nullable)planes
                                       pixelsWide:(NSInteger)width
                                       pixelsHigh:(NSInteger)height
                                    bitsPerSample:(NSInteger)bitsPerSample
                                  samplesPerPixel:(NSInteger)samplesPerPixel
                                         hasAlpha:(BOOL)alpha
                                         isPlanar:(BOOL)isPlanar
                                   colorSpaceName:(NSColorSpaceName)colorSpaceName
                                      bytesPerRow:(NSInteger)bytesPerRow
                                     bitsPerPixel:(NSInteger)bitsPerPixel;
- (nullable NSData*)representationUsingType:(NSBitmapImageFileType)type
                                 properties:
                                     (NSDictionary<NSBitmapImageRepPropertyKey, id>*)properties;
@end

@interface NSGraphicsContext : NSObject
@property(class, strong, nullable) NSGraphicsContext* currentContext;
+ (nullable NSGraphicsContext*)graphicsContextWithBitmapImageRep:(NSBitmapImageRep*)bitmap;
+ (void)saveGraphicsState;
+ (void)restoreGraphicsState;
@end

typedef NS_ENUM(NSUInteger, NSCompositingOperation) {
  NSCompositingOperationClear API_AVAILABLE(macos(10.12)) = 0,
  NSCompositingOperationCopy API_AVAILABLE(macos(10.12)) = 1,
  NSCompositingOperationSourceOver API_AVAILABLE(macos(10.12)) = 2,
};

@interface NSImage : NSObject
- (instancetype)initWithCGImage:(CGImageRef)image size:(NSSize)size API_AVAILABLE(macos(10.6));
- (void)drawInRect:(NSRect)rect
          fromRect:(NSRect)source
         operation:(NSCompositingOperation)operation
          fraction:(CGFloat)alpha;
@end

#pragma clang assume_nonnull end
