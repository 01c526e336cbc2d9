#include "LazyArray.h"

#include <pybind11/numpy.h>
#include <quillon/memory/ValueArray.h>

#include <algorithm>
#include <cstring>
#include <mutex>
#include <utility>

#include "Errors.h"
#include "OtherReaders.h"

namespace quillon::python {
namespace {

using object_model::Tuple;

/// Values that the function gave: those of some rows, where a row is all that has one index along
/// the slowest dimension.
struct Window {
  unsigned long firstRow = 0;
  unsigned long rows = 0;
  const char* values = nullptr;
  PyRef owner;
};

std::string shapeText(const py::handle& shape) { return py::str(shape).cast<std::string>(); }

/// Calls the function and keeps what it gave.
class Reader {
 public:
  Reader(const LazyRequest& request, unsigned long rowBytes)
      : m_name(request.outline.name),
        m_shape(request.outline.shape),
        m_dtype(request.dtype),
        m_read(request.read),
        m_rows(rowBytes == 0 ? 1 : std::max(1UL, request.window / rowBytes)) {}

  unsigned long rowsOfWindow() const { return std::min(m_rows, std::max(1UL, m_shape[0])); }

  /// The window that has the row.
  Window windowAt(unsigned long row) const {
    Window known = kept();
    if (row >= known.firstRow && row - known.firstRow < known.rows) {
      return known;
    }
    const unsigned long first = row - row % m_rows;
    Window window = fetch(first, std::min(m_rows, m_shape[0] - first));
    // The one before is let go of without the lock, as that may take the GIL.
    const std::lock_guard<std::mutex> guard(m_lock);
    std::swap(m_window, known);
    m_window = window;
    return window;
  }

 private:
  Window kept() const {
    const std::lock_guard<std::mutex> guard(m_lock);
    return m_window;
  }

  Window fetch(unsigned long first, unsigned long rows) const {
    const OthersIn others;  // as the function may be one of them
    const py::gil_scoped_acquire gil;
    return passingOn([&] {
      const py::object given = objectOf(m_read)(first, first + rows);
      const py::object asArray =
          py::module_::import("quillon._numpy").attr("window")(given, m_dtype);
      const auto values = asArray.cast<py::array>();
      requireShape(values, rows);
      return Window{first, rows, static_cast<const char*>(values.data()), keep(values)};
    });
  }

  void requireShape(const py::array& values, unsigned long rows) const {
    py::tuple wanted(m_shape.size());
    for (std::size_t k = 0; k < m_shape.size(); ++k) {
      wanted[k] = k == 0 ? rows : m_shape[k];
    }
    const py::object given = values.attr("shape");
    if (!given.equal(wanted)) {
      PyErr_SetString(PyExc_ValueError,
                      ("the lazy array '" + m_name + "' was given values of the shape " +
                       shapeText(given) + " where " + shapeText(wanted) + " was asked for")
                          .c_str());
      throw py::error_already_set();
    }
  }

  std::string m_name;
  std::vector<unsigned long> m_shape;
  std::string m_dtype;
  PyRef m_read;
  unsigned long m_rows;
  mutable std::mutex m_lock;
  mutable Window m_window;
};

unsigned long valuesInRow(const std::vector<unsigned long>& shape) {
  unsigned long count = 1;
  for (std::size_t k = 1; k < shape.size(); ++k) {
    count *= shape[k];
  }
  return count;
}

template <class T>
class LazyArray final : public memory::ValueArray<T>, public object_model::BulkValues {
 public:
  explicit LazyArray(const LazyRequest& request)
      : memory::ValueArray<T>(request.outline.name, axesOf(request.outline)),
        m_rowValues(valuesInRow(request.outline.shape)),
        m_reader(request, m_rowValues * sizeof(T)),
        m_chunks(reversed(request.outline.shape)) {
    m_chunks.back() = m_reader.rowsOfWindow();
    for (unsigned long& extent : m_chunks) {
      extent = std::max(1UL, extent);
    }
  }

  memory::ResultOf<T> valueAt(const Tuple& index) const override {
    const unsigned long offset = this->offsetOf(index);
    const unsigned long row = offset / m_rowValues;
    const Window window = m_reader.windowAt(row);
    T value{};
    std::memcpy(
        &value,
        window.values + ((row - window.firstRow) * m_rowValues + offset % m_rowValues) * sizeof(T),
        sizeof(T));
    return value;
  }

  object_model::StoredType storedType() const override { return memory::StoredTraits<T>::TYPE; }
  const unsigned long* chunkExtents() const override { return m_chunks.data(); }

  void readValues(const unsigned long* start, const unsigned long* extent,
                  void* destination) const override {
    const unsigned long rank = m_chunks.size();
    char* to = static_cast<char*>(destination);
    if (std::find(extent, extent + rank, 0UL) != extent + rank) {
      return;
    }
    const unsigned long end = start[rank - 1] + extent[rank - 1];
    for (unsigned long row = start[rank - 1]; row < end;) {
      const Window window = m_reader.windowAt(row);
      const unsigned long stop = std::min(end, window.firstRow + window.rows);
      for (; row < stop; ++row) {
        to = copyRow(window.values + (row - window.firstRow) * m_rowValues * sizeof(T), start,
                     extent, rank - 1, to);
      }
    }
  }

 private:
  /// Copies the box within a row, of which `from` is the first value, and returns the end of the
  /// copy. `rank` is the number of dimensions within a row.
  char* copyRow(const char* from, const unsigned long* start, const unsigned long* extent,
                unsigned long rank, char* to) const {
    if (rank == 0) {
      std::memcpy(to, from, sizeof(T));
      return to + sizeof(T);
    }
    unsigned long step = sizeof(T);
    for (unsigned long k = 0; k + 1 < rank; ++k) {
      step *= this->size()[k];
    }
    from += start[rank - 1] * step;
    if (rank == 1) {
      std::memcpy(to, from, extent[0] * step);
      return to + extent[0] * step;
    }
    for (unsigned long k = 0; k < extent[rank - 1]; ++k) {
      to = copyRow(from + k * step, start, extent, rank - 1, to);
    }
    return to;
  }

  unsigned long m_rowValues;
  Reader m_reader;
  std::vector<unsigned long> m_chunks;
};

}  // namespace

ArrayPointer lazyArray(const LazyRequest& request) {
  ArrayPointer array;
  memory::visitStoredType(request.type, [&](auto tag) {
    array = std::make_shared<LazyArray<typename decltype(tag)::Type>>(request);
  });
  return array;
}

}  // namespace quillon::python
