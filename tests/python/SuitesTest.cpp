// The suites for array and dictionary classes over those of the Python package, as a module of
// Python whose function runs them.
#include <pybind11/eval.h>
#include <pybind11/numpy.h>
#include <pybind11/stl.h>
#include <quillon/testing/ArraySuite.h>
#include <quillon/testing/DictionarySuite.h>

#include <algorithm>
#include <complex>
#include <memory>
#include <string>
#include <vector>

#include "LazyArray.h"
#include "Numpy.h"
#include "SharedDictionary.h"

namespace quillon::testing {
namespace {

namespace py = pybind11;
using python::ArrayPointer;

/// The values from 0 to 5.
template <class T>
std::vector<T> sixValues() {
  std::vector<T> values;
  for (int k = 0; k < 6; ++k) {
    values.push_back(static_cast<T>(static_cast<float>(k)));
  }
  return values;
}

/// Two rows of three values, in numpy's order.
template <class T>
py::array twoRows() {
  py::array_t<T> array({2, 3});
  const std::vector<T> values = sixValues<T>();
  std::copy(values.begin(), values.end(), array.mutable_data());
  return std::move(array);
}

/// What a Python expression gives, in which numpy is `np`.
py::object evaluated(const char* expression) {
  py::dict names;
  names["np"] = py::module_::import("numpy");
  return py::eval(expression, names);
}

py::array arrayFrom(const char* expression) { return evaluated(expression).cast<py::array>(); }

template <class T>
struct OverNumpy {
  static ArrayPointer make() { return python::arrayOver("a", {"y", "x"}, twoRows<T>()); }
  static std::vector<T> values() { return sixValues<T>(); }
};
using NumpyArrays =
    ::testing::Types<OverNumpy<signed char>, OverNumpy<short>, OverNumpy<int>, OverNumpy<long>,
                     OverNumpy<unsigned char>, OverNumpy<unsigned short>, OverNumpy<unsigned int>,
                     OverNumpy<unsigned long>, OverNumpy<float>, OverNumpy<double>,
                     OverNumpy<std::complex<float>>, OverNumpy<std::complex<double>>,
                     OverNumpy<bool>>;
INSTANTIATE_TYPED_TEST_SUITE_P(OverNumpy, ArraySuite, NumpyArrays, );

struct OverAView {
  static ArrayPointer make() {
    return python::arrayOver("a", {"x"}, arrayFrom("np.arange(6.0)[::-2]"));
  }
  static std::vector<double> values() { return {5, 3, 1}; }
};

struct OverOneValue {
  static ArrayPointer make() { return python::arrayOver("a", {}, arrayFrom("np.array(7)")); }
  static std::vector<long> values() { return {7}; }
};

struct OverMoments {
  static ArrayPointer make() {
    return python::arrayOver(
        "a", {"x"}, arrayFrom("np.array(['1970-01-01T00:00:01', 'NaT', '1969-12-31'], 'M8[ns]')"));
  }
  static std::vector<long> values() {
    return {1'000'000'000, memory::MISSING_TIME, -86'400'000'000'000};
  }
};

struct OverDurations {
  static ArrayPointer make() {
    return python::arrayOver("a", {"x"}, arrayFrom("np.array([3, 'NaT'], 'm8[25s]')"));
  }
  static std::vector<long> values() { return {3, memory::MISSING_TIME}; }
};

struct OfTexts {
  static ArrayPointer make() {
    return python::arrayOfTexts({"a", {"y", "x"}, {1, 2}}, evaluated("['one', 'two']"));
  }
  static std::vector<std::string> values() { return {"one", "two"}; }
};

struct OfDictionaries {
  static ArrayPointer make() {
    return python::arrayOfDictionaries({"a", {"x"}, {2}},
                                       {std::make_shared<python::SharedDictionary>("one"),
                                        std::make_shared<python::SharedDictionary>("two")});
  }
};

using OtherArrays =
    ::testing::Types<OverAView, OverOneValue, OverMoments, OverDurations, OfTexts, OfDictionaries>;
INSTANTIATE_TYPED_TEST_SUITE_P(OfPython, ArraySuite, OtherArrays, );

/// Lets everybody through.
class OpenGate final : public python::Gate {
 public:
  void enter() override {}
  void leave() noexcept override {}
};

/// An entry with the values of another array, which may stand behind a gate.
template <class Original, bool HAS_GATE = false>
struct SiblingOf {
  static ArrayPointer make() {
    const ArrayPointer original = Original::make();
    original->setAttribute("k", "v");
    return python::siblingOf(original, "b", HAS_GATE ? std::make_shared<OpenGate>() : nullptr);
  }
  static auto values() { return Original::values(); }
};
template <>
struct SiblingOf<OfDictionaries> {
  static ArrayPointer make() { return python::siblingOf(OfDictionaries::make(), "b"); }
};

using Siblings =
    ::testing::Types<SiblingOf<OverNumpy<float>>, SiblingOf<OverNumpy<bool>, true>,
                     SiblingOf<OverNumpy<std::complex<float>>>,
                     SiblingOf<OverNumpy<unsigned short>>, SiblingOf<OverAView>,
                     SiblingOf<OverMoments>, SiblingOf<OverDurations>, SiblingOf<OfTexts>,
                     SiblingOf<OfTexts, true>, SiblingOf<OfDictionaries>>;
INSTANTIATE_TYPED_TEST_SUITE_P(Sibling, ArraySuite, Siblings, );

/// Read in windows of so many bytes.
template <class T, unsigned long WINDOW>
struct Lazy {
  static ArrayPointer make() {
    const py::array values = twoRows<T>();
    const py::cpp_function read(
        [values](long first, long last) { return values[py::slice(first, last, 1)]; });
    const std::string dtype = py::str(static_cast<const py::object&>(values.dtype().attr("str")));
    return python::lazyArray({{"a", {"y", "x"}, {2, 3}},
                              memory::StoredTraits<T>::TYPE,
                              dtype,
                              python::keep(read),
                              WINDOW});
  }
  static std::vector<T> values() { return sixValues<T>(); }
};
using LazyArrays = ::testing::Types<Lazy<double, 1>, Lazy<double, 1'000>, Lazy<bool, 3>,
                                    Lazy<short, 1>, Lazy<std::complex<float>, 24>>;
INSTANTIATE_TYPED_TEST_SUITE_P(Lazy, ArraySuite, LazyArrays, );

struct Shared {
  static std::shared_ptr<python::SharedDictionary> make() {
    auto dictionary = std::make_shared<python::SharedDictionary>("d");
    dictionary->set({OverNumpy<double>::make(), nullptr, nullptr});
    dictionary->set({nullptr, nullptr, std::make_shared<python::SharedDictionary>("inner")});
    dictionary->set({python::siblingOf(OfTexts::make(), ""), nullptr, nullptr});
    dictionary->setAttribute("k", "v");
    return dictionary;
  }
  static std::vector<std::string> names() { return {"a", "inner", ""}; }
};

struct CopyOfShared {
  static std::shared_ptr<python::SharedDictionary> make() {
    return python::copyOf(*Shared::make(), "copy");
  }
  static std::vector<std::string> names() { return Shared::names(); }
};

using Dictionaries = ::testing::Types<Shared, CopyOfShared>;
INSTANTIATE_TYPED_TEST_SUITE_P(OfPython, DictionarySuite, Dictionaries, );

int run() {
  int count = 1;
  std::string name = "python_suites";
  char* arguments[] = {name.data(), nullptr};
  ::testing::InitGoogleTest(&count, arguments);
  return RUN_ALL_TESTS();
}

}  // namespace
}  // namespace quillon::testing

PYBIND11_MODULE(python_suites, module) {
  module.def("run", &quillon::testing::run, "Run the tests; 0 where all of them pass.");
}
