#include <quillon/memory/StridedArray.h>

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <utility>

namespace quillon::memory {

using object_model::Tuple;

template <class T>
StridedArray<T>::StridedArray(std::string name, std::vector<Axis> axes, const T* first,
                              std::vector<long> strides, std::shared_ptr<const void> owner)
    : ValueArray<T>(std::move(name), std::move(axes)), m_owner(std::move(owner)) {
  requirePlace(first, strides);
  this->setPlace(first, std::move(strides));
}

template <class T>
StridedArray<T>::StridedArray(StridedArray&& other) noexcept = default;

template <class T>
StridedArray<T>::~StridedArray() = default;

template <class T>
const T& StridedArray<T>::value(const Tuple& index) const {
  return valueOf(index.size() == 0 ? nullptr : &index[0], index.size());
}

template <class T>
ResultOf<T> StridedArray<T>::valueAt(const Tuple& index) const {
  return value(index);
}

template <class T>
const T& StridedArray<T>::valueOf(const unsigned long* index, unsigned long count) const {
  this->offsetOf(index, count);  // checks the position
  const object_model::ValuesInPlace values = this->valuesInPlace();
  const auto* place = static_cast<const char*>(values.first);
  for (unsigned long k = 0; k < count; ++k) {
    place += static_cast<long>(index[k]) * values.strides[k];
  }
  return *static_cast<const T*>(static_cast<const void*>(place));
}

template <class T>
TypedArray<T> StridedArray<T>::clone(std::string name) const {
  const std::vector<unsigned long> start(this->size().size(), 0);
  std::vector<unsigned long> extent(start.size());
  for (std::size_t k = 0; k < extent.size(); ++k) {
    extent[k] = this->size()[k];
  }
  const auto values = std::make_unique<T[]>(this->numberOfElements());
  this->readValues(start.data(), extent.data(), values.get());
  TypedArray<T> copy(std::move(name), this->getInformation()->axes(),
                     std::vector<T>(values.get(), values.get() + this->numberOfElements()));
  copy.copyRemarksOf(*this);
  return copy;
}

template <class T>
void StridedArray<T>::requirePlace(const T* first, const std::vector<long>& strides) const {
  const std::string sentence = "Array '" + this->getName() + "' ";
  if (strides.size() != this->size().size()) {
    throw std::invalid_argument(sentence + "has " + std::to_string(this->size().size()) +
                                " dimensions and was given " + std::to_string(strides.size()) +
                                " steps");
  }
  if (this->numberOfElements() == 0) {
    return;  // what is never read may lie anywhere
  }
  if (first == nullptr) {
    throw std::invalid_argument(sentence + "was given no values to view");
  }
  const auto isAligned = [](long bytes) { return bytes % static_cast<long>(alignof(T)) == 0; };
  const auto address = reinterpret_cast<std::uintptr_t>(first);
  if (address % alignof(T) != 0 || !std::all_of(strides.begin(), strides.end(), isAligned)) {
    throw std::invalid_argument(sentence + "was given values that are not aligned for " +
                                StoredTraits<T>::NAME);
  }
}

template class StridedArray<signed char>;
template class StridedArray<short>;
template class StridedArray<int>;
template class StridedArray<long>;
template class StridedArray<unsigned char>;
template class StridedArray<unsigned short>;
template class StridedArray<unsigned int>;
template class StridedArray<unsigned long>;
template class StridedArray<float>;
template class StridedArray<double>;
template class StridedArray<std::complex<float>>;
template class StridedArray<std::complex<double>>;
template class StridedArray<bool>;

}  // namespace quillon::memory
