#include "ArrayProxy.h"

#include <stdexcept>
#include <utility>

namespace object_model {
namespace {

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
T ArrayProxy::readOnce(T (Array::*accessor)(const Tuple&) const, const Tuple& index) const {
  const Array& wrapped = *m_wrapped;
  LocalPosition position(wrapped.size().size());
  for (std::size_t m = 0; m < m_axisMap.size(); ++m) {
    // NO_AXIS is beyond every dimension, and so is an axis that the array has lost since the map
    // was made.
    if (m_axisMap[m] < position.size()) {
      position[m_axisMap[m]] = index[m];
    }
  }
  return (wrapped.*accessor)(position);
}

double ArrayProxy::getValueAsDouble(const Tuple& index) const {
  return readOnce(&Array::getValueAsDouble, index);
}

unsigned long ArrayProxy::getValueAsUInt(const Tuple& index) const {
  return readOnce(&Array::getValueAsUInt, index);
}

long ArrayProxy::getValueAsInt(const Tuple& index) const {
  return readOnce(&Array::getValueAsInt, index);
}

std::string ArrayProxy::getValueAsString(const Tuple& index) const {
  return readOnce(&Array::getValueAsString, index);
}

const Data* ArrayProxy::getValueAsDictionary(const Tuple& index) const {
  return readOnce(&Array::getValueAsDictionary, index);
}

bool ArrayProxy::getValueAsBoolean(const Tuple& index) const {
  return readOnce(&Array::getValueAsBoolean, index);
}

std::complex<double> ArrayProxy::getValueAsComplex(const Tuple& index) const {
  return readOnce(&Array::getValueAsComplex, index);
}

const Tuple& ArrayProxy::size() const { return m_shape; }

std::string ArrayProxy::getPhysicalUnit() const { return m_wrapped->getPhysicalUnit(); }

std::string ArrayProxy::getUnit() const { return m_wrapped->getUnit(); }

WritingInterface* ArrayProxy::getWritingInterface() { rejectCall(); }

const WritingInterface* ArrayProxy::getWritingInterface() const { rejectCall(); }

}  // namespace object_model
