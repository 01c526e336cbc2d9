# The CMake package and the pkg-config file.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/quillon_object_model)
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
  install(FILES ${QUILLON_TABRA_LIBRARY} DESTINATION ${CMAKE_INSTALL_LIBDIR})
  install(DIRECTORY ${QUILLON_TABRA_INCLUDE}/tabra DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
  install(FILES cmake/InstalledTabra.cmake DESTINATION ${package_dir} RENAME tabra-targets.cmake)
else()
  install(EXPORT tabra-targets NAMESPACE tabra:: DESTINATION ${package_dir})
endif()
if(QUILLON_HAS_NETCDF)
  install(EXPORT quillon_netcdf-targets NAMESPACE quillon:: DESTINATION ${package_dir})
endif()

configure_file(cmake/quillon_object_model.pc.in ${PROJECT_BINARY_DIR}/quillon_object_model.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/quillon_object_model.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
