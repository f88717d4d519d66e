# Packages of an installation: `cpack -G DEB` in a build directory makes those for Debian.
set(CPACK_PACKAGE_NAME scr)
set(CPACK_PACKAGE_VENDOR "System Compatibility Report")
set(CPACK_PACKAGE_CONTACT "The developers of the System Compatibility Report <scr@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "tells of drivers and settings that are known to cause trouble")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_COMPONENTS_ALL program development)
set(CPACK_STRIP_FILES ON)
set(CPACK_THREADS 0)

set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME scr)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION utils)
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION
"Compares this machine with a blocklist of operating-system versions, video,
audio and network drivers, files and system properties that are known to
cause trouble, tells new, ongoing and resolved issues apart, and says what
to do about each: in a window, as text, or to a script.")
# The names of devices, the way to the browser, and the authorities that servers are trusted by.
set(CPACK_DEBIAN_PROGRAM_PACKAGE_RECOMMENDS "ca-certificates, hwdata, xdg-utils")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libqelsystemcompatibilityreport-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
"Headers and build descriptions for applications that link the report.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "scr (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
include(CPack)
