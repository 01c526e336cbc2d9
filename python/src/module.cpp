// The module quillon._core: what the package in python/quillon/ is built on.

#include "Module.h"

#include "Errors.h"

// NOLINTNEXTLINE: the macro's own
PYBIND11_MODULE(_core, module) {
  using namespace quillon::python;
  module.doc() = "The C++ libraries as they are. Use the package quillon.";
  module.attr("version") = QUILLON_PYTHON_VERSION;
  registerErrors();
  bindMemory(module);
  bindObjectModel(module);
  bindCompare(module);
  bindTables(module);
#if QUILLON_PYTHON_HAS_NETCDF
  bindNetcdf(module);
#endif
}
