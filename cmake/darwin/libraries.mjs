// What the cross build may import, and which system library exports it: the source of the link
// stubs. A symbol that stands nowhere in this table fails the link. Names are as the compiler
// spells them, without the underscore that Mach-O puts in front; `classes` are Objective-C classes.
//
// A name is listed under the library that defines it, so that the bundle names the same library as
// one that was linked on a Mac.

const frameworks = '/System/Library/Frameworks';

export const libraries = [
  {
    name: 'AppKit',
    installName: `${frameworks}/AppKit.framework/Versions/C/AppKit`,
    classes: [
      ...['NSBitmapImageRep', 'NSGraphicsContext', 'NSImage', 'NSPasteboard'],
      ...['NSRunningApplication', 'NSScreen', 'NSWorkspace', 'NSWorkspaceOpenConfiguration'],
    ],
    symbols: ['NSDeviceRGBColorSpace', 'NSImageCompressionFactor', 'NSPasteboardTypeString'],
  },
  {
    // With the functions of HIServices, a framework inside it that it exports again.
    name: 'ApplicationServices',
    installName: `${frameworks}/ApplicationServices.framework/Versions/A/ApplicationServices`,
    symbols: ['AXIsProcessTrusted', 'AXIsProcessTrustedWithOptions', 'kAXTrustedCheckOptionPrompt'],
  },
  {
    name: 'CoreFoundation',
    installName: `${frameworks}/CoreFoundation.framework/Versions/A/CoreFoundation`,
    classes: ['NSArray', 'NSDictionary', 'NSMutableArray'],
    symbols: [
      ...['CFRelease', '__CFConstantStringClassReference', '__NSArray0__', 'kCFBooleanTrue'],
      ...['CFRunLoopGetCurrent', 'CFRunLoopGetMain', 'CFRunLoopRunInMode', 'kCFRunLoopDefaultMode'],
    ],
  },
  {
    name: 'CoreGraphics',
    installName: `${frameworks}/CoreGraphics.framework/Versions/A/CoreGraphics`,
    symbols: [
      ...['CGGetDisplaysWithPoint', 'CGMainDisplayID'],
      ...['CGPreflightScreenCaptureAccess', 'CGRequestScreenCaptureAccess'],
      ...['CGRectMakeWithDictionaryRepresentation', 'CGWindowListCopyWindowInfo'],
      ...['kCGWindowAlpha', 'kCGWindowBounds', 'kCGWindowLayer'],
      ...['kCGWindowOwnerName', 'kCGWindowOwnerPID'],
      ...['CGEventCreate', 'CGEventCreateKeyboardEvent', 'CGEventCreateMouseEvent'],
      ...['CGEventCreateScrollWheelEvent', 'CGEventGetLocation', 'CGEventKeyboardSetUnicodeString'],
      ...['CGEventPost', 'CGEventSetFlags', 'CGEventSetIntegerValueField', 'CGEventSourceCreate'],
    ],
  },
  {
    name: 'Foundation',
    installName: `${frameworks}/Foundation.framework/Versions/C/Foundation`,
    classes: [
      ...['NSBundle', 'NSFileManager', 'NSMetadataQuery', 'NSNotificationCenter', 'NSNumber'],
      ...['NSOperationQueue', 'NSPredicate', 'NSString'],
    ],
    symbols: [
      'NSMetadataQueryDidFinishGatheringNotification',
      'NSMetadataQueryLocalComputerScope',
      'NSZeroRect',
    ],
  },
  {
    name: 'ScreenCaptureKit',
    installName: `${frameworks}/ScreenCaptureKit.framework/Versions/A/ScreenCaptureKit`,
    classes: [
      'SCContentFilter',
      'SCScreenshotManager',
      'SCShareableContent',
      'SCStreamConfiguration',
    ],
  },
  {
    name: 'libSystem',
    installName: '/usr/lib/libSystem.B.dylib',
    symbols: [
      ...['_Block_object_assign', '_Block_object_dispose', '_NSConcreteStackBlock'],
      ...['_Unwind_Resume', '__stack_chk_fail', '__stack_chk_guard', 'getpid'],
      ...['_dispatch_main_q', 'dispatch_async', 'dispatch_time'],
      ...['dispatch_semaphore_create', 'dispatch_semaphore_signal', 'dispatch_semaphore_wait'],
      ...['dlopen', 'dlsym'],
      ...['bzero', 'memchr', 'memcmp', 'memcpy', 'memmove', 'strcmp', 'strlen', 'usleep'],
      '__cxa_atexit', // static objects
      'printf', // the seam check's, not the addon's
    ],
  },
  {
    // With the functions of libc++abi, which libc++ exports again.
    name: 'libc++',
    installName: '/usr/lib/libc++.1.dylib',
    // new, new[], delete, delete[]: a program may replace them, also for the libraries it loads.
    weakSymbols: ['_Znwm', '_Znam', '_ZdlPvm', '_ZdaPv'],
    symbols: [
      // Exceptions, run-time types and their end.
      ...['__cxa_allocate_exception', '__cxa_begin_catch', '__cxa_free_exception', '__cxa_throw'],
      ...['__cxa_pure_virtual', '__gxx_personality_v0', '_ZSt9terminatev'],
      '_ZTVN10__cxxabiv117__class_type_infoE',
      '_ZTVN10__cxxabiv119__pointer_type_infoE',
      '_ZTVN10__cxxabiv120__function_type_infoE',
      '_ZTVN10__cxxabiv120__si_class_type_infoE',
      ...['_ZNKSt9exception4whatEv', '_ZNSt9exceptionD2Ev', '_ZTISt9exception'],
      ...['_ZNSt11logic_errorC2EPKc', '_ZNSt12length_errorD1Ev'],
      ...['_ZTISt12length_error', '_ZTVSt12length_error'],
      ...['_ZNSt20bad_array_new_lengthC1Ev', '_ZNSt20bad_array_new_lengthD1Ev'],
      '_ZTISt20bad_array_new_length',
      '_ZNSt3__122__libcpp_verbose_abortEPKcz',

      // std::shared_ptr
      '_ZNKSt3__119__shared_weak_count13__get_deleterERKSt9type_info',
      '_ZNSt3__119__shared_weak_count14__release_weakEv',
      '_ZNSt3__119__shared_weak_count4lockEv',
      ...['_ZNSt3__119__shared_weak_countD2Ev', '_ZTINSt3__119__shared_weak_countE'],
      '_ZNSt3__112bad_weak_ptrD1Ev',
      ...['_ZTINSt3__112bad_weak_ptrE', '_ZTVNSt3__112bad_weak_ptrE'],

      // std::mutex: lock, unlock, destructor
      ...['_ZNSt3__15mutex4lockEv', '_ZNSt3__15mutex6unlockEv', '_ZNSt3__15mutexD1Ev'],

      // Static objects of functions.
      ...['__cxa_guard_acquire', '__cxa_guard_release'],

      // std::string: append(count, char), append(text, length), insert(position, text, length),
      // push_back, reserve
      '_ZNSt3__112basic_stringIcNS_11char_traitsIcEENS_9allocatorIcEEE6appendEmc',
      '_ZNSt3__112basic_stringIcNS_11char_traitsIcEENS_9allocatorIcEEE6appendEPKcm',
      '_ZNSt3__112basic_stringIcNS_11char_traitsIcEENS_9allocatorIcEEE6insertEmPKcm',
      '_ZNSt3__112basic_stringIcNS_11char_traitsIcEENS_9allocatorIcEEE7reserveEm',
      '_ZNSt3__112basic_stringIcNS_11char_traitsIcEENS_9allocatorIcEEE9push_backEc',

      '_ZNSt3__112__next_primeEm', // the number of buckets of a std::unordered_set
    ],
  },
  {
    name: 'libobjc',
    installName: '/usr/lib/libobjc.A.dylib',
    symbols: [
      ...['objc_alloc', 'objc_alloc_init', 'objc_enumerationMutation', 'objc_msgSend'],
      ...['objc_autoreleasePoolPop', 'objc_autoreleasePoolPush'],
      ...['objc_release', 'objc_retain', 'objc_retainAutorelease'],
      'objc_retainAutoreleasedReturnValue',
    ],
  },
];
