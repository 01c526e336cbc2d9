#include <object_model/Tuple.h>
#include <quillon/memory/InPlaceValues.h>

#include "StridedCopy.h"

namespace quillon::memory {

template <class T>
void InPlaceValues<T>::readValues(const unsigned long* start, const unsigned long* extent,
                                  void* destination) const {
  copyInPlace<T>(valuesInPlace(), start, extent, m_strides.size(), static_cast<T*>(destination));
}

std::vector<long> packedStrides(const object_model::Tuple& shape, unsigned long bytes) {
  std::vector<long> strides(shape.size());
  for (std::size_t k = 0; k < strides.size(); ++k) {
    strides[k] = static_cast<long>(bytes);
    bytes *= shape[k];
  }
  return strides;
}

template class InPlaceValues<signed char>;
template class InPlaceValues<short>;
template class InPlaceValues<int>;
template class InPlaceValues<long>;
template class InPlaceValues<unsigned char>;
template class InPlaceValues<unsigned short>;
template class InPlaceValues<unsigned int>;
template class InPlaceValues<unsigned long>;
template class InPlaceValues<float>;
template class InPlaceValues<double>;
template class InPlaceValues<std::complex<float>>;
template class InPlaceValues<std::complex<double>>;
template class InPlaceValues<bool>;

}  // namespace quillon::memory
