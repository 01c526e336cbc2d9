#include "FileArray.h"

#include <quillon/netcdf/Decoded.h>
#include <quillon/netcdf/LibraryLock.h>

#include <mutex>

#include "ArrayMaker.h"

namespace quillon::netcdf {

std::shared_ptr<const object_model::Array> FileArray::coordinates(unsigned long dimension) const {
  std::shared_ptr<const object_model::Array> own = ArrayBase::coordinates(dimension);
  if (own != nullptr || m_variable.maker == nullptr || dimension >= size().size()) {
    return own;
  }
  // A text's length is a dimension of the variable, not of the array.
  const std::size_t hidden = m_variable.dimensions.size() - size().size();
  const std::lock_guard<std::mutex> guard(libraryLock());
  return m_variable.maker->coordinates(m_variable, dimension + hidden);
}

bool isDecoded(const object_model::Array& array) {
  const auto* const known = dynamic_cast<const FileArray*>(&array);
  return known != nullptr && known->isDecoded();
}

}  // namespace quillon::netcdf
