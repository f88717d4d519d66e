# What every target of the project is compiled with.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# All programs and libraries side by side, so that a program of the build tree finds its libraries on every system.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

find_program(QELSCR_CCACHE ccache)
if(QELSCR_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # Files that use precompiled headers are kept too, which ccache leaves alone without this.
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${QELSCR_CCACHE})
endif()

add_library(qelscr_settings INTERFACE)
target_include_directories(qelscr_settings INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(qelscr_settings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Wnon-virtual-dtor -Woverloaded-virtual
  $<$<BOOL:${QELSCR_WARNINGS_AS_ERRORS}>:-Werror>)
if(QELSCR_SANITIZERS)
  add_compile_options(-fsanitize=${QELSCR_SANITIZERS} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${QELSCR_SANITIZERS})
endif()

if(WIN32)
  include(Windows)
endif()

find_package(Threads REQUIRED)
