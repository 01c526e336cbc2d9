#include "Places.h"

#include <object_model/Exception.h>
#include <object_model/Tuple.h>
#include <quillon/memory/Time.h>
#include <quillon/memory/Values.h>

#include <algorithm>
#include <exception>

#include "Tally.h"

namespace quillon::compare {
namespace {

using object_model::Array;

/// What `read` gives; nothing where it fails, as places are no reason to fail.
template <class T, class Read>
T orNothing(const Read& read) {
  try {
    return read();
  } catch (const object_model::Exception&) {
    return T();
  } catch (const std::exception&) {
    return T();
  }
}

template <class T>
Value readOne(const Array& array, unsigned long index) {
  const memory::Block block{index, 1, {index}, {1}};
  T value{};
  memory::copyValues(array, block, &value);
  return valueOf(value, false);
}

Value readValue(const Array& array, unsigned long index) {
  Value value;
  if (const object_model::BulkValues* const bulk = memory::bulkValuesOf(array)) {
    memory::visitStoredType(bulk->storedType(), [&](auto tag) {
      value = readOne<typename decltype(tag)::Type>(array, index);
    });
    return value;
  }
  memory::visitElementType(array.getElementType(), [&](auto tag) {
    using Element = typename decltype(tag)::Type;
    if constexpr (memory::IS_STORED_TYPE<Element> || std::is_same_v<Element, std::string>) {
      value = readOne<Element>(array, index);
    }
  });
  return value;
}

/// The axes' names, each unique: an axis without one is called after its place, the slowest being
/// 0.
std::vector<std::string> uniqueNames(const std::vector<memory::AxisFacts>& axes) {
  std::vector<std::string> names(axes.size());
  for (std::size_t k = axes.size(); k > 0; --k) {
    const std::string& name = axes[k - 1].name;
    const std::string plain = name.empty() ? "dim_" + std::to_string(axes.size() - k) : name;
    std::string unique = plain;
    for (int n = 2; std::find(names.begin(), names.end(), unique) != names.end(); ++n) {
      unique = plain + " (" + std::to_string(n) + ")";
    }
    names[k - 1] = unique;
  }
  return names;
}

}  // namespace

Coordinates::Coordinates(const Array& array, unsigned long dimension, unsigned long size) {
  const auto* const owner = dynamic_cast<const memory::HasCoordinates*>(&array);
  if (owner == nullptr) {
    return;
  }
  m_array = orNothing<std::shared_ptr<const Array>>([&] {
    std::shared_ptr<const Array> found = owner->coordinates(dimension);
    const bool fits = found != nullptr && found->size().size() == 1 && found->size()[0] == size;
    return fits ? found : nullptr;
  });
  m_times = dynamic_cast<const memory::HasTimes*>(m_array.get());
  if (m_times != nullptr) {
    readTimes();
  }
}

void Coordinates::readTimes() {
  m_timeValues = orNothing<std::vector<long>>([&] {
    const unsigned long start = 0;
    const unsigned long extent = m_array->size()[0];
    std::vector<long> times(extent);
    m_times->readTimes(&start, &extent, times.data());
    return times;
  });
  m_form = memory::timeFormOf(m_timeValues.data(), m_timeValues.size());
}

Value Coordinates::timeAt(unsigned long index) const {
  if (index >= m_timeValues.size() || m_timeValues[index] == memory::MISSING_TIME) {
    return {};
  }
  return memory::timeText(m_timeValues[index], m_times->calendar(), m_form);
}

Value Coordinates::at(unsigned long index) const {
  if (m_array == nullptr) {
    return {};
  }
  return orNothing<Value>(
      [&] { return m_times == nullptr ? readValue(*m_array, index) : timeAt(index); });
}

Places::Places(const Array& first, const Array& second)
    : m_axes(memory::axesOf(first)), m_names(uniqueNames(m_axes)) {
  for (std::size_t k = 0; k < m_axes.size(); ++k) {
    m_coordinates.emplace_back(first, k, m_axes[k].size);
    if (!m_coordinates.back().areKnown()) {
      m_coordinates.back() = Coordinates(second, k, m_axes[k].size);
    }
  }
}

std::vector<Place> Places::at(unsigned long offset) const {
  std::vector<Place> places(m_axes.size());
  for (std::size_t k = 0; k < m_axes.size(); ++k) {
    const unsigned long index = offset % m_axes[k].size;
    offset /= m_axes[k].size;
    places[m_axes.size() - 1 - k] = {m_names[k], index, m_coordinates[k].at(index)};
  }
  return places;
}

Difference differenceAt(const std::string& path, const Figures& figures, const Places& places) {
  Difference row;
  row.path = path;
  row.count = figures.count;
  row.size = figures.values;
  row.missing = figures.missing;
  row.largestRelative = figures.largestRelative;
  row.mean = figures.mean();
  for (const Pair& pair : figures.largest) {
    if (figures.deltas == 0 || !std::isnan(pair.delta)) {
      row.largest.push_back({places.at(pair.offset), pair.delta, pair.first, pair.second});
    }
  }
  if (!row.largest.empty()) {
    row.first = row.largest.front().first;
    row.second = row.largest.front().second;
  }
  return row;
}

Difference differenceOf(const std::string& path, const Figures& figures, const Array& outline) {
  return differenceAt(path, figures, Places(outline, outline));
}

}  // namespace quillon::compare
