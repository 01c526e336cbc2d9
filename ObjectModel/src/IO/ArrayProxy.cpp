#include "ArrayProxy.h"

#include <array>
#include <memory>
#include <stdexcept>
#include <utility>

namespace object_model {
namespace {

/// A position that starts at 0 in all dimensions and stands on the stack unless it has very many.
class LocalPosition final : public Tuple {
 public:
  explicit LocalPosition(unsigned long dimensions) {
    if (dimensions > m_onStack.size()) {
      m_onHeap = std::make_unique<unsigned long[]>(dimensions);
    }
    m_data = m_onHeap == nullptr ? m_onStack.data() : m_onHeap.get();
    m_size = dimensions;
  }

  void set(unsigned long dimension, unsigned long coordinate) { m_data[dimension] = coordinate; }

 private:
  std::array<unsigned long, 4> m_onStack = {};
  std::unique_ptr<unsigned long[]> m_onHeap;
};

[[noreturn]] void rejectCall() { throw std::runtime_error("Not Implemented"); }

}  // namespace

ArrayProxy::ArrayProxy(const unsigned long* extents, unsigned long count,
                       std::vector<unsigned long> axisMap, Array* wrapped)
    : m_shape(extents, count), m_axisMap(std::move(axisMap)), m_wrapped(wrapped) {}

ArrayProxy::~ArrayProxy() = default;

const DataInfo* ArrayProxy::getInformation() const { rejectCall(); }

// The const and the other form each reach the wrapped array's form of the same constness.
const Data* ArrayProxy::parent() const { return std::as_const(*m_wrapped).parent(); }

Data* ArrayProxy::parent() { return m_wrapped->parent(); }

void ArrayProxy::setParent(Data* /*parent*/) { rejectCall(); }

template <class T>
T ArrayProxy::read(T (Array::*accessor)(const Tuple&) const, const Tuple& index) const {
  const unsigned long dimensions = std::as_const(*m_wrapped).size().size();
  LocalPosition position(dimensions);
  for (std::size_t m = 0; m < m_axisMap.size(); ++m) {
    // NO_AXIS is beyond every dimension, and so is an axis that the array has lost since the map
    // was made.
    if (m_axisMap[m] < dimensions) {
      position.set(m_axisMap[m], index[m]);
    }
  }
  return (m_wrapped->*accessor)(position);
}

double ArrayProxy::getValueAsDouble(const Tuple& index) const {
  return read(&Array::getValueAsDouble, index);
}

unsigned long ArrayProxy::getValueAsUInt(const Tuple& index) const {
  return read(&Array::getValueAsUInt, index);
}

long ArrayProxy::getValueAsInt(const Tuple& index) const {
  return read(&Array::getValueAsInt, index);
}

std::string ArrayProxy::getValueAsString(const Tuple& index) const {
  return read(&Array::getValueAsString, index);
}

const Data* ArrayProxy::getValueAsDictionary(const Tuple& index) const {
  return read(&Array::getValueAsDictionary, index);
}

bool ArrayProxy::getValueAsBoolean(const Tuple& index) const {
  return read(&Array::getValueAsBoolean, index);
}

std::complex<double> ArrayProxy::getValueAsComplex(const Tuple& index) const {
  return read(&Array::getValueAsComplex, index);
}

const Tuple& ArrayProxy::size() const { return m_shape; }

std::string ArrayProxy::getPhysicalUnit() const { return m_wrapped->getPhysicalUnit(); }

std::string ArrayProxy::getUnit() const { return m_wrapped->getUnit(); }

WritingInterface* ArrayProxy::getWritingInterface() { rejectCall(); }

const WritingInterface* ArrayProxy::getWritingInterface() const { rejectCall(); }

}  // namespace object_model
