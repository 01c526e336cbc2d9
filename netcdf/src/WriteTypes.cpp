#include "WriteTypes.h"

#include <quillon/memory/ElementTypes.h>
#include <quillon/memory/Wording.h>

#include "WriteRefusal.h"

namespace quillon::netcdf {

using object_model::ElementType;
using object_model::StoredType;

namespace {

StoredType storedTypeOf(const object_model::Array& array, StoredType otherwise) {
  const object_model::BulkValues* const bulk = memory::bulkValuesOf(array);
  return bulk == nullptr ? otherwise : bulk->storedType();
}

}  // namespace

std::optional<StoredType> writtenTypeOf(const object_model::Array& array, const std::string& path) {
  const ElementType type = array.getElementType();
  switch (type) {
    case ElementType::UInt:
      return storedTypeOf(array, StoredType::UInt64);
    case ElementType::Int:
      return storedTypeOf(array, StoredType::Int64);
    case ElementType::Double:
      return storedTypeOf(array, StoredType::Float64);
    case ElementType::Boolean:
      return StoredType::Boolean;
    case ElementType::String:
      return std::nullopt;
    default:
      throw Refusal(memory::inQuotes(path) + " holds values of the type " + memory::nameOf(type) +
                    ", which netCDF files do not hold");
  }
}

nc_type netcdfTypeOf(std::optional<StoredType> type) {
  nc_type result = NC_STRING;
  if (type) {
    memory::visitStoredType(*type,
                            [&](auto tag) { result = NETCDF_TYPE<typename decltype(tag)::Type>; });
  }
  return result;
}

}  // namespace quillon::netcdf
