# What every target of this project shares.

# quillon_configure(TARGET): language level, warnings, sanitizers and reproducible paths.
function(quillon_configure target)
  target_compile_features(${target} PUBLIC cxx_std_17)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
    -Woverloaded-virtual -Wnon-virtual-dtor -Wcast-qual
    $<$<BOOL:${QUILLON_WARNINGS_AS_ERRORS}>:-Werror>
    # Paths in debug information start at the project's root, wherever it is built.
    -ffile-prefix-map=${quillon_object_model_SOURCE_DIR}/=
    -ffile-prefix-map=${CMAKE_BINARY_DIR}=build)
  if(QUILLON_SANITIZE)
    target_compile_options(${target} PRIVATE
      -fsanitize=${QUILLON_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer
      $<$<CXX_COMPILER_ID:Clang>:-fsanitize-ignorelist=${quillon_object_model_SOURCE_DIR}/cmake/sanitize.ignore>)
    target_link_options(${target} PRIVATE -fsanitize=${QUILLON_SANITIZE})
  endif()
endfunction()

# quillon_refuse_fast_math(): ends with the flag that lets the compiler ignore NaN and infinities.
function(quillon_refuse_fast_math)
  string(TOUPPER "${CMAKE_BUILD_TYPE}" type)
  foreach(name IN ITEMS CMAKE_CXX_FLAGS CMAKE_CXX_FLAGS_${type})
    if("${${name}}" MATCHES "-ffast-math|-Ofast|-ffinite-math-only")
      message(FATAL_ERROR "${name} has ${CMAKE_MATCH_0}, under which NaN and infinities are compared wrongly")
    endif()
  endforeach()
endfunction()

# quillon_interface(TARGET DIRECTORY): the public headers below DIRECTORY, installed with the target.
# Each of them must compile alone (see the target TARGET_verify_interface_header_sets).
function(quillon_interface target directory)
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS ${directory}/*.h)
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${directory} FILES ${headers})
  set_target_properties(${target} PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
endfunction()

# quillon_shared_library(TARGET MAP): a library that stands beside the others and exports what MAP
# lists, under its bare file name.
function(quillon_shared_library target map)
  set_target_properties(${target} PROPERTIES
    BUILD_RPATH_USE_ORIGIN ON
    INSTALL_RPATH "$ORIGIN"
    LINK_DEPENDS ${map})
  target_link_options(${target} PRIVATE -Wl,--version-script=${map})
  # ./dev interface reads the types there, of which the preset leaves none.
  target_compile_options(${target} PRIVATE $<$<CONFIG:RelWithDebInfo>:-g>)
  if(NOT QUILLON_SANITIZE)
    target_link_options(${target} PRIVATE -Wl,--no-undefined)
    # With sources compiled as one, g++ inlines less of what exports spend their time on.
    set_target_properties(${target} PROPERTIES UNITY_BUILD OFF)
  endif()
endfunction()
