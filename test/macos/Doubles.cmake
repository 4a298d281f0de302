# The macOS backend's own source on Linux: GCC's Objective-C runtime, GNUstep's Foundation, and
# recording doubles of the other frameworks. See README.md here.

# Clang has no Objective-C headers of its own: GCC's runtime comes with GCC's.
execute_process(
  COMMAND ${CMAKE_OBJCXX_COMPILER} --rtlib=libgcc -print-libgcc-file-name
  OUTPUT_VARIABLE _libgcc OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
cmake_path(GET _libgcc PARENT_PATH _gcc_dir)
if(NOT EXISTS ${_gcc_dir}/include/objc/objc.h)
  message(FATAL_ERROR "No Objective-C runtime in ${_gcc_dir}: install libobjc-12-dev")
endif()
find_path(GNUSTEP_INCLUDE_DIR Foundation/Foundation.h PATH_SUFFIXES GNUstep REQUIRED)
find_library(GNUSTEP_BASE gnustep-base REQUIRED)
find_library(OBJC_RUNTIME objc HINTS ${_gcc_dir} REQUIRED)

set(_here ${CMAKE_CURRENT_LIST_DIR})

if(DESKHAND_SANITIZE)
  # Several libraries in one process share one sanitizer runtime, which is loaded before all others.
  add_link_options(-shared-libasan)
  # Inlining shortens the stacks by which leaks are told.
  add_compile_options(-O1)
endif()

# Every Objective-C++ file here, and the glue beneath.
add_library(macdoubles_language INTERFACE)
target_include_directories(macdoubles_language SYSTEM INTERFACE
    ${_here}/include/linux ${_here}/include/frameworks ${GNUSTEP_INCLUDE_DIR})
target_compile_options(macdoubles_language INTERFACE
    -fblocks -fconstant-string-class=NSConstantString
    "SHELL:-idirafter ${_gcc_dir}/include")

# ARC is for gnustep runtimes only; with legacy dispatch its code runs on GCC's (see runtime/).
add_library(macdoubles_arc INTERFACE)
target_link_libraries(macdoubles_arc INTERFACE macdoubles_language)
target_compile_options(macdoubles_arc INTERFACE
    -fobjc-arc -fobjc-runtime=gnustep-1.9 -fobjc-legacy-dispatch)

add_library(macdoubles SHARED
    ${_here}/runtime/arc.cc
    ${_here}/runtime/block_class.mm
    ${_here}/runtime/blocks.cc
    ${_here}/runtime/module_loading.cc
    ${_here}/runtime/personality.cc
    ${_here}/doubles/core/answers.mm
    ${_here}/doubles/core/classes.mm
    ${_here}/doubles/core/foundation_log.mm
    ${_here}/doubles/core/framework_threads.mm
    ${_here}/doubles/core/recorder.cc
    ${_here}/doubles/core/tracked_object.mm
    ${_here}/doubles/application_locations.mm
    ${_here}/doubles/cf_boolean.mm
    ${_here}/doubles/cf_run_loop.mm
    ${_here}/doubles/cg_display.mm
    ${_here}/doubles/cg_event.mm
    ${_here}/doubles/cg_window.mm
    ${_here}/doubles/core_foundation.mm
    ${_here}/doubles/dispatch.mm
    ${_here}/doubles/dispatch_semaphore.mm
    ${_here}/doubles/dispatch_time.mm
    ${_here}/doubles/ns_bitmap_image_rep.mm
    ${_here}/doubles/ns_bundle.mm
    ${_here}/doubles/ns_file_manager.mm
    ${_here}/doubles/ns_graphics_context.mm
    ${_here}/doubles/ns_image.mm
    ${_here}/doubles/ns_metadata_query.mm
    ${_here}/doubles/ns_notification_center.mm
    ${_here}/doubles/ns_pasteboard.mm
    ${_here}/doubles/ns_running_application.mm
    ${_here}/doubles/ns_screen.mm
    ${_here}/doubles/ns_workspace.mm
    ${_here}/doubles/objects.mm
    ${_here}/doubles/permissions.mm
    ${_here}/doubles/sc_errors.mm
    ${_here}/doubles/sc_screenshot_manager.mm
    ${_here}/doubles/sc_shareable_content.mm
    ${_here}/doubles/sc_stream.mm
    ${_here}/doubles/usleep.cc)
set_target_properties(macdoubles PROPERTIES
    CXX_VISIBILITY_PRESET default OBJCXX_VISIBILITY_PRESET default VISIBILITY_INLINES_HIDDEN OFF)
target_include_directories(macdoubles
    PRIVATE ${_here}/runtime
    PUBLIC ${_here}/doubles)
target_link_libraries(macdoubles
    PRIVATE macdoubles_language
    PUBLIC ${GNUSTEP_BASE} ${OBJC_RUNTIME} Threads::Threads)
target_compile_options(macdoubles PRIVATE
    # The doubles are compiled without ARC: they decide by hand who owns what.
    $<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-runtime=gcc>
    # A framework's class answers for its class methods; another class, tracked, for the instances.
    $<$<COMPILE_LANGUAGE:OBJCXX>:-Wno-incomplete-implementation>
    $<$<COMPILE_LANGUAGE:OBJCXX>:-Wno-objc-property-implementation>)
# Whatever links Objective-C modules has them registered by way of runtime/module_loading.cc, and
# pauses by way of doubles/usleep.cc: the C library's own function would be found before a double of
# the same name.
target_link_options(macdoubles
    PUBLIC -Wl,--wrap=__objc_exec_class,--wrap=usleep PRIVATE -Wl,--no-undefined)

target_link_libraries(deskhand_platform PUBLIC macdoubles PRIVATE macdoubles_arc)
target_link_libraries(deskhand_run_loop_platform PUBLIC macdoubles PRIVATE macdoubles_arc)

deskhand_add_node_addon(doubles ${_here}/control/control.cc ${_here}/control/values.cc)
target_include_directories(doubles PRIVATE ${_here}/runtime)
target_link_libraries(doubles PRIVATE macdoubles)

# Deliberate faults, by which the tests see that they would be found.
deskhand_add_node_addon(faulty ${_here}/faults/faulty.mm)
target_link_libraries(faulty PRIVATE macdoubles macdoubles_arc)
