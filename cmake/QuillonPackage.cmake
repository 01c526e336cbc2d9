# The CMake package, and the pkg-config file of the shared libraries. Each other library has installed
# its own part.
include(CMakePackageConfigHelpers)

set(package_dir ${QUILLON_PACKAGE_DIR})
get_property(quillon_libraries GLOBAL PROPERTY QUILLON_PACKAGE_LIBRARIES)
configure_package_config_file(cmake/quillon_object_modelConfig.cmake.in
  ${PROJECT_BINARY_DIR}/quillon_object_modelConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/quillon_object_modelConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/quillon_object_modelConfig.cmake
  ${PROJECT_BINARY_DIR}/quillon_object_modelConfigVersion.cmake
  DESTINATION ${package_dir})
install(EXPORT quillon_object_model-targets NAMESPACE quillon:: DESTINATION ${package_dir})

if(QUILLON_TABRA_ROOT)
  # The other tabra is installed beside the library that was built against it.
  # Its file name may be a chain of symbolic links, which install(FILES) would leave dangling.
  install(CODE "
    set(libdir \"${CMAKE_INSTALL_LIBDIR}\")
    cmake_path(ABSOLUTE_PATH libdir BASE_DIRECTORY \"\${CMAKE_INSTALL_PREFIX}\")
    file(INSTALL DESTINATION \"\${libdir}\" TYPE SHARED_LIBRARY FOLLOW_SYMLINK_CHAIN
      FILES \"${QUILLON_TABRA_LIBRARY}\")"
    COMPONENT libtabra)
  install(DIRECTORY ${QUILLON_TABRA_INCLUDE}/tabra DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
  configure_package_config_file(cmake/InstalledTabra.cmake.in ${PROJECT_BINARY_DIR}/tabra-targets.cmake
    INSTALL_DESTINATION ${package_dir}
    PATH_VARS CMAKE_INSTALL_LIBDIR CMAKE_INSTALL_INCLUDEDIR
    NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
  install(FILES ${PROJECT_BINARY_DIR}/tabra-targets.cmake DESTINATION ${package_dir})
else()
  install(EXPORT tabra-targets NAMESPACE tabra:: DESTINATION ${package_dir})
endif()

# The pkg-config files find everything from where they are, so that the prefix can be moved.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_INCLUDEDIR
  BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig OUTPUT_VARIABLE pkgconfig_to_include)
configure_file(cmake/quillon_object_model.pc.in ${PROJECT_BINARY_DIR}/quillon_object_model.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/quillon_object_model.pc DESTINATION ${QUILLON_PKGCONFIG_DIR})
