# The folders that can be left out: each has an option that is ON, OFF or AUTO.

# quillon_optional_folder(FOLDER WHAT [MISSING ...]): the option QUILLON_FOLDER, in upper case, says
# whether FOLDER, which has WHAT, is built, and QUILLON_HAS_FOLDER whether it is. MISSING is what it
# needs and has not been found: AUTO then leaves it out, ON is an error.
function(quillon_optional_folder folder what)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "MISSING")
  string(TOUPPER ${folder} name)
  set(option QUILLON_${name})
  set(${option} AUTO CACHE STRING "Build ${what}: ON, OFF or AUTO (when what it needs is found)")
  set_property(CACHE ${option} PROPERTY STRINGS AUTO ON OFF)
  if(NOT ${option} MATCHES "^(AUTO|ON|OFF)$")
    message(FATAL_ERROR "${option} is ON, OFF or AUTO, not '${${option}}'")
  endif()

  set(has OFF)
  list(JOIN arg_MISSING ", " missing)
  if(${option} STREQUAL "OFF")
    message(VERBOSE "Without ${what}: ${option} is OFF")
  elseif(missing STREQUAL "")
    set(has ON)
    add_subdirectory(${folder})
  elseif(${option} STREQUAL "ON")
    message(FATAL_ERROR "${option} is ON, but was not found: ${missing}")
  else()
    message(STATUS "Without ${what}: not found: ${missing}")
  endif()
  set(QUILLON_HAS_${name} ${has} PARENT_SCOPE)
endfunction()

# The reader: libnetcdf and the libhdf5 below it, by their pkg-config files.
set(missing)
if(NOT QUILLON_NETCDF STREQUAL "OFF")
  find_package(PkgConfig QUIET)
  foreach(library IN ITEMS netcdf hdf5)
    string(TOUPPER ${library} prefix)
    if(PkgConfig_FOUND)
      pkg_check_modules(${prefix} QUIET IMPORTED_TARGET ${library})
    endif()
    if(NOT TARGET PkgConfig::${prefix})
      list(APPEND missing "lib${library} (through pkg-config)")
    endif()
  endforeach()
endif()
quillon_optional_folder(netcdf "the netCDF reader" MISSING ${missing})

# Known by no file format.
foreach(folder IN ITEMS compare tables)
  quillon_optional_folder(${folder} "the library quillon::${folder}")
endforeach()

# The tool: the libraries above, CLI11, and tables in memory, whose class only the bundled tabra is
# sure to have.
set(missing)
if(NOT QUILLON_TOOLS STREQUAL "OFF")
  foreach(library IN ITEMS netcdf compare tables)
    if(NOT TARGET quillon::${library})
      list(APPEND missing quillon::${library})
    endif()
  endforeach()
  if(NOT QUILLON_HAS_MEMORY_DATA_FRAME)
    list(APPEND missing tabra/MemoryDataFrame.h)
  endif()
  find_package(CLI11 QUIET)
  if(NOT CLI11_FOUND)
    list(APPEND missing CLI11)
  endif()
endif()
quillon_optional_folder(tools "the quillon tool" MISSING ${missing})
