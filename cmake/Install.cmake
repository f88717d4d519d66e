# What an installation consists of: the program with its data, the libraries, and what developers of hosts need
# (headers, `find_package(qelsystemcompatibilityreport)`, pkg-config).
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(libraries qelcore qelappsupport qelnet qelscripting qelui qelsystemcompatibilityreport)
# A folder of its own: the headers are included as "platform/..." and "qelsystemcompatibilityreport/...".
set(headers ${CMAKE_INSTALL_INCLUDEDIR}/qelsystemcompatibilityreport-${PROJECT_VERSION_MAJOR})
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/qelsystemcompatibilityreport)

if(NOT WIN32)
  # The libraries find each other, and the program its libraries, wherever the tree is moved to.
  file(RELATIVE_PATH from_program_to_libraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(scr PROPERTIES INSTALL_RPATH "$ORIGIN/${from_program_to_libraries}")
  set_target_properties(${libraries} qelui_native qelnet_requests PROPERTIES INSTALL_RPATH "$ORIGIN")
endif()

foreach(library IN LISTS libraries)
  target_include_directories(${library} INTERFACE $<INSTALL_INTERFACE:${headers}>)
  target_compile_features(${library} INTERFACE cxx_std_20)
endforeach()

install(TARGETS ${libraries} EXPORT qelsystemcompatibilityreport
  RUNTIME COMPONENT program
  LIBRARY COMPONENT program NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development)
# On every system beside the library that loads it.
if(WIN32)
  install(TARGETS qelui_native LIBRARY DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT program)
  install(FILES ${QELSCR_RUNTIME_LIBRARIES} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT program)
else()
  install(TARGETS qelui_native qelnet_requests LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT program)
endif()
install(TARGETS scr RUNTIME COMPONENT program)
install(DIRECTORY data/SystemCompatibilityReport data/translations
  DESTINATION ${CMAKE_INSTALL_DATADIR}/scr COMPONENT program)
install(FILES data/blocklist.schema.json DESTINATION ${CMAKE_INSTALL_DATADIR}/scr COMPONENT program)

install(DIRECTORY platform DESTINATION ${headers} COMPONENT development FILES_MATCHING PATTERN "*.h")
file(GLOB public_headers CONFIGURE_DEPENDS qelsystemcompatibilityreport/*.h)
install(FILES ${public_headers} DESTINATION ${headers}/qelsystemcompatibilityreport COMPONENT development)
foreach(library IN LISTS libraries)
  if(EXISTS ${PROJECT_SOURCE_DIR}/host/${library}/HostSetup.h)
    install(FILES host/${library}/HostSetup.h DESTINATION ${headers}/host/${library} COMPONENT development)
  endif()
endforeach()
install(FILES host/qelui/DesktopWindow.h DESTINATION ${headers}/host/qelui COMPONENT development)

install(EXPORT qelsystemcompatibilityreport NAMESPACE qelsystemcompatibilityreport::
  FILE qelsystemcompatibilityreport-config.cmake DESTINATION ${package} COMPONENT development)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/qelsystemcompatibilityreport-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/qelsystemcompatibilityreport-config-version.cmake
  DESTINATION ${package} COMPONENT development)

# Paths relative to the file itself, so that the tree can be moved.
set(pkgconfig ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}/${pkgconfig}
           OUTPUT_VARIABLE from_pkgconfig_to_prefix)
list(TRANSFORM libraries PREPEND -l OUTPUT_VARIABLE link_options)
list(REVERSE link_options)
list(JOIN link_options " " link_options)
configure_file(cmake/qelsystemcompatibilityreport.pc.in ${PROJECT_BINARY_DIR}/qelsystemcompatibilityreport.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/qelsystemcompatibilityreport.pc DESTINATION ${pkgconfig} COMPONENT development)

if(NOT WIN32)
  install(FILES packaging/linux/scr.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT program)
  install(FILES packaging/linux/scr.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps
    COMPONENT program)
  install(FILES packaging/linux/scr.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT program)
  install(FILES packaging/linux/scr.bash-completion RENAME scr
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT program)
endif()

include(Packages)
