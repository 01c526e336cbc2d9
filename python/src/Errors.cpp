#include "Errors.h"

#include <object_model/Exception.h>
#include <object_model/InvalidCall.h>
#include <quillon/tables/Error.h>
#if QUILLON_PYTHON_HAS_NETCDF
#include <quillon/netcdf/File.h>
#endif

#include "Outline.h"

namespace quillon::python {
namespace {

namespace py = pybind11;

void raise(const char* name, const std::string& sentence) {
  const py::object type = py::module_::import("quillon._errors").attr(name);
  PyErr_SetObject(type.ptr(), textOf(sentence).ptr());
}

void translate(std::exception_ptr thrown) {
  try {
    if (thrown) {
      std::rethrow_exception(std::move(thrown));
    }
  } catch (const Raised& raised) {
    try {
      raised.rethrow();
    } catch (py::error_already_set& error) {
      error.restore();
    }
  } catch (const object_model::InvalidCall& error) {
    raise("InvalidCall", error.what());
  } catch (const object_model::Exception& error) {
    raise("Error", error.what());
  } catch (const tables::Error& error) {
    raise("ExportError", error.what());
#if QUILLON_PYTHON_HAS_NETCDF
  } catch (const netcdf::Error& error) {
    raise("FileError", error.what());
#endif
  } catch (const NoEntry& error) {
    PyErr_SetObject(PyExc_KeyError, textOf(error.what()).ptr());
  }
}

}  // namespace

void registerErrors() { py::register_exception_translator(&translate); }

}  // namespace quillon::python
