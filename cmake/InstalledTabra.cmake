# tabra::tabra for a package that was built against another tabra and has it in its own lib/.
if(NOT TARGET tabra::tabra)
  get_filename_component(prefix "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)
  add_library(tabra::tabra SHARED IMPORTED)
  set_target_properties(tabra::tabra PROPERTIES
    IMPORTED_LOCATION "${prefix}/lib/libtabra.so"
    INTERFACE_INCLUDE_DIRECTORIES "${prefix}/include")
endif()
