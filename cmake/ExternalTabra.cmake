# tabra::tabra from QUILLON_TABRA_ROOT: its headers (tabra/DataFrameView.h below the directory itself
# or its include/ or interface/) and its library.
find_path(QUILLON_TABRA_INCLUDE tabra/DataFrameView.h
  PATHS ${QUILLON_TABRA_ROOT} PATH_SUFFIXES include interface NO_DEFAULT_PATH)
find_library(QUILLON_TABRA_LIBRARY tabra
  PATHS ${QUILLON_TABRA_ROOT} PATH_SUFFIXES lib lib64 NO_DEFAULT_PATH)
if(NOT QUILLON_TABRA_INCLUDE OR NOT QUILLON_TABRA_LIBRARY)
  message(FATAL_ERROR
    "QUILLON_TABRA_ROOT (${QUILLON_TABRA_ROOT}) has no tabra/DataFrameView.h in include/ or interface/, "
    "or no libtabra.so in lib/")
endif()
add_library(tabra::tabra SHARED IMPORTED GLOBAL)
set_target_properties(tabra::tabra PROPERTIES
  IMPORTED_LOCATION ${QUILLON_TABRA_LIBRARY}
  INTERFACE_INCLUDE_DIRECTORIES ${QUILLON_TABRA_INCLUDE})
