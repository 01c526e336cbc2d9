#include "ReportState.h"

#include <pybind11/complex.h>
#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include "Outline.h"

namespace quillon::python {
namespace {

using compare::Value;

py::object pythonOf(std::monostate /*nothing*/) { return py::none(); }
py::object pythonOf(const std::string& text) { return textOf(text); }
py::object pythonOf(bool value) { return py::bool_(value); }
py::object pythonOf(long value) { return py::int_(value); }
py::object pythonOf(unsigned long value) { return py::int_(value); }
py::object pythonOf(double value) { return py::float_(value); }
py::object pythonOf(const std::complex<double>& value) { return py::cast(value); }

template <class T>
py::object numpyScalar(T value) {
  return py::array_t<T>(1, &value)[py::int_(0)];
}
py::object pythonOf(float value) { return numpyScalar(value); }
py::object pythonOf(const std::complex<float>& value) { return numpyScalar(value); }

/// The value with the number of its type, which Python's own types do not tell.
py::tuple packed(const Value& value) {
  py::object content = valueOf(value);
  if (std::holds_alternative<float>(value) || std::holds_alternative<std::complex<float>>(value)) {
    content = content.attr("item")();
  }
  return py::make_tuple(value.index(), content);
}

template <std::size_t INDEX = 0>
Value unpacked(std::size_t index, const py::handle& content) {
  if constexpr (INDEX == std::variant_size_v<Value>) {
    throw py::value_error("no report has a value of this kind");
  } else {
    if (index != INDEX) {
      return unpacked<INDEX + 1>(index, content);
    }
    using T = std::variant_alternative_t<INDEX, Value>;
    if constexpr (std::is_same_v<T, std::monostate>) {
      return {};
    } else if constexpr (std::is_same_v<T, std::string>) {
      return utf8Of(content);
    } else if constexpr (std::is_same_v<T, std::complex<float>>) {
      return std::complex<float>(content.cast<std::complex<double>>());
    } else {
      return content.cast<T>();
    }
  }
}

Value unpacked(const py::handle& state) {
  const auto pair = state.cast<py::tuple>();
  return unpacked(pair[0].cast<std::size_t>(), pair[1]);
}

template <class List, class Pack>
py::list listOf(const List& list, const Pack& pack) {
  py::list result;
  for (const auto& item : list) {
    result.append(pack(item));
  }
  return result;
}

template <class T, class Unpack>
std::vector<T> vectorOf(const py::handle& list, const Unpack& unpack) {
  std::vector<T> result;
  for (const py::handle& item : list) {
    result.push_back(unpack(item.cast<py::tuple>()));
  }
  return result;
}

py::tuple packedPlace(const compare::Place& place) {
  return py::make_tuple(textOf(place.dimension), place.index, packed(place.coordinate));
}

compare::Place placeOf(const py::tuple& state) {
  return {utf8Of(state[0]), state[1].cast<unsigned long>(), unpacked(state[2])};
}

py::tuple packedPair(const compare::PlacedPair& pair) {
  return py::make_tuple(listOf(pair.at, packedPlace), pair.delta, packed(pair.first),
                        packed(pair.second));
}

compare::PlacedPair pairOf(const py::tuple& state) {
  return {vectorOf<compare::Place>(state[0], placeOf), state[1].cast<double>(), unpacked(state[2]),
          unpacked(state[3])};
}

py::tuple packedRow(const compare::Difference& row) {
  return py::make_tuple(textOf(row.path), static_cast<int>(row.reason), row.count, row.size,
                        row.missing, listOf(row.largest, packedPair), row.largestRelative, row.mean,
                        packed(row.first), packed(row.second));
}

compare::Difference rowOf(const py::tuple& state) {
  return {utf8Of(state[0]),
          static_cast<compare::Reason>(state[1].cast<int>()),
          state[2].cast<unsigned long>(),
          state[3].cast<unsigned long>(),
          state[4].cast<unsigned long>(),
          vectorOf<compare::PlacedPair>(state[5], pairOf),
          state[6].cast<double>(),
          state[7].cast<double>(),
          unpacked(state[8]),
          unpacked(state[9])};
}

}  // namespace

py::object valueOf(const Value& value) {
  return std::visit([](const auto& content) { return pythonOf(content); }, value);
}

py::tuple stateOf(const compare::Report& report) {
  const auto entry = [](const compare::NotCompared& some) {
    return py::make_tuple(textOf(some.path), textOf(some.reason));
  };
  return py::make_tuple(report.same, report.values, listOf(report.rows, packedRow),
                        listOf(report.notCompared, entry), report.tolerance.absolute,
                        report.tolerance.relative, report.nanEqual);
}

compare::Report reportOf(const py::tuple& state) {
  const auto entry = [](const py::tuple& some) {
    return compare::NotCompared{utf8Of(some[0]), utf8Of(some[1])};
  };
  compare::Report report;
  report.same = state[0].cast<bool>();
  report.values = state[1].cast<unsigned long>();
  report.rows = vectorOf<compare::Difference>(state[2], rowOf);
  report.notCompared = vectorOf<compare::NotCompared>(state[3], entry);
  report.tolerance = {state[4].cast<double>(), state[5].cast<double>()};
  report.nanEqual = state[6].cast<bool>();
  return report;
}

py::tuple stateOfFigures(const compare::Figures& figures) {
  const auto pair = [](const compare::Pair& some) {
    return py::make_tuple(some.offset, some.delta, packed(some.first), packed(some.second));
  };
  return py::make_tuple(figures.values, figures.count, figures.missing, figures.deltas, figures.sum,
                        figures.rest, figures.largestRelative, listOf(figures.largest, pair),
                        figures.kept);
}

compare::Figures figuresOfState(const py::tuple& state) {
  const auto pair = [](const py::tuple& some) {
    return compare::Pair{some[0].cast<unsigned long>(), some[1].cast<double>(), unpacked(some[2]),
                         unpacked(some[3])};
  };
  compare::Figures figures;
  figures.values = state[0].cast<unsigned long>();
  figures.count = state[1].cast<unsigned long>();
  figures.missing = state[2].cast<unsigned long>();
  figures.deltas = state[3].cast<unsigned long>();
  figures.sum = state[4].cast<double>();
  figures.rest = state[5].cast<double>();
  figures.largestRelative = state[6].cast<double>();
  figures.largest = vectorOf<compare::Pair>(state[7], pair);
  figures.kept = state[8].cast<unsigned long>();
  return figures;
}

}  // namespace quillon::python
