#pragma once

#include <object_model/Array.h>
#include <object_model/TupleX.h>

#include <array>
#include <limits>
#include <memory>
#include <vector>

namespace object_model {

/// A read-only array that shows another one with its dimensions in another order and with extra
/// dimensions, along which the values are repeated.
///
/// It has no descriptor of its own: element type and axis names are asked of the wrapped array.
/// That one is borrowed and must outlive the proxy.
class ArrayProxy final : public Array {
 public:
  /// In the axis map: the dimension stands for no axis of the wrapped array.
  static constexpr unsigned long NO_AXIS = std::numeric_limits<unsigned long>::max();

  class Reader;

  /// `axisMap` has, for each of the proxy's dimensions, the axis of `wrapped` that it stands for,
  /// or NO_AXIS. A wrapped axis that no dimension stands for is read at 0; where two dimensions
  /// stand for the same axis, the later one counts.
  ArrayProxy(const unsigned long* extents, unsigned long count, std::vector<unsigned long> axisMap,
             Array* wrapped);
  ~ArrayProxy() override;

  /// @throws std::runtime_error "Not Implemented"
  const DataInfo* getInformation() const override;
  const Data* parent() const override;
  Data* parent() override;
  /// @throws std::runtime_error "Not Implemented"
  void setParent(Data* parent) override;

  double getValueAsDouble(const Tuple& index) const override;
  unsigned long getValueAsUInt(const Tuple& index) const override;
  long getValueAsInt(const Tuple& index) const override;
  std::string getValueAsString(const Tuple& index) const override;
  const Data* getValueAsDictionary(const Tuple& index) const override;
  bool getValueAsBoolean(const Tuple& index) const override;
  std::complex<double> getValueAsComplex(const Tuple& index) const override;

  const Tuple& size() const override;
  std::string getPhysicalUnit() const override;
  std::string getUnit() const override;

  /// @throws std::runtime_error "Not Implemented"
  WritingInterface* getWritingInterface() override;
  /// @throws std::runtime_error "Not Implemented"
  const WritingInterface* getWritingInterface() const override;

 private:
  template <class T>
  T readOnce(T (Array::*accessor)(const Tuple&) const, const Tuple& index) const;

  TupleX m_shape;
  std::vector<unsigned long> m_axisMap;
  Array* m_wrapped;
};

/// Reads elements of a proxy, which it borrows, one after another. It keeps the position in the
/// wrapped array from one to the next, so that an access costs little more than the wrapped
/// array's own calls.
class ArrayProxy::Reader {
 public:
  explicit Reader(const ArrayProxy& proxy)
      : m_wrapped(*proxy.m_wrapped), m_axisMap(proxy.m_axisMap.data()) {}

  /// What `accessor` of the wrapped array returns for the proxy's position `index`, of which the
  /// first `dimensions` coordinates, one for each of the proxy's dimensions, are read.
  template <class T, class Index>
  T read(T (Array::*accessor)(const Tuple&) const, const Index& index, std::size_t dimensions) {
    // Asked at each access, as an array may have changed its shape meanwhile.
    const unsigned long wrappedDimensions = m_wrapped.size().size();
    if (wrappedDimensions != m_position.size()) {
      m_position.reset(wrappedDimensions);
    }
    for (std::size_t m = 0; m < dimensions; ++m) {
      // NO_AXIS is beyond every dimension, and so is an axis that the array has lost since the
      // map was made.
      if (m_axisMap[m] < wrappedDimensions) {
        m_position.set(m_axisMap[m], index[m]);
      }
    }
    return (m_wrapped.*accessor)(m_position);
  }

 private:
  /// A position that stands on the stack unless it has very many dimensions.
  class Position final : public Tuple {
   public:
    Position() { m_data = m_onStack.data(); }

    /// Takes `dimensions` coordinates, all 0.
    void reset(unsigned long dimensions) {
      m_onHeap.reset();
      m_onStack.fill(0);
      if (dimensions > m_onStack.size()) {
        m_onHeap = std::make_unique<unsigned long[]>(dimensions);
      }
      m_data = m_onHeap == nullptr ? m_onStack.data() : m_onHeap.get();
      m_size = dimensions;
    }

    void set(unsigned long dimension, unsigned long coordinate) { m_data[dimension] = coordinate; }

   private:
    std::array<unsigned long, 4> m_onStack;
    std::unique_ptr<unsigned long[]> m_onHeap;
  };

  const Array& m_wrapped;
  const unsigned long* m_axisMap;
  Position m_position;
};

}  // namespace object_model
