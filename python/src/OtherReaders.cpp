#include "OtherReaders.h"

#include <utility>

#include "Errors.h"
#include "PyRef.h"

namespace quillon::python {
namespace {

/// How often this thread keeps the others out, and by which lock.
struct Hold {
  unsigned long depth = 0;
  PyRef lock;
};

Hold& hold() {
  thread_local Hold held;
  return held;
}

py::module_ locks() { return py::module_::import("quillon._locks"); }

void acquire() {
  const py::gil_scoped_acquire gil;
  hold().lock = passingOn([] { return keep(locks().attr("acquire")()); });
}

// What fails here beyond a Python exception, such as the interpreter's end, ends the process.
// NOLINTBEGIN(bugprone-exception-escape)
void release() noexcept {
  const py::gil_scoped_acquire gil;
  try {
    locks().attr("release")(objectOf(std::exchange(hold().lock, nullptr)));
  } catch (py::error_already_set& error) {
    error.discard_as_unraisable("quillon._locks.release");
  }
}

/// The same as acquire() where nothing may be thrown: an interrupt has to wait.
void acquireAgain() noexcept {
  for (bool isInterrupted = false;; isInterrupted = true) {
    try {
      acquire();
      if (isInterrupted) {
        PyErr_SetInterrupt();
      }
      return;
    } catch (const Raised&) {
      continue;
    }
  }
}

}  // namespace

OthersOut::OthersOut() {
  if (hold().depth == 0) {
    acquire();
  }
  ++hold().depth;
}

OthersOut::~OthersOut() {
  if (--hold().depth == 0) {
    release();
  }
}

OthersIn::OthersIn() : m_depth(std::exchange(hold().depth, 0)) {
  if (m_depth > 0) {
    release();
  }
}

OthersIn::~OthersIn() {
  if (m_depth > 0) {
    acquireAgain();
    hold().depth = m_depth;
  }
}
// NOLINTEND(bugprone-exception-escape)

}  // namespace quillon::python
