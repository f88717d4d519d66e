# One test program per folder of sources. Every test of it runs in a process of its own.
include(GoogleTest)
include(PrecompiledHeaders)
find_package(GTest REQUIRED)

qelscr_precompile_headers(qelscr_test_headers
  HEADERS <algorithm> <any> <array> <chrono> <filesystem> <functional> <map> <memory> <mutex> <optional> <set>
          <sstream> <stdexcept> <string> <thread> <utility> <vector> <gmock/gmock.h> <gtest/gtest.h>
  LIBRARIES GTest::gmock)

# The test programs that start threads. `.ci/check-threads` builds these alone.
add_custom_target(thread_tests)

# qelscr_add_tests(<name> SOURCES <file>... [LIBRARIES <target>...])
function(qelscr_add_tests name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} qelscr_test_support qelscr_settings GTest::gmock
                                        GTest::gtest_main)
  target_compile_definitions(${name} PRIVATE QELSCR_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  qelscr_share_precompiled_headers(${name} qelscr_test_headers)
  if(WIN32)
    target_link_libraries(${name} PRIVATE qelscr_program_manifest)
    if(CMAKE_CROSSCOMPILING)
      set_target_properties(${name} PROPERTIES
        CROSSCOMPILING_EMULATOR ${PROJECT_SOURCE_DIR}/tests/support/windows/run-test)
    endif()
  endif()
  set(labels)
  foreach(source IN LISTS arg_SOURCES)
    cmake_path(ABSOLUTE_PATH source)
    if(EXISTS ${source})
      file(STRINGS ${source} includes REGEX "^#include <thread>" LIMIT_COUNT 1)
      if(includes)
        set(labels LABELS threads)
      endif()
    endif()
  endforeach()
  if(labels)
    add_dependencies(thread_tests ${name})
  endif()
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300 ${labels})
endfunction()
