// What is written reads back the same, whatever the dictionary.

#include <gtest/gtest.h>
#include <quillon/memory/Time.h>
#include <quillon/memory/TimeArray.h>
#include <rapidcheck/gtest.h>

#include <limits>

#include "ReadBack.h"
#include "WriteTesting.h"
#include "support/Properties.h"

namespace quillon::netcdf {
namespace {

using memory::AttributeValue;
using memory::Axis;
using memory::Dictionary;

const std::vector<std::string> NAMES = {"a", "b", "x", "y", "time", "9 lives", "ä", "_"};
const std::vector<std::string> TEXTS = {"", "a", "two words", "Ærø 日本", "\n\t\"", "NaN"};

std::string pickName() { return *rc::gen::elementOf(NAMES); }

template <class T>
rc::Gen<T> value() {
  using Limits = std::numeric_limits<T>;
  return rc::gen::weightedOneOf<T>(
      {{3, rc::gen::arbitrary<T>()}, {1, rc::gen::element<T>(Limits::lowest(), Limits::max(), 0)}});
}

template <class T>
rc::Gen<T> floatValue() {
  using Limits = std::numeric_limits<T>;
  return rc::gen::weightedOneOf<T>(
      {{3, rc::gen::arbitrary<T>()},
       {1, rc::gen::element<T>(Limits::lowest(), Limits::max(), Limits::denorm_min(),
                               Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN(),
                               static_cast<T>(-0.0), static_cast<T>(NC_FILL_FLOAT))}});
}
template <>
rc::Gen<float> value<float>() {
  return floatValue<float>();
}
template <>
rc::Gen<double> value<double>() {
  return floatValue<double>();
}
template <>
rc::Gen<std::string> value<std::string>() {
  return rc::gen::elementOf(TEXTS);
}
template <>
rc::Gen<bool> value<bool>() {
  return rc::gen::arbitrary<bool>();
}

template <class T>
std::vector<T> values(unsigned long count) {
  return *rc::gen::container<std::vector<T>>(count, value<T>());
}

template <class T>
AttributeValue attribute() {
  return values<T>(*rc::gen::inRange<unsigned long>(0, 4));
}

/// One text alone, or none, is no list in a file.
AttributeValue textAttribute() {
  const unsigned long count = *rc::gen::inRange<unsigned long>(1, 4);
  return count == 1 ? AttributeValue(*value<std::string>())
                    : AttributeValue(values<std::string>(count));
}

AttributeValue anyAttribute() {
  switch (::test::pick(6)) {
    case 0:
      return attribute<signed char>();
    case 1:
      return attribute<unsigned short>();
    case 2:
      return attribute<long>();
    case 3:
      return attribute<float>();
    case 4:
      return attribute<double>();
    default:
      return textAttribute();
  }
}

/// Text, unit and attributes. Attributes that readers act on are not among the names.
template <class Object>
void addRemarks(Object& object) {
  object.setDescription(*rc::gen::elementOf(TEXTS));
  for (int k = *rc::gen::inRange(0, 3); k > 0; --k) {
    object.setAttribute(pickName(), anyAttribute());
  }
}

/// What the groups around an array know: the sizes of the axes of its own group.
using Sizes = std::map<std::string, unsigned long>;

std::vector<Axis> someAxes(Sizes& sizes) {
  std::vector<Axis> axes;
  for (int k = *rc::gen::inRange(0, 4); k > 0; --k) {
    const std::string name = pickName();
    const auto size = sizes.emplace(name, *rc::gen::inRange<unsigned long>(0, 4)).first->second;
    axes.emplace_back(name, size);
  }
  return axes;
}

template <class Array>
void addArray(Dictionary& to, Array array) {
  addRemarks(array);
  to.add(std::move(array));
}

template <class T>
void addTyped(Dictionary& to, const std::string& name, std::vector<Axis> axes) {
  const unsigned long count = countOf(axes);
  memory::TypedArray<T> array(name, std::move(axes), values<T>(count));
  array.setUnit(*rc::gen::elementOf(TEXTS));
  addArray(to, std::move(array));
}

void addTimes(Dictionary& to, const std::string& name, std::vector<Axis> axes) {
  const auto day = rc::gen::inRange<long>(-100000, 100000);
  std::vector<long> times(countOf(axes));
  for (long& time : times) {
    time = ::test::pick(5) == 0 ? memory::MISSING_TIME : *day * memory::MICROSECONDS_PER_DAY + *day;
  }
  const auto calendar = static_cast<memory::Calendar>(::test::pick(5));
  addArray(to, memory::TimeArray(name, std::move(axes), std::move(times), calendar));
}

void addAnyArray(Dictionary& to, const std::string& name, Sizes& sizes) {
  std::vector<Axis> axes = someAxes(sizes);
  switch (::test::pick(13)) {
    case 0:
      return addTyped<signed char>(to, name, std::move(axes));
    case 1:
      return addTyped<short>(to, name, std::move(axes));
    case 2:
      return addTyped<int>(to, name, std::move(axes));
    case 3:
      return addTyped<long>(to, name, std::move(axes));
    case 4:
      return addTyped<unsigned char>(to, name, std::move(axes));
    case 5:
      return addTyped<unsigned short>(to, name, std::move(axes));
    case 6:
      return addTyped<unsigned int>(to, name, std::move(axes));
    case 7:
      return addTyped<unsigned long>(to, name, std::move(axes));
    case 8:
      return addTyped<float>(to, name, std::move(axes));
    case 9:
      return addTyped<double>(to, name, std::move(axes));
    case 10:
      return addTyped<std::string>(to, name, std::move(axes));
    case 11:
      return addTyped<bool>(to, name, std::move(axes));
    default:
      return addTimes(to, name, std::move(axes));
  }
}

Dictionary anyDictionary(const std::string& name, int depth) {
  Dictionary dictionary(name);
  addRemarks(dictionary);
  Sizes sizes;
  for (int k = *rc::gen::inRange(0, 5); k > 0; --k) {
    const std::string entry = pickName();
    if (!dictionary.contains(entry)) {
      addAnyArray(dictionary, entry, sizes);
    }
  }
  for (int k = depth > 0 ? *rc::gen::inRange(0, 3) : 0; k > 0; --k) {
    const std::string entry = pickName();
    if (!dictionary.contains(entry) && sizes.count(entry) == 0) {
      dictionary.add(anyDictionary(entry, depth - 1));
    }
  }
  return dictionary;
}

RC_GTEST_PROP(WriteRoundTripTest, WhatIsWrittenReadsBackTheSame, ()) {
  const Scratch scratch;
  const std::string path = scratch.path("a.nc");
  const Dictionary dictionary = anyDictionary("root", 2);
  write(dictionary, path, {::test::pick(10), *rc::gen::arbitrary<bool>()});
  RC_LOG() << dumpOf(path);
  RC_ASSERT(differencesReadBack(dictionary, path) == "");
}

RC_GTEST_PROP(WriteRoundTripTest, WhatWasReadIsWrittenTheSame, ()) {
  const Scratch scratch;
  const std::string path = scratch.path("a.nc");
  write(anyDictionary("root", 1), path);
  const File first(path);
  write(first.root(), path);
  RC_LOG() << dumpOf(path);
  RC_ASSERT(differencesReadBack(first.root(), path) == "");
}

}  // namespace
}  // namespace quillon::netcdf
