# What only Windows has: libraries and resources beside and inside a program.

# The libraries built for Windows describe themselves; CMake's own modules would ask this machine's programs.
set(CMAKE_FIND_PACKAGE_PREFER_CONFIG ON)

# qelcore.dll, as on every other toolchain.
set(CMAKE_SHARED_LIBRARY_PREFIX "")
set(CMAKE_SHARED_MODULE_PREFIX "")

# Exceptions cross our libraries, so all of them share the compiler's runtime, which stands beside them.
set(QELSCR_RUNTIME_LIBRARIES)
foreach(name IN ITEMS libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name}
    OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  cmake_path(ABSOLUTE_PATH file NORMALIZE)
  list(APPEND QELSCR_RUNTIME_LIBRARIES ${file})
endforeach()
file(COPY ${QELSCR_RUNTIME_LIBRARIES} DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})

# Optimising, GCC 12 sees overlaps in short texts that are put together, where there are none.
add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict>)

# Resources are compiled without the options of the C++ sources, so they have targets of their own.
add_library(qelscr_program_manifest OBJECT ${PROJECT_SOURCE_DIR}/packaging/windows/program.rc)

# qelscr_add_version(<target> <description>)
function(qelscr_add_version target description)
  get_target_property(type ${target} TYPE)
  set(file_name ${target}.dll)
  set(file_type VFT_DLL)
  if(type STREQUAL EXECUTABLE)
    set(file_name ${target}.exe)
    set(file_type VFT_APP)
  endif()
  configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/version.rc.in ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc @ONLY)
  add_library(${target}_version OBJECT ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
  target_link_libraries(${target} PRIVATE ${target}_version)
endfunction()
