#pragma once

#include <functional>

#include "Encoding.h"

namespace quillon::netcdf {

/// Turns `count` stored values into what they stand for. Both may stand at the same place where
/// they are of one type.
template <class Value>
using Decode = std::function<void(const void* stored, unsigned long count, Value* values)>;

/// What an encoding asks for; empty where the stored values are those asked for. `Value` is the
/// type of Encoding::result: float or double where it changes numbers.
template <class Value>
Decode<Value> decoderOf(const Encoding& encoding);

extern template Decode<float> decoderOf(const Encoding& encoding);
extern template Decode<double> decoderOf(const Encoding& encoding);

/// The missing values of an encoding in the type `Stored`: those that it can hold. Without a sign,
/// negative ones stand for those of the same bits.
template <class Stored>
std::vector<Stored> missingValuesOf(const std::vector<memory::AttributeValue>& missing);

extern template std::vector<long> missingValuesOf(const std::vector<memory::AttributeValue>&);
extern template std::vector<unsigned long> missingValuesOf(
    const std::vector<memory::AttributeValue>&);

}  // namespace quillon::netcdf
