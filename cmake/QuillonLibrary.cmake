# A library folder: one target, one namespace, one include path, one pkg-config file.

# Where the CMake package stands, with the file of each library's target.
set(QUILLON_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/quillon_object_model)
set(QUILLON_PKGCONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# quillon_library(NAME DESCRIPTION TEXT SOURCES ... LIBRARIES ... [PACKAGES ...]): the static library
# quillon::NAME with the public headers below interface/. LIBRARIES are public targets of this project;
# PACKAGES are what only the sources need, by their pkg-config names in lower case, each found before by
# pkg_check_modules with its name in upper case.
function(quillon_library name)
  cmake_parse_arguments(arg "" "DESCRIPTION" "SOURCES;LIBRARIES;PACKAGES" ${ARGN})
  set(target quillon_${name})
  add_library(${target} STATIC ${arg_SOURCES})
  add_library(quillon::${name} ALIAS ${target})
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})

  quillon_configure(${target})
  quillon_interface(${target} ${CMAKE_CURRENT_SOURCE_DIR}/interface)
  target_link_libraries(${target} PUBLIC ${arg_LIBRARIES})
  foreach(package IN LISTS arg_PACKAGES)
    string(TOUPPER ${package} prefix)
    target_link_libraries(${target} PRIVATE PkgConfig::${prefix})
  endforeach()

  if(QUILLON_INSTALL)
    quillon_install_library(${name})
  endif()
endfunction()

# What quillon_library() installs: the library, its headers, its part of the CMake package and its
# pkg-config file.
macro(quillon_install_library name)
  install(TARGETS ${target} EXPORT ${target}-targets FILE_SET HEADERS)
  install(EXPORT ${target}-targets NAMESPACE quillon:: DESTINATION ${QUILLON_PACKAGE_DIR})
  # One line of the CMake package: see quillon_object_modelConfig.cmake.in.
  string(JOIN " " arguments ${name} ${arg_PACKAGES})
  set_property(GLOBAL APPEND_STRING PROPERTY QUILLON_PACKAGE_LIBRARIES
    "quillon_object_model_library(${arguments})\n")

  # The library is an archive only, so whoever links it links what its sources need, too.
  set(requires ${arg_LIBRARIES})
  list(TRANSFORM requires REPLACE "::" "_")
  list(REMOVE_ITEM requires tabra_tabra)  # comes with quillon_object_model
  list(APPEND requires ${arg_PACKAGES})
  list(JOIN requires " " requires)
  configure_file(${quillon_object_model_SOURCE_DIR}/cmake/quillon_library.pc.in
    ${PROJECT_BINARY_DIR}/${target}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${target}.pc DESTINATION ${QUILLON_PKGCONFIG_DIR})
endmacro()
