# How a Node-API addon is compiled and linked here: headers from npm, no symbols but the entry points,
# everything bound at load time.
find_package(Threads REQUIRED)

set(DESKHAND_NODE_MODULES ${CMAKE_SOURCE_DIR}/node_modules)
if(NOT EXISTS ${DESKHAND_NODE_MODULES}/node-addon-api/napi.h)
  message(FATAL_ERROR "node-addon-api is not installed: run `npm ci` first")
endif()

function(deskhand_add_node_addon name)
  add_library(${name} MODULE ${ARGN})
  set_target_properties(${name} PROPERTIES PREFIX "" SUFFIX ".node")
  target_include_directories(
    ${name} SYSTEM PRIVATE ${DESKHAND_NODE_MODULES}/node-addon-api
                           ${DESKHAND_NODE_MODULES}/node-api-headers/include)
  target_compile_definitions(
    ${name} PRIVATE NAPI_VERSION=8 NODE_ADDON_API_DISABLE_CPP_EXCEPTIONS
                    # An environment that is being torn down cannot throw; that must not abort.
                    NODE_API_SWALLOW_UNTHROWABLE_EXCEPTIONS)
  target_compile_options(${name} PRIVATE -fno-exceptions)
  target_link_libraries(${name} PRIVATE Threads::Threads)
  if(APPLE)
    deskhand_allow_node_api_lookup(${name})
    target_link_options(${name} PRIVATE -Wl,-dead_strip -Wl,-x)
  else()
    # nodelete: Node unloads an addon when the worker thread that loaded it ends, and the backend has
    # threads of its own.
    target_link_options(
      ${name} PRIVATE -Wl,-z,now -Wl,-z,nodelete -Wl,--as-needed
                      -Wl,--version-script=${CMAKE_SOURCE_DIR}/cmake/exports.map)
    set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${CMAKE_SOURCE_DIR}/cmake/exports.map)
  endif()
endfunction()
