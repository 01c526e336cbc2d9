# Adds to each package, once its files are in place, what Debian's policy asks for. cpack runs this.
set(source ${CPACK_QUILLON_SOURCE_DIR})
unset(ENV{DESTDIR})  # cpack's, of the package that it installed last

foreach(package IN LISTS CPACK_COMPONENTS_ALL)
  set(root ${CPACK_TEMPORARY_DIRECTORY}/${package}/usr)
  set(doc ${root}/share/doc/${package})
  file(INSTALL ${source}/cmake/debian/copyright DESTINATION ${doc})
  file(INSTALL ${source}/CHANGELOG.md DESTINATION ${doc} RENAME changelog)
  file(INSTALL ${source}/cmake/debian/changelog DESTINATION ${doc} RENAME changelog.Debian)
  file(GLOB manuals ${root}/share/man/man*/*)
  execute_process(COMMAND gzip -9n ${doc}/changelog ${doc}/changelog.Debian ${manuals}
    COMMAND_ERROR_IS_FATAL ANY)
  file(INSTALL ${source}/cmake/debian/${package}.lintian-overrides
    DESTINATION ${root}/share/lintian/overrides RENAME ${package})
endforeach()

set(developers libquillon-object-model-dev)
file(INSTALL ${source}/examples
  DESTINATION ${CPACK_TEMPORARY_DIRECTORY}/${developers}/usr/share/doc/${developers})
