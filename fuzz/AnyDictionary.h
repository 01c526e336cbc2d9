#pragma once

#include <quillon/memory/Dictionary.h>
#include <quillon/memory/TimeArray.h>
#include <quillon/memory/TypedArray.h>

#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "Input.h"

namespace quillon::fuzz {

/// Makes a dictionary of an input, of all that a netCDF file can hold, and mostly of that alone.
class AnyDictionary {
 public:
  explicit AnyDictionary(Input& input) : m_input(input) {}

  memory::Dictionary make(const std::string& name, int depth) {
    memory::Dictionary dictionary(name, m_input.oneIn(4) ? "title" : "");
    addRemarks(dictionary);
    Sizes sizes;
    for (unsigned long k = m_input.below(6); k > 0; --k) {
      const std::string entry = anyName();
      if (dictionary.contains(entry)) {
        continue;
      }
      if (depth > 0 && m_input.oneIn(4)) {
        dictionary.add(make(entry, depth - 1));
      } else if (m_input.oneIn(64)) {
        addRefused(entry, dictionary);
      } else {
        addAnyArray(entry, anyAxes(sizes), dictionary);
      }
    }
    return dictionary;
  }

 private:
  using Axes = std::vector<memory::Axis>;

  /// The sizes of a group's axes: mostly one for each name.
  using Sizes = std::map<std::string, unsigned long>;

  /// Mostly a name that every file takes. Attributes that readers act on, and what names are made
  /// of, are for other tests.
  std::string anyName() {
    static const std::vector<std::string> names = {"a", "b", "x", "y", "a b", "\xC3\xA4", "_1"};
    return m_input.oneIn(32) ? m_input.text(12) : names[m_input.below(names.size())];
  }

  Axes anyAxes(Sizes& sizes) {
    Axes axes;
    for (unsigned long k = m_input.below(4); k > 0; --k) {
      std::string name = anyName();
      name = name.empty() ? "x" : name;  // one without a name has one in the file
      const unsigned long size = m_input.below(4);
      const unsigned long agreed = sizes.emplace(name, size).first->second;
      axes.emplace_back(name, m_input.oneIn(64) ? size : agreed);
    }
    return axes;
  }

  static unsigned long countOf(const Axes& axes) {
    unsigned long count = 1;
    for (const memory::Axis& axis : axes) {
      count *= axis.size();
    }
    return count;
  }

  template <class T>
  T anyValue() {
    if constexpr (std::is_same_v<T, std::string>) {
      return m_input.text(8);
    } else if constexpr (std::is_same_v<T, bool>) {
      return m_input.oneIn(2);
    } else {
      return m_input.bits<T>();
    }
  }

  template <class T>
  std::vector<T> anyValues(unsigned long count) {
    std::vector<T> values;
    for (; count > 0; --count) {
      values.push_back(anyValue<T>());
    }
    return values;
  }

  memory::AttributeValue anyAttribute() {
    const unsigned long count = m_input.below(4);
    switch (m_input.below(5)) {
      case 0:
        return m_input.text(8);
      case 1:
        return anyValues<short>(count);
      case 2:
        return anyValues<unsigned long>(count);
      case 3:
        return anyValues<float>(count);
      default:
        return anyValues<std::string>(2 + count);
    }
  }

  template <class Object>
  void addRemarks(Object& object) {
    for (unsigned long k = m_input.below(3); k > 0; --k) {
      const std::string name = anyName();
      object.setAttribute(name, anyAttribute());
    }
  }

  template <class T>
  void addArray(const std::string& name, Axes axes, memory::Dictionary& to) {
    const unsigned long count = countOf(axes);
    memory::TypedArray<T> array(name, std::move(axes), anyValues<T>(count));
    addRemarks(array);
    to.add(std::move(array));
  }

  void addTimes(const std::string& name, Axes axes, memory::Dictionary& to) {
    std::vector<long> times = anyValues<long>(countOf(axes));
    to.add(memory::TimeArray(name, std::move(axes), std::move(times),
                             static_cast<memory::Calendar>(m_input.below(5))));
  }

  void addAnyArray(const std::string& name, Axes axes, memory::Dictionary& to) {
    using Add = void (AnyDictionary::*)(const std::string&, Axes, memory::Dictionary&);
    static const std::vector<Add> kinds = {
        &AnyDictionary::addArray<double>,        &AnyDictionary::addArray<float>,
        &AnyDictionary::addArray<short>,         &AnyDictionary::addArray<std::string>,
        &AnyDictionary::addArray<long>,          &AnyDictionary::addArray<unsigned char>,
        &AnyDictionary::addArray<unsigned long>, &AnyDictionary::addArray<unsigned short>,
        &AnyDictionary::addArray<bool>,          &AnyDictionary::addTimes};
    (this->*kinds[m_input.below(kinds.size())])(name, std::move(axes), to);
  }

  /// Only numbers and texts can be had back: such an array is to be refused.
  static void addRefused(const std::string& name, memory::Dictionary& to) {
    to.add(memory::ComplexArray(name, {}, {{1, 2}}));
  }

  Input& m_input;
};

}  // namespace quillon::fuzz
