#include "Coordinates.h"

#include <object_model/Array.h>
#include <object_model/Tuple.h>
#include <quillon/memory/NumberText.h>
#include <quillon/memory/Time.h>
#include <quillon/memory/Values.h>
#include <quillon/memory/Wording.h>
#include <quillon/tables/Error.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace quillon::tables {
namespace {

using memory::inQuotes;
using object_model::Array;
using object_model::Data;
using object_model::Dictionary;

bool areCoordinates(const Array& array, unsigned long size) {
  return array.size().size() == 1 && array.size()[0] == size && misfitOf(array).empty();
}

bool hasEntry(const Dictionary& dictionary, const std::string& name) {
  for (int i = 0; static_cast<unsigned long>(i) < dictionary.getNumOfData(); ++i) {
    if (dictionary.getDataName(i) == name) {
      return true;
    }
  }
  return false;
}

/// The entry of this name if it is an array; null otherwise.
const Array* arrayIn(const Data* container, const std::string& name) {
  const Dictionary* dictionary = container == nullptr ? nullptr : container->asDictionary();
  if (dictionary == nullptr || !hasEntry(*dictionary, name)) {
    return nullptr;
  }
  const Data* entry = dictionary->data(name);
  return entry == nullptr ? nullptr : entry->asArray();  // never true: data() throws instead
}

/// Whether an array of another name than the axis stands among the variables: it labels the axis,
/// as names of stations do, but is a column of its own.
bool isLabel(const Dictionary& dictionary, const Array& coordinates, const std::string& axis) {
  const std::string name = coordinates.getName();
  for (const Data* container = &dictionary; container != nullptr; container = container->parent()) {
    if (name != axis && arrayIn(container, name) != nullptr) {
      return true;
    }
  }
  return false;
}

/// What the array knows of its first dimension called `axis`.
std::optional<ArraySource> ownCoordinates(const Dictionary& dictionary, const Array& array,
                                          const std::string& name, const std::string& axis,
                                          unsigned long size) {
  const auto* known = dynamic_cast<const memory::HasCoordinates*>(&array);
  if (known == nullptr) {
    return {};
  }
  const std::vector<memory::AxisFacts> axes = memory::axesOf(array);
  for (unsigned long k = 0; k < axes.size(); ++k) {
    if (axes[k].name == axis && axes[k].size == size) {
      const std::shared_ptr<const Array> found = known->coordinates(k);
      if (found != nullptr && areCoordinates(*found, size) && !isLabel(dictionary, *found, axis)) {
        return ArraySource{name, 0, k};
      }
    }
  }
  return {};
}

template <class T>
std::vector<T> readAll(const Array& array) {
  const unsigned long start = 0;
  const unsigned long count = array.size()[0];
  const auto values = std::make_unique<T[]>(count);
  memory::copyValues(array, &start, &count, values.get());
  return {std::make_move_iterator(values.get()), std::make_move_iterator(values.get() + count)};
}

template <class T>
std::vector<Number> readNumbers(const Array& array) {
  const std::vector<T> values = readAll<T>(array);
  return {values.begin(), values.end()};
}

std::vector<Number> readIntegers(const Array& array) {
  std::vector<Number> numbers = readNumbers<long>(array);
  if (lowestIsMissing(array)) {
    std::replace(numbers.begin(), numbers.end(), static_cast<Number>(memory::MISSING_TIME),
                 std::nanl(""));
  }
  return numbers;
}

/// A number as text, in the type in which it is stored: 0.1 of floats is no long fraction.
std::string textOf(Number value, const CoordinateValues& coordinates) {
  if (std::isnan(value)) {
    return {};
  }
  if (coordinates.isInteger) {
    return value < 0 ? memory::shortestText(static_cast<long>(value))
                     : memory::shortestText(static_cast<unsigned long>(value));
  }
  return coordinates.isFloat ? memory::shortestText(static_cast<float>(value))
                             : memory::shortestText(static_cast<double>(value));
}

}  // namespace

std::string misfitOf(const Array& array) {
  switch (array.getElementType()) {
    case object_model::ElementType::UInt:
    case object_model::ElementType::Int:
    case object_model::ElementType::Double:
    case object_model::ElementType::String:
    case object_model::ElementType::Boolean:
      return {};
    case object_model::ElementType::Complex:
      return "it holds complex numbers";
    case object_model::ElementType::Dictionary:
      return "it holds dictionaries";
  }
  return "it holds values of " + memory::nameOf(array.getElementType());
}

bool lowestIsMissing(const Array& array) {
  return dynamic_cast<const memory::HasMissing*>(&array) != nullptr;
}

std::shared_ptr<const Array> findArray(const Dictionary& dictionary, const ArraySource& source) {
  const Data* container = &dictionary;
  for (unsigned long k = 0; container != nullptr && k < source.levels; ++k) {
    container = container->parent();
  }
  const Array* array = arrayIn(container, source.variable);
  std::shared_ptr<const Array> result(std::shared_ptr<void>(), array);
  if (array != nullptr && source.coordinatesOf) {
    const auto* known = dynamic_cast<const memory::HasCoordinates*>(array);
    result = known == nullptr ? nullptr : known->coordinates(*source.coordinatesOf);
  }
  if (result == nullptr) {
    throw Error("The table was planned with an array " + inQuotes(source.variable) +
                " that is not there any more");
  }
  return result;
}

std::optional<ArraySource> findCoordinates(const Dictionary& dictionary, const std::string& axis,
                                           unsigned long size) {
  for (int i = 0; static_cast<unsigned long>(i) < dictionary.getNumOfData(); ++i) {
    const std::string name = dictionary.getDataName(i);
    const Array* array = dictionary.data(i)->asArray();
    if (array != nullptr) {
      if (std::optional<ArraySource> found = ownCoordinates(dictionary, *array, name, axis, size)) {
        return found;
      }
    }
  }
  unsigned long levels = 0;
  for (const Data* container = &dictionary; container != nullptr; container = container->parent()) {
    const Array* array = arrayIn(container, axis);
    if (array != nullptr && memory::isCoordinate(*array) && areCoordinates(*array, size)) {
      return ArraySource{axis, levels, {}};
    }
    ++levels;
  }
  return {};
}

std::vector<Number> CoordinateValues::asNumbers() const {
  if (const auto* numbers = std::get_if<std::vector<Number>>(&values)) {
    return *numbers;
  }
  std::vector<Number> result;
  // never false: who asks knows that the values are no texts
  if (const auto* times = std::get_if<std::vector<long>>(&values)) {
    for (const long time : *times) {
      result.push_back(time == memory::MISSING_TIME ? std::nanl("") : static_cast<Number>(time));
    }
  }
  return result;
}

std::vector<std::string> CoordinateValues::asTexts() const {
  if (const auto* texts = std::get_if<std::vector<std::string>>(&values)) {
    return *texts;
  }
  std::vector<std::string> result;
  if (const auto* numbers = std::get_if<std::vector<Number>>(&values)) {
    for (const Number number : *numbers) {
      result.push_back(textOf(number, *this));
    }
    return result;
  }
  const auto& times = std::get<std::vector<long>>(values);
  const memory::TimeForm form = memory::timeFormOf(times.data(), times.size());
  for (const long time : times) {
    result.push_back(memory::timeText(time, calendar, form));
  }
  return result;
}

CoordinateValues valuesOf(const Array& coordinates) {
  CoordinateValues result;
  if (const auto* times = dynamic_cast<const memory::HasTimes*>(&coordinates)) {
    const unsigned long start = 0;
    const unsigned long count = coordinates.size()[0];
    std::vector<long> values(count);
    times->readTimes(&start, &count, values.data());
    result.values = std::move(values);
    result.isTime = true;
    result.calendar = times->calendar();
    return result;
  }
  switch (coordinates.getElementType()) {
    case object_model::ElementType::String:
      result.values = readAll<std::string>(coordinates);
      break;
    case object_model::ElementType::Boolean: {
      std::vector<std::string> texts;
      for (const bool value : readAll<bool>(coordinates)) {
        texts.emplace_back(value ? "true" : "false");
      }
      result.values = std::move(texts);
      break;
    }
    case object_model::ElementType::UInt:
      result.values = readNumbers<unsigned long>(coordinates);
      result.isInteger = true;
      break;
    case object_model::ElementType::Int:
      result.values = readIntegers(coordinates);
      result.isInteger = true;
      break;
    default: {
      const object_model::BulkValues* bulk = memory::bulkValuesOf(coordinates);
      result.isFloat = bulk != nullptr && bulk->storedType() == object_model::StoredType::Float32;
      result.values = readNumbers<double>(coordinates);
    }
  }
  return result;
}

}  // namespace quillon::tables
