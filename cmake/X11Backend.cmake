# The Linux/X11 backend: XCB, libjpeg-turbo, GLib.
find_package(PkgConfig REQUIRED)
pkg_check_modules(X11_BACKEND REQUIRED IMPORTED_TARGET xcb xcb-randr xcb-shm xcb-xfixes xcb-res
                  libjpeg gio-unix-2.0)

add_library(deskhand_platform OBJECT
    src/platform/x11/call_scope.cc)
target_link_libraries(deskhand_platform PUBLIC PkgConfig::X11_BACKEND Threads::Threads)
