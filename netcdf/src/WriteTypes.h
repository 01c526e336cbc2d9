#pragma once

#include <netcdf.h>
#include <object_model/Array.h>
#include <object_model/BulkValues.h>

#include <optional>
#include <string>
#include <type_traits>

namespace quillon::netcdf {

/// The type in a file of values of a C++ type.
template <class T>
inline constexpr nc_type NETCDF_TYPE = NC_NAT;
template <>
inline constexpr nc_type NETCDF_TYPE<signed char> = NC_BYTE;
template <>
inline constexpr nc_type NETCDF_TYPE<short> = NC_SHORT;
template <>
inline constexpr nc_type NETCDF_TYPE<int> = NC_INT;
template <>
inline constexpr nc_type NETCDF_TYPE<long> = NC_INT64;
template <>
inline constexpr nc_type NETCDF_TYPE<unsigned char> = NC_UBYTE;
template <>
inline constexpr nc_type NETCDF_TYPE<unsigned short> = NC_USHORT;
template <>
inline constexpr nc_type NETCDF_TYPE<unsigned int> = NC_UINT;
template <>
inline constexpr nc_type NETCDF_TYPE<unsigned long> = NC_UINT64;
template <>
inline constexpr nc_type NETCDF_TYPE<float> = NC_FLOAT;
template <>
inline constexpr nc_type NETCDF_TYPE<double> = NC_DOUBLE;
template <>
inline constexpr nc_type NETCDF_TYPE<bool> = NC_BYTE;  // as xarray has it

/// Whether `T` is a type of whole numbers, which truth values are not.
template <class T>
inline constexpr bool IS_WHOLE = std::is_integral_v<T> && !std::is_same_v<T, bool>;

/// The type in which the array's values are to be written; none for texts.
/// @throws Refusal for an array of anything but numbers, truth values and texts.
std::optional<object_model::StoredType> writtenTypeOf(const object_model::Array& array,
                                                      const std::string& path);

/// The same as libnetcdf calls it.
nc_type netcdfTypeOf(std::optional<object_model::StoredType> type);

}  // namespace quillon::netcdf
