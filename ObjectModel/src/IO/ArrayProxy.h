#pragma once

#include <object_model/Array.h>
#include <object_model/TupleX.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <vector>

#include "LocalPosition.h"

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

  template <std::size_t N>
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

/// Reads elements of a proxy of `N` dimensions, which it borrows, one after another. It keeps the
/// position in the wrapped array from one to the next, so that an access costs little more than the
/// wrapped array's own calls.
template <std::size_t N>
class ArrayProxy::Reader {
 public:
  explicit Reader(const ArrayProxy& proxy)
      : m_wrapped(*proxy.m_wrapped), m_axisMap(proxy.m_axisMap.data()) {
    m_coordinates.fill(&m_unseen);
  }
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;
  ~Reader() = default;

  /// What `accessor` of the wrapped array returns for the proxy's position `index`.
  template <class T>
  T read(T (Array::*accessor)(const Tuple&) const, const std::array<unsigned long, N>& index) {
    // Asked at each access, as an array may have changed its shape meanwhile.
    const unsigned long dimensions = m_wrapped.size().size();
    if (dimensions != m_taken) {
      take(dimensions);
    }
    for (std::size_t m = 0; m < N; ++m) {
      *m_coordinates[m] = index[m];
    }
    return (m_wrapped.*accessor)(m_position);
  }

 private:
  void take(unsigned long dimensions) {
    m_position.reset(dimensions);
    for (std::size_t m = 0; m < N; ++m) {
      m_coordinates[m] = m_axisMap[m] < dimensions ? &m_position[m_axisMap[m]] : &m_unseen;
    }
    // What no dimension stands for must be 0 again at the next access, whatever an array has
    // written to the position that it was lent.
    m_taken = 0;
    while (m_taken < dimensions && std::find(m_axisMap, m_axisMap + N, m_taken) != m_axisMap + N) {
      ++m_taken;
    }
    m_taken = m_taken == dimensions ? dimensions : NONE_TAKEN;
  }

  static constexpr unsigned long NONE_TAKEN = std::numeric_limits<unsigned long>::max();

  const Array& m_wrapped;
  const unsigned long* m_axisMap;
  LocalPosition m_position{0};
  unsigned long m_taken = NONE_TAKEN;           // dimensions of the position that need no reset
  std::array<unsigned long*, N> m_coordinates;  // each into m_position or m_unseen
  unsigned long m_unseen = 0;  // of dimensions that stand for no axis of the wrapped array
};

}  // namespace object_model
