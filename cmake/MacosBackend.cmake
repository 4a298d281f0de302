# The macOS backend: Objective-C++ with ARC, the same sources for a Mac, for the cross build and for
# the recording doubles.
# One compiler for both languages. It is named by its path: enable_language() finds no bare names.
set(CMAKE_OBJCXX_COMPILER ${CMAKE_CXX_COMPILER})
enable_language(OBJCXX)
set(CMAKE_OBJCXX_STANDARD 20)
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_OBJCXX_EXTENSIONS OFF)
set(CMAKE_OBJCXX_VISIBILITY_PRESET hidden)

add_library(deskhand_platform OBJECT
    src/platform/macos/applications.mm
    src/platform/macos/bundles.mm
    src/platform/macos/call_scope.mm
    src/platform/macos/clipboard.mm
    src/platform/macos/displays.mm
    src/platform/macos/input.mm
    src/platform/macos/jpeg_encoding.mm
    src/platform/macos/main_queue.mm
    src/platform/macos/permissions.mm
    src/platform/macos/screen_capture.mm
    src/platform/macos/windows.mm)
target_compile_options(deskhand_platform PRIVATE -fobjc-arc -fblocks -fno-exceptions)

# The part of the backend that the run loop's addon has, which needs few frameworks.
add_library(deskhand_run_loop_platform OBJECT
    src/platform/macos/call_scope.mm
    src/platform/macos/run_loop.mm)
target_compile_options(deskhand_run_loop_platform PRIVATE -fobjc-arc -fblocks -fno-exceptions)

# Each defines how the backend finds its frameworks, at compile time and at link time.
if(DESKHAND_DOUBLES)
  include(test/macos/Doubles.cmake)
else()
  include(cmake/MacosFrameworks.cmake)
endif()
