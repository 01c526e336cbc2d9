#pragma once

#include "Sibling.h"

namespace quillon::python {

/// What is asked of a lazy array.
struct LazyRequest {
  Outline outline;
  object_model::StoredType type;
  std::string dtype;     ///< what numpy calls the type, such as "<f4" or "<M8[ns]"
  PyRef read;            ///< `read(start, stop)`: the values along the slowest dimension
  unsigned long window;  ///< about how many bytes it gives in a call
};

/// An array whose values a Python function gives, a window of them at a time. The last window is
/// kept.
/// Threads: any may read; the function is called by the one that does, with the GIL. Errors: what
/// it raises passes through, see `Raised`.
ArrayPointer lazyArray(const LazyRequest& request);

}  // namespace quillon::python
