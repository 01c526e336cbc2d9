#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <quillon/memory/TypedArray.h>
#include <quillon/tables/ContractPlan.h>
#include <quillon/tables/Error.h>

#include <sstream>
#include <string>
#include <vector>

namespace quillon::tables {
namespace {

using memory::Axis;
using memory::Dictionary;
using Names = std::vector<std::string>;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Property;
using ::testing::StrEq;
using ::testing::Throws;

/// An array with the axes that its text gives: "x3 y2" is x with 3 points and y with 2. Its values
/// are never read.
class Shape final : public memory::ArrayBase {
 public:
  Shape(const std::string& name, const std::string& axes,
        object_model::ElementType type = object_model::ElementType::Double)
      : ArrayBase(name, type, parse(axes)) {}

 private:
  static std::vector<Axis> parse(const std::string& text) {
    std::istringstream words(text);
    std::vector<Axis> axes;
    for (std::string word; words >> word;) {
      axes.emplace_back(word.substr(0, 1), std::stoul(word.substr(1)));
    }
    return axes;
  }
};

class ContractPlanTest : public ::testing::Test {
 protected:
  void add(const std::string& name, const std::string& axes,
           object_model::ElementType type = object_model::ElementType::Double) {
    m_group.add(Shape(name, axes, type));
  }

  ContractPlan plan(const std::optional<Names>& variables = {},
                    const std::optional<Names>& index = {}) {
    return contractPlan(m_group, m_skipped, {"'a.nc'", variables, {}, index, false});
  }

  std::string failure(const std::optional<Names>& variables = {},
                      const std::optional<Names>& index = {}) {
    try {
      plan(variables, index);
    } catch (const Error& error) {
      return error.what();
    }
    return "no failure";
  }

  Dictionary m_group{"/"};
  std::vector<Unreadable> m_skipped;
};

TEST_F(ContractPlanTest, OneOfNothingHasNoColumnsAndOneRow) {
  EXPECT_EQ(ContractPlan().rows, 1U);
  EXPECT_EQ(ContractPlan().columns, 0U);
  EXPECT_EQ(ContractPlan().values, 0U);
}

TEST_F(ContractPlanTest, ManyColumnsHaveToBeAskedFor) {
  EXPECT_FALSE(ContractRequest().allColumns);
}

TEST_F(ContractPlanTest, AllNumbersAreInTheTable) {
  add("A", "x3", object_model::ElementType::UInt);
  add("B", "x3", object_model::ElementType::Int);
  add("C", "x3", object_model::ElementType::Double);
  EXPECT_THAT(plan().variables, ElementsAre("A", "B", "C"));
  EXPECT_THAT(plan().notes, IsEmpty());
}

TEST_F(ContractPlanTest, ChosenVariablesStandInTheGroupsOrder) {
  add("A", "x3");
  add("B", "x3");
  add("C", "x3");
  EXPECT_THAT(plan(Names{"C", "A", "C"}).variables, ElementsAre("A", "C"));
}

TEST_F(ContractPlanTest, DefaultIndexIsThatOfTheArrayWithTheMostValues) {
  add("bounds", "b2 t5");
  add("A", "x3 y2 t5");
  add("B", "x3 t5");
  EXPECT_THAT(plan().index, ElementsAre("x", "y", "t"));
  EXPECT_THAT(plan(Names{"bounds", "B"}).index, ElementsAre("x", "t"));
}

TEST_F(ContractPlanTest, ShortAxesWithoutCoordinatesAreNotInTheDefaultIndex) {
  add("x", "x3");
  add("A", "x3 y16 t17");
  EXPECT_THAT(plan().index, ElementsAre("x", "t"));
}

TEST_F(ContractPlanTest, PatternsChooseAndExclude) {
  add("area", "x3");
  add("axis", "x3");
  add("b", "x3");
  EXPECT_THAT(plan(Names{"a*"}).variables, ElementsAre("area", "axis"));
  const ContractPlan rest = contractPlan(m_group, {}, {"'a.nc'", {}, {"a*"}, {}, false});
  EXPECT_THAT(rest.variables, ElementsAre("b"));
}

TEST_F(ContractPlanTest, MoreThanAHundredColumnsHaveToBeAskedFor) {
  add("A", "x3 y99");
  EXPECT_EQ(plan({}, Names{"x"}).columns, 100);
  add("B", "x3");
  EXPECT_EQ(failure({}, Names{"x"}),
            "The table would have 101 columns, more than 100, 99 of them of 'A'; take fewer "
            "variables, more axes into the index or a part of an axis, or ask for all columns");
  EXPECT_EQ(contractPlan(m_group, {}, {"'a.nc'", {}, {}, Names{"x"}, true}).columns, 101);
}

TEST_F(ContractPlanTest, EmptyArraysDoNotDecideTheDefaultIndex) {
  add("A", "x3");
  add("E", "e0");
  EXPECT_THAT(plan().index, ElementsAre("x"));
  EXPECT_THAT(plan().notes, ElementsAre("'E' is not in the table: it has no values along its axis "
                                        "'e'"));
}

TEST_F(ContractPlanTest, EmptyArraysAloneMakeATableWithoutRows) {
  add("E", "x3 e0");
  EXPECT_THAT(plan({}, Names{"x", "e"}).index, ElementsAre("x", "e"));
  EXPECT_EQ(plan({}, Names{"x", "e"}).rows, 0);
}

TEST_F(ContractPlanTest, ArraysWithAnAxisTwiceDoNotDecideTheDefaultIndex) {
  add("A", "x3");
  add("C", "x3 x3");
  EXPECT_THAT(plan().index, ElementsAre("x"));
  EXPECT_THAT(plan().notes, ElementsAre("'C' is not in the table: its axis 'x' occurs twice and is "
                                        "in the index"));
}

TEST_F(ContractPlanTest, ArrayWithAnAxisTwiceIsSpreadWithoutIndex) {
  add("C", "x3 x3");
  EXPECT_THAT(plan().index, IsEmpty());
  EXPECT_THAT(plan().variables, ElementsAre("C"));
  EXPECT_EQ(plan().columns, 9);
}

TEST_F(ContractPlanTest, AnEmptyIndexSpreadsAllAxes) {
  add("A", "x3 z1");
  add("B", "y2 w2");
  EXPECT_EQ(plan({}, Names{}).rows, 1);
  EXPECT_EQ(plan({}, Names{}).columns, 7);
}

TEST_F(ContractPlanTest, IndexKeepsTheOrderInWhichItIsGiven) {
  add("A", "x3 y2");
  EXPECT_THAT(plan({}, Names{"y", "x"}).index, ElementsAre("y", "x"));
}

TEST_F(ContractPlanTest, RowsColumnsAndValuesAreCounted) {
  add("A", "x3 y2 t5");
  add("y", "y2");
  const ContractPlan made = plan({}, Names{"x", "y"});
  EXPECT_EQ(made.rows, 6);
  EXPECT_EQ(made.columns, 2 + 5 + 1);
  EXPECT_EQ(made.values, 30 + 2);
}

TEST_F(ContractPlanTest, CountsBeyond64BitsStopAtTheLargest) {
  add("A", "x4294967296");
  add("B", "y4294967296");
  EXPECT_EQ(plan({}, Names{"x", "y"}).rows, 18446744073709551615UL);
}

TEST_F(ContractPlanTest, TextAndOddShapesAreLeftOutWithTheReason) {
  add("A", "x3");
  add("text", "x3", object_model::ElementType::String);
  add("flags", "x3", object_model::ElementType::Boolean);
  add("single", "");
  add("four", "x3 y1 z1 t1");
  m_skipped = {{"outline", "compound type 'point'"}};
  EXPECT_THAT(plan().variables, ElementsAre("A"));
  EXPECT_THAT(plan().notes,
              ElementsAre("'outline' is not in the table: compound type 'point'",
                          "'text' is not in the table: it holds text",
                          "'flags' is not in the table: it holds no numbers",
                          "'single' is not in the table: it has no dimensions",
                          "'four' is not in the table: it has 4 dimensions, more than 3"));
}

TEST_F(ContractPlanTest, VariablesThatWereNotChosenAreNotMentioned) {
  add("A", "x3");
  add("text", "x3", object_model::ElementType::String);
  m_skipped = {{"outline", "compound type 'point'"}};
  EXPECT_THAT(plan(Names{"A"}).notes, IsEmpty());
}

TEST_F(ContractPlanTest, AxesBeyondThreeWithTheIndexAreLeftOut) {
  add("A", "x3 y2 z2");
  add("B", "x3 t2");
  add("C", "x3");
  const ContractPlan made = plan({}, Names{"x", "y"});
  EXPECT_THAT(made.variables, ElementsAre("A", "B", "C"));
  const ContractPlan wide = plan({}, Names{"x", "y", "z"});
  EXPECT_THAT(wide.variables, ElementsAre("A", "C"));
  EXPECT_THAT(wide.notes, ElementsAre("'B' is not in the table: its further axes and the index are "
                                      "4 axes, more than 3"));
}

TEST_F(ContractPlanTest, OneDimensionalArrayOutsideTheIndexSaysThatItIsCut) {
  add("A", "x3");
  add("y", "y2");
  add("z", "z1");
  const ContractPlan made = plan({}, Names{"x"});
  EXPECT_THAT(made.variables, ElementsAre("A", "y", "z"));
  EXPECT_EQ(made.columns, 4);
  EXPECT_THAT(made.notes,
              ElementsAre("'y' shows only its first of 2 values, as its axis 'y' is not "
                          "in the index"));
}

using Extents = std::map<std::string, unsigned long>;

TEST_F(ContractPlanTest, FirstRowsAndOneMoreNeedACornerOfTheIndexAxes) {
  add("A", "x3 y4 t5");
  const ContractPlan all = plan();
  EXPECT_EQ(extentsOf(all, 1), (Extents{{"x", 2}, {"y", 1}, {"t", 1}}));
  EXPECT_EQ(extentsOf(all, 2), (Extents{{"x", 3}, {"y", 1}, {"t", 1}}));
  EXPECT_EQ(extentsOf(all, 3), (Extents{{"x", 3}, {"y", 2}, {"t", 1}}));
  EXPECT_EQ(extentsOf(all, 11), (Extents{{"x", 3}, {"y", 4}, {"t", 1}}));
  EXPECT_EQ(extentsOf(all, 12), (Extents{{"x", 3}, {"y", 4}, {"t", 2}}));
  EXPECT_EQ(extentsOf(all, 59), (Extents{{"x", 3}, {"y", 4}, {"t", 5}}));
  EXPECT_EQ(extentsOf(plan({}, Names{"t", "x"}), 6), (Extents{{"t", 5}, {"x", 2}}));
}

TEST_F(ContractPlanTest, TableThatIsShownWholeNeedsEverything) {
  add("A", "x3 y4");
  for (const unsigned long maxRows : {0UL, 12UL, 13UL, ~0UL}) {
    EXPECT_THAT(extentsOf(plan(), maxRows), IsEmpty());
  }
  EXPECT_THAT(extentsOf(plan({}, Names{}), 1), IsEmpty());
}

TEST_F(ContractPlanTest, TableWithoutRowsNeedsNothingLess) {
  add("E", "e0 x3");
  EXPECT_THAT(extentsOf(plan(), 1), IsEmpty());
}

TEST_F(ContractPlanTest, AxisOfWhichOnlyTheFirstValueShowsIsCutUnlessItIsSpreadElsewhere) {
  add("A", "x3 y4");
  add("p", "p9");
  add("y", "y4");
  EXPECT_EQ(extentsOf(plan({}, Names{"x"}), 0), (Extents{{"p", 1}}));
}

TEST_F(ContractPlanTest, GroupsWithinTheGroupAreNoPartOfTheTable) {
  add("A", "x3");
  m_group.add(Dictionary("inner"));
  EXPECT_THAT(plan().variables, ElementsAre("A"));
  EXPECT_EQ(failure(Names{"inner"}), "'a.nc' has no variable 'inner'; did you mean 'A'?");
}

TEST_F(ContractPlanTest, UnknownVariableSaysWhichThereAre) {
  add("A", "x3");
  add("text", "x3", object_model::ElementType::String);
  m_skipped = {{"outline", "compound type 'point'"}};
  EXPECT_EQ(failure(Names{"A", "Q"}),
            "'a.nc' has no variable 'Q'; did you mean 'A', 'text' or 'outline'?");
  EXPECT_EQ(failure(Names{"a"}),
            "'a.nc' has no variable 'a'; did you mean 'A', 'text' or 'outline'?");
}

TEST_F(ContractPlanTest, UnknownVariableOfAnEmptyGroupIsAnError) {
  EXPECT_EQ(failure(Names{"Q"}), "'a.nc' has no variable 'Q' and no other");
}

TEST_F(ContractPlanTest, UnknownIndexSaysWhichAxesThereAre) {
  add("A", "x3 y2");
  add("B", "z3 y2");
  EXPECT_EQ(failure({}, Names{"x", "X"}),
            "No variable for the table has an axis 'X'; the axes are x, y, z");
  EXPECT_EQ(failure(Names{"A"}, Names{"z"}),
            "No variable for the table has an axis 'z'; the axes are x, y");
}

TEST_F(ContractPlanTest, AxisThatOnlyTextHasIsNoIndex) {
  add("A", "x3");
  add("text", "s3", object_model::ElementType::String);
  EXPECT_EQ(failure({}, Names{"s"}), "No variable for the table has an axis 's'; the axes are x");
}

TEST_F(ContractPlanTest, IndexGivenTwiceIsAnError) {
  add("A", "x3 y2");
  EXPECT_EQ(failure({}, Names{"x", "y", "x"}), "--index names the axis 'x' twice");
}

TEST_F(ContractPlanTest, FourIndexAxesAreAnError) {
  add("A", "x3 y2");
  add("B", "z3 t2");
  EXPECT_EQ(failure({}, Names{"x", "y", "z", "t"}), "--index takes at most 3 axes, not 4");
}

TEST_F(ContractPlanTest, IndexAxisWhoseVariablesAreAllLeftOutIsAnError) {
  add("A", "x3");
  add("B", "y2 z2 t2");
  EXPECT_EQ(failure({}, Names{"x", "y"}),
            "With this index no variable that has the axis 'y' fits into the table");
}

TEST_F(ContractPlanTest, IndexAxisOfSeveralSizesIsAnError) {
  add("A", "x3");
  add("B", "x3 y2");
  add("C", "y2 x4");
  EXPECT_EQ(failure(), "The axis 'x' has different sizes: 3 in 'B', 4 in 'C'");
  EXPECT_EQ(failure(Names{"A", "C"}, Names{"y"}), "no failure");
}

TEST_F(ContractPlanTest, NothingToShowIsAnError) {
  EXPECT_EQ(failure(), "'a.nc' has no variables of its own");
  EXPECT_EQ(failure({}, Names{"x"}), "'a.nc' has no variables of its own");
  m_group.add(Dictionary("inner"));
  EXPECT_EQ(failure(), "'a.nc' has no variables of its own; below it are the groups inner");
}

TEST_F(ContractPlanTest, NothingLeftToShowIsAnErrorWithTheReasons) {
  add("text", "x3", object_model::ElementType::String);
  add("single", "");
  EXPECT_EQ(failure(),
            "'a.nc' has no variables that the table could hold: 'text' (it holds text), "
            "'single' (it has no dimensions)");
}

TEST(ContractSizeTest, CellsAreCountedAlongTheCoordinatesTaken) {
  ContractPlan plan;
  plan.index = {"x", "y"};
  plan.sizes = {3, 4};
  plan.columns = 5;
  EXPECT_EQ(cellsOf(plan, {}), 60);
  EXPECT_EQ(cellsOf(plan, {{"y", 2}, {"z", 7}}), 30);
}

TEST(ContractSizeTest, MemoryIsNeededForAllCellsAndForTheRowsPrinted) {
  ContractPlan plan;
  plan.rows = 1000;
  plan.columns = 2;
  plan.values = 500;
  EXPECT_EQ(bytesNeeded(plan, 0), 8 * 2500 + 600 + 50 * 2000);
  EXPECT_EQ(bytesNeeded(plan, 10), 8 * 2500 + 600 + 50 * 20);
  EXPECT_EQ(bytesNeeded(plan, 2000), bytesNeeded(plan, 0));
}

TEST_F(ContractPlanTest, NamesInSentencesAreEscaped) {
  add("\x1b", "x3");
  EXPECT_EQ(failure(Names{"\n"}), "'a.nc' has no variable '\\n'; did you mean '\\x1b'?");
}

TEST_F(ContractPlanTest, OfArraysWithAsManyColumnsTheFirstIsTheWidest) {
  add("A", "x3 y60");
  add("B", "x3 y60");
  EXPECT_EQ(failure({}, Names{"x"}),
            "The table would have 121 columns, more than 100, 60 of them of 'A'; take fewer "
            "variables, more axes into the index or a part of an axis, or ask for all columns");
}

TEST_F(ContractPlanTest, ManyVariablesOfOneColumnAreTooManyAsWell) {
  for (int k = 0; k < 100; ++k) {
    add("v" + std::to_string(k), "x3");
  }
  EXPECT_EQ(failure({}, Names{"x"}),
            "The table would have 101 columns, more than 100, 1 of them of 'v0'; take fewer "
            "variables, more axes into the index or a part of an axis, or ask for all columns");
}

TEST_F(ContractPlanTest, ColumnsAndValuesBeyond64BitsStopAtTheLargest) {
  add("A", "x1 y4294967296 z2147483648");
  add("B", "x1 y4294967296 z2147483648");
  const ContractPlan made = contractPlan(m_group, {}, {"'a.nc'", {}, {}, Names{"x"}, true});
  EXPECT_EQ(made.columns, 18446744073709551615UL);
  EXPECT_EQ(made.values, 18446744073709551615UL);
}

TEST_F(ContractPlanTest, IndexThatLeavesNothingIsAnErrorWithTheReasons) {
  add("A", "x3 x3");
  EXPECT_EQ(failure({}, Names{"x"}),
            "'a.nc' has no variables that the table could hold: 'A' (its axis 'x' occurs twice "
            "and is in the index)");
}

}  // namespace
}  // namespace quillon::tables
