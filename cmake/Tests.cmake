# One test program per folder of sources. Every test of it runs in a process of its own.
include(GoogleTest)
find_package(GTest REQUIRED)

# qelscr_add_tests(<name> SOURCES <file>... [LIBRARIES <target>...])
function(qelscr_add_tests name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} qelscr_test_support qelscr_settings GTest::gmock
                                        GTest::gtest_main)
  target_compile_definitions(${name} PRIVATE QELSCR_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  if(WIN32)
    target_link_libraries(${name} PRIVATE qelscr_program_manifest)
  endif()
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300)
endfunction()
