# shellcheck shell=bash
# The Debian packages: ./dev package.

PACKAGE_PACKAGES=(dpkg-dev file lintian)

## package (6 min): make the Debian packages, into build/package
verb_package() {
  need "${BUILD_PACKAGES[@]}" "${PYTHON_PACKAGES[@]}" "${PACKAGE_PACKAGES[@]}"
  build package
  rm -f build/package/*.deb
  say "making the packages"
  umask 022 # which decides on the modes in the packages
  cpack --preset package >&2
  lintian --fail-on error,warning build/package/*.deb
  ls build/package/*.deb
}
