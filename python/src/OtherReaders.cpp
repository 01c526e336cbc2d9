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

void release() {
  const py::gil_scoped_acquire gil;
  locks().attr("release")(objectOf(std::exchange(hold().lock, nullptr)));
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
    acquire();
    hold().depth = m_depth;
  }
}

}  // namespace quillon::python
