# Builds for 64-bit Windows with MinGW-w64 and runs what was built under Wine.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_SYSTEM_VERSION 10.0)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Windows 10 and its Unicode functions.
string(APPEND CMAKE_C_FLAGS_INIT " -D_WIN32_WINNT=0x0A00 -DWINVER=0x0A00 -DUNICODE -D_UNICODE")
string(APPEND CMAKE_CXX_FLAGS_INIT " -D_WIN32_WINNT=0x0A00 -DWINVER=0x0A00 -DUNICODE -D_UNICODE")

# Programs and libraries at random addresses in the whole address space, with data that cannot be executed.
foreach(kind IN ITEMS EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-Wl,--dynamicbase,--nxcompat,--high-entropy-va")
endforeach()

# The libraries that packaging/windows/build-dependencies builds; nothing of this machine's own.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES QELSCR_WINDOWS_DEPENDENCIES)
if(NOT QELSCR_WINDOWS_DEPENDENCIES)
  execute_process(COMMAND ${CMAKE_CURRENT_LIST_DIR}/../../packaging/windows/build-dependencies --where
    OUTPUT_VARIABLE where OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  set(QELSCR_WINDOWS_DEPENDENCIES ${where} CACHE PATH "Libraries built for Windows")
endif()
list(APPEND CMAKE_FIND_ROOT_PATH ${QELSCR_WINDOWS_DEPENDENCIES})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(OPENSSL_USE_STATIC_LIBS ON)

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../../packaging/windows/wine)
