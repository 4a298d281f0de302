# The Linux/X11 backend: XCB, libjpeg-turbo, xkbcommon, GLib.
find_package(PkgConfig REQUIRED)
set(DESKHAND_SMALL_LIBRARIES xcb-composite xcb-damage xcb-randr xcb-render xcb-res xcb-shm xcb-xfixes
                             xcb-xinput xcb-xkb xcb-xtest xcb libjpeg)
pkg_check_modules(SMALL REQUIRED IMPORTED_TARGET ${DESKHAND_SMALL_LIBRARIES})
pkg_check_modules(LARGE REQUIRED IMPORTED_TARGET xkbcommon gio-unix-2.0)

add_library(deskhand_platform OBJECT
    src/platform/x11/active_window.cc
    src/platform/x11/application_directory.cc
    src/platform/x11/application_identity.cc
    src/platform/x11/applications.cc
    src/platform/x11/area_scaler.cc
    src/platform/x11/bundles.cc
    src/platform/x11/call_scope.cc
    src/platform/x11/canvas.cc
    src/platform/x11/clipboard.cc
    src/platform/x11/clipboard_atoms.cc
    src/platform/x11/clipboard_owner.cc
    src/platform/x11/clipboard_reader.cc
    src/platform/x11/clipboard_thread.cc
    src/platform/x11/composition.cc
    src/platform/x11/connect.cc
    src/platform/x11/desktop_entries.cc
    src/platform/x11/desktop_look.cc
    src/platform/x11/device_keymaps.cc
    src/platform/x11/displays.cc
    src/platform/x11/entry_files.cc
    src/platform/x11/event_barrier.cc
    src/platform/x11/event_wait.cc
    src/platform/x11/exclusion.cc
    src/platform/x11/exclusion_plan.cc
    src/platform/x11/grab.cc
    src/platform/x11/held_input.cc
    src/platform/x11/incremental_sends.cc
    src/platform/x11/input.cc
    src/platform/x11/input_device.cc
    src/platform/x11/input_state.cc
    src/platform/x11/jpeg_encoder.cc
    src/platform/x11/jpeg_encoding.cc
    src/platform/x11/key_codes.cc
    src/platform/x11/key_repeat.cc
    src/platform/x11/keyboard.cc
    src/platform/x11/keymap.cc
    src/platform/x11/launched_processes.cc
    src/platform/x11/launching.cc
    src/platform/x11/leftovers.cc
    src/platform/x11/lent_keys.cc
    src/platform/x11/live_keymap.cc
    src/platform/x11/main_queue.cc
    src/platform/x11/modifiers.cc
    src/platform/x11/monitors.cc
    src/platform/x11/opening.cc
    src/platform/x11/pending_uses.cc
    src/platform/x11/permissions.cc
    src/platform/x11/physical_keys.cc
    src/platform/x11/pixel_format.cc
    src/platform/x11/pixel_rect.cc
    src/platform/x11/pointer.cc
    src/platform/x11/posting.cc
    src/platform/x11/processes.cc
    src/platform/x11/receiver.cc
    src/platform/x11/repainting.cc
    src/platform/x11/scaling_kernels_portable.cc
    src/platform/x11/screen_capture.cc
    src/platform/x11/screen_windows.cc
    src/platform/x11/session.cc
    src/platform/x11/shared_memory.cc
    src/platform/x11/socket_deadline.cc
    src/platform/x11/spare_keys.cc
    src/platform/x11/startup_notification.cc
    src/platform/x11/subtree_query.cc
    src/platform/x11/task_thread.cc
    src/platform/x11/text_encodings.cc
    src/platform/x11/text_typing.cc
    src/platform/x11/typing_turn.cc
    src/platform/x11/window_owners.cc
    src/platform/x11/window_requests.cc
    src/platform/x11/window_roles.cc
    src/platform/x11/window_support.cc
    src/platform/x11/window_watch.cc
    src/platform/x11/windows.cc)
target_link_libraries(deskhand_platform PUBLIC PkgConfig::SMALL PkgConfig::LARGE Threads::Threads)
deskhand_share_headers(deskhand_platform <xcb/xcb.h>)

# The scaler's innermost loops, once for any processor and once for those with AVX2.
if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
  target_sources(deskhand_platform PRIVATE src/platform/x11/best_kernels_x86.cc
                                           src/platform/x11/scaling_kernels_avx2.cc)
  set_source_files_properties(src/platform/x11/scaling_kernels_avx2.cc
                              PROPERTIES COMPILE_OPTIONS -mavx2 SKIP_PRECOMPILE_HEADERS ON)
  # GCC warns of vectors of 256 bits as arguments; here only inlined functions have such.
  set_source_files_properties(src/platform/x11/scaling_kernels_portable.cc
                              PROPERTIES COMPILE_OPTIONS -Wno-psabi SKIP_PRECOMPILE_HEADERS ON)
else()
  target_sources(deskhand_platform PRIVATE src/platform/x11/best_kernels_other.cc)
endif()
