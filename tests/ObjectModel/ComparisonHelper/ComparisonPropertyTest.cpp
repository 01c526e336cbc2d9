#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <algorithm>

#include "ObjectModel/ComparisonHelper/Palette.h"
#include "ObjectModel/ComparisonHelper/PlainComparison.h"
#include "ObjectModel/ComparisonHelper/Samples.h"
#include "support/Properties.h"
#include "support/Recording.h"

namespace quillon::test {
namespace {

using object_model::Data;
using ::test::CallLog;
using ::test::Failure;
using ::test::pick;
using ::test::record;

[[maybe_unused]] const bool HAS_PARAMETERS = ::test::tryCases(3000);

bool rarely(int oneIn) { return pick(oneIn) == oneIn - 1; }

template <class T>
T anyValue() {
  if constexpr (std::is_same_v<T, bool>) {
    return pick(2) == 1;
  } else if constexpr (std::is_same_v<T, std::complex<double>>) {
    const double real = anyValue<double>();
    return {real, anyValue<double>()};
  } else {
    const auto& values = palette<T>();
    return values[static_cast<std::size_t>(pick(static_cast<int>(values.size())))];
  }
}

/// Two of a kind, mostly alike.
template <class T>
using Twins = std::pair<T, T>;

using DataTwins = Twins<std::unique_ptr<Data>>;
using Shape = std::vector<unsigned long>;

Shape anyShape() {
  Shape shape(static_cast<std::size_t>(pick(7)));
  for (unsigned long& extent : shape) {
    extent = rarely(12) ? 0 : static_cast<unsigned long>(1 + pick(shape.size() > 3 ? 2 : 3));
  }
  return shape;
}

std::size_t elementsOf(const Shape& shape) {
  std::size_t count = 1;
  for (const unsigned long extent : shape) {
    count *= extent;
  }
  return count;
}

Twins<Shape> shapeTwins() {
  const Shape shape = anyShape();
  Shape other = shape;
  if (rarely(20)) {
    other = anyShape();
  }
  return {shape, other};
}

Twins<std::string> nameTwins(const std::string& name) {
  return {name, rarely(40) ? name + "'" : name};
}

template <class T>
DataTwins arrayTwins(const std::string& name) {
  const auto [shape, otherShape] = shapeTwins();
  std::vector<T> values;
  for (std::size_t i = 0; i < elementsOf(shape); ++i) {
    values.push_back(anyValue<T>());
  }
  std::vector<T> others = values;
  others.resize(elementsOf(otherShape));
  for (std::size_t i = 0; i < others.size(); ++i) {
    if (rarely(10)) {
      others[i] = anyValue<T>();
    }
  }
  const auto [first, second] = nameTwins(name);
  return {std::make_unique<memory::TypedArray<T>>(first, axes(shape), std::move(values)),
          std::make_unique<memory::TypedArray<T>>(second, axes(otherShape), std::move(others))};
}

Twins<memory::Dictionary> dictionaryTwins(const std::string& name, int depth);

DataTwins dictionaryArrayTwins(const std::string& name, int depth) {
  const Shape shape = rarely(3) ? anyShape() : Shape{static_cast<unsigned long>(pick(4))};
  std::vector<memory::Dictionary> firsts;
  std::vector<memory::Dictionary> seconds;
  for (std::size_t i = 0; i < elementsOf(shape); ++i) {
    auto [first, second] = dictionaryTwins("item", depth);
    firsts.push_back(std::move(first));
    seconds.push_back(std::move(second));
  }
  return {std::make_unique<memory::DictionaryArray>(name, axes(shape), std::move(firsts)),
          std::make_unique<memory::DictionaryArray>(name, axes(shape), std::move(seconds))};
}

DataTwins unreadableTwins(const std::string& name) {
  const int type = pick(10) - 1;
  const auto [shape, otherShape] = shapeTwins();
  return {std::make_unique<UnreadableArray>(name, type, shape),
          std::make_unique<UnreadableArray>(name, type, otherShape)};
}

DataTwins anyArrayTwins(const std::string& name, int depth) {
  switch (pick(depth > 0 ? 9 : 7)) {
    case 0:
      return arrayTwins<long>(name);
    case 1:
      return arrayTwins<unsigned long>(name);
    case 2:
      return arrayTwins<double>(name);
    case 3:
      return arrayTwins<std::complex<double>>(name);
    case 4:
      return arrayTwins<std::string>(name);
    case 5:
      return arrayTwins<bool>(name);
    case 6:
      return rarely(4) ? unreadableTwins(name) : arrayTwins<double>(name);
    default:
      return dictionaryArrayTwins(name, depth - 1);
  }
}

DataTwins entryTwins(const std::string& name, int depth) {
  if (depth > 0 && pick(3) == 2) {
    auto [first, second] = dictionaryTwins(name, depth - 1);
    return {std::make_unique<memory::Dictionary>(std::move(first)),
            std::make_unique<memory::Dictionary>(std::move(second))};
  }
  return anyArrayTwins(name, depth);
}

Twins<memory::Dictionary> dictionaryTwins(const std::string& name, int depth) {
  const auto [firstName, secondName] = nameTwins(name);
  memory::Dictionary first(firstName);
  memory::Dictionary second(secondName);
  std::vector<std::unique_ptr<Data>> seconds;
  const int count = pick(4);
  for (int i = 0; i < count; ++i) {
    auto [entry, other] = entryTwins("entry" + std::to_string(i), depth);
    if (rarely(30)) {
      other = entryTwins("entry" + std::to_string(i), depth).second;
    }
    first.add(std::move(entry));
    seconds.push_back(std::move(other));
  }
  if (pick(2) == 1) {
    std::reverse(seconds.begin(), seconds.end());
  }
  if (!seconds.empty() && rarely(40)) {
    seconds.pop_back();
  }
  for (auto& entry : seconds) {
    second.add(std::move(entry));
  }
  return {std::move(first), std::move(second)};
}

ComparisonType anyMode() {
  // Mostly one that exists: the others end at the first number.
  return MODES[static_cast<std::size_t>(pick(rarely(6) ? 6 : 3))];
}

double anyTolerance() {
  return TOLERANCES[static_cast<std::size_t>(pick(static_cast<int>(TOLERANCES.size())))];
}

/// Compares as the library and as the plain comparison do and requires that neither a caller nor
/// the objects can tell which it was, even if one of the calls fails.
template <class Actual, class Expected>
void requireNoneCanTell(CallLog& log, const Actual& actual, const Expected& expected) {
  const bool explains = !rarely(5);
  const bool fails = rarely(3);
  const auto call = static_cast<std::size_t>(fails ? pick(80) : 0);
  const auto failure = static_cast<Failure>(fails ? pick(3) : 0);
  const auto run = [&](const auto& compare) {
    if (fails) {
      log.failAt(call, failure);
    } else {
      log.reset();
    }
    const Outcome outcome = outcomeOf(compare, explains);
    return std::make_pair(outcome, log.calls());
  };
  const auto [expectedOutcome, expectedCalls] = run(expected);
  const auto [actualOutcome, actualCalls] = run(actual);
  RC_ASSERT(actualOutcome == expectedOutcome);
  RC_ASSERT(actualCalls == expectedCalls);
  RC_CLASSIFY(!expectedOutcome.thrown.empty(), "threw");
  RC_CLASSIFY(expectedOutcome.same == true, "same");
  RC_CLASSIFY(expectedOutcome.same == false, "different");
  RC_CLASSIFY(!expectedOutcome.thrown.empty() && expectedOutcome.message != UNTOUCHED,
              "threw after a difference");
}

RC_GTEST_PROP(ComparisonProperty, ArraysCompareAsThePlainComparisonSays, ()) {
  const auto [a, b] = anyArrayTwins("A", 1);
  const auto mode = anyMode();
  const double tolerance = anyTolerance();
  CallLog log;
  const auto first = record(*a, "1", log);
  const auto second = record(*b, "2", log);
  requireNoneCanTell(
      log,
      [&](std::string* message) {
        return object_model::helper::areSameArrays(*first->asArray(), *second->asArray(), mode,
                                                   tolerance, message);
      },
      [&](std::string* message) {
        return plain::areSameArrays(*first->asArray(), *second->asArray(), mode, tolerance,
                                    message);
      });
}

RC_GTEST_PROP(ComparisonProperty, DictionariesCompareAsThePlainComparisonSays, ()) {
  const auto [a, b] = dictionaryTwins("A", 2);
  const auto mode = anyMode();
  const double tolerance = anyTolerance();
  CallLog log;
  const auto first = record(a, "1", log);
  const auto second = record(b, "2", log);
  requireNoneCanTell(
      log,
      [&](std::string* message) {
        return object_model::helper::areSameDictionaries(
            *first->asDictionary(), *second->asDictionary(), mode, tolerance, message);
      },
      [&](std::string* message) {
        return plain::areSameDictionaries(*first->asDictionary(), *second->asDictionary(), mode,
                                          tolerance, message);
      });
}

RC_GTEST_PROP(ComparisonProperty, OutlinesCompareAsThePlainComparisonSays, ()) {
  const auto [a, b] = dictionaryTwins("A", 1);
  CallLog log;
  const auto first = record(a, "1", log);
  const auto second = record(b, "2", log);
  requireNoneCanTell(
      log,
      [&](std::string* message) {
        return object_model::helper::areSimilarDictionaries(*first->asDictionary(),
                                                            *second->asDictionary(), message);
      },
      [&](std::string* message) {
        return plain::areSimilarDictionaries(*first->asDictionary(), *second->asDictionary(),
                                             message);
      });
}

}  // namespace
}  // namespace quillon::test
