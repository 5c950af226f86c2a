# Toolchain file for Windows x86-64 with the distribution's MinGW-w64. Programs run through Wine.
#
# ZV_QT_WINDOWS (variable or environment) is the folder of Qt that tools/build-qt-windows prints.

if(NOT ZV_QT_WINDOWS AND DEFINED ENV{ZV_QT_WINDOWS})
    set(ZV_QT_WINDOWS "$ENV{ZV_QT_WINDOWS}")
endif()
if(NOT EXISTS "${ZV_QT_WINDOWS}/lib/cmake/Qt5Core")
    message(FATAL_ERROR "ZV_QT_WINDOWS must name a Qt for Windows (see tools/build-qt-windows)")
endif()
set(ZV_QT_WINDOWS "${ZV_QT_WINDOWS}" CACHE PATH "Folder of Qt for Windows")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ZV_QT_WINDOWS)

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_VERSION 10.0)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# The compiler with POSIX threads; the other one has no std::thread.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

set(CMAKE_FIND_ROOT_PATH "${ZV_QT_WINDOWS}" /usr/x86_64-w64-mingw32)
list(APPEND CMAKE_PREFIX_PATH "${ZV_QT_WINDOWS}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
# The project's own packages are found where CMAKE_PREFIX_PATH says, Qt's in its folder.
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)

set(CMAKE_CROSSCOMPILING_EMULATOR
    "${CMAKE_CURRENT_LIST_DIR}/../tools/winerun" --dlls "${ZV_QT_WINDOWS}/bin"
)
