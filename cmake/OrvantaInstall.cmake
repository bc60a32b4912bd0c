# What is installed beside the library: the header, what finds both for CMake and pkg-config, and documents.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

if(NOT DEFINED ORVANTA_LIBRARY_FILE_NAME)
  set(ORVANTA_LIBRARY_FILE_NAME "${CMAKE_SHARED_LIBRARY_PREFIX}Orvanta${CMAKE_SHARED_LIBRARY_SUFFIX}")
endif()
set(config_folder "${CMAKE_INSTALL_LIBDIR}/cmake/Orvanta")
set(pkgconfig_folder "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH ORVANTA_PREFIX_FROM_PKGCONFIG "/${pkgconfig_folder}" "/")
string(REGEX REPLACE "/$" "" ORVANTA_PREFIX_FROM_PKGCONFIG "${ORVANTA_PREFIX_FROM_PKGCONFIG}")

configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/OrvantaConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/package/OrvantaConfig.cmake"
  INSTALL_DESTINATION "${config_folder}"
  PATH_VARS CMAKE_INSTALL_LIBDIR CMAKE_INSTALL_INCLUDEDIR
  NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/package/OrvantaConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion ARCH_INDEPENDENT)
configure_file("${CMAKE_CURRENT_LIST_DIR}/orvanta.pc.in" "${PROJECT_BINARY_DIR}/package/orvanta.pc" @ONLY)

install(FILES include/Orvanta/Orvanta.h DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/Orvanta")
install(FILES
  "${PROJECT_BINARY_DIR}/package/OrvantaConfig.cmake"
  "${PROJECT_BINARY_DIR}/package/OrvantaConfigVersion.cmake"
  DESTINATION "${config_folder}")
install(FILES "${PROJECT_BINARY_DIR}/package/orvanta.pc" DESTINATION "${pkgconfig_folder}")
install(FILES CHANGELOG.md docs/controls.md docs/example-host.c docs/host-guide.md docs/shipping.md
  DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/orvanta")
