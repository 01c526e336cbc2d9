#pragma once

#include <object_model/TupleX.h>
#include <tabra/DataFrameView.h>

#include <array>
#include <cstring>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "support/Interfaces.h"

namespace test {

/// Decides what liars answer: the truth for the first calls, then whatever the draws say. When
/// there have been many calls all fail, so that no lie goes on for ever.
class Whims {
 public:
  Whims(std::size_t truthfulCalls, std::vector<unsigned int> draws)
      : m_truthfulCalls(truthfulCalls), m_draws(std::move(draws)) {}

  /// One of `count` answers, of which 0 is the truth.
  std::size_t pick(std::size_t count) {
    ++m_calls;
    if (m_calls > 2000) {
      throw std::runtime_error("enough");
    }
    if (m_calls <= m_truthfulCalls || m_draws.empty()) {
      return 0;
    }
    return m_draws[m_calls % m_draws.size()] % count;
  }

  template <class T>
  const T& oneOf(const std::vector<T>& answers) {
    return answers[pick(answers.size())];
  }

  /// Throws now and then, when it may lie.
  void perhapsThrow() {
    if (pick(16) == 1) {
      throw std::domain_error("a whim");
    }
  }

 private:
  std::size_t m_truthfulCalls;
  std::vector<unsigned int> m_draws;
  std::size_t m_calls = 0;
};

/// An axis that changes its name.
class LyingAxis : public object_model::AxisInfo {
 public:
  LyingAxis(Whims& whims, std::string name) : m_whims(whims), m_name(std::move(name)) {}
  object_model::AxisType getAxisType() const override { return object_model::AxisType::Time; }
  std::string getAxisName() const override {
    m_whims.perhapsThrow();
    return m_whims.oneOf<std::string>({m_name, "t", "u", "", std::string(100, 'v')});
  }

 private:
  Whims& m_whims;
  std::string m_name;
};

/// A descriptor that changes name and element type, and has no axis or fails for some dimensions.
class LyingArrayInfo : public PlainArrayInfo {
 public:
  explicit LyingArrayInfo(Whims& whims) : m_whims(whims) {}
  const std::string& getName() const override {
    static const std::vector<std::string> NAMES = {"x", "y", "", std::string(100, 'n')};
    m_whims.perhapsThrow();
    return m_whims.oneOf(NAMES);
  }
  object_model::ElementType getElementType() const override {
    m_whims.perhapsThrow();
    return static_cast<object_model::ElementType>(m_whims.oneOf<int>({1, 2, 0, 6, 4, 3, 5, 7, 1}));
  }
  const object_model::AxisInfo* getAxisInfo(unsigned long dimension) const override {
    if (m_whims.pick(8) == 1) {
      return nullptr;
    }
    return &m_axes.at(m_whims.oneOf<unsigned long>({dimension, dimension, 0, 7}));
  }

 private:
  Whims& m_whims;
  std::vector<LyingAxis> m_axes = {{m_whims, "t"}, {m_whims, "u"}, {m_whims, "v"}, {m_whims, "w"}};
};

/// An array whose shape is another one whenever it is asked for, under those who hold it as well.
/// It reads the whole of every position that it is given.
class LyingArray : public PlainArray {
 public:
  static constexpr const char* NO_SUCH_POSITION = "a position that no shape of this array has";

  explicit LyingArray(Whims& whims) : m_whims(whims), m_info(whims) {}

  /// What a dictionary element is.
  std::function<const object_model::Data*()> element = [] { return nullptr; };

  const object_model::DataInfo* getInformation() const override { return &m_info; }
  bool isArray() const override { return m_whims.pick(32) != 1; }
  const object_model::Tuple& size() const override {
    static const std::vector<std::vector<unsigned long>> SHAPES = {
        {2, 3},          {2},   {}, {3, 2, 2}, {2, 1, 2, 1}, {0, 3}, {1, 2, 1, 2, 1}, {5, 5},
        {1UL << 63U, 0}, {1, 1}};
    m_whims.perhapsThrow();
    const auto& shape = m_whims.oneOf(SHAPES);
    m_shape = object_model::TupleX(shape.data(), shape.size());
    return m_shape;
  }
  std::string getPhysicalUnit() const override { return m_whims.oneOf<std::string>({"m", ""}); }
  double getValueAsDouble(const object_model::Tuple& at) const override { return value(at); }
  unsigned long getValueAsUInt(const object_model::Tuple& at) const override { return value(at); }
  long getValueAsInt(const object_model::Tuple& at) const override { return value(at); }
  bool getValueAsBoolean(const object_model::Tuple& at) const override { return value(at) == 1; }
  std::string getValueAsString(const object_model::Tuple& at) const override {
    return std::string(value(at) * 40U, 's');
  }
  std::complex<double> getValueAsComplex(const object_model::Tuple& at) const override {
    return value(at);
  }
  const object_model::Data* getValueAsDictionary(const object_model::Tuple& at) const override {
    value(at);
    return element();
  }

 private:
  unsigned char value(const object_model::Tuple& at) const {
    unsigned long sum = 0;
    for (unsigned long k = 0; k < at.size(); ++k) {
      sum += at[k];
    }
    if (at.size() > 5 || sum > 1000) {
      throw std::logic_error(NO_SUCH_POSITION);
    }
    m_whims.perhapsThrow();
    return static_cast<unsigned char>(m_whims.pick(2));
  }

  Whims& m_whims;
  LyingArrayInfo m_info;
  mutable object_model::TupleX m_shape{2, 3};
};

/// A dictionary whose number of entries, their names and what they are change all the time.
class LyingDictionary : public PlainDictionary {
 public:
  explicit LyingDictionary(Whims& whims) : m_whims(whims) {}

  /// What the entries are; null as well, later.
  std::vector<object_model::Data*> entries = {nullptr};

  unsigned long getNumOfData() const override {
    m_whims.perhapsThrow();
    return m_whims.oneOf<unsigned long>({2, 0, 1, 3, 1UL << 32U, ~0UL});
  }
  std::string getDataName(int index) const override {
    m_whims.perhapsThrow();
    return m_whims.oneOf<std::string>({std::to_string(index), "x", "", std::string(100, 'd')});
  }
  using PlainDictionary::data;
  object_model::Data* data(const std::string& /*name*/) override { return entry(); }
  const object_model::Data* data(const std::string& /*name*/) const override { return entry(); }

 private:
  object_model::Data* entry() const {
    m_whims.perhapsThrow();
    return m_whims.oneOf(entries);
  }

  Whims& m_whims;
};

/// A table whose shape, names and types change all the time. It writes all that it is asked to
/// read, unless it writes nothing, and reads all that it is told to write.
class LyingFrame : public tabra::DataFrameView {
 public:
  explicit LyingFrame(Whims& whims) : m_whims(whims) {}

  const std::array<unsigned long, 2>& shape() const override {
    static const std::vector<std::array<unsigned long, 2>> SHAPES = {
        {3, 4},   {0, 0}, {3, 1}, {1, 4},         {5, 9},
        {0, 3},   {2, 0}, {1, 4}, {3, 1UL << 63}, {3, (1UL << 61) + 1},
        {~0UL, 1}};
    m_whims.perhapsThrow();
    m_shape = m_whims.oneOf(SHAPES);
    return m_shape;
  }
  const std::string& columnName(unsigned long /*column*/) const override {
    static const std::vector<std::string> NAMES = {"name", "", std::string(100, 'c')};
    m_whims.perhapsThrow();
    return m_whims.oneOf(NAMES);
  }
  const std::string& columnUnit(unsigned long /*column*/) const override { return m_unit; }
  void setColumnUnit(unsigned long /*column*/, const std::string& unit) override {
    m_whims.perhapsThrow();
    m_unit = unit;
  }
  tabra::DataType columnDataType(unsigned long /*column*/) const override {
    m_whims.perhapsThrow();
    return tabra::DataType(static_cast<tabra::DataTypeId>(
        m_whims.oneOf<unsigned int>({0x10140, 0x20140, 0x30140, 0x99})));
  }
  void read(unsigned long /*column*/, unsigned long /*firstRow*/, unsigned long count,
            void* destination) const override {
    m_whims.perhapsThrow();
    if (destination != nullptr && m_whims.pick(4) != 1) {
      std::memset(destination, 1, count * 8);
    }
  }
  void write(unsigned long /*column*/, unsigned long /*firstRow*/, unsigned long count,
             const void* source) override {
    m_whims.perhapsThrow();
    m_written.resize(count);
    std::memcpy(m_written.data(), source, count * 8);
  }
  void addColumn(const std::string& name, tabra::DataType /*type*/) override {
    m_whims.perhapsThrow();
    m_unit = name;
  }
  void addRows(unsigned long /*firstRow*/, unsigned long /*count*/) override {
    m_whims.perhapsThrow();
  }
  void removeColumn(unsigned long /*column*/) override { m_whims.perhapsThrow(); }
  void removeRows(unsigned long /*firstRow*/, unsigned long /*count*/) override {
    m_whims.perhapsThrow();
  }

 private:
  Whims& m_whims;
  mutable std::array<unsigned long, 2> m_shape = {};
  std::string m_unit;
  std::vector<unsigned long> m_written;
};

/// An array of Int over axes of any name and extent, all of whose elements are 7. It claims them
/// without holding them.
class ClaimingArray : public PlainArray {
 public:
  using Axes = std::vector<std::pair<std::string, unsigned long>>;
  ClaimingArray(const std::string& name, const Axes& axes) : m_info(name, axes) {
    for (const auto& axis : axes) {
      m_extents.push_back(axis.second);
    }
    m_shape = object_model::TupleX(m_extents.data(), m_extents.size());
  }
  const object_model::DataInfo* getInformation() const override { return &m_info; }
  const object_model::Tuple& size() const override { return m_shape; }
  long getValueAsInt(const object_model::Tuple& /*index*/) const override { return 7; }

 private:
  class Axis : public PlainAxisInfo {
   public:
    explicit Axis(std::string name) : m_name(std::move(name)) {}
    std::string getAxisName() const override { return m_name; }

   private:
    std::string m_name;
  };
  class Info : public PlainArrayInfo {
   public:
    Info(const std::string& name, const Axes& axes)
        : PlainArrayInfo(name, object_model::ElementType::Int) {
      for (const auto& axis : axes) {
        m_axes.emplace_back(axis.first);
      }
    }
    const object_model::AxisInfo* getAxisInfo(unsigned long k) const override {
      return &m_axes.at(k);
    }

   private:
    std::vector<Axis> m_axes;
  };

  Info m_info;
  std::vector<unsigned long> m_extents;
  object_model::TupleX m_shape{0UL};
};

}  // namespace test
