#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <set>

#include "ObjectModel/ComparisonHelper/PlainComparison.h"
#include "ObjectModel/ComparisonHelper/Samples.h"
#include "support/FaultInjection.h"
#include "support/Recording.h"

namespace quillon::test {
namespace {

using object_model::Data;
using ::test::Calls;

/// One comparison of two recorded objects, and what the plain comparison says to it.
class FaultyComparison : public ::test::FaultyOperation {
 public:
  using Compare = std::function<bool(const Data&, const Data&, std::string*)>;

  FaultyComparison(const Data& first, const Data& second, Compare compare, Compare plain,
                   bool explains)
      : m_first(::test::record(first, "1", log())),
        m_second(::test::record(second, "2", log())),
        m_compare(std::move(compare)),
        m_plain(std::move(plain)),
        m_explains(explains) {}

  void renew() override { std::string().swap(m_message); }
  void run() override { runWith(m_compare); }
  std::string result() const override {
    return (!m_same ? "no result" : *m_same ? "same" : "different") + std::string(": ") + m_message;
  }

  // The lookup by name is the one call whose exception is swallowed; the plain comparison shows
  // how.
  std::string endOfFailingCall(const Calls& calls, const std::string& /*passedOn*/) override {
    log().failAt(calls.size() - 1);
    const std::string end = ::test::endOf([this] { runWith(m_plain); });
    m_leftBehind.insert(result());
    return ::test::shown(end, result());
  }

  // The sentence of a difference before the failure, where there is memory for it.
  std::vector<std::string> leftWithoutMemory(const Calls& /*calls*/) override {
    std::vector<std::string> all = {"no result: " + UNTOUCHED};
    for (const std::string& left : m_leftBehind) {
      if (left.rfind("no result", 0) == 0) {
        all.push_back(left);
      }
    }
    return all;
  }

 private:
  void runWith(const Compare& compare) {
    m_message = UNTOUCHED;
    m_same.reset();
    m_same = compare(*m_first, *m_second, m_explains ? &m_message : nullptr);
  }

  std::unique_ptr<Data> m_first;
  std::unique_ptr<Data> m_second;
  Compare m_compare;
  Compare m_plain;
  bool m_explains;
  std::optional<bool> m_same;
  std::string m_message;
  std::set<std::string> m_leftBehind;
};

/// Runs both comparisons with every fault, with a message and without one.
void injectFaults(::test::Faults& faults, const Data& first, const Data& second,
                  const FaultyComparison::Compare& compare,
                  const FaultyComparison::Compare& plain) {
  for (const bool explains : {true, false}) {
    FaultyComparison comparison(first, second, compare, plain, explains);
    const ::test::Faults more = ::test::injectEveryFault(comparison);
    faults.calls += more.calls;
    faults.allocations += more.allocations;
  }
}

// Too long to be kept without an allocation.
const std::string LONG = "a name that needs memory of its own";

constexpr std::array<ComparisonType, 4> MODES = {ComparisonType::Exact, ComparisonType::Absolute,
                                                 ComparisonType::Relative,
                                                 static_cast<ComparisonType>(7)};

void injectIntoArrays(::test::Faults& faults, const object_model::Array& first,
                      const object_model::Array& second) {
  for (const ComparisonType mode : MODES) {
    injectFaults(
        faults, first, second,
        [mode](const Data& a, const Data& b, std::string* message) {
          return object_model::helper::areSameArrays(*a.asArray(), *b.asArray(), mode, 0.25,
                                                     message);
        },
        [mode](const Data& a, const Data& b, std::string* message) {
          return plain::areSameArrays(*a.asArray(), *b.asArray(), mode, 0.25, message);
        });
  }
}

/// Two arrays that differ at some positions, an array with itself, and one of another shape.
template <class T>
void injectIntoValues(::test::Faults& faults, const std::vector<T>& values,
                      const std::vector<T>& others) {
  const auto a = array<T>(LONG, {2, 2}, values);
  injectIntoArrays(faults, a, a);
  injectIntoArrays(faults, a, array<T>(LONG, {2, 2}, others));
  injectIntoArrays(faults, a, array<T>(LONG, {4}, others));
  injectIntoArrays(faults, a, array<T>(LONG, {4, 1}, others));
}

TEST(AreSameArraysWithFaults, OfEveryElementTypeEndsAsPromised) {
  ::test::Faults faults;
  injectIntoValues<unsigned long>(faults, {0, 1, 2, 3}, {0, 9, 2, 8});
  injectIntoValues<long>(faults, {0, -1, 2, -3}, {0, 9, 2, 8});
  injectIntoValues<double>(faults, {0, 1, 2, 3}, {0, 9, NOT_A_NUMBER, 1e300});
  injectIntoValues<std::complex<double>>(faults, {{0, 1}, {2, 3}, 4, 5}, {{0, 1}, {2, 9}, 4, 6});
  injectIntoValues<std::string>(faults, {"", "b", LONG, LONG + "1"}, {"", "c", LONG, LONG + "2"});
  injectIntoValues<bool>(faults, {true, false, true, false}, {true, true, true, true});
  report(faults);
}

TEST(AreSameArraysWithFaults, OfEveryShapeEndsAsPromised) {
  ::test::Faults faults;
  injectIntoArrays(faults, array<long>("A", {}, {1}), array<long>("A", {}, {2}));
  injectIntoArrays(faults, array<long>("A", {2, 0}, {}), array<long>("A", {2, 0}, {}));
  injectIntoArrays(faults, array<long>("A", {1, 2, 1}, {1, 2}),
                   array<long>("A", {1, 2, 1}, {1, 3}));
  injectIntoArrays(faults, array<long>("A", {1, 1, 1, 2}, {1, 2}),
                   array<long>("A", {1, 1, 1, 2}, {1, 3}));
  injectIntoArrays(faults, array<long>("A", {2, 1, 1, 2, 1}, {1, 2, 3, 4}),
                   array<long>("A", {2, 1, 1, 2, 1}, {1, 3, 3, 4}));
  injectIntoArrays(faults, list<long>(LONG + "1", {}), list<long>(LONG + "2", {}));
  injectIntoArrays(faults, list<long>(LONG, {1}), list<double>(LONG, {1}));
  injectIntoArrays(faults, UnreadableArray(LONG, 9, {2}), UnreadableArray(LONG, 9, {2}));
  injectIntoArrays(faults, UnreadableArray(LONG, 9, {0}), UnreadableArray(LONG, 9, {0}));
  report(faults);
}

/// Entries of every kind, nested twice, with differences where `offset` is not 0.
memory::Dictionary everything(long offset, const std::string& last = "last") {
  memory::Dictionary result =
      dictionary(LONG, list<unsigned long>("uint", {1, 2}), array<double>("double", {}, {1.5}),
                 list<std::string>(LONG + " of texts", {LONG, "b"}), dictionary("empty"));
  result.add(list<memory::Dictionary>(
      LONG + " of items",
      several(dictionary("a", list<long>(LONG, {1, 2})),
              dictionary("b", dictionary(LONG, list<long>("x", {1, 2 + offset}))))));
  result.add(dictionary("sub", dictionary("leaf", list<long>("x", {1, 2 + offset}))));
  result.add(list<bool>(last, {true}));
  return result;
}

std::vector<std::pair<memory::Dictionary, memory::Dictionary>> dictionaryPairs() {
  std::vector<std::pair<memory::Dictionary, memory::Dictionary>> pairs;
  const auto add = [&](memory::Dictionary&& first, memory::Dictionary&& second) {
    pairs.emplace_back(std::move(first), std::move(second));
  };
  add(everything(0), everything(0));
  add(everything(0), everything(5));
  add(everything(0), everything(0, LONG + " that is not there"));
  add(dictionary(LONG), dictionary(LONG + "2"));
  add(dictionary(LONG), dictionary(LONG, list<long>("x", {1})));
  add(dictionary(LONG, list<long>("x", {1})), dictionary(LONG, dictionary("x")));
  add(dictionary(LONG, dictionary("x", dictionary("y", dictionary("z")))),
      dictionary(LONG, dictionary("x", dictionary("y", list<long>("z", {})))));
  add(dictionary("A", list<long>("x", {1}), list<double>("y", {1})),
      dictionary("A", list<double>("y", {2}), list<long>("x", {1})));
  return pairs;
}

TEST(AreSameArraysWithFaults, OfDictionariesEndsAsPromised) {
  ::test::Faults faults;
  const auto make = [](long first, long second) {
    return list<memory::Dictionary>(LONG, several(everything(first), everything(second)));
  };
  injectIntoArrays(faults, make(0, 0), make(0, 0));
  injectIntoArrays(faults, make(0, 0), make(5, 0));
  report(faults);
}

TEST(AreSameDictionariesWithFaults, EndsAsPromised) {
  ::test::Faults faults;
  for (const auto& [first, second] : dictionaryPairs()) {
    for (const ComparisonType mode : {ComparisonType::Relative, static_cast<ComparisonType>(7)}) {
      injectFaults(
          faults, first, second,
          [mode](const Data& a, const Data& b, std::string* message) {
            return object_model::helper::areSameDictionaries(*a.asDictionary(), *b.asDictionary(),
                                                             mode, 0.25, message);
          },
          [mode](const Data& a, const Data& b, std::string* message) {
            return plain::areSameDictionaries(*a.asDictionary(), *b.asDictionary(), mode, 0.25,
                                              message);
          });
    }
  }
  report(faults);
}

TEST(AreSimilarDictionariesWithFaults, EndsAsPromised) {
  ::test::Faults faults;
  for (const auto& [first, second] : dictionaryPairs()) {
    injectFaults(
        faults, first, second,
        [](const Data& a, const Data& b, std::string* message) {
          return object_model::helper::areSimilarDictionaries(*a.asDictionary(), *b.asDictionary(),
                                                              message);
        },
        [](const Data& a, const Data& b, std::string* message) {
          return plain::areSimilarDictionaries(*a.asDictionary(), *b.asDictionary(), message);
        });
  }
  report(faults);
}

}  // namespace
}  // namespace quillon::test
