// The part of ScreenCaptureKit that the macOS backend uses, declared from its public documentation.
#pragma once

#include <CoreGraphics/CoreGraphics.h>
#include <Foundation/Foundation.h>
#include <os/availability.h>

#pragma clang assume_nonnull begin

// What can be captured.

@class SCWindow;

API_AVAILABLE(macos(12.3))
@interface SCRunningApplication : NSObject
@property(readonly) NSString* bundleIdentifier;
@end

API_AVAILABLE(macos(12.3))
@interface SCDisplay : NSObject
@property(readonly) CGDirectDisplayID displayID;
@property(readonly) NSInteger width;
@property(readonly) NSInteger height;
@end

API_AVAILABLE(macos(12.3))
@interface SCShareableContent : NSObject
@property(readonly) NSArray<SCDisplay*>* displays;
@property(readonly) NSArray<SCRunningApplication*>* applications;
+ (void)getShareableContentExcludingDesktopWindows:(BOOL)excludeDesktopWindows
                               onScreenWindowsOnly:(BOOL)onScreenWindowsOnly
                                 completionHandler:
                                     (void (^)(SCShareableContent* _Nullable content,
                                               NSError* _Nullable error))completionHandler;
@end

// How it is captured.

API_AVAILABLE(macos(12.3))
@interface SCContentFilter : NSObject
- (instancetype)initWithDisplay:(SCDisplay*)display
          excludingApplications:(NSArray<SCRunningApplication*>*)applications
               exceptingWindows:(NSArray<SCWindow*>*)windows;
@end

API_AVAILABLE(macos(12.3))
@interface SCStreamConfiguration : NSObject
@property(nonatomic, assign) size_t width;
@property(nonatomic, assign) size_t height;
@property(nonatomic, assign) BOOL scalesToFit;
@property(nonatomic, assign) BOOL showsCursor;
@property(nonatomic, assign) CGRect sourceRect;
@property(nonatomic, assign) BOOL capturesAudio API_AVAILABLE(macos(13.0));
@end

API_AVAILABLE(macos(14.0))
@interface SCScreenshotManager : NSObject
+ (void)captureImageWithFilter:(SCContentFilter*)filter
                 configuration:(SCStreamConfiguration*)configuration
             completionHandler:(nullable void (^)(CGImageRef _Nullable image,
                                                  NSError* _Nullable error))completionHandler;
@end

#pragma clang assume_nonnull end
