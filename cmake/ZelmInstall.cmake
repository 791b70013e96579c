# The library as other projects use it: headers as they stand, a CMake package and a pkg-config file, and the data.
include(CMakePackageConfigHelpers)

install(TARGETS zelmorvane EXPORT zelmorvane)
foreach(subsystem IN LISTS ZELM_SUBSYSTEMS)
  install(
    DIRECTORY "${PROJECT_SOURCE_DIR}/${subsystem}"
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/zelm"
    FILES_MATCHING
    PATTERN "*.h"
    PATTERN "*.def"
    PATTERN "*.inc")
endforeach()
install(DIRECTORY "${PROJECT_SOURCE_DIR}/data/powercfg" DESTINATION "${CMAKE_INSTALL_DATADIR}/zelm/data")
install(FILES "${PROJECT_SOURCE_DIR}/data/uncertainty.json" DESTINATION "${CMAKE_INSTALL_DATADIR}/zelm/data")
# If `make live` has built it.
install(FILES "${PROJECT_SOURCE_DIR}/build/live/live.html" DESTINATION "${CMAKE_INSTALL_DATADIR}/zelm" OPTIONAL)

install(
  EXPORT zelmorvane
  NAMESPACE zelm::
  FILE zelmorvane-targets.cmake
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/zelmorvane")
configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/zelmorvane-config.cmake.in" zelmorvane-config.cmake
                              INSTALL_DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/zelmorvane"
                              PATH_VARS CMAKE_INSTALL_DATADIR)
write_basic_package_version_file(zelmorvane-config-version.cmake COMPATIBILITY SameMinorVersion)
configure_file("${CMAKE_CURRENT_LIST_DIR}/zelmorvane.pc.in" zelmorvane.pc @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/zelmorvane-config.cmake" "${PROJECT_BINARY_DIR}/zelmorvane-config-version.cmake"
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/zelmorvane")
install(FILES "${PROJECT_BINARY_DIR}/zelmorvane.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
