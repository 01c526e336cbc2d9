#pragma once

#include <object_model/InvalidCall.h>
#include <quillon/compare/Compare.h>
#include <quillon/compare/Text.h>
#include <quillon/memory/Facets.h>
#include <quillon/memory/TypedArray.h>

#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "support/Interfaces.h"

namespace quillon::compare {

inline constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
inline constexpr double INFINITE = std::numeric_limits<double>::infinity();

inline std::vector<memory::Axis> axesOf(const std::vector<unsigned long>& shape) {
  std::vector<memory::Axis> axes;
  for (std::size_t k = 0; k < shape.size(); ++k) {
    axes.emplace_back("d" + std::to_string(k), shape[k]);
  }
  return axes;
}

inline unsigned long productOf(const std::vector<unsigned long>& shape) {
  unsigned long product = 1;
  for (const unsigned long extent : shape) {
    product *= extent;
  }
  return product;
}

/// How an array offers its values.
enum class Way { InPlace, Transposed, InBlocks };

/// Values of any stored type, given in storage order, whatever the way in which they are offered.
template <class T>
class StoredArray final : public memory::ArrayBase, public object_model::BulkValues {
 public:
  using Element = memory::ElementOf<T>;

  StoredArray(std::string name, const std::vector<unsigned long>& shape, std::vector<T> values,
              Way way = Way::InPlace)
      : ArrayBase(std::move(name), memory::ElementTraits<Element>::TYPE, axesOf(shape)),
        m_way(way),
        m_chunks(shape.size(), 2),
        m_values(std::make_unique<T[]>(values.size())) {
    const std::vector<unsigned long> steps = stepsOf(shape, way);
    for (const unsigned long step : steps) {
      m_strides.push_back(static_cast<long>(step * sizeof(T)));
    }
    for (std::size_t k = 0; k < values.size(); ++k) {
      std::size_t rest = k;
      std::size_t place = 0;
      for (std::size_t d = 0; d < shape.size(); ++d) {
        place += rest % shape[d] * steps[d];
        rest /= shape[d];
      }
      m_values[place] = values[k];
    }
  }

  double getValueAsDouble(const object_model::Tuple& index) const override {
    return at<double>(index);
  }
  long getValueAsInt(const object_model::Tuple& index) const override { return at<long>(index); }
  unsigned long getValueAsUInt(const object_model::Tuple& index) const override {
    return at<unsigned long>(index);
  }
  std::complex<double> getValueAsComplex(const object_model::Tuple& index) const override {
    return at<std::complex<double>>(index);
  }

  object_model::StoredType storedType() const override { return memory::StoredTraits<T>::TYPE; }
  object_model::ValuesInPlace valuesInPlace() const override {
    return m_way == Way::InBlocks ? object_model::ValuesInPlace()
                                  : object_model::ValuesInPlace{m_values.get(), m_strides.data()};
  }
  void readValues(const unsigned long* start, const unsigned long* extent,
                  void* destination) const override {
    std::vector<unsigned long> all(m_strides.size());
    for (std::size_t k = 0; k < all.size(); ++k) {
      all[k] = extent[k];
    }
    auto* to = static_cast<T*>(destination);
    for (unsigned long k = 0; k < productOf(all); ++k) {
      unsigned long rest = k;
      long place = 0;
      for (std::size_t d = 0; d < all.size(); ++d) {
        place += static_cast<long>(start[d] + rest % all[d]) * m_strides[d];
        rest /= all[d];
      }
      to[k] = m_values[static_cast<std::size_t>(place) / sizeof(T)];
    }
  }
  const unsigned long* chunkExtents() const override { return m_chunks.data(); }

 private:
  template <class U>
  U at(const object_model::Tuple& index) const {
    if constexpr (std::is_same_v<Element, U>) {
      long place = 0;
      for (std::size_t d = 0; d < m_strides.size(); ++d) {
        place += static_cast<long>(index[d]) * m_strides[d];
      }
      return static_cast<U>(m_values[static_cast<std::size_t>(place) / sizeof(T)]);
    } else {
      return U();
    }
  }

  static std::vector<unsigned long> stepsOf(const std::vector<unsigned long>& shape, Way way) {
    std::vector<unsigned long> steps(shape.size());
    unsigned long step = 1;
    for (std::size_t k = 0; k < shape.size(); ++k) {
      const std::size_t d = way == Way::Transposed ? shape.size() - 1 - k : k;
      steps[d] = step;
      step *= shape[d];
    }
    return steps;
  }

  Way m_way;
  std::vector<unsigned long> m_chunks;
  std::unique_ptr<T[]> m_values;
  std::vector<long> m_strides;
};

/// An array that is read by its accessor alone.
template <class T>
class AccessorArray final : public memory::ArrayBase {
 public:
  AccessorArray(std::string name, const std::vector<unsigned long>& shape, std::vector<T> values)
      : ArrayBase(std::move(name), memory::ElementTraits<T>::TYPE, axesOf(shape)),
        m_values(std::move(values)) {}

  double getValueAsDouble(const object_model::Tuple& index) const override {
    return at<double>(index);
  }
  long getValueAsInt(const object_model::Tuple& index) const override { return at<long>(index); }
  unsigned long getValueAsUInt(const object_model::Tuple& index) const override {
    return at<unsigned long>(index);
  }
  std::complex<double> getValueAsComplex(const object_model::Tuple& index) const override {
    return at<std::complex<double>>(index);
  }

 private:
  template <class U>
  U at(const object_model::Tuple& index) const {
    if constexpr (std::is_same_v<T, U>) {
      return m_values[offsetOf(index)];
    } else {
      return U();
    }
  }

  std::vector<T> m_values;
};

/// An array whose values cannot be had.
template <class Error>
class FailingArray final : public memory::ArrayBase {
 public:
  FailingArray(std::string name, Error error)
      : ArrayBase(std::move(name), object_model::ElementType::Double, {{"x", 2}}),
        m_error(std::move(error)) {}
  double getValueAsDouble(const object_model::Tuple& /*index*/) const override { throw m_error; }

 private:
  Error m_error;
};

/// Numbers with whatever an array may offer besides them.
class RichArray final : public memory::ArrayBase,
                        public memory::InPlaceValues<double>,
                        public memory::HasTimes {
 public:
  RichArray(std::string name, std::vector<memory::Axis> axes, std::vector<double> values)
      : ArrayBase(std::move(name), object_model::ElementType::Double, std::move(axes)),
        m_values(std::move(values)) {
    setPlace(m_values.data(), memory::packedStrides(size(), sizeof(double)));
  }

  std::vector<memory::Attribute> attributes() const override { return given; }
  std::shared_ptr<const object_model::Array> coordinates(unsigned long dimension) const override {
    return dimension < located.size() ? located[dimension] : nullptr;
  }
  memory::Calendar calendar() const override { return memory::Calendar::Standard; }
  void readTimes(const unsigned long* start, const unsigned long* extent,
                 long* destination) const override {
    for (unsigned long k = 0; k < extent[0]; ++k) {
      destination[k] = times[start[0] + k];
    }
  }

  std::vector<memory::Attribute> given;
  std::vector<std::shared_ptr<const object_model::Array>> located;
  std::vector<long> times;

 private:
  std::vector<double> m_values;
};

/// A dictionary of whatever names and entries.
class LooseDictionary final : public ::test::PlainDictionary {
 public:
  LooseDictionary(std::vector<std::string> names, const object_model::Data* entry)
      : PlainDictionaryOf("loose"), m_names(std::move(names)), m_entry(entry) {}
  unsigned long getNumOfData() const override { return m_names.size(); }
  std::string getDataName(int index) const override {
    return m_names[static_cast<std::size_t>(index)];
  }
  using PlainDictionaryOf::data;
  const object_model::Data* data(const std::string& name) const override {
    if (name == "thrown") {
      throw std::out_of_range("gone");
    }
    if (name == "closed") {
      throw object_model::InvalidCall("shut");
    }
    return m_entry;
  }

 private:
  std::vector<std::string> m_names;
  const object_model::Data* m_entry;
};

/// An array of one dimension in memory.
template <class T>
memory::TypedArray<T> row(const std::string& name, std::vector<T> values) {
  const std::vector<memory::Axis> axes = {{"x", values.size()}};
  return {name, axes, std::move(values)};
}

/// A dictionary of these entries.
template <class... Entry>
memory::Dictionary dictionary(const std::string& name, Entry&&... entries) {
  memory::Dictionary result(name);
  (result.add(std::forward<Entry>(entries)), ...);
  return result;
}

/// The lines of a comparison, all of them.
inline std::vector<std::string> linesOf(const object_model::Data& first,
                                        const object_model::Data& second,
                                        const Options& options = {}) {
  return lines(compare(first, second, options), {ALL_LINES, 0});
}

inline Options within(double absolute, double relative = 0) {
  Options options;
  options.tolerance = {absolute, relative};
  return options;
}

}  // namespace quillon::compare
