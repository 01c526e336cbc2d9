# The Debian packages, by cpack from a build of the preset `package`: each is the component of its
# name, and takes from cmake/debian/ what only Debian asks for.
set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_SOURCE_DIR}/cmake/debian/date.cmake)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian/stage.cmake)
set(CPACK_QUILLON_SOURCE_DIR ${PROJECT_SOURCE_DIR})  # for these two scripts

set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_PACKAGE_CONTACT "Quillon maintainers <maintainers@quillon.example>")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SOURCE quillon-object-model)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Where dpkg-shlibdeps finds this build's libraries; the package that brings them is named below.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
  ${PROJECT_BINARY_DIR}/ObjectModel ${PROJECT_BINARY_DIR}/tabra)

# quillon_debian_package(NAME SECTION DEPENDS SUMMARY TEXT): the component NAME as a package.
macro(quillon_debian_package name section depends summary text)
  list(APPEND CPACK_COMPONENTS_ALL ${name})
  string(TOUPPER ${name} component)
  set(CPACK_DEBIAN_${component}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${component}_PACKAGE_SECTION ${section})
  set(CPACK_DEBIAN_${component}_PACKAGE_DEPENDS "${depends}")
  set(CPACK_DEBIAN_${component}_DESCRIPTION "${summary}\n${text}")
endmacro()

set(CPACK_COMPONENTS_ALL)
set(debian_version ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
# The table library, apart: another package can take its place by providing libtabra.
quillon_debian_package(libtabra libs ""
  "table library of the object model for measurement results"
  "Tables that are columns of numbers of one length, behind an interface that
other tables can implement, and a table in memory.")
# Unversioned, so that a package that merely provides libtabra will do.
quillon_debian_package(libquillon-object-model libs "libtabra"
  "object model for measurement results - shared library"
  "Library for n-dimensional typed arrays with described axes and
dictionaries that nest: they are compared with a sentence that says what
differs, turned into tables, and rendered as text or HTML.")
foreach(package IN ITEMS LIBTABRA LIBQUILLON-OBJECT-MODEL)
  set(CPACK_DEBIAN_${package}_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
endforeach()
quillon_debian_package(libquillon-object-model-dev libdevel
  "libquillon-object-model (= ${debian_version})"
  "object model for measurement results - development files"
  "Headers, the CMake package, pkg-config files and examples of the object
model, and static libraries with arrays in memory and a reader of netCDF
files.")
# With COMPONENTS netcdf, the CMake package looks for these libraries through pkg-config.
set(CPACK_DEBIAN_LIBQUILLON-OBJECT-MODEL-DEV_PACKAGE_RECOMMENDS "libdeflate-dev, libhdf5-dev, libnetcdf-dev, pkgconf")
if(TARGET quillon)
  # Slots are only ever appended, so that a newer library serves an older tool. The tool needs this
  # libtabra, with its table in memory, hence the version.
  quillon_debian_package(quillon-tools science
    "libquillon-object-model (>= ${PROJECT_VERSION}), libtabra (>= ${PROJECT_VERSION})"
    "command-line tool for files of measurement results"
    "The tool quillon lists what is in a netCDF file, prints its variables as
a table in text or HTML, and compares two files value by value.")
endif()
if(TARGET quillon_python)
  # The module is for the interpreter that it was built for.
  math(EXPR next "${Python_VERSION_MINOR} + 1")
  string(JOIN ", " depends
    "python3 (>= ${Python_VERSION_MAJOR}.${Python_VERSION_MINOR})"
    "python3 (<< ${Python_VERSION_MAJOR}.${next})"
    python3-numpy
    "libquillon-object-model (>= ${PROJECT_VERSION})" "libtabra (>= ${PROJECT_VERSION})")
  quillon_debian_package(python3-quillon python "${depends}"
    "measurement results in Python: arrays, comparison, tables, files"
    "The package quillon views numpy's arrays with units and named dimensions,
compares them down to the last value, makes tables of them, and opens
netCDF files.")
  set(CPACK_DEBIAN_PYTHON3-QUILLON_PACKAGE_RECOMMENDS "python3-pandas, python3-xarray")
  set(CPACK_DEBIAN_PYTHON3-QUILLON_PACKAGE_CONTROL_EXTRA
    ${PROJECT_SOURCE_DIR}/cmake/debian/python3-quillon/postinst
    ${PROJECT_SOURCE_DIR}/cmake/debian/python3-quillon/prerm)
endif()
include(CPack)
