# Dates all files of the packages as the changelog, so that the same sources give the same packages.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(
    COMMAND dpkg-parsechangelog -l ${CPACK_QUILLON_SOURCE_DIR}/cmake/debian/changelog -S Timestamp
    OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  set(ENV{SOURCE_DATE_EPOCH} ${date})
endif()
