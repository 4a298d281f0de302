// What the macOS bundles may hold and import, written by hand and reviewed on its own: what the link
// stubs allow is another list (cmake/darwin/libraries.mjs), so that a slip in one shows in the
// other. Symbols are spelled as the compiler spells them, without Mach-O's leading underscore.

const frameworks = '/System/Library/Frameworks';

const entryPoints = ['napi_register_module_v1', 'node_api_module_get_api_version_v1'];

export const weakLibrary = `${frameworks}/ScreenCaptureKit.framework/Versions/A/ScreenCaptureKit`;

const addonImports = {
  [`${frameworks}/AppKit.framework/Versions/C/AppKit`]: [
    'NSDeviceRGBColorSpace',
    'NSImageCompressionFactor',
    'NSPasteboardTypeString',
    'OBJC_CLASS_$_NSBitmapImageRep',
    'OBJC_CLASS_$_NSGraphicsContext',
    'OBJC_CLASS_$_NSImage',
    'OBJC_CLASS_$_NSPasteboard',
    'OBJC_CLASS_$_NSRunningApplication',
    'OBJC_CLASS_$_NSScreen',
    'OBJC_CLASS_$_NSWorkspace',
    'OBJC_CLASS_$_NSWorkspaceOpenConfiguration',
  ],
  [`${frameworks}/ApplicationServices.framework/Versions/A/ApplicationServices`]: [
    'AXIsProcessTrusted',
    'AXIsProcessTrustedWithOptions',
    'kAXTrustedCheckOptionPrompt',
  ],
  [`${frameworks}/CoreFoundation.framework/Versions/A/CoreFoundation`]: [
    'CFRelease',
    'OBJC_CLASS_$_NSArray',
    'OBJC_CLASS_$_NSDictionary',
    'OBJC_CLASS_$_NSMutableArray',
    '__CFConstantStringClassReference',
    '__NSArray0__',
    'kCFBooleanTrue',
  ],
  [`${frameworks}/CoreGraphics.framework/Versions/A/CoreGraphics`]: [
    'CGEventCreate',
    'CGEventCreateKeyboardEvent',
    'CGEventCreateMouseEvent',
    'CGEventCreateScrollWheelEvent',
    'CGEventGetLocation',
    'CGEventKeyboardSetUnicodeString',
    'CGEventPost',
    'CGEventSetFlags',
    'CGEventSetIntegerValueField',
    'CGEventSourceCreate',
    'CGGetDisplaysWithPoint',
    'CGMainDisplayID',
    'CGPreflightScreenCaptureAccess',
    'CGRectMakeWithDictionaryRepresentation',
    'CGRequestScreenCaptureAccess',
    'CGWindowListCopyWindowInfo',
    'kCGWindowAlpha',
    'kCGWindowBounds',
    'kCGWindowLayer',
    'kCGWindowOwnerName',
    'kCGWindowOwnerPID',
  ],
  [`${frameworks}/Foundation.framework/Versions/C/Foundation`]: [
    'NSMetadataQueryDidFinishGatheringNotification',
    'NSMetadataQueryLocalComputerScope',
    'NSZeroRect',
    'OBJC_CLASS_$_NSBundle',
    'OBJC_CLASS_$_NSFileManager',
    'OBJC_CLASS_$_NSMetadataQuery',
    'OBJC_CLASS_$_NSNotificationCenter',
    'OBJC_CLASS_$_NSNumber',
    'OBJC_CLASS_$_NSOperationQueue',
    'OBJC_CLASS_$_NSPredicate',
    'OBJC_CLASS_$_NSString',
  ],
  [weakLibrary]: [
    'OBJC_CLASS_$_SCContentFilter',
    'OBJC_CLASS_$_SCScreenshotManager',
    'OBJC_CLASS_$_SCShareableContent',
    'OBJC_CLASS_$_SCStreamConfiguration',
  ],
};

/** What the compiler may ask of the run-time libraries; which of it, depends on the compiler. */
export const runtimeImports = {
  '/usr/lib/libSystem.B.dylib': [
    ...['_Block_object_assign', '_Block_object_dispose', '_NSConcreteStackBlock'],
    ...['_Unwind_Resume', '__stack_chk_fail', '__stack_chk_guard', 'getpid'],
    ...['_dispatch_main_q', 'dispatch_async', 'dispatch_semaphore_create'],
    ...['dispatch_semaphore_signal', 'dispatch_semaphore_wait', 'dispatch_time'],
    ...['__cxa_atexit', 'usleep'],
    ...['bzero', 'memchr', 'memcmp', 'memcpy', 'memmove', 'strcmp', 'strlen'],
  ],
  '/usr/lib/libc++.1.dylib': [
    ...['_ZTISt9exception', '_ZNKSt9exception4whatEv', '_ZNSt9exceptionD2Ev', '_ZSt9terminatev'],
    ...['_ZTISt12length_error', '_ZTVSt12length_error', '_ZNSt12length_errorD1Ev'],
    ...['_ZNSt11logic_errorC2EPKc', '_ZTISt20bad_array_new_length'],
    ...['_ZNSt20bad_array_new_lengthC1Ev', '_ZNSt20bad_array_new_lengthD1Ev'],
    ...['_ZTINSt3__112bad_weak_ptrE', '_ZTVNSt3__112bad_weak_ptrE', '_ZNSt3__112bad_weak_ptrD1Ev'],
    '_ZNKSt3__119__shared_weak_count13__get_deleterERKSt9type_info',
    '_ZNSt3__119__shared_weak_count14__release_weakEv',
    '_ZNSt3__119__shared_weak_count4lockEv',
    ...['_ZNSt3__119__shared_weak_countD2Ev', '_ZTINSt3__119__shared_weak_countE'],
    '_ZNSt3__112basic_stringIcNS_11char_traitsIcEENS_9allocatorIcEEE6appendEmc',
    '_ZNSt3__112basic_stringIcNS_11char_traitsIcEENS_9allocatorIcEEE6appendEPKcm',
    '_ZNSt3__112basic_stringIcNS_11char_traitsIcEENS_9allocatorIcEEE6insertEmPKcm',
    '_ZNSt3__112basic_stringIcNS_11char_traitsIcEENS_9allocatorIcEEE7reserveEm',
    '_ZNSt3__112basic_stringIcNS_11char_traitsIcEENS_9allocatorIcEEE9push_backEc',
    ...['_ZNSt3__112__next_primeEm', '_ZNSt3__122__libcpp_verbose_abortEPKcz'],
    ...['_ZNSt3__15mutex4lockEv', '_ZNSt3__15mutex6unlockEv', '_ZNSt3__15mutexD1Ev'],
    ...['_ZTVN10__cxxabiv117__class_type_infoE', '_ZTVN10__cxxabiv119__pointer_type_infoE'],
    ...['_ZTVN10__cxxabiv120__function_type_infoE', '_ZTVN10__cxxabiv120__si_class_type_infoE'],
    ...['__cxa_allocate_exception', '__cxa_begin_catch', '__cxa_free_exception', '__cxa_throw'],
    ...['__cxa_guard_acquire', '__cxa_guard_release'],
    ...['__cxa_pure_virtual', '__gxx_personality_v0'],
  ],
  '/usr/lib/libobjc.A.dylib': [
    ...['objc_alloc', 'objc_alloc_init', 'objc_autoreleasePoolPop', 'objc_autoreleasePoolPush'],
    ...['objc_enumerationMutation', 'objc_msgSend', 'objc_release', 'objc_retain'],
    ...['objc_retainAutorelease', 'objc_retainAutoreleasedReturnValue'],
  ],
};

/** Looked up in every image, since a program may replace them: new, new[], delete, delete[]. */
export const replaceableFunctions = ['_Znwm', '_Znam', '_ZdlPvm', '_ZdaPv'];

const addonSelectors = [
  // Foundation: values and collections
  'UTF8String',
  'addObject:',
  'array',
  'arrayWithObjects:count:',
  'base64EncodedStringWithOptions:',
  'boolValue',
  'class',
  'copy',
  'count',
  'countByEnumeratingWithState:objects:count:',
  'dictionaryWithObjects:forKeys:count:',
  'firstObject',
  'floatValue',
  'initWithBytes:length:encoding:',
  'intValue',
  'isKindOfClass:',
  'length',
  'lengthOfBytesUsingEncoding:',
  'localizedDescription',
  'lowercaseString',
  'numberWithDouble:',
  'objectAtIndex:',
  'objectForKey:',
  'respondsToSelector:',
  'stringWithFormat:',
  'unsignedIntValue',

  // NSBundle, NSFileManager, NSURL
  'bundleWithPath:',
  'bundleWithURL:',
  'defaultManager',
  'displayNameAtPath:',
  'fileExistsAtPath:',
  'infoDictionary',
  'path',

  // NSMetadataQuery, NSMetadataItem, NSPredicate, NSNotificationCenter, NSOperationQueue
  'addObserverForName:object:queue:usingBlock:',
  'defaultCenter',
  'mainQueue',
  'predicateWithFormat:',
  'removeObserver:',
  'results',
  'setPredicate:',
  'setSearchScopes:',
  'startQuery',
  'stopQuery',
  'valueForAttribute:',

  // NSWorkspace, NSWorkspaceOpenConfiguration
  'URLForApplicationWithBundleIdentifier:',
  'configuration',
  'frontmostApplication',
  'openApplicationAtURL:configuration:completionHandler:',
  'runningApplications',
  'setActivates:',
  'sharedWorkspace',

  // NSRunningApplication
  'activateWithOptions:',
  'activationPolicy',
  'hide',
  'isHidden',
  'processIdentifier',
  'runningApplicationWithProcessIdentifier:',
  'unhide',

  // NSPasteboard
  'clearContents',
  'generalPasteboard',
  'setString:forType:',
  'stringForType:',

  // NSScreen
  'backingScaleFactor',
  'deviceDescription',
  'frame',
  'localizedName',
  'mainScreen',
  'screens',

  // NSBitmapImageRep, NSGraphicsContext, NSImage
  'drawInRect:fromRect:operation:fraction:',
  'graphicsContextWithBitmapImageRep:',
  'initWithBitmapDataPlanes:pixelsWide:pixelsHigh:bitsPerSample:samplesPerPixel:hasAlpha:' +
    'isPlanar:colorSpaceName:bytesPerRow:bitsPerPixel:',
  'initWithCGImage:size:',
  'representationUsingType:properties:',
  'restoreGraphicsState',
  'saveGraphicsState',
  'setCurrentContext:',

  // ScreenCaptureKit: content, filter, configuration, screenshot
  'applications',
  'bundleIdentifier',
  'displayID',
  'displays',
  'getShareableContentExcludingDesktopWindows:onScreenWindowsOnly:completionHandler:',
  'initWithDisplay:excludingApplications:exceptingWindows:',
  'captureImageWithFilter:configuration:completionHandler:',
  'setCapturesAudio:',
  'setHeight:',
  'setScalesToFit:',
  'setShowsCursor:',
  'setSourceRect:',
  'setWidth:',
  ...['height', 'width'],
];

/**
 * Of each bundle: its exports; the system interfaces in use, each of which is imported; the messages, each
 * of which is sent. Nothing else is.
 */
export const bundles = {
  'deskhand.node': {
    // What the run loop's addon finds by name, and what Node looks for.
    exportedFunctions: ['deskhand_unwatch_promises', 'deskhand_watch_promises', ...entryPoints],
    systemImports: addonImports,
    selectors: addonSelectors,
  },
  'run_loop.node': {
    exportedFunctions: entryPoints,
    systemImports: {
      [`${frameworks}/CoreFoundation.framework/Versions/A/CoreFoundation`]: [
        'CFRunLoopGetCurrent',
        'CFRunLoopGetMain',
        'CFRunLoopRunInMode',
        'kCFRunLoopDefaultMode',
      ],
      [`${frameworks}/CoreGraphics.framework/Versions/A/CoreGraphics`]: ['CGMainDisplayID'],
      '/usr/lib/libSystem.B.dylib': ['dlopen', 'dlsym'],
    },
    selectors: [],
  },
};
