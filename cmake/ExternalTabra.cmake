# tabra::tabra from QUILLON_TABRA_ROOT: its headers (tabra/DataFrameView.h below the directory itself
# or its include/ or interface/) and its library. Searched afresh each time, as the directory may
# have changed.
find_path(QUILLON_TABRA_INCLUDE tabra/DataFrameView.h
  PATHS ${QUILLON_TABRA_ROOT} PATH_SUFFIXES include interface NO_DEFAULT_PATH NO_CACHE)
find_library(QUILLON_TABRA_LIBRARY NAMES libtabra.so
  PATHS ${QUILLON_TABRA_ROOT} PATH_SUFFIXES lib lib64 ${CMAKE_INSTALL_LIBDIR} NO_DEFAULT_PATH NO_CACHE)
if(NOT QUILLON_TABRA_INCLUDE OR NOT QUILLON_TABRA_LIBRARY)
  message(FATAL_ERROR
    "QUILLON_TABRA_ROOT (${QUILLON_TABRA_ROOT}) has no tabra/DataFrameView.h in include/ or interface/, "
    "or no libtabra.so in lib/")
endif()
message(STATUS "Using tabra from ${QUILLON_TABRA_LIBRARY}")
add_library(tabra::tabra SHARED IMPORTED GLOBAL)
set_target_properties(tabra::tabra PROPERTIES
  IMPORTED_LOCATION ${QUILLON_TABRA_LIBRARY}
  # Linked as -ltabra, so that the needed library is never recorded with its directory.
  IMPORTED_NO_SONAME ON
  INTERFACE_INCLUDE_DIRECTORIES ${QUILLON_TABRA_INCLUDE})

if(EXISTS ${QUILLON_TABRA_INCLUDE}/tabra/MemoryDataFrame.h)
  set(QUILLON_HAS_MEMORY_DATA_FRAME ON)
else()
  set(QUILLON_HAS_MEMORY_DATA_FRAME OFF)
endif()
