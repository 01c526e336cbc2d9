#pragma once

#include <object_model/Array.h>
#include <object_model/TupleX.h>

#include <limits>
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
  T read(T (Array::*accessor)(const Tuple&) const, const Tuple& index) const;

  TupleX m_shape;
  std::vector<unsigned long> m_axisMap;
  Array* m_wrapped;
};

}  // namespace object_model
