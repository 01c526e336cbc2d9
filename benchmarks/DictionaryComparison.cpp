#include <object_model/ComparisonHelper.h>
#include <object_model/DataInfo.h>
#include <quillon/memory/Dictionary.h>

#include <algorithm>
#include <utility>

#include "Case.h"
#include "Position.h"
#include "UncheckedArray.h"

namespace benchmarks {
namespace {

using object_model::Array;
using object_model::Data;
using object_model::Tuple;
using object_model::helper::areSameDictionaries;
using object_model::helper::ComparisonType;
using quillon::memory::Dictionary;

/// `entries` small arrays in dictionaries inside each other, `perLevel` in each. `last` is the last
/// value of the array that is added last.
Dictionary makeDictionary(unsigned long entries, unsigned long perLevel, double last) {
  constexpr unsigned long VALUES = 3;
  Dictionary level("level");
  for (unsigned long k = 0; k < entries; ++k) {
    if (k % perLevel == 0 && k > 0) {
      Dictionary outer("level");
      outer.add(std::move(level));
      level = std::move(outer);
    }
    level.add(UncheckedArray<double>("measurement " + std::to_string(k), {{"x", VALUES}},
                                     {1, 2, k + 1 == entries ? last : 3, 4}));
  }
  return level;
}

bool sameShapeByHand(const Tuple& first, const Tuple& second) {
  const unsigned long dimensions = first.size();
  bool same = dimensions == second.size();
  for (unsigned long k = 0; same && k < dimensions; ++k) {
    same = first[k] == second[k];
  }
  return same;
}

/// For one-dimensional arrays of floating-point numbers.
bool sameArraysByHand(const Array& first, const Array& second) {
  if (first.getElementType() != second.getElementType() ||
      !sameShapeByHand(first.size(), second.size())) {
    return false;
  }
  bool same = true;
  Position position(1);
  walk({{0, first.size()[0]}}, position, [&] {
    if (first.getValueAsDouble(position) != second.getValueAsDouble(position)) {
      same = false;
    }
  });
  return same;
}

/// The least work: one walk.
bool sameInOneWalk(const object_model::Dictionary& first, const object_model::Dictionary& second) {
  const unsigned long count = first.getNumOfData();
  if (first.getName() != second.getName() || count != second.getNumOfData()) {
    return false;
  }
  bool same = true;
  for (unsigned long k = 0; same && k < count; ++k) {
    const std::string name = first.getDataName(static_cast<int>(k));
    const Data& entry = *first.data(name);
    const Data& match = *second.data(name);
    if (entry.isDictionary() != match.isDictionary()) {
      return false;
    }
    same = entry.isDictionary() ? sameInOneWalk(*entry.asDictionary(), *match.asDictionary())
                                : sameArraysByHand(*entry.asArray(), *match.asArray());
  }
  return same;
}

const std::string& nameOf(const Data& data) { return data.getInformation()->getName(); }

bool sameOutlineByHand(const object_model::Dictionary& first,
                       const object_model::Dictionary& second) {
  const unsigned long count = first.getNumOfData();
  bool same = nameOf(first) == nameOf(second) && count == second.getNumOfData();
  for (unsigned long k = 0; same && k < count; ++k) {
    const Data& entry = *first.data(static_cast<int>(k));
    const Data& match = *second.data(nameOf(entry));
    same = entry.isDictionary() == match.isDictionary();
  }
  return same;
}

/// The least work with the calls that areSameDictionaries() is to make, in their order: the outline
/// is checked first, in a walk of its own.
bool sameInTwoWalks(const object_model::Dictionary& first, const object_model::Dictionary& second) {
  bool same = sameOutlineByHand(first, second);
  const unsigned long count = first.getNumOfData();
  for (unsigned long k = 0; same && k < count; ++k) {
    const Data& entry = *first.data(static_cast<int>(k));
    const Data& match = *second.data(nameOf(entry));
    if (entry.isDictionary()) {
      same = sameInTwoWalks(static_cast<const object_model::Dictionary&>(entry),
                            static_cast<const object_model::Dictionary&>(match));
    } else {
      same = nameOf(entry) == nameOf(match) &&
             sameArraysByHand(static_cast<const Array&>(entry), static_cast<const Array&>(match));
    }
  }
  return same;
}

using ByHand = bool (*)(const object_model::Dictionary& first,
                        const object_model::Dictionary& second);

class DictionaryComparison final : public Operation {
 public:
  DictionaryComparison(unsigned long entries, unsigned long perLevel, ByHand same)
      : m_entries(entries),
        m_perLevel(perLevel),
        m_sameByHand(same),
        m_first(makeDictionary(entries, perLevel, 3)),
        m_second(makeDictionary(entries, perLevel, 3)) {}

  void runLibrary() override {
    m_byLibrary = areSameDictionaries(m_first, m_second, ComparisonType::Exact, 0, &m_message);
  }

  void runFloor() override { m_byHand = m_sameByHand(m_first, m_second); }

  void check() override {
    runLibrary();
    runFloor();
    require(m_byLibrary && m_message.empty(), "areSameDictionaries(): " + m_message);
    require(m_byHand, "the comparison by hand finds a difference");
    const Dictionary other = makeDictionary(m_entries, m_perLevel, 5);
    require(!m_sameByHand(m_first, other), "the comparison by hand finds none");
    const std::string array = "measurement " + std::to_string(m_entries - 1);
    const std::string expected = "Array '" + array + "': The arrays '" + array +
                                 "' have different values at the position (2)': '3.000000' and "
                                 "'5.000000'.";
    std::string message;
    require(!areSameDictionaries(m_first, other, ComparisonType::Exact, 0, &message) &&
                message == expected,
            "areSameDictionaries() of a difference: " + message);
  }

 private:
  unsigned long m_entries;
  unsigned long m_perLevel;
  ByHand m_sameByHand;
  Dictionary m_first;
  Dictionary m_second;
  std::string m_message;
  bool m_byLibrary = false;
  bool m_byHand = false;
};

}  // namespace

void addDictionaryComparisonCases(Cases& cases) {
  constexpr unsigned long ENTRIES = 100'000;
  const auto allInOne = [](unsigned long entries) { return entries; };
  const auto hundredEach = [](unsigned long) { return 100UL; };
  const auto add = [&](const std::string& operation, ByHand same) {
    const auto addShape = [&](const std::string& shape, unsigned long size, auto perLevel) {
      cases.push_back({operation, shape, size, 1.5, [=](unsigned long entries) {
                         return std::make_unique<DictionaryComparison>(entries, perLevel(entries),
                                                                       same);
                       }});
    };
    addShape("tiny", 3, allInOne);
    addShape("wide", ENTRIES, allInOne);
    cases.back().growth = same == sameInOneWalk;
    addShape("deep", ENTRIES, hundredEach);
  };
  add("areSameDictionaries", sameInOneWalk);
  add("areSameDictionaries/two-walks", sameInTwoWalks);
}

}  // namespace benchmarks
