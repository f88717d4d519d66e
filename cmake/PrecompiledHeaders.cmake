# Headers that nearly every file of a group of targets includes are compiled once for all of them. The sources still
# include what they use: clang-tidy, and a build with QELSCR_PRECOMPILED_HEADERS=OFF, compile them without.
# The cross compiler for Windows forgets which of them are the system's, and warns about those.
set(kCanPrecompile ON)
if(CMAKE_CROSSCOMPILING)
  set(kCanPrecompile OFF)
endif()
option(QELSCR_PRECOMPILED_HEADERS "Compile headers of other projects once for many files" ${kCanPrecompile})

# Without it ccache does not see which precompiled headers GCC uses, and keeps no such file.
set(kForCcache $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)

# qelscr_precompile_headers(<name> HEADERS <header>... [LIBRARIES <target>...])
# What programs may then share. The headers are compiled as programs are, which is not how libraries are.
function(qelscr_precompile_headers name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "HEADERS;LIBRARIES")
  if(NOT QELSCR_PRECOMPILED_HEADERS)
    return()
  endif()
  file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp CONTENT "// Nothing but headers.\n")
  add_library(${name} OBJECT ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} qelscr_settings)
  set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE OFF)
  if(NOT WIN32)
    target_compile_options(${name} PRIVATE -fPIE)
  endif()
  target_compile_options(${name} PRIVATE ${kForCcache})
  target_precompile_headers(${name} PRIVATE ${arg_HEADERS})
endfunction()

# qelscr_share_precompiled_headers(<program> <name>)
function(qelscr_share_precompiled_headers program name)
  if(QELSCR_PRECOMPILED_HEADERS)
    target_precompile_headers(${program} REUSE_FROM ${name})
    target_compile_options(${program} PRIVATE ${kForCcache})
  endif()
endfunction()
