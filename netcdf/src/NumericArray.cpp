#include "NumericArray.h"

#include <netcdf.h>
#include <object_model/BulkValues.h>
#include <quillon/memory/ElementTypes.h>
#include <quillon/memory/Facets.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <numeric>
#include <type_traits>
#include <utility>

#include "Attributes.h"
#include "Window.h"

namespace quillon::netcdf {
namespace {

using memory::ArrayBase;
using memory::Axis;
using memory::ElementOf;
using memory::ElementTraits;
using memory::StoredTraits;
using object_model::Tuple;

template <class Stored>
std::vector<Stored> missingValuesOf(const Variable& variable) {
  const Source& source = *variable.source;
  auto missing = numericAttribute<Stored>(source, variable.group, variable.id, "_FillValue");
  if (missing.empty()) {
    missing.push_back(std::is_same_v<Stored, float> ? static_cast<Stored>(NC_FILL_FLOAT)
                                                    : static_cast<Stored>(NC_FILL_DOUBLE));
  }
  const auto more = numericAttribute<Stored>(source, variable.group, variable.id, "missing_value");
  missing.insert(missing.end(), more.begin(), more.end());
  return missing;
}

unsigned long product(const unsigned long* factors, std::size_t count) {
  return std::accumulate(factors, factors + count, 1UL, std::multiplies<>());
}

/// `Stored` is the values' type in the file: the window holds them as they are, and each is widened
/// when it is asked for.
template <class Stored>
class NumericArray final : public ArrayBase,
                           public object_model::BulkValues,
                           public memory::HasStoredBytes {
 public:
  NumericArray(Variable variable, const std::string& name, std::vector<Axis> axes,
               const std::string& description)
      : ArrayBase(name, ElementTraits<ElementOf<Stored>>::TYPE, std::move(axes), description),
        m_variable(std::move(variable)),
        m_window(m_variable.windows(0, sizeof(Stored))) {
    if constexpr (std::is_floating_point_v<Stored>) {
      if (m_variable.source->options().missingAsNaN) {
        m_missing = missingValuesOf<Stored>(m_variable);
      }
    }
  }

  double getValueAsDouble(const Tuple& index) const override {
    if constexpr (std::is_same_v<ElementOf<Stored>, double>) {
      return value(index);
    } else {
      return ArrayBase::getValueAsDouble(index);
    }
  }

  unsigned long getValueAsUInt(const Tuple& index) const override {
    if constexpr (std::is_same_v<ElementOf<Stored>, unsigned long>) {
      return value(index);
    } else {
      return ArrayBase::getValueAsUInt(index);
    }
  }

  long getValueAsInt(const Tuple& index) const override {
    if constexpr (std::is_same_v<ElementOf<Stored>, long>) {
      return value(index);
    } else {
      return ArrayBase::getValueAsInt(index);
    }
  }

  object_model::StoredType storedType() const override { return StoredTraits<Stored>::TYPE; }

  void readValues(const unsigned long* start, const unsigned long* extent,
                  void* destination) const override {
    m_variable.reportRead(read(start, extent, static_cast<Stored*>(destination)));
  }

  const unsigned long* chunkExtents() const override {
    return m_variable.chunks.empty() ? nullptr : m_variable.chunks.data();
  }

  bool holdsSameBytes(const object_model::Array& other, const unsigned long* start,
                      const unsigned long* extent) const override {
    const auto* const second = dynamic_cast<const NumericArray*>(&other);
    return second != nullptr && m_missing == second->m_missing &&
           m_variable.holdsSameBytes(second->m_variable, start, extent);
  }

 private:
  Stored value(const Tuple& index) const {
    return m_window.at(
        offsetOf(index),
        [this](const memory::Block& block, std::vector<Stored>& values) {
          m_variable.makeRoom(values, block.count);
          return read(block.start.data(), block.extent.data(), values.data());
        },
        [this](unsigned long bytes) { m_variable.reportRead(bytes); });
  }

  /// @return how many bytes the values take in the file.
  unsigned long read(const unsigned long* start, const unsigned long* extent,
                     Stored* values) const {
    m_variable.read(start, extent, values);
    const unsigned long count = product(extent, m_variable.shape.size());
    if (!m_missing.empty()) {
      std::replace_if(
          values, values + count,
          [this](Stored stored) {
            return std::find(m_missing.begin(), m_missing.end(), stored) != m_missing.end();
          },
          std::numeric_limits<Stored>::quiet_NaN());
    }
    return count * sizeof(Stored);
  }

  Variable m_variable;
  std::vector<Stored> m_missing;  // what reads as NaN
  mutable Window<Stored> m_window;
};

template <class Stored>
std::unique_ptr<ArrayBase> make(Variable variable, const std::string& name, std::vector<Axis> axes,
                                const std::string& description) {
  return std::make_unique<NumericArray<Stored>>(std::move(variable), name, std::move(axes),
                                                description);
}

}  // namespace

std::unique_ptr<ArrayBase> makeNumericArray(int netcdfType, Variable variable,
                                            const std::string& name, std::vector<Axis> axes,
                                            const std::string& description) {
  const auto makeAs = [&](auto stored) {
    return make<decltype(stored)>(std::move(variable), name, std::move(axes), description);
  };
  switch (netcdfType) {
    case NC_BYTE:
      return makeAs(static_cast<signed char>(0));
    case NC_UBYTE:
      return makeAs(static_cast<unsigned char>(0));
    case NC_SHORT:
      return makeAs(short{});
    case NC_USHORT:
      return makeAs(static_cast<unsigned short>(0));
    case NC_INT:
      return makeAs(int{});
    case NC_UINT:
      return makeAs(0U);
    case NC_INT64:
      return makeAs(0L);
    case NC_UINT64:
      return makeAs(0UL);
    case NC_FLOAT:
      return makeAs(0.0F);
    case NC_DOUBLE:
      return makeAs(0.0);
    default:
      return nullptr;
  }
}

}  // namespace quillon::netcdf
