# 64-bit Windows, built on Debian by the posix variant of mingw-w64 against the folder that Tools/windows/build-toolchain.sh
# provides (KX_WINDOWS_PREFIX when it is not in its usual place); its programs run under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(KX_MINGW x86_64-w64-mingw32)
set(CMAKE_CXX_COMPILER ${KX_MINGW}-g++-posix)
set(CMAKE_RC_COMPILER ${KX_MINGW}-windres)

if(NOT KX_WINDOWS_PREFIX)
    set(stamp "${CMAKE_CURRENT_LIST_DIR}/../../build/windows-toolchain/prefix")
    if(NOT EXISTS "${stamp}")
        message(FATAL_ERROR "no Qt for Windows: run Tools/windows/build-toolchain.sh, or set KX_WINDOWS_PREFIX to its folder")
    endif()
    file(STRINGS "${stamp}" KX_WINDOWS_PREFIX LIMIT_COUNT 1)
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES KX_WINDOWS_PREFIX)

set(CMAKE_PREFIX_PATH "${KX_WINDOWS_PREFIX}")
set(CMAKE_FIND_ROOT_PATH "${KX_WINDOWS_PREFIX}" "/usr/${KX_MINGW}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} "/usr/${KX_MINGW}/lib/pkgconfig")

# Header-only libraries: their packages for Linux describe Linux.
list(PREPEND CMAKE_MODULE_PATH "${CMAKE_CURRENT_LIST_DIR}")
set(KX_WINDOWS_HEADERS "${KX_WINDOWS_PREFIX}/kx-headers/include")
