#include "ComparisonHelper/StoredValues.h"

#include <atomic>
#include <complex>
#include <typeinfo>

namespace object_model::helper {
namespace {

template <class Value, class Stored>
Value widened(Stored value) {
  return static_cast<Value>(value);  // NOLINT(bugprone-signed-char-misuse): a number of 8 bits
}

template <class Stored, class Value>
void convert(const Run& run, std::size_t count, Value* buffer) {
  const char* at = run.first;
  for (std::size_t k = 0; k < count; ++k) {
    buffer[k] = widened<Value>(*reinterpret_cast<const Stored*>(at));
    at += run.stride;
  }
}

template <class Stored, class Value>
const Value* load(const Run& run, std::size_t count, Value* buffer) {
  if (run.stride != static_cast<long>(sizeof(Stored))) {
    convert<Stored>(run, count, buffer);
    return buffer;
  }
  const auto* const packed = reinterpret_cast<const Stored*>(run.first);
  if constexpr (std::is_same_v<Stored, Value>) {
    return packed;
  } else {
    for (std::size_t k = 0; k < count; ++k) {
      buffer[k] = widened<Value>(packed[k]);
    }
    return buffer;
  }
}

template <class Stored, class Value>
Storage<Value> storage() {
  return {sizeof(Stored), &load<Stored, Value>};
}

}  // namespace

template <>
Storage<long> storageOf(StoredType type) {
  switch (type) {
    case StoredType::Int8:
      return storage<signed char, long>();
    case StoredType::Int16:
      return storage<short, long>();
    case StoredType::Int32:
      return storage<int, long>();
    case StoredType::Int64:
      return storage<long, long>();
    default:
      return {};
  }
}

template <>
Storage<unsigned long> storageOf(StoredType type) {
  switch (type) {
    case StoredType::UInt8:
      return storage<unsigned char, unsigned long>();
    case StoredType::UInt16:
      return storage<unsigned short, unsigned long>();
    case StoredType::UInt32:
      return storage<unsigned int, unsigned long>();
    case StoredType::UInt64:
      return storage<unsigned long, unsigned long>();
    default:
      return {};
  }
}

template <>
Storage<double> storageOf(StoredType type) {
  switch (type) {
    case StoredType::Float32:
      return storage<float, double>();
    case StoredType::Float64:
      return storage<double, double>();
    default:
      return {};
  }
}

template <>
Storage<std::complex<double>> storageOf(StoredType type) {
  switch (type) {
    case StoredType::Complex64:
      return storage<std::complex<float>, std::complex<double>>();
    case StoredType::Complex128:
      return storage<std::complex<double>, std::complex<double>>();
    default:
      return {};
  }
}

template <>
Storage<bool> storageOf(StoredType type) {
  return type == StoredType::Boolean ? storage<bool, bool>() : Storage<bool>{};
}

const BulkValues* asBulkValues(const Array& array) {
  // Searching a class that has many bases takes as long as comparing hundreds of its values, and
  // those that offer nothing come again and again.
  static std::atomic<const std::type_info*> offersNothing = nullptr;
  const std::type_info& type = typeid(array);
  if (offersNothing.load(std::memory_order_relaxed) == &type) {
    return nullptr;
  }
  const auto* const values = dynamic_cast<const BulkValues*>(&array);
  if (values == nullptr) {
    offersNothing.store(&type, std::memory_order_relaxed);
  }
  return values;
}

}  // namespace object_model::helper
