#pragma once

#include <pybind11/pybind11.h>

#include <exception>
#include <stdexcept>
#include <string>
#include <utility>

namespace quillon::python {

/// What a Python function raised on its way through the libraries. It is no `std::exception`, so
/// that nothing between here and Python takes it for a failure of its own.
class Raised {
 public:
  /// Keeps what was just caught.
  Raised() : m_error(std::current_exception()) {}

  [[noreturn]] void rethrow() const { std::rethrow_exception(m_error); }

 private:
  std::exception_ptr m_error;
};

/// An entry that is not there: a `KeyError`.
class NoEntry : public std::out_of_range {
 public:
  using std::out_of_range::out_of_range;
};

/// Calls `run()`, which may call Python functions; what they raise becomes `Raised`.
template <class Run>
auto passingOn(const Run& run) {
  try {
    return run();
  } catch (const pybind11::error_already_set&) {
    throw Raised();
  }
}

/// Makes the libraries' exceptions those of quillon._errors.
void registerErrors();

}  // namespace quillon::python
