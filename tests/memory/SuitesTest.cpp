#include <quillon/memory/Selection.h>
#include <quillon/memory/StridedArray.h>
#include <quillon/memory/TimeArray.h>
#include <quillon/testing.h>

#include <complex>
#include <stdexcept>
#include <string>

#include "support/Interfaces.h"

namespace quillon::testing {
namespace {

using memory::Axis;
using memory::Dictionary;

/// Six values of a type, as far as it has so many.
template <class T>
std::vector<T> sixValues() {
  std::vector<T> values;
  for (int k = 0; k < 6; ++k) {
    if constexpr (std::is_same_v<T, std::string>) {
      values.push_back(std::string(static_cast<std::size_t>(k), 'x'));
    } else {
      values.push_back(static_cast<T>(static_cast<float>(k % 2 == 0 ? k : 10 * k)));
    }
  }
  return values;
}

const std::vector<Axis> AXES = {{"x", 3}, {"y", 2}};

template <class T>
struct Typed {
  static auto make() {
    auto array = std::make_unique<memory::TypedArray<T>>("a", AXES, values());
    array->setAttribute("k", "v");
    array->setAttribute("l", "v");
    array->setCoordinates(1, std::make_shared<memory::DoubleArray>("y", std::vector<Axis>{{"y", 2}},
                                                                   std::vector<double>{1, 2}));
    return array;
  }
  static std::vector<T> values() { return sixValues<T>(); }
};

using TypedArrays =
    ::testing::Types<Typed<signed char>, Typed<short>, Typed<int>, Typed<long>,
                     Typed<unsigned char>, Typed<unsigned short>, Typed<unsigned int>,
                     Typed<unsigned long>, Typed<float>, Typed<double>, Typed<std::complex<float>>,
                     Typed<std::complex<double>>, Typed<bool>, Typed<std::string>>;
INSTANTIATE_TYPED_TEST_SUITE_P(Typed, ArraySuite, TypedArrays, );

struct OfDictionaries {
  static std::unique_ptr<object_model::Array> make() {
    std::vector<Dictionary> elements;
    elements.emplace_back("first");
    elements.emplace_back("second");
    return std::make_unique<memory::DictionaryArray>("a", std::vector<Axis>{{"x", 2}},
                                                     std::move(elements));
  }
};

struct Scalar {
  static std::unique_ptr<object_model::Array> make() {
    return std::make_unique<memory::DoubleArray>("a", std::vector<Axis>{}, values());
  }
  static std::vector<double> values() { return {0.5}; }
};

struct Empty {
  static std::unique_ptr<object_model::Array> make() {
    return std::make_unique<memory::DoubleArray>("a", std::vector<Axis>{{"x", 3}, {"y", 0}},
                                                 values());
  }
  static std::vector<double> values() { return {}; }
};

/// The last dimension lies closest together, and backwards.
template <class T>
struct Strided {
  static std::unique_ptr<object_model::Array> make() {
    const auto memory = std::make_shared<std::array<T, 6>>();
    const std::vector<T> values = sixValues<T>();
    for (std::size_t k = 0; k < 6; ++k) {
      (*memory)[2 * (k % 3) + 1 - k / 3] = values[k];
    }
    const long step = sizeof(T);
    return std::make_unique<memory::StridedArray<T>>("a", AXES, memory->data() + 1,
                                                     std::vector<long>{2 * step, -step}, memory);
  }
  static std::vector<T> values() { return sixValues<T>(); }
};

struct Times {
  static std::unique_ptr<object_model::Array> make() {
    return std::make_unique<memory::TimeArray>("t", AXES, values());
  }
  static std::vector<long> values() { return {0, 1, 2, memory::MISSING_TIME, -4, 5}; }
};

/// It offers nothing besides its values.
struct BareArray {
  class Bare final : public ::test::PlainArray {
   public:
    const object_model::DataInfo* getInformation() const override { return &m_descriptor; }
    double getValueAsDouble(const object_model::Tuple& /*index*/) const override { return 0.5; }

   private:
    memory::ArrayDescriptor m_descriptor{
        "a", object_model::ElementType::Double, {{"x", 1}, {"y", 1}}};
  };
  static std::unique_ptr<object_model::Array> make() { return std::make_unique<Bare>(); }
  static std::vector<double> values() { return {0.5}; }
};

using OtherArrays =
    ::testing::Types<OfDictionaries, Scalar, Empty, Strided<short>, Strided<float>, Strided<bool>,
                     Strided<std::complex<double>>, Times, BareArray>;
INSTANTIATE_TYPED_TEST_SUITE_P(Other, ArraySuite, OtherArrays, );

struct InMemory {
  static std::unique_ptr<object_model::Dictionary> make() {
    auto dictionary = std::make_unique<Dictionary>("d");
    dictionary->add(memory::DoubleArray("z", {}, {1}));
    dictionary->add(Dictionary("a"));
    dictionary->add(memory::IntArray("", {}, {1}));
    dictionary->add(memory::IntArray("missing", {}, {1}));
    dictionary->setAttribute("k", "v");
    return dictionary;
  }
  static std::vector<std::string> names() { return {"z", "a", "", "missing"}; }
};

struct WithoutEntries {
  static std::unique_ptr<object_model::Dictionary> make() {
    return std::make_unique<Dictionary>("d");
  }
};

/// A selection that keeps the group that it is of.
struct SelectionOfGroup {
  static constexpr bool BORROWS_ENTRIES = true;
  static std::unique_ptr<object_model::Dictionary> make() {
    static const std::unique_ptr<object_model::Dictionary> GROUP = InMemory::make();
    return std::make_unique<memory::Selection>(*GROUP, std::vector<std::string>{"", "z"});
  }
  static std::vector<std::string> names() { return {"z", ""}; }
};

/// It offers nothing besides its one entry.
struct BareDictionary {
  class Bare final : public ::test::PlainDictionary {
   public:
    Bare() {
      m_entry.setParent(this);
      add(m_entry);
    }
    using ::test::PlainDictionary::data;
    object_model::Data* data(const std::string& name) override {
      return name == "a" ? &m_entry : throw std::out_of_range(name);
    }
    const object_model::Data* data(const std::string& name) const override {
      return name == "a" ? &m_entry : throw std::out_of_range(name);
    }

   private:
    memory::DoubleArray m_entry{"a", {}, {1}};
  };
  static std::unique_ptr<object_model::Dictionary> make() { return std::make_unique<Bare>(); }
  static std::vector<std::string> names() { return {"a"}; }
};

using Dictionaries = ::testing::Types<InMemory, WithoutEntries, SelectionOfGroup, BareDictionary>;
INSTANTIATE_TYPED_TEST_SUITE_P(Own, DictionarySuite, Dictionaries, );

}  // namespace
}  // namespace quillon::testing
