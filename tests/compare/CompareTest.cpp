#include <gmock/gmock.h>
#include <object_model/InvalidCall.h>

#include <thread>
#include <tuple>

#include "Support.h"
#include "support/Thrown.h"

namespace quillon::compare {
namespace {

using memory::BooleanArray;
using memory::Dictionary;
using memory::DictionaryArray;
using memory::DoubleArray;
using memory::IntArray;
using memory::StringArray;
using memory::UIntArray;
using object_model::ElementType;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(CompareTest, SameDictionariesAreTheSameAndCounted) {
  const Dictionary a =
      dictionary("a", row<double>("x", {1, 2}), dictionary("g", row<long>("n", {3})));
  const Dictionary b =
      dictionary("b", row<double>("x", {1, 2}), dictionary("g", row<long>("n", {3})));
  const Report report = compare(a, b);
  EXPECT_TRUE(report.same);
  EXPECT_EQ(report.values, 3);
  EXPECT_THAT(lines(report), IsEmpty());
  EXPECT_EQ(text(report), "the same: 3 values");
  EXPECT_EQ(message(report), "");
}

TEST(CompareTest, RowsFollowTheFirstSideThenComeThoseOfTheSecondAlone) {
  const Dictionary a = dictionary("a", row<double>("z", {1}), row<double>("lone", {1}),
                                  dictionary("g", row<long>("n", {3}), row<long>("m", {3})));
  const Dictionary b =
      dictionary("b", dictionary("more", row<long>("k", {1})),
                 dictionary("g", row<long>("new", {1}), row<long>("n", {4}), row<long>("m", {3})),
                 row<double>("z", {2}));
  EXPECT_THAT(linesOf(a, b),
              ElementsAre("/z: 1 of 1 values differ; the largest delta is 1 at x=0: 1 and 2",
                          "/lone: only in the first",
                          "/g/n: 1 of 1 values differ; the largest delta is 1 at x=0: 3 and 4",
                          "/g/new: only in the second", "/more: only in the second"));
}

TEST(CompareTest, KindsOfEntriesDiffer) {
  const Dictionary a = dictionary("a", dictionary("x"), row<long>("y", {1}));
  const Dictionary b = dictionary("b", row<long>("x", {1}), dictionary("y"));
  EXPECT_THAT(linesOf(a, b), ElementsAre("/x: the kinds differ: dictionary and array",
                                         "/y: the kinds differ: array and dictionary"));
  EXPECT_THAT(linesOf(a, row<long>("x", {1})),
              ElementsAre("/: the kinds differ: dictionary and array"));
}

TEST(CompareTest, NamesOfTheRootsAreNotCompared) {
  EXPECT_TRUE(compare(row<long>("a", {1}), row<long>("b", {1})).same);
}

TEST(CompareTest, ShapesAndDimensionsAreShownSlowestFirst) {
  const DoubleArray a("a", {{"lat", 2}, {"time", 1}}, {1, 2});
  EXPECT_THAT(linesOf(a, DoubleArray("a", {{"lat", 3}, {"time", 1}}, {1, 2, 3})),
              ElementsAre("/: the shapes differ: (1, 2) and (1, 3)"));
  EXPECT_THAT(linesOf(a, DoubleArray("a", {{"lat", 2}}, {1, 2})),
              ElementsAre("/: the shapes differ: (1, 2) and (2)"));
  EXPECT_THAT(linesOf(a, DoubleArray("a", {}, {1})),
              ElementsAre("/: the shapes differ: (1, 2) and ()"));
  EXPECT_THAT(
      linesOf(a, DoubleArray("a", {{"lon", 2}, {"time", 1}}, {1, 3})),
      ElementsAre("/: the dimensions differ: (time, lat) and (time, lon)",
                  "/: 1 of 2 values differ; the largest delta is 1 at time=0, lat=1: 2 and 3"));
}

TEST(CompareTest, AnyDimensionMayHaveAnotherName) {
  EXPECT_THAT(linesOf(DoubleArray("a", {{"lat", 1}, {"time", 1}}, {1}),
                      DoubleArray("a", {{"lat", 1}, {"date", 1}}, {1})),
              ElementsAre("/: the dimensions differ: (time, lat) and (date, lat)"));
}

TEST(CompareTest, AllReasonsOfOneEntryComeInTheirOrder) {
  RichArray a("a", {{"x", 2}}, {1, 2});
  StoredArray<long> b("a", {2}, {1, 3});
  a.setUnit("K");
  a.given = {{"source", std::string("x")}};
  Options options;
  options.attributes = true;
  EXPECT_THAT(linesOf(a, b, options),
              ElementsAre("/: the dimensions differ: (x) and (d0)",
                          "/: the element types differ: Double and Int",
                          "/: the units differ: 'K' and ''", "/@source: only in the first: 'x'",
                          "/: 1 of 2 values differ; the largest delta is 1 at x=1: 2 and 3"));
}

TEST(CompareTest, OnlyValuesHaveFigures) {
  const std::vector<Difference> rows =
      compare(dictionary("a", row<double>("x", {1})), Dictionary("b")).rows;
  ASSERT_EQ(rows.size(), 1);
  EXPECT_EQ(rows[0].count, 0);
  EXPECT_EQ(rows[0].size, 0);
  EXPECT_EQ(rows[0].missing, 0);
  EXPECT_TRUE(std::isnan(rows[0].largestRelative));
  EXPECT_TRUE(std::isnan(rows[0].mean));
}

TEST(CompareTest, PhysicalUnitsDifferWhereShownOnesAgree) {
  DoubleArray a = row<double>("a", {1});
  DoubleArray b = row<double>("a", {1});
  a.setUnit("m");
  b.setUnit("m");
  b.setPhysicalUnit("cm");
  EXPECT_THAT(linesOf(a, b), ElementsAre("/: the units differ: 'm' and 'cm'"));
}

TEST(CompareTest, ShownUnitsDifferWherePhysicalOnesAgree) {
  DoubleArray a = row<double>("a", {1});
  DoubleArray b = row<double>("a", {1});
  a.setUnit("m");
  b.setUnit("metre");
  a.setPhysicalUnit("m");
  b.setPhysicalUnit("m");
  EXPECT_THAT(linesOf(a, b), ElementsAre("/: the units differ: 'm' and 'metre'"));
}

TEST(CompareTest, SizesOfTypesAreComparedWithAttributesOnly) {
  const StoredArray<float> a("a", {2}, {0.5F, 1.5F});
  const StoredArray<double> b("a", {2}, {0.5, 1.5});
  EXPECT_TRUE(compare(a, b).same);
  Options options;
  options.attributes = true;
  EXPECT_THAT(linesOf(a, b, options),
              ElementsAre("/: the element types differ: float32 and float64"));
}

TEST(CompareTest, DecodedNumbersHaveNoElementType) {
  const IntArray a = row<long>("a", {1, 2});
  const DoubleArray b = row<double>("a", {1, 2});
  EXPECT_THAT(linesOf(a, b), ElementsAre("/: the element types differ: Int and Double"));
  Options options;
  options.isDecoded = [&](const object_model::Array& array) { return &array == &b; };
  EXPECT_TRUE(compare(a, b, options).same);
  EXPECT_THAT(linesOf(row<std::string>("a", {"1", "2"}), b, options),
              ElementsAre("/: the element types differ: String and Double"));
}

TEST(CompareTest, TextsAndTruthValuesHaveNoDelta) {
  EXPECT_THAT(
      linesOf(row<std::string>("a", {"x", "y'\n", "z"}), row<std::string>("a", {"x", "Y", "Z"})),
      ElementsAre("/: 2 of 3 values differ; the first is at x=1: 'y'\\n' and 'Y'"));
  EXPECT_THAT(linesOf(BooleanArray("a", {}, {true}), BooleanArray("a", {}, {false})),
              ElementsAre("/: 1 of 1 values differ; the first is: true and false"));
}

TEST(CompareTest, TextsAndNumbersAreNotComparedByValue) {
  const Report report = compare(row<std::string>("a", {"1"}), row<long>("a", {1}));
  EXPECT_THAT(lines(report), ElementsAre("/: the element types differ: String and Int"));
  EXPECT_EQ(report.values, 0);
}

TEST(CompareTest, TimesOfDifferentUnitsAreNotComparedByValue) {
  RichArray a("a", {{"x", 1}}, {1});
  RichArray b("a", {{"x", 1}}, {24});
  a.setUnit("days since 2000-01-01");
  b.setUnit("hours since 2000-01-01");
  EXPECT_THAT(linesOf(a, b), ElementsAre("/: the units differ: 'days since 2000-01-01' and "
                                         "'hours since 2000-01-01'"));
  b.setUnit("days since 2000-01-01");
  EXPECT_THAT(linesOf(a, b),
              ElementsAre("/: 1 of 1 values differ; the largest delta is 23 at x=0: 1 and 24"));
}

TEST(CompareTest, EmptyArraysAreTheSame) {
  const DoubleArray a("a", {{"x", 0}, {"y", 3}}, {});
  const Report report = compare(a, a);
  EXPECT_TRUE(report.same);
  EXPECT_EQ(report.values, 0);
}

std::vector<Dictionary> items(double last) {
  std::vector<Dictionary> result;
  for (int k = 0; k < 6; ++k) {
    result.push_back(dictionary("item", row<double>("v", {k == 5 ? last : 0})));
  }
  return result;
}

TEST(CompareTest, ElementsThatAreDictionariesAreComparedAsEntries) {
  const Dictionary a = dictionary("a", DictionaryArray("items", {{"x", 2}, {"y", 3}}, items(1)));
  const Dictionary b = dictionary("b", DictionaryArray("items", {{"x", 2}, {"y", 3}}, items(2)));
  const Report report = compare(a, b);
  EXPECT_THAT(
      lines(report),
      ElementsAre("/items[2,1]/v: 1 of 1 values differ; the largest delta is 1 at x=0: 1 and 2"));
  EXPECT_EQ(report.values, 6);
}

TEST(CompareTest, ElementsAreComparedInStorageOrder) {
  std::vector<Dictionary> empty;
  for (int k = 0; k < 6; ++k) {
    empty.emplace_back("item");
  }
  const DictionaryArray a("items", {{"x", 2}, {"y", 3}}, items(0));
  const DictionaryArray b("items", {{"x", 2}, {"y", 3}}, std::move(empty));
  EXPECT_THAT(linesOf(a, b),
              ElementsAre("/[0,0]/v: only in the first", "/[0,1]/v: only in the first",
                          "/[1,0]/v: only in the first", "/[1,1]/v: only in the first",
                          "/[2,0]/v: only in the first", "/[2,1]/v: only in the first"));
}

TEST(CompareTest, ElementsOfARootHaveAPath) {
  const DictionaryArray a("items", {{"x", 6}}, items(1));
  const DictionaryArray b("items", {{"x", 6}}, items(2));
  EXPECT_THAT(linesOf(a, b),
              ElementsAre("/[5]/v: 1 of 1 values differ; the largest delta is 1 at x=0: 1 and 2"));
}

TEST(CompareTest, EntryThatCannotBeReadEndsNothing) {
  const auto make = [](double value) {
    Dictionary result("a");
    result.add(
        std::make_unique<FailingArray<std::runtime_error>>("plain", std::runtime_error("no\n")));
    result.add(std::make_unique<FailingArray<object_model::InvalidCall>>(
        "own", object_model::InvalidCall("closed")));
    result.add(std::make_unique<FailingArray<std::bad_alloc>>("large", std::bad_alloc()));
    result.add(row<double>("x", {value}));
    return result;
  };
  const Report report = compare(make(1), make(2));
  EXPECT_THAT(lines(report),
              ElementsAre("/x: 1 of 1 values differ; the largest delta is 1 at x=0: 1 and 2",
                          "/plain: not compared: no\\n", "/own: not compared: closed",
                          "/large: not compared: there is not enough memory"));
  const Report same = compare(make(1), make(1));
  EXPECT_FALSE(same.same);
  EXPECT_THAT(same.rows, IsEmpty());
  EXPECT_EQ(message(same), "/plain: not compared: no\\n");
}

TEST(CompareTest, OtherExceptionsPassThrough) {
  const FailingArray<int> array("a", 7);
  EXPECT_THROW(std::ignore = compare(array, array), int);
}

TEST(CompareTest, NameThatOccursTwiceIsComparedOnce) {
  const DoubleArray entry = row<double>("a", {1});
  const LooseDictionary twice({"a", "a"}, &entry);
  const LooseDictionary once({"a"}, &entry);
  EXPECT_THAT(linesOf(twice, once),
              ElementsAre("/a: not compared: the first has several entries of this name"));
  EXPECT_THAT(linesOf(once, twice),
              ElementsAre("/a: not compared: the second has several entries of this name"));
  EXPECT_EQ(compare(twice, once).values, 1);
}

TEST(CompareTest, EntryThatIsNoneIsNotCompared) {
  const DoubleArray entry = row<double>("a", {1});
  const LooseDictionary none({"a"}, nullptr);
  const LooseDictionary some({"a"}, &entry);
  EXPECT_THAT(linesOf(none, none),
              ElementsAre("/a: not compared: neither side has an object there"));
  EXPECT_THAT(linesOf(none, some), ElementsAre("/a: not compared: the first has no object there"));
  EXPECT_THAT(linesOf(some, none), ElementsAre("/a: not compared: the second has no object there"));
}

TEST(CompareTest, LookupThatFailsIsNotCompared) {
  const DoubleArray entry = row<double>("a", {1});
  const LooseDictionary a({"thrown", "b"}, &entry);
  const Report report = compare(a, a);
  EXPECT_THAT(lines(report), ElementsAre("/thrown: not compared: gone"));
  EXPECT_EQ(report.values, 1);
}

TEST(CompareTest, DeepNestingCostsNoStack) {
  const auto nested = [](double value) {
    auto result = std::make_unique<Dictionary>(dictionary("d", row<double>("v", {value})));
    for (int k = 0; k < 10'000; ++k) {
      auto outer = std::make_unique<Dictionary>("d");
      outer->add(std::move(result));
      result = std::move(outer);
    }
    return result;
  };
  // Destroying them recurses, comparing them must not: it runs where there is little stack.
  const std::unique_ptr<Dictionary> first = nested(1);
  const std::unique_ptr<Dictionary> second = nested(2);
  Report report;
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, 256UL << 10U);
  struct Work {
    const Dictionary& first;
    const Dictionary& second;
    Report& report;
  } work{*first, *second, report};
  pthread_t thread{};
  pthread_create(
      &thread, &attributes,
      [](void* argument) -> void* {
        auto* const given = static_cast<Work*>(argument);
        given->report = compare(given->first, given->second);
        return nullptr;
      },
      &work);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
  ASSERT_EQ(report.rows.size(), 1);
  EXPECT_EQ(report.rows[0].path.size(), 2 * 10'000 + 2);
}

TEST(CompareTest, ProgressCountsAllValues) {
  unsigned long done = 0;
  Options options;
  options.progress = [&](unsigned long values) { done += values; };
  const std::vector<double> many((1UL << 20U) + 5);
  const Dictionary a = dictionary("a", row<double>("x", many), row<std::string>("t", {"a", "b"}));
  EXPECT_EQ(compare(a, a, options).values, done);
  EXPECT_EQ(done, many.size() + 2);
}

TEST(CompareTest, ProgressCanEndTheComparison) {
  Options options;
  options.progress = [](unsigned long) { throw std::runtime_error("enough"); };
  const DoubleArray a = row<double>("a", {1});
  EXPECT_EQ(test::thrownBy<std::runtime_error>([&] { return compare(a, a, options); }), "enough");
}

TEST(CompareTest, FiguresFromElsewhereStandForTheValues) {
  const Dictionary a = dictionary("a", row<double>("x", {1, 2}), row<double>("y", {1}));
  const Dictionary b = dictionary("b", row<double>("x", {1, 2}), row<double>("y", {2}));
  Options options = within(0, 0.25);
  std::vector<std::pair<std::string, double>> asked;
  options.figures = [&](const std::string& path, const Tolerance& tolerance) {
    asked.emplace_back(path, tolerance.relative);
    const auto known = figures(row<double>("p", {5}), row<double>("p", {8}), {}, {1}, {2});
    return path == "/x" ? std::optional(FiguresInParts{known, {"its first half is gone"}})
                        : std::nullopt;
  };
  const Report report = compare(a, b, options);
  EXPECT_EQ(asked, (std::vector<std::pair<std::string, double>>{{"/x", 0.25}, {"/y", 0.25}}));
  EXPECT_EQ(text(report),
            "/x: 1 of 1 values differ; the largest delta is 3 at x=1: 5 and 8\n"
            "/y: 1 of 1 values differ; the largest delta is 1 at x=0: 1 and 2\n"
            "/x: not compared: its first half is gone");
  EXPECT_EQ(report.values, 2);
  EXPECT_FALSE(report.same);
}

TEST(CompareTest, FiguresFromElsewhereStandAtThePlacesOfTheFirstSide) {
  const DoubleArray a("a", {{"x", 2}}, {1, 2});
  const DoubleArray b("a", {{"y", 2}}, {1, 3});
  Options options;
  options.figures = [&](const std::string&, const Tolerance&) {
    return std::optional(FiguresInParts{figures(a, b, {}), {}});
  };
  EXPECT_EQ(text(compare(a, b, options)),
            "/: the dimensions differ: (x) and (y)\n"
            "/: 1 of 2 values differ; the largest delta is 1 at x=1: 2 and 3");
}

TEST(CompareTest, FiguresFromElsewhereAreNotAskedForWhereShapesDiffer) {
  Options options;
  options.figures = [](const std::string&, const Tolerance&) -> std::optional<FiguresInParts> {
    throw std::runtime_error("asked");
  };
  EXPECT_EQ(compare(row<double>("a", {1}), row<double>("a", {1, 2}), options).rows.size(), 1);
  const DoubleArray a = row<double>("a", {1});
  EXPECT_EQ(test::thrownBy<std::runtime_error>([&] { return compare(a, a, options); }), "asked");
}

TEST(CompareTest, ToleranceMustBeZeroOrGreater) {
  const DoubleArray a = row<double>("a", {1});
  for (const double wrong : {-1.0, NOT_A_NUMBER}) {
    EXPECT_EQ(test::thrownBy<std::invalid_argument>([&] { return compare(a, a, within(wrong)); }),
              "A tolerance must be 0 or greater");
    EXPECT_EQ(
        test::thrownBy<std::invalid_argument>([&] { return compare(a, a, within(0, wrong)); }),
        "A tolerance must be 0 or greater");
    Options options;
    options.tolerances = {{"/b", {0, wrong}}};
    EXPECT_THROW(std::ignore = compare(a, a, options), std::invalid_argument);
  }
}

TEST(CompareTest, ManyThreadsCompareTheSameObjects) {
  const Dictionary a = dictionary("a", row<double>("x", std::vector<double>(5000, 1)));
  const Dictionary b = dictionary("a", row<double>("x", std::vector<double>(5000, 2)));
  std::vector<unsigned long> counts(4);
  std::vector<std::thread> threads;
  for (unsigned long& count : counts) {
    threads.emplace_back([&] { count = compare(a, b).rows.at(0).count; });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_THAT(counts, ElementsAre(5000, 5000, 5000, 5000));
}

TEST(CompareTest, DimensionNamesGoBeforeShapes) {
  EXPECT_THAT(
      linesOf(DoubleArray("a", {{"x", 1}}, {1}), DoubleArray("a", {{"y", 2}}, {1, 2})),
      ElementsAre("/: the dimensions differ: (x) and (y)", "/: the shapes differ: (1) and (2)"));
}

TEST(CompareTest, DecodedNumbersOfTheFirstSideHaveNoElementType) {
  const DoubleArray a = row<double>("a", {1, 2});
  const IntArray b = row<long>("a", {1, 2});
  Options options;
  options.isDecoded = [&](const object_model::Array& array) { return &array == &a; };
  EXPECT_TRUE(compare(a, b, options).same);
}

TEST(CompareTest, NumbersAreComparedWithTimesOfAnotherUnitByValue) {
  RichArray a("a", {{"x", 1}}, {1});
  DoubleArray b = row<double>("a", {2});
  a.setUnit("days since 2000-01-01");
  b.setUnit("hours since 2000-01-01");
  const std::string values = ": 1 of 1 values differ; the largest delta is 1 at x=0: ";
  EXPECT_EQ(linesOf(a, b).at(1), "/" + values + "1 and 2");
  EXPECT_EQ(linesOf(b, a).at(1), "/" + values + "2 and 1");
}

TEST(CompareTest, LoneEntriesHaveTheirKind) {
  const std::vector<Difference> rows =
      compare(dictionary("a", row<long>("x", {1}), dictionary("y")),
              dictionary("b", row<long>("v", {1}), dictionary("w")))
          .rows;
  ASSERT_EQ(rows.size(), 4);
  EXPECT_EQ(rows[0].first, Value("array"));
  EXPECT_EQ(rows[1].first, Value("dictionary"));
  EXPECT_EQ(rows[1].second, Value());
  EXPECT_EQ(rows[2].first, Value());
  EXPECT_EQ(rows[2].second, Value("array"));
  EXPECT_EQ(rows[3].second, Value("dictionary"));
}

TEST(CompareTest, LoneEntryThatIsNoneHasNoKind) {
  const LooseDictionary none({"a"}, nullptr);
  const std::vector<Difference> rows = compare(none, Dictionary("b")).rows;
  ASSERT_EQ(rows.size(), 1);
  EXPECT_EQ(rows[0].reason, Reason::OnlyInFirst);
  EXPECT_EQ(rows[0].first, Value());
}

/// An array that does not say so.
class OddArray final : public memory::ArrayBase {
 public:
  explicit OddArray(object_model::ElementType type) : ArrayBase("odd", type, {}) {}
  using ArrayBase::asArray;
  const object_model::Array* asArray() const override { return nullptr; }
};

TEST(CompareTest, WhatIsNeitherArrayNorDictionaryIsNotCompared) {
  const OddArray odd(ElementType::Double);
  EXPECT_THAT(linesOf(odd, odd),
              ElementsAre("/: not compared: it is neither an array nor a dictionary"));
  EXPECT_THAT(linesOf(odd, row<long>("a", {1})),
              ElementsAre("/: the kinds differ: neither array nor dictionary and array"));
}

TEST(CompareTest, ElementsOfAnUnknownTypeAreNotCompared) {
  class Unknown final : public memory::ArrayBase {
   public:
    Unknown() : ArrayBase("unknown", static_cast<ElementType>(7), {}) {}
  };
  EXPECT_THAT(linesOf(Unknown(), Unknown()),
              ElementsAre("/: not compared: its elements are of element type 7"));
}

TEST(CompareTest, FiguresFromElsewhereAreAskedForWithTheTolerancesOfTheirPaths) {
  const Dictionary a = dictionary("a", row<double>("x", {1}), row<double>("y", {1}));
  Options options = within(0, 0.25);
  options.tolerances = {{"/y", {0.5, 0}}};
  std::vector<std::tuple<std::string, double, double>> asked;
  options.figures = [&](const std::string& path, const Tolerance& tolerance) {
    asked.emplace_back(path, tolerance.absolute, tolerance.relative);
    return std::optional(FiguresInParts());
  };
  EXPECT_TRUE(compare(a, a, options).same);
  EXPECT_THAT(asked, ElementsAre(std::tuple("/x", 0, 0.25), std::tuple("/y", 0.5, 0)));
}

TEST(CompareTest, FiguresFromElsewhereAreNotAskedForTimesOfDifferentUnits) {
  RichArray a("a", {{"x", 1}}, {1});
  RichArray b("a", {{"x", 1}}, {24});
  a.setUnit("days since 2000-01-01");
  b.setUnit("hours since 2000-01-01");
  Options options;
  options.figures = [](const std::string&, const Tolerance&) -> std::optional<FiguresInParts> {
    throw std::runtime_error("asked");
  };
  EXPECT_THAT(linesOf(a, b, options), ElementsAre("/: the units differ: 'days since 2000-01-01' "
                                                  "and 'hours since 2000-01-01'"));
}

TEST(CompareTest, DictionariesAndNumbersAreNotComparedByValue) {
  const DictionaryArray dictionaries("a", {{"x", 6}}, items(1));
  const DoubleArray numbers = row<double>("a", std::vector<double>(6));
  const Report report = compare(dictionaries, numbers);
  EXPECT_EQ(text(report), "/: the element types differ: Dictionary and Double");
  EXPECT_EQ(report.values, 0);
  EXPECT_EQ(text(compare(numbers, dictionaries)),
            "/: the element types differ: Double and Dictionary");
}

TEST(CompareTest, TextsDifferFromNumbersThatAreDecoded) {
  Options options;
  options.isDecoded = [](const object_model::Array&) { return true; };
  EXPECT_EQ(text(compare(row<long>("a", {1}), row<std::string>("a", {"1"}), options)),
            "/: the element types differ: Int and String");
}

TEST(CompareTest, SizesOfTypesAreComparedWhereBothSidesHaveOne) {
  const AccessorArray<double> plain("a", {2}, {0.5, 1.5});
  const StoredArray<float> stored("a", {2}, {0.5F, 1.5F});
  for (const bool withAttributes : {true, false}) {
    Options options;
    options.attributes = withAttributes;
    EXPECT_EQ(text(compare(plain, stored, options)), "the same: 2 values") << withAttributes;
    EXPECT_EQ(text(compare(stored, plain, options)), "the same: 2 values") << withAttributes;
  }
}

}  // namespace
}  // namespace quillon::compare
