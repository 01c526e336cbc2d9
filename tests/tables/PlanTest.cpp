#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <quillon/memory/Dictionary.h>
#include <quillon/tables/Error.h>
#include <quillon/tables/Plan.h>

#include <sstream>
#include <tuple>

#include "TestArrays.h"
#include "support/BareArray.h"

namespace quillon::tables {
namespace {

using memory::Axis;
using memory::Dictionary;
using memory::DoubleArray;
using memory::IntArray;
using memory::StringArray;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using Names = std::vector<std::string>;

class PlanTest : public ::testing::Test {
 protected:
  /// An array of numbers with the axes that its text gives: "x3 y2" is x with 3 points and y
  /// with 2.
  void add(const std::string& name, const std::string& axes) { m_data.add(array(name, axes)); }

  static DoubleArray array(const std::string& name, const std::string& text) {
    std::istringstream words(text);
    std::vector<Axis> axes;
    unsigned long count = 1;
    for (std::string word; words >> word;) {
      const unsigned long size = std::stoul(word.substr(1));
      axes.emplace_back(word.substr(0, 1), size);
      count *= size;
    }
    return DoubleArray(name, axes, countedUp<double>(count));
  }

  void addTexts(const std::string& name, const std::string& axis, const Names& texts) {
    m_data.add(StringArray(name, {{axis, texts.size()}}, texts));
  }

  Names columns(const Request& request = {}) {
    Names names;
    for (const PlannedColumn& column : plan(m_data, request).columns) {
      names.push_back(column.name);
    }
    return names;
  }

  Names index(const Request& request = {}) {
    Names names;
    for (const IndexAxis& axis : plan(m_data, request).axes) {
      names.push_back(axis.name);
    }
    return names;
  }

  Names notes(const Request& request = {}) { return plan(m_data, request).notes; }

  std::string error(const Request& request) {
    try {
      std::ignore = plan(m_data, request);
    } catch (const Error& error) {
      return error.what();
    }
    return "no error";
  }

  static Request withIndex(const Names& names) {
    Request request;
    request.index = names;
    return request;
  }

  static Request withVariables(const Names& names) {
    Request request;
    request.variables = names;
    return request;
  }

  static Request selecting(const std::string& text) {
    Request request;
    request.selections = {parseSelection(text)};
    return request;
  }

  Dictionary m_data{"data"};
};

TEST_F(PlanTest, EachPartIsTheWholeOfWhatStandsHereUnlessToldOtherwise) {
  EXPECT_EQ(DimensionUse().first, 0U);
  EXPECT_EQ(DimensionUse().step, 1U);
  EXPECT_EQ(DimensionUse().axis, NO_AXIS);
  EXPECT_EQ(ArraySource().levels, 0U);
  EXPECT_FALSE(PlannedColumn().isIndex);
  EXPECT_EQ(IndexAxis().size, 0U);
  EXPECT_EQ(Plan().rows, 1U);
}

TEST_F(PlanTest, RequestsAreOfTheFirstPointAndOfEachPointUnlessToldOtherwise) {
  EXPECT_EQ(Position().at, 0);
  EXPECT_EQ(PositionRange().step, 1);
  EXPECT_EQ(TimePoint().microseconds, 0);
  EXPECT_FALSE(Request().positions);
  EXPECT_FALSE(Request().allColumns);
}

TEST_F(PlanTest, TheDefaultIndexIsTheAxesOfTheArrayWithTheMostValues) {
  add("a", "x20");
  add("b", "x20 y30");
  add("c", "y30");
  EXPECT_THAT(index(), ElementsAre("x", "y"));
  EXPECT_THAT(columns(), ElementsAre("x", "y", "a", "b", "c"));
  EXPECT_EQ(plan(m_data).rows, 600U);
}

TEST_F(PlanTest, OfArraysWithAsManyValuesTheFirstGivesTheDefaultIndex) {
  add("a", "x20");
  add("b", "y20");
  EXPECT_THAT(index(), ElementsAre("x"));
  EXPECT_THAT(notes(), ElementsAre("'b' is not in the table: it has none of the index's dimensions "
                                   "x"));
}

TEST_F(PlanTest, AnArrayWithAnAxisTwiceGivesNoDefaultIndex) {
  add("a", "x20 x20");
  add("b", "x20");
  EXPECT_THAT(index(), ElementsAre("x"));
  EXPECT_THAT(
      notes(),
      ElementsAre("'a' is not in the table: its axis 'x' occurs twice and is in the index"));
}

TEST_F(PlanTest, AxesOfFewPointsWithoutCoordinatesAreSpread) {
  add("a", "x16 y17");
  EXPECT_THAT(index(), ElementsAre("y"));
  add("x", "x16");
  EXPECT_THAT(index(), ElementsAre("x", "y"));
}

TEST_F(PlanTest, AxesOfFewPointsStayWhereNoneWouldBeLeft) {
  add("a", "x3 y4");
  EXPECT_THAT(index(), ElementsAre("x", "y"));
}

TEST_F(PlanTest, TheDefaultIndexIsOfTheChosenVariables) {
  add("a", "x20 y30");
  add("b", "y30");
  EXPECT_THAT(index(withVariables({"b"})), ElementsAre("y"));
}

TEST_F(PlanTest, TheDefaultIndexIsOfWhatIsSelected) {
  add("a", "x100 y30");
  add("b", "z50");
  EXPECT_THAT(index(), ElementsAre("x", "y"));
  Request request = selecting("x=3");
  EXPECT_THAT(index(request), ElementsAre("z"));
}

TEST_F(PlanTest, SingleValuesStay) {
  add("a", "x3");
  add("one", "");
  EXPECT_THAT(columns(), ElementsAre("x", "a", "one"));
}

TEST_F(PlanTest, SingleValuesAloneAreATableOfOneRow) {
  add("one", "");
  EXPECT_THAT(columns(), ElementsAre("one"));
  EXPECT_EQ(plan(m_data).rows, 1U);
}

TEST_F(PlanTest, AVariableThatIsNamedIsSpreadWithoutTheIndex) {
  add("a", "x20");
  add("b", "y2");
  EXPECT_THAT(columns(withVariables({"a", "b"})), ElementsAre("x", "a", "b[y=0]", "b[y=1]"));
}

TEST_F(PlanTest, TheIndexIsInTheOrderThatIsAskedFor) {
  add("a", "x2 y3");
  EXPECT_THAT(columns(withIndex({"y", "x"})), ElementsAre("y", "x", "a"));
}

TEST_F(PlanTest, SpreadColumnsAreNamedSlowestFirstAndVaryFastestFirst) {
  add("a", "x2 y2 t3");
  EXPECT_THAT(columns(withIndex({"t"})),
              ElementsAre("t", "a[y=0, x=0]", "a[y=0, x=1]", "a[y=1, x=0]", "a[y=1, x=1]"));
}

TEST_F(PlanTest, SpreadColumnsAreCalledByCoordinate) {
  add("a", "c2 t3");
  addTexts("c", "c", {"DAPI", "GFP"});
  EXPECT_THAT(columns(withIndex({"t"})), ElementsAre("t", "a[c=DAPI]", "a[c=GFP]"));
  EXPECT_THAT(notes(withIndex({"t"})), IsEmpty());
}

TEST_F(PlanTest, SpreadColumnsAreCalledByPositionWhereCoordinatesOccurTwiceOrAreMissing) {
  add("a", "c2 d2 t3");
  addTexts("c", "c", {"DAPI", "DAPI"});
  m_data.add(DoubleArray("d", {{"d", 2}}, {1.5, std::nan("")}));
  EXPECT_THAT(columns(withIndex({"t"})),
              ElementsAre("t", "a[d=0, c=0]", "a[d=0, c=1]", "a[d=1, c=0]", "a[d=1, c=1]"));
}

TEST_F(PlanTest, CoordinatesOfFloatsAreNoLongFractions) {
  add("a", "c2 t3");
  m_data.add(Stored<float>("c", {{"c", 2}}, {0.1, 500}));
  EXPECT_THAT(columns(withIndex({"t"})), ElementsAre("t", "a[c=0.1]", "a[c=500]"));
}

TEST_F(PlanTest, CoordinatesThatAreTimesAreWrittenAsThese) {
  add("a", "c2 t3");
  m_data.add(Hours("c", {{"c", 2}}, {0, 24}));
  EXPECT_THAT(columns(withIndex({"t"})), ElementsAre("t", "a[c=1970-01-01]", "a[c=1970-01-02]"));
}

TEST_F(PlanTest, WithPositionsCoordinatesAreColumnsOfTheirOwn) {
  add("a", "c2 t3");
  addTexts("c", "c", {"DAPI", "GFP"});
  add("t", "t3");
  Request request = withIndex({"t"});
  request.positions = true;
  EXPECT_THAT(columns(request), ElementsAre("t (position)", "a[c=0]", "a[c=1]", "t"));
  EXPECT_FALSE(plan(m_data, request).columns[0].source);
  EXPECT_THAT(notes(request), ElementsAre(HasSubstr("'c' is not in the table")));
}

TEST_F(PlanTest, PositionsBesideAVariableOfThatNameAreCalledSo) {
  add("t", "t3 u2");
  EXPECT_THAT(columns(withIndex({"t", "u"})), ElementsAre("t (position)", "u", "t"));
}

TEST_F(PlanTest, ACoordinateVariableIsNoColumnBesideTheIndex) {
  add("t", "t3");
  add("a", "t3");
  const Plan planned = plan(m_data);
  EXPECT_THAT(columns(), ElementsAre("t", "a"));
  EXPECT_TRUE(planned.columns[0].isIndex);
  EXPECT_EQ(planned.columns[0].source->variable, "t");
  EXPECT_FALSE(planned.columns[1].isIndex);
  EXPECT_THAT(planned.notes, IsEmpty());
}

TEST_F(PlanTest, ACoordinateVariableAloneIsATable) {
  add("t", "t3");
  EXPECT_THAT(columns(), ElementsAre("t"));
  EXPECT_EQ(plan(m_data).rows, 3U);
}

TEST_F(PlanTest, ACoordinateVariableThatNothingElseShowsIsNoted) {
  add("a", "t20");
  add("c", "c2");
  EXPECT_THAT(notes(), ElementsAre(HasSubstr("'c' is not in the table")));
}

TEST_F(PlanTest, CoordinatesAreFoundInTheNearestDictionaryAround) {
  Dictionary inner("inner");
  inner.add(array("a", "t3"));
  add("t", "t3");
  auto& placed = m_data.add(std::move(inner));
  const Plan planned = plan(placed);
  ASSERT_TRUE(planned.columns[0].source.has_value());
  EXPECT_EQ(planned.columns[0].source->levels, 1U);
}

TEST_F(PlanTest, CoordinatesOfAnotherLengthAreNone) {
  Dictionary inner("inner");
  inner.add(array("a", "t3"));
  add("t", "t4");
  auto& placed = m_data.add(std::move(inner));
  EXPECT_FALSE(plan(placed).columns[0].source.has_value());
}

TEST_F(PlanTest, CoordinatesThatAnArrayKnowsGoFirst) {
  const auto known =
      std::make_shared<StringArray>("labels", std::vector<Axis>{{"t", 2}}, Names{"early", "late"});
  m_data.add(Labelled("a", {{"t", 2}, {"x", 3}}, countedUp<double>(6), {known, nullptr}));
  EXPECT_THAT(columns(withIndex({"x"})), ElementsAre("x", "a[t=early]", "a[t=late]"));
}

TEST_F(PlanTest, AnAxisHasNoCoordinatesOfAnotherAsLong) {
  const auto known =
      std::make_shared<StringArray>("labels", std::vector<Axis>{{"t", 2}}, Names{"early", "late"});
  m_data.add(Labelled("a", {{"t", 2}, {"x", 2}}, countedUp<double>(4), {known, nullptr}));
  EXPECT_THAT(columns(withIndex({"t"})), ElementsAre("t", "a[x=0]", "a[x=1]"));
}

TEST_F(PlanTest, ASinglePositionKeepsItsCoordinateAsTheFirstColumn) {
  add("a", "x3 t4");
  add("t", "t4");
  const Plan planned = plan(m_data, selecting("t=-1"));
  EXPECT_EQ(planned.columns[0].name, "t");
  EXPECT_FALSE(planned.columns[0].isIndex);
  EXPECT_EQ(planned.columns[0].dimensions[0].first, 3U);
  EXPECT_EQ(planned.columns[1].name, "x");
  EXPECT_EQ(planned.columns[2].name, "a");
  EXPECT_EQ(planned.rows, 3U);
}

TEST_F(PlanTest, ARangeOfPositionsIsAPartOfTheRows) {
  add("a", "x9");
  const Plan planned = plan(m_data, selecting("x=2:5"));
  EXPECT_EQ(planned.rows, 3U);
  EXPECT_EQ(planned.columns[0].dimensions[0].first, 2U);
}

TEST_F(PlanTest, VariablesTakePatternsAndStandInTheDictionarysOrder) {
  add("a1", "x3");
  add("b", "x3");
  add("a2", "x3");
  EXPECT_THAT(columns(withVariables({"b", "a*"})), ElementsAre("x", "a1", "b", "a2"));
  Request request;
  request.exclude = {"a?"};
  EXPECT_THAT(columns(request), ElementsAre("x", "b"));
}

TEST_F(PlanTest, PatternsWithASlashArePatternsOfPaths) {
  Dictionary inner("cells");
  inner.add(array("area", "x3"));
  inner.add(array("edge", "x3"));
  auto& placed = m_data.add(std::move(inner));
  const Plan planned = plan(placed, withVariables({"/cells/a*"}));
  ASSERT_EQ(planned.columns.size(), 2U);
  EXPECT_EQ(planned.columns[1].name, "area");
}

TEST_F(PlanTest, APatternThatMatchesNothingOffersTheNearestNames) {
  for (const char* name : {"area", "arena", "are", "perimeter"}) {
    add(name, "x3");
  }
  EXPECT_EQ(error(withVariables({"Areas"})),
            "The dictionary has no variable 'Areas'; did you mean "
            "'area', 'arena' or 'are'?");
  Request request;
  request.exclude = {"q*"};
  EXPECT_THAT(error(request), HasSubstr("has no variable 'q*'"));
}

TEST_F(PlanTest, AnAxisThatIsNotThereOffersTheNearest) {
  add("a", "x3 y2");
  EXPECT_EQ(error(withIndex({"X"})),
            "No variable for the table has an axis 'X'; did you mean 'x' or 'y'?");
  add("b", "x3");
  EXPECT_EQ(error(withIndex({"X"})),
            "No variable for the table has an axis 'X'; did you mean 'x' or 'y'?");
  EXPECT_THAT(error(selecting("z=1")), HasSubstr("has an axis 'z'"));
}

TEST_F(PlanTest, AnIndexThatCannotBeIsAnError) {
  add("a", "x3 y2");
  EXPECT_EQ(error(withIndex({"x", "x"})), "The index names the axis 'x' twice");
  Request request = selecting("x=1");
  request.index = Names{"x"};
  EXPECT_EQ(error(request),
            "The axis 'x' cannot be in the index: a single position of it is selected");
  request.index = Names{"y"};
  request.selections.push_back(request.selections[0]);
  EXPECT_EQ(error(request), "Two selections name the axis 'x'");
}

TEST_F(PlanTest, OneNameWithTwoSizesIsAnErrorThatNamesBoth) {
  add("a", "x3 t2");
  add("b", "x4");
  EXPECT_EQ(error({}), "The axis 'x' has different sizes: 3 in 'a', 4 in 'b'");
  EXPECT_THAT(columns(withVariables({"b"})), ElementsAre("x", "b"));
}

TEST_F(PlanTest, AHundredColumnsArePossibleAndMoreWhenAskedFor) {
  add("a", "x99 t200");
  EXPECT_EQ(columns(withIndex({"t"})).size(), 100U);
  add("b", "t200");
  EXPECT_EQ(error(withIndex({"t"})),
            "The table would have 101 columns, more than 100, 99 of them of 'a'; take fewer "
            "variables, more axes into the index or a part of an axis, or ask for all columns");
  Request request = withIndex({"t"});
  request.allColumns = true;
  EXPECT_EQ(columns(request).size(), 101U);
}

TEST_F(PlanTest, WhatNoColumnCanHoldIsNoted) {
  add("a", "x3");
  m_data.add(memory::ComplexArray("z", {{"x", 3}}, std::vector<std::complex<double>>(3)));
  add("none", "x3 n0");
  Request request;
  request.unreadable = {{"bad", "it is of a type of its own"}};
  EXPECT_THAT(notes(request),
              ElementsAre("'z' is not in the table: it holds complex numbers",
                          "'bad' is not in the table: it is of a type of its own",
                          "'none' is not in the table: it has no values along its axis 'n'"));
}

TEST_F(PlanTest, NothingToShowIsAnErrorThatSaysWhy) {
  EXPECT_EQ(error({}), "The dictionary has no variables of its own");
  Dictionary inner("cells");
  m_data.add(std::move(inner));
  EXPECT_EQ(error({}), "The dictionary has no variables of its own; below it are the groups cells");
  m_data.add(memory::ComplexArray("z", {}, std::vector<std::complex<double>>(1)));
  EXPECT_EQ(error({}),
            "The dictionary has no variables that the table could hold: 'z' (it holds complex "
            "numbers)");
  m_data.add(memory::DictionaryArray("d", {{"x", 0}}, {}));
  EXPECT_EQ(error({}),
            "The dictionary has no variables that the table could hold: 'z' (it holds complex "
            "numbers), 'd' (it holds dictionaries)");
}

TEST_F(PlanTest, AnIndexOfNothingNeedsAColumn) {
  add("a", "x0 y2");
  EXPECT_EQ(error(withIndex({})),
            "The dictionary has no variables that the table could hold: 'a' (it has no values "
            "along its axis 'x')");
  Request request = selecting("y=0");
  request.index = Names{};
  EXPECT_THAT(columns(request), ElementsAre("y"));
  EXPECT_THAT(notes(request), ElementsAre("'a' is not in the table: it has no values along its "
                                          "axis 'x'"));
}

TEST_F(PlanTest, ACoordinateWithoutValuesIsNotedWhereItIsNamed) {
  add("x", "x0");
  add("b", "t3");
  Request request = withVariables({"x", "b"});
  request.index = Names{"t"};
  EXPECT_THAT(columns(request), ElementsAre("t", "b"));
  EXPECT_THAT(notes(request), ElementsAre("'x' is not in the table: it has no values along its "
                                          "axis 'x'"));
}

TEST_F(PlanTest, WhatIsOfAnUnknownTypeOrOfDictionariesIsNoted) {
  class Unknown final : public memory::ArrayBase {
   public:
    Unknown() : ArrayBase("odd", static_cast<object_model::ElementType>(99), {{"x", 3}}) {}
  };
  add("a", "x3");
  m_data.add(std::make_unique<Unknown>());
  m_data.add(memory::DictionaryArray("d", {{"n", 0}}, {}));
  EXPECT_THAT(notes(), ElementsAre("'odd' is not in the table: it holds values of element type 99",
                                   "'d' is not in the table: it holds dictionaries"));
}

TEST_F(PlanTest, ColumnsNeverShareAName) {
  add("a", "c2 t3");
  m_data.add(DoubleArray("a[c=1]", {{"t", 3}}, {1, 2, 3}));
  EXPECT_THAT(columns(withIndex({"t"})), ElementsAre("t", "a[c=0]", "a[c=1]", "a[c=1] (2)"));
}

TEST_F(PlanTest, AColumnTakesTheFirstNumberThatIsFree) {
  add("a", "c2 t3");
  m_data.add(DoubleArray("a[c=1] (2)", {{"t", 3}}, {1, 2, 3}));
  m_data.add(DoubleArray("a[c=1]", {{"t", 3}}, {1, 2, 3}));
  EXPECT_THAT(columns(withIndex({"t"})),
              ElementsAre("t", "a[c=0]", "a[c=1]", "a[c=1] (2)", "a[c=1] (3)"));
}

TEST_F(PlanTest, AnEmptyIndexSpreadsEverything) {
  add("a", "x2");
  EXPECT_THAT(columns(withIndex({})), ElementsAre("a[x=0]", "a[x=1]"));
}

TEST_F(PlanTest, AnIndexWithoutPointsHasNoRows) {
  add("a", "x0 y3");
  EXPECT_EQ(plan(m_data, withIndex({"y", "x"})).rows, 0U);
}

TEST_F(PlanTest, MoreRowsThanCanBeCountedAreAnError) {
  class Claim final : public memory::ArrayBase {
   public:
    explicit Claim(const std::string& axis)
        : ArrayBase("of" + axis, object_model::ElementType::Double, {{axis, 1UL << 33U}}) {}
  };
  m_data.add(Claim("a"));
  m_data.add(Claim("b"));
  EXPECT_EQ(error(withIndex({"a", "b"})),
            "The table would have more rows than can be counted; choose another index");
}

TEST_F(PlanTest, SpreadColumnsOfASelectionKeepTheirCoordinatesAndPositions) {
  add("a", "c5 t3");
  add("b", "x5 t3");
  addTexts("c", "c", {"A", "B", "C", "D", "E"});
  Request request = withIndex({"t"});
  request.selections = {{"c", PositionRange{1, {}, 3}}, {"x", PositionRange{2, 4, 1}}};
  EXPECT_THAT(columns(request), ElementsAre("t", "a[c=B]", "a[c=E]", "b[x=2]", "b[x=3]"));
  EXPECT_EQ(plan(m_data, request).columns[2].dimensions[0].first, 4U);
  request.selections[1].choice = PositionRange{0, {}, 2};
  EXPECT_THAT(columns(request), ElementsAre("t", "a[c=B]", "a[c=E]", "b[x=0]", "b[x=2]", "b[x=4]"));
}

TEST_F(PlanTest, ASelectionMayBeOfCoordinates) {
  add("a", "x9");
  m_data.add(DoubleArray("x", {{"x", 9}}, {0, 10, 20, 30, 40, 50, 60, 70, 80}));
  const Plan planned = plan(m_data, selecting("x=@30:52"));
  EXPECT_EQ(planned.rows, 3U);
  EXPECT_EQ(planned.columns[1].dimensions[0].first, 3U);
}

TEST_F(PlanTest, CoordinatesThatNoColumnCanHoldAreNone) {
  add("a", "c2 t3");
  m_data.add(memory::ComplexArray("c", {{"c", 2}}, std::vector<std::complex<double>>(2)));
  EXPECT_THAT(columns(withIndex({"t"})), ElementsAre("t", "a[c=0]", "a[c=1]"));
}

TEST_F(PlanTest, AnArrayAlongAnotherAxisIsNoCoordinate) {
  add("a", "t3");
  add("t", "s3");
  const Plan planned = plan(m_data, withIndex({"t"}));
  EXPECT_FALSE(planned.columns[0].source.has_value());
}

TEST_F(PlanTest, AnArrayKnowsCoordinatesOfAnyOfItsDimensions) {
  const auto known =
      std::make_shared<StringArray>("labels", std::vector<Axis>{{"t", 2}}, Names{"early", "late"});
  m_data.add(Labelled("a", {{"x", 3}, {"t", 2}}, countedUp<double>(6), {nullptr, known}));
  EXPECT_THAT(columns(withIndex({"x"})), ElementsAre("x", "a[t=early]", "a[t=late]"));
}

TEST_F(PlanTest, LabelsThatAreVariablesAreNoCoordinates) {
  const auto labels =
      std::make_shared<StringArray>("labels", std::vector<Axis>{{"t", 2}}, Names{"early", "late"});
  const auto labelled = [&] {
    return Labelled("a", {{"t", 2}, {"x", 3}}, countedUp<double>(6), {labels, nullptr});
  };
  addTexts("labels", "t", {"early", "late"});
  Dictionary inner("inner");
  inner.add(labelled());
  auto& placed = m_data.add(std::move(inner));
  m_data.add(labelled());
  EXPECT_THAT(columns(withIndex({"x"})), ElementsAre("x", "a[t=0]", "a[t=1]"));
  const Plan below = plan(placed, withIndex({"x"}));
  EXPECT_EQ(below.columns.at(1).name, "a[t=0]");
}

TEST_F(PlanTest, CoordinatesBesideAVariableOfThatNameAreCalledSo) {
  const auto known =
      std::make_shared<StringArray>("labels", std::vector<Axis>{{"t", 3}}, Names{"a", "b", "c"});
  m_data.add(Labelled("t", {{"t", 3}, {"u", 2}}, countedUp<double>(6), {known, nullptr}));
  EXPECT_THAT(columns(withIndex({"t", "u"})), ElementsAre("t (coordinate)", "u", "t"));
}

TEST_F(PlanTest, SinglePositionsCountAmongTheColumns) {
  add("a", "x99 t200 z2");
  Request request = selecting("z=0");
  request.index = Names{"t"};
  EXPECT_THAT(error(request), HasSubstr("The table would have 101 columns, more than 100, 99"));
}

TEST_F(PlanTest, AxesAloneMayBeTooManyColumns) {
  Names names;
  for (int k = 0; k < 101; ++k) {
    names.push_back("x" + std::to_string(k));
    m_data.add(DoubleArray(names.back(), {{names.back(), 1}}, {0}));
  }
  EXPECT_EQ(error(withIndex(names)),
            "The table would have 101 columns, more than 100; take fewer variables, more axes into "
            "the index or a part of an axis, or ask for all columns");
}

TEST_F(PlanTest, OfVariablesWithAsManyColumnsTheFirstIsTheWidest) {
  add("a", "x60 t200");
  add("b", "x60 t200");
  EXPECT_THAT(error(withIndex({"t"})), HasSubstr("121 columns, more than 100, 60 of them of 'a'"));
}

TEST_F(PlanTest, AnAxisWhereThereAreNoneIsAnError) {
  add("one", "");
  EXPECT_EQ(error(withIndex({"x"})), "No variable for the table has an axis 'x' or any other");
}

TEST_F(PlanTest, NothingToShowIsSaidRatherThanWhatTheIndexLacks) {
  EXPECT_EQ(error(withIndex({"x"})), error({}));
}

TEST_F(PlanTest, WhatIsExcludedIsLeftOutOfWhatIsNamed) {
  add("a1", "x3");
  add("a2", "x3");
  Request request = withVariables({"a*"});
  request.exclude = {"a1"};
  EXPECT_THAT(columns(request), ElementsAre("x", "a2"));
}

TEST_F(PlanTest, WhatIsUnreadableIsNotedWhereItIsChosen) {
  add("a", "x3");
  Request request = withVariables({"a"});
  request.unreadable = {{"bad", "it is of a type of its own"}};
  EXPECT_THAT(notes(request), IsEmpty());
  request.variables = Names{"a", "bad"};
  EXPECT_THAT(notes(request), ElementsAre("'bad' is not in the table: it is of a type of its own"));
}

/// Numbers along t and x that claim to have an array as their coordinates along t.
class Claiming final : public memory::ArrayBase {
 public:
  explicit Claiming(std::shared_ptr<const object_model::Array> claimed)
      : ArrayBase("a", object_model::ElementType::Double, {{"t", 2}, {"x", 3}}),
        m_claimed(std::move(claimed)) {}
  std::shared_ptr<const object_model::Array> coordinates(unsigned long dimension) const override {
    return dimension == 0 ? m_claimed : nullptr;
  }

 private:
  std::shared_ptr<const object_model::Array> m_claimed;
};

TEST_F(PlanTest, CoordinatesThatAnArrayKnowsMustFitTheAxis) {
  const auto areTaken = [](std::shared_ptr<const object_model::Array> claimed) {
    Dictionary data("data");
    data.add(std::make_unique<Claiming>(std::move(claimed)));
    return plan(data, withIndex({"t"})).columns.at(0).source.has_value();
  };
  EXPECT_TRUE(areTaken(
      std::make_shared<StringArray>("k", std::vector<Axis>{{"t", 2}}, Names{"early", "late"})));
  EXPECT_FALSE(areTaken(std::make_shared<StringArray>("k", std::vector<Axis>{{"t", 2}, {"y", 1}},
                                                      Names{"early", "late"})));
  EXPECT_FALSE(areTaken(
      std::make_shared<StringArray>("k", std::vector<Axis>{{"t", 3}}, Names{"a", "b", "c"})));
  EXPECT_FALSE(areTaken(std::make_shared<memory::ComplexArray>(
      "k", std::vector<Axis>{{"t", 2}}, std::vector<std::complex<double>>(2))));
}

TEST_F(PlanTest, OwnCoordinatesCalledAsTheirAxisAreNoLabels) {
  const auto known =
      std::make_shared<StringArray>("t", std::vector<Axis>{{"t", 2}}, Names{"early", "late"});
  m_data.add(Labelled("a", {{"t", 2}, {"x", 3}}, countedUp<double>(6), {known, nullptr}));
  add("t", "t2");
  EXPECT_THAT(columns(withIndex({"x"})), ElementsAre("x", "a[t=early]", "a[t=late]"));
}

TEST_F(PlanTest, AnyArrayMayKnowTheCoordinates) {
  add("a", "t3");
  add("b", "t3");
  m_data.add(Labelled("c", {{"t", 3}}, {1, 2, 3},
                      {std::make_shared<StringArray>("labels", std::vector<Axis>{{"t", 3}},
                                                     Names{"p", "q", "r"})}));
  EXPECT_THAT(columns(withIndex({})), ElementsAre("a[t=p]", "a[t=q]", "a[t=r]", "b[t=p]", "b[t=q]",
                                                  "b[t=r]", "c[t=p]", "c[t=q]", "c[t=r]"));
}

TEST_F(PlanTest, ArraysThatKnowNoCoordinatesHaveThoseOfTheDictionary) {
  m_data.add(std::make_unique<::test::BareArray>("a", std::vector<Axis>{{"t", 2}, {"x", 3}},
                                                 countedUp<double>(6)));
  m_data.add(DoubleArray("t", {{"t", 2}}, {0.5, 2}));
  EXPECT_THAT(columns(withIndex({"x"})), ElementsAre("x", "a[t=0.5]", "a[t=2]"));
}

TEST_F(PlanTest, CoordinatesMayBeNegativeIntegers) {
  add("a", "c2 t3");
  m_data.add(IntArray("c", {{"c", 2}}, {-5, 7}));
  EXPECT_THAT(columns(withIndex({"t"})), ElementsAre("t", "a[c=-5]", "a[c=7]"));
}

TEST_F(PlanTest, CoordinatesMayBeReadByTheirAccessor) {
  add("a", "c2 t3");
  m_data.add(Labelled("c", {{"c", 2}}, {0.1, 500}, {}));
  EXPECT_THAT(columns(withIndex({"t"})), ElementsAre("t", "a[c=0.1]", "a[c=500]"));
}

}  // namespace
}  // namespace quillon::tables
