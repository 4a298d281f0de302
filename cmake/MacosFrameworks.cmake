# The system frameworks, from the SDK of a Mac or from the one that the cross build assembles: both
# are found through the sysroot.

# ScreenCaptureKit is weak, so that the addon loads, and everything else works, without it.
target_link_libraries(
  deskhand_platform
  PUBLIC "-framework AppKit" "-framework ApplicationServices" "-framework CoreFoundation"
         "-framework CoreGraphics" "-framework Foundation" "-weak_framework ScreenCaptureKit" objc)
target_link_libraries(deskhand_run_loop_platform
                      PUBLIC "-framework CoreFoundation" "-framework CoreGraphics" objc)

if(CMAKE_CROSSCOMPILING)
  # A change of the link stubs is a reason to link anew.
  set_property(TARGET deskhand_platform deskhand_run_loop_platform APPEND
               PROPERTY INTERFACE_LINK_DEPENDS ${CMAKE_SOURCE_DIR}/cmake/darwin/libraries.mjs)
endif()

# Whatever is newer than the deployment target is missing from some supported system.
foreach(_part deskhand_platform deskhand_run_loop_platform)
  target_compile_options(${_part} PRIVATE -Werror=unguarded-availability)
endforeach()

# Lets an addon refer to the functions of Node-API version 8, which the program that loads it
# provides. Any other symbol that no library has fails the link.
function(deskhand_allow_node_api_lookup target)
  execute_process(
    COMMAND node -p "const {v8} = require('node-api-headers').symbols; \
[...v8.js_native_api_symbols, ...v8.node_api_symbols].join(';')"
    WORKING_DIRECTORY ${CMAKE_SOURCE_DIR}
    OUTPUT_VARIABLE _functions
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  list(TRANSFORM _functions PREPEND "-Wl,-U,_")
  list(JOIN _functions "\n" _options)
  # A file, or every message of the linker would stand behind a hundred and forty options.
  set(_file ${CMAKE_CURRENT_BINARY_DIR}/node_api_functions.rsp)
  file(CONFIGURE OUTPUT ${_file} CONTENT "${_options}\n" @ONLY)
  target_link_options(${target} PRIVATE @${_file})
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${_file})
endfunction()
