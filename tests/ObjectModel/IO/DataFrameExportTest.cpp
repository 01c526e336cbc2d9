#include <gmock/gmock.h>
#include <object_model/IO.h>
#include <object_model/InvalidCall.h>
#include <quillon/memory/Dictionary.h>
#include <quillon/memory/TypedArray.h>

#include <stdexcept>

#include "IO/ColumnFilling.h"
#include "support/FaultInjection.h"
#include "support/Interfaces.h"
#include "support/Liars.h"
#include "support/Recording.h"
#include "support/RecordingDataFrame.h"
#include "support/TableText.h"
#include "support/Thrown.h"

namespace object_model {
namespace {

using quillon::memory::Axis;
using quillon::memory::DoubleArray;
using quillon::memory::IntArray;
using quillon::memory::UIntArray;
using Entries = quillon::memory::Dictionary;

/// 0, 1, 2, ... as many as the axes hold, in memory order.
IntArray counting(const std::string& name, const std::vector<Axis>& axes) {
  unsigned long count = 1;
  for (const Axis& axis : axes) {
    count *= axis.size();
  }
  std::vector<long> values(count);
  for (std::size_t i = 0; i < count; ++i) {
    values[i] = static_cast<long>(i);
  }
  return {name, axes, values};
}

std::string exported(Entries& entries, const std::vector<std::string>& indexNames) {
  tabra::MemoryDataFrame frame;
  exportToDataFrame(entries, &frame, indexNames);
  return test::tableText(frame);
}

TEST(DataFrameExport, MakesAnIndexColumnAndAColumnForEachSpreadCoordinate) {
  Entries entries("e");
  entries.add(DoubleArray("A", {{AxisType::Time, 3}}, {0.5, 1.5, 2.5}));
  entries.add(counting("B", {{AxisType::Time, 3}, {AxisType::Channel, 2}}));
  EXPECT_EQ(exported(entries, {"time"}),
            "Index [time] () uint: 0 1 2\n"
            "A () double: 0.5 1.5 2.5\n"
            "B[channel=0] () int: 0 1 2\n"
            "B[channel=1] () int: 3 4 5\n"
            "3 rows\n");
}

TEST(DataFrameExport, OrdersRowsByTheCallersIndexAxes) {
  Entries entries("e");
  entries.add(counting("A", {{"x", 2}, {"y", 3}}));
  EXPECT_EQ(exported(entries, {"x", "y"}),
            "Index [x] () uint: 0 1 0 1 0 1\n"
            "Index [y] () uint: 0 0 1 1 2 2\n"
            "A () int: 0 1 2 3 4 5\n"
            "6 rows\n");
  EXPECT_EQ(exported(entries, {"y", "x"}),
            "Index [y] () uint: 0 1 2 0 1 2\n"
            "Index [x] () uint: 0 0 0 1 1 1\n"
            "A () int: 0 2 4 1 3 5\n"
            "6 rows\n");
}

TEST(DataFrameExport, SpreadsTheFirstSpreadAxisFastest) {
  Entries entries("e");
  entries.add(counting("A", {{"x", 2}, {"t", 2}, {"y", 2}}));
  EXPECT_EQ(exported(entries, {"t"}),
            "Index [t] () uint: 0 1\n"
            "A[x=0, y=0] () int: 0 2\n"
            "A[x=1, y=0] () int: 1 3\n"
            "A[x=0, y=1] () int: 4 6\n"
            "A[x=1, y=1] () int: 5 7\n"
            "2 rows\n");
}

TEST(DataFrameExport, UsesThreeIndexAxes) {
  Entries entries("e");
  entries.add(counting("A", {{"x", 2}, {"y", 1}, {"z", 2}}));
  EXPECT_EQ(exported(entries, {"z", "y", "x"}),
            "Index [z] () uint: 0 1 0 1\n"
            "Index [y] () uint: 0 0 0 0\n"
            "Index [x] () uint: 0 0 1 1\n"
            "A () int: 0 2 1 3\n"
            "4 rows\n");
}

TEST(DataFrameExport, RepeatsAnArrayAlongAnIndexAxisThatItLacks) {
  Entries entries("e");
  entries.add(counting("A", {{"x", 2}, {"y", 2}}));
  entries.add(counting("B", {{"y", 2}}));
  EXPECT_EQ(exported(entries, {"x", "y"}),
            "Index [x] () uint: 0 1 0 1\n"
            "Index [y] () uint: 0 0 1 1\n"
            "A () int: 0 1 2 3\n"
            "B () int: 0 0 1 1\n"
            "4 rows\n");
}

TEST(DataFrameExport, RepeatsTheFirstElementOfALineThatIsNoIndexAxis) {
  Entries entries("e");
  entries.add(counting("A", {{"x", 2}}));
  entries.add(IntArray("B", {{"other", 3}}, {7, 8, 9}));
  EXPECT_EQ(exported(entries, {"x"}),
            "Index [x] () uint: 0 1\n"
            "A () int: 0 1\n"
            "B () int: 7 7\n"
            "2 rows\n");
}

TEST(DataFrameExport, WithoutIndexNamesGivesOneRow) {
  Entries entries("e");
  entries.add(IntArray("line", {{"x", 3}}, {7, 8, 9}));
  entries.add(counting("grid", {{"x", 2}, {"y", 2}}));
  entries.add(counting("cube", {{"x", 1}, {"y", 1}, {"z", 2}}));
  EXPECT_EQ(exported(entries, {}),
            "line () int: 7\n"
            "grid[x=0, y=0] () int: 0\n"
            "grid[x=1, y=0] () int: 1\n"
            "grid[x=0, y=1] () int: 2\n"
            "grid[x=1, y=1] () int: 3\n"
            "cube[x=0, y=0, z=0] () int: 0\n"
            "cube[x=0, y=0, z=1] () int: 1\n"
            "1 rows\n");
}

TEST(DataFrameExport, OfAnEmptyDictionaryHasNoRowsWhereAnIndexIsAskedFor) {
  Entries entries("e");
  EXPECT_EQ(exported(entries, {"t"}), "Index [t] () uint:\n0 rows\n");
  EXPECT_EQ(exported(entries, {}), "1 rows\n");
}

TEST(DataFrameExport, HasNoRowsWhenNoArrayCarriesAnIndexAxis) {
  Entries entries("e");
  entries.add(counting("A", {{"x", 2}}));
  EXPECT_EQ(exported(entries, {"x", "missing"}),
            "Index [x] () uint:\nIndex [missing] () uint:\nA () int:\n0 rows\n");
}

TEST(DataFrameExport, HasNoRowsWhenAnIndexAxisIsEmpty) {
  Entries entries("e");
  entries.add(counting("A", {{"x", 0}, {"c", 2}}));
  EXPECT_EQ(exported(entries, {"x"}),
            "Index [x] () uint:\nA[c=0] () int:\nA[c=1] () int:\n0 rows\n");
}

TEST(DataFrameExport, GivesNoColumnForAnEmptySpreadAxis) {
  Entries entries("e");
  entries.add(counting("A", {{"x", 2}, {"c", 0}}));
  EXPECT_EQ(exported(entries, {"x"}), "Index [x] () uint: 0 1\n2 rows\n");
}

TEST(DataFrameExport, MatchesIndexNamesInTheirCase) {
  Entries entries("e");
  entries.add(counting("A", {{AxisType::Time, 2}}));
  EXPECT_EQ(exported(entries, {"Time"}), "Index [Time] () uint:\nA () int:\n0 rows\n");
}

TEST(DataFrameExport, ReadsAnAxisNameThatOccursTwiceFromTheFirstOfThem) {
  Entries entries("e");
  entries.add(counting("A", {{"x", 2}, {"x", 2}}));
  EXPECT_EQ(exported(entries, {"x"}), "Index [x] () uint: 0 1\nA () int: 0 1\n2 rows\n");
}

TEST(DataFrameExport, ChecksBothAxesOfOneName) {
  Entries entries("e");
  entries.add(counting("A", {{"x", 2}, {"x", 3}}));
  EXPECT_THROW(exported(entries, {"x"}), std::runtime_error);
}

TEST(DataFrameExport, PassesOverEntriesThatAreNoArrays) {
  Entries entries("e");
  entries.add(Entries("nested")).add(counting("hidden", {{"x", 2}}));
  entries.add(counting("A", {{"x", 2}}));
  EXPECT_EQ(exported(entries, {"x"}), "Index [x] () uint: 0 1\nA () int: 0 1\n2 rows\n");
}

TEST(DataFrameExport, GivesNoColumnForArraysOf0OrMoreThan3DimensionsButChecksTheirAxes) {
  Entries entries("e");
  entries.add(IntArray("scalar", {}, {7}));
  entries.add(counting("four", {{"x", 2}, {"y", 1}, {"z", 1}, {"w", 1}}));
  EXPECT_EQ(exported(entries, {"x"}), "Index [x] () uint: 0 1\n2 rows\n");
  entries.add(counting("A", {{"x", 3}}));
  EXPECT_THROW(exported(entries, {"x"}), std::runtime_error);
}

TEST(DataFrameExport, ChecksTheElementTypeOfArraysThatGiveNoColumn) {
  Entries entries("e");
  entries.add(quillon::memory::BooleanArray("flag", {}, {true}));
  EXPECT_THROW(exported(entries, {}), std::runtime_error);
}

TEST(DataFrameExport, LeavesEverythingUnfilledWithMoreThanThreeIndexNames) {
  Entries entries("e");
  entries.add(IntArray("A", {{"a", 2}}, {7, 8}));
  entries.add(IntArray("B", {{"b", 1}, {"c", 1}, {"d", 1}}, {9}));
  EXPECT_EQ(exported(entries, {"a", "b", "c", "d"}),
            "Index [a] () uint: 0 0\n"
            "Index [b] () uint: 0 0\n"
            "Index [c] () uint: 0 0\n"
            "Index [d] () uint: 0 0\n"
            "A () int: 0 0\n"
            "B () int: 0 0\n"
            "2 rows\n");
}

TEST(DataFrameExport, LeavesAColumnUnfilledWhoseViewHasMoreThanThreeDimensions) {
  Entries entries("e");
  entries.add(counting("A", {{"x", 2}, {"y", 1}}));
  IntArray wide("B", {{"c", 1}, {"d", 1}}, {9});
  wide.setUnit("m");
  entries.add(std::move(wide));
  EXPECT_EQ(exported(entries, {"x", "y"}),
            "Index [x] () uint: 0 1\n"
            "Index [y] () uint: 0 0\n"
            "A () int: 0 1\n"
            "B[c=0, d=0] (m) int: 0 0\n"  // the unit is set before the column is passed over
            "2 rows\n");
}

TEST(DataFrameExport, SetsThePhysicalUnitOfEachDataColumn) {
  Entries entries("e");
  DoubleArray length("length", {{"x", 1}, {"c", 2}}, {1.5, 2.5});
  length.setUnit("um");
  length.setPhysicalUnit("m");
  entries.add(std::move(length));
  EXPECT_EQ(exported(entries, {"x"}),
            "Index [x] () uint: 0\n"
            "length[c=0] (m) double: 1.5\n"
            "length[c=1] (m) double: 2.5\n"
            "1 rows\n");
}

TEST(DataFrameExport, KeepsTheLargestIntegers) {
  Entries entries("e");
  entries.add(UIntArray("u", {{"x", 1}}, {18446744073709551615UL}));
  entries.add(IntArray("i", {{"x", 1}}, {std::numeric_limits<long>::min()}));
  EXPECT_EQ(exported(entries, {"x"}),
            "Index [x] () uint: 0\n"
            "u () uint: 18446744073709551615\n"
            "i () int: -9223372036854775808\n"
            "1 rows\n");
}

// The calls made on the frame are part of the contract: tables of other makers see exactly these.
TEST(DataFrameExport, MakesItsCallsInAFixedOrder) {
  test::RecordingDataFrame frame;
  frame.addRows(0, 5);
  frame.addColumn("old", tabra::DataType(tabra::DataTypeId::Int64));
  frame.addColumn("older", tabra::DataType(tabra::DataTypeId::Int64));
  frame.addColumn("oldest", tabra::DataType(tabra::DataTypeId::Int64));
  frame.forgetCalls();
  Entries entries("e");
  DoubleArray a("A", {{"t", 2}}, {0.5, 1.5});
  a.setUnit("s");
  entries.add(std::move(a));
  entries.add(UIntArray("B", {{"c", 2}, {"t", 2}}, {7, 8, 9, 10}));
  exportToDataFrame(entries, &frame, {"t"});
  EXPECT_THAT(
      frame.calls(),
      ::testing::ElementsAre("shape()", "removeColumn(0)", "removeColumn(1)", "removeColumn(2)",
                             "removeRows(0, 5)", "addRows(0, 2)", "addColumn(Index [t], 0x10140)",
                             "write(0, 0, 1, 0)", "write(0, 1, 1, 1)", "addColumn(A, 0x30140)",
                             "addColumn(B[c=0], 0x10140)", "addColumn(B[c=1], 0x10140)",
                             "setColumnUnit(1, s)", "write(1, 0, 1, 0.5)", "write(1, 1, 1, 1.5)",
                             "setColumnUnit(2, )", "write(2, 0, 1, 7)", "write(2, 1, 1, 9)",
                             "setColumnUnit(3, )", "write(3, 0, 1, 8)", "write(3, 1, 1, 10)"));
  EXPECT_EQ(test::tableText(frame.frame()),
            "Index [t] () uint: 0 1\n"
            "A (s) double: 0.5 1.5\n"
            "B[c=0] () uint: 7 9\n"
            "B[c=1] () uint: 8 10\n"
            "2 rows\n");
}

test::Calls joined(std::initializer_list<test::Calls> parts) {
  test::Calls all;
  for (const test::Calls& part : parts) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

// So are those made on the entries: their makers may read from far away, or keep count.
TEST(DataFrameExport, AsksItsEntriesInAFixedOrder) {
  test::CallLog log;
  test::RecordingDataFrame frame(log);
  Entries entries("e");
  entries.add(Entries("inner"));
  entries.add(UIntArray("B", {{"c", 2}, {"t", 1}}, {7, 8}));
  const std::unique_ptr<Data> recorded = test::record(entries, "in", log);
  exportToDataFrame(*recorded->asDictionary(), &frame, {"t"});
  const test::Calls taking = {"in.dataName(1)", "in.dataToWrite(B)", "in/B.isArray"};
  const test::Calls axes = {"in/B.size",         "in/B.info",    "in/B.asArrayInfo", "in/B.axis(0)",
                            "in/B.axis(0).name", "in/B.axis(1)", "in/B.axis(1).name"};
  const auto filling = [&](const std::string& column, const std::string& c,
                           const std::string& value) {
    return joined({taking,
                   {"in/B.physicalUnit", "setColumnUnit(" + column + ", )"},
                   axes,
                   {"in/B.info", "in/B.elementType", "in/B.size", "in/B.uint(" + c + ";0)",
                    "write(" + column + ", 0, 1, " + value + ")"}});
  };
  EXPECT_EQ(
      log.calls(),
      joined({{"in.count", "in.dataName(0)", "in.dataToWrite(inner)", "in/inner.isArray"},
              taking,
              axes,
              {"in.dataName(1)", "in/B.info", "in/B.elementType"},
              {"shape()", "removeRows(0, 0)", "addRows(0, 1)", "addColumn(Index [t], 0x10140)",
               "write(0, 0, 1, 0)", "addColumn(B[c=0], 0x10140)", "addColumn(B[c=1], 0x10140)"},
              filling("1", "0", "7"),
              filling("2", "1", "8")}));
}

TEST(DataFrameExport, AsksForNoMoreOnceSizesDiffer) {
  test::CallLog log;
  test::RecordingDataFrame frame(log);
  Entries entries("e");
  entries.add(counting("A", {{"t", 2}}));
  entries.add(counting("B", {{"t", 3}, {"x", 1}}));
  entries.add(counting("C", {{"t", 2}}));
  const std::unique_ptr<Data> recorded = test::record(entries, "in", log);
  EXPECT_THROW(exportToDataFrame(*recorded->asDictionary(), &frame, {"t"}), std::runtime_error);
  EXPECT_EQ(log.calls(),
            joined({{"in.count"},
                    {"in.dataName(0)", "in.dataToWrite(A)", "in/A.isArray", "in/A.size",
                     "in/A.info", "in/A.asArrayInfo", "in/A.axis(0)", "in/A.axis(0).name",
                     "in.dataName(0)", "in/A.info", "in/A.elementType"},
                    {"in.dataName(1)", "in.dataToWrite(B)", "in/B.isArray", "in/B.size",
                     "in/B.info", "in/B.asArrayInfo", "in/B.axis(0)", "in/B.axis(0).name"}}));
}

TEST(DataFrameExport, RemovesAndAddsRowsEvenWhenThereAreNone) {
  test::RecordingDataFrame frame;
  Entries entries("e");
  exportToDataFrame(entries, &frame, {"t"});
  EXPECT_THAT(frame.calls(), ::testing::ElementsAre("shape()", "removeRows(0, 0)", "addRows(0, 0)",
                                                    "addColumn(Index [t], 0x10140)"));
}

TEST(DataFrameExport, FillsEachIndexColumnBeforeTheNextIsAdded) {
  test::RecordingDataFrame frame;
  Entries entries("e");
  entries.add(IntArray("A", {{"x", 1}, {"y", 1}}, {7}));
  exportToDataFrame(entries, &frame, {"y", "x"});
  EXPECT_THAT(frame.calls(),
              ::testing::ElementsAre(
                  "shape()", "removeRows(0, 0)", "addRows(0, 1)", "addColumn(Index [y], 0x10140)",
                  "write(0, 0, 1, 0)", "addColumn(Index [x], 0x10140)", "write(1, 0, 1, 0)",
                  "addColumn(A, 0x20140)", "setColumnUnit(2, )", "write(2, 0, 1, 7)"));
}

class FailingExport : public ::testing::Test {
 protected:
  FailingExport() {
    m_frame.addColumn("kept", tabra::DataType(tabra::DataTypeId::Int64));
    m_frame.addRows(0, 1);
    m_frame.forgetCalls();
  }

  std::string errorOf(const std::vector<std::string>& indexNames) {
    try {
      exportToDataFrame(m_entries, &m_frame, indexNames);
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return "no error";
  }

  Entries m_entries{"e"};
  test::RecordingDataFrame m_frame;
};

TEST_F(FailingExport, LeavesTheFrameUntouchedWhenSizesDiffer) {
  m_entries.add(counting("A", {{"t", 2}}));
  m_entries.add(counting("B", {{"t", 3}}));
  EXPECT_EQ(errorOf({"t"}), "Unconvertible Dictionary. Same axes must have the same size");
  EXPECT_THAT(m_frame.calls(), ::testing::IsEmpty());
}

TEST_F(FailingExport, LetsSizesOfAxesThatAreNoIndexDiffer) {
  m_entries.add(counting("A", {{"t", 2}}));
  m_entries.add(counting("B", {{"t", 3}}));
  EXPECT_EQ(errorOf({}), "no error");
}

TEST_F(FailingExport, LeavesTheFrameUntouchedWhenAnElementTypeHasNoColumn) {
  m_entries.add(counting("A", {{"t", 1}}));
  m_entries.add(quillon::memory::StringArray("S", {{"t", 1}}, {"text"}));
  EXPECT_EQ(errorOf({"t"}), "Non convertible type");
  EXPECT_THAT(m_frame.calls(), ::testing::IsEmpty());
}

TEST_F(FailingExport, LeavesTheFrameUntouchedWhenThereAreMoreRowsThan64BitsCount) {
  const long neverRead = 0;
  const auto line = [&](const std::string& axis) {
    return IntArray::view("a" + axis, {{axis, 1UL << 32}}, &neverRead, 1UL << 32);
  };
  m_entries.add(line("x"));
  m_entries.add(line("y"));
  EXPECT_EQ(test::thrownBy<std::length_error>([&] {
              exportToDataFrame(m_entries, &m_frame, {"x", "y"});
            }),
            "The index axes span more rows than 64 bits can count");
  EXPECT_THAT(m_frame.calls(), ::testing::IsEmpty());
}

/// A dictionary with an entry that claims these axes.
class ClaimingDictionary : public test::PlainDictionary {
 public:
  explicit ClaimingDictionary(const test::ClaimingArray::Axes& axes) : m_array("A", axes) {
    add(m_array);
  }

 private:
  test::ClaimingArray m_array;
};

TEST_F(FailingExport, LeavesTheFrameUntouchedWhenThereAreMoreColumnsThanMemoryCanHold) {
  const auto refuse = [this](const test::ClaimingArray::Axes& axes) {
    ClaimingDictionary entries(axes);
    exportToDataFrame(entries, &m_frame, {"t"});
  };
  const auto refusal = [&](const test::ClaimingArray::Axes& axes) {
    return test::thrownBy<std::length_error>([&] { refuse(axes); });
  };
  constexpr const char* TOO_MANY = "The axes of an array span more columns than memory can hold";
  EXPECT_EQ(refusal({{"x", 1UL << 33U}, {"y", 1UL << 33U}}), TOO_MANY);
  EXPECT_EQ(refusal({{"x", ~0UL}, {"t", 2}}), TOO_MANY);
  EXPECT_EQ(refusal({{"x", ~0UL}, {"y", ~0UL}, {"z", ~0UL}}), TOO_MANY);
  EXPECT_THROW(refuse({{"x", 1UL << 50U}, {"y", 1}}), std::bad_alloc);
  // This many can be counted, but no memory has them. An index axis makes no columns.
  const unsigned long most = std::vector<Col>().max_size();
  EXPECT_EQ(refusal({{"x", most + 1}, {"t", 2}}), TOO_MANY);
  EXPECT_THROW(refuse({{"x", most}, {"t", 2}}), std::bad_alloc);
  EXPECT_THAT(m_frame.calls(), ::testing::IsEmpty());
}

TEST_F(FailingExport, CountsTheColumnsOfAllArraysWhenThereAreMoreThanMemoryCanHold) {
  test::ClaimingArray line("A", {{"t", 2}});
  test::ClaimingArray wide("B", {{"x", std::vector<Col>().max_size()}, {"t", 2}});
  test::PlainDictionary entries;
  entries.add(line);
  entries.add(wide);
  EXPECT_EQ(test::thrownBy<std::length_error>([&] { exportToDataFrame(entries, &m_frame, {"t"}); }),
            "The axes of an array span more columns than memory can hold");
  EXPECT_THAT(m_frame.calls(), ::testing::IsEmpty());
}

TEST_F(FailingExport, LeavesItToTheFrameHowManyRowsItCanHold) {
  ClaimingDictionary entries({{"t", 1UL << 63U}});
  EXPECT_THROW(exportToDataFrame(entries, &m_frame, {"t"}), std::length_error);
  EXPECT_EQ(m_frame.calls().back(), "addRows(0, 9223372036854775808)");
}

TEST_F(FailingExport, IsNotHeldUpByAnEmptyAxisInsideAnEndlessOne) {
  const auto exportAxes = [this](const test::ClaimingArray::Axes& axes,
                                 const std::vector<std::string>& indexNames) {
    ClaimingDictionary entries(axes);
    exportToDataFrame(entries, &m_frame, indexNames);
    return test::tableText(m_frame.frame());
  };
  EXPECT_EQ(exportAxes({{"x", 0}, {"y", ~0UL}}, {}), "1 rows\n");
  EXPECT_EQ(exportAxes({{"x", 0}, {"y", ~0UL}, {"z", ~0UL}}, {}), "1 rows\n");
  EXPECT_EQ(exportAxes({{"x", 0}, {"y", ~0UL}}, {"x", "y"}),
            "Index [x] () uint:\nIndex [y] () uint:\nA () int:\n0 rows\n");
}

TEST_F(FailingExport, TakesTheFirstElementOfALineOfAnyLength) {
  ClaimingDictionary entries({{"x", ~0UL}});
  exportToDataFrame(entries, &m_frame, {});
  EXPECT_EQ(test::tableText(m_frame.frame()), "A () int: 7\n1 rows\n");
}

TEST_F(FailingExport, LeavesEveryNumberOfRowsThat64BitsCountToTheFrame) {
  const long neverRead = 0;
  m_entries.add(IntArray::view("a", {{"x", 4294967295}}, &neverRead, 4294967295));
  m_entries.add(IntArray::view("b", {{"y", 4294967297}}, &neverRead, 4294967297));
  EXPECT_EQ(test::thrownBy<std::length_error>([&] {
              exportToDataFrame(m_entries, &m_frame, {"x", "y"});
            }),
            "addRows: a table of 0 rows cannot grow by 18446744073709551615");
}

TEST_F(FailingExport, FollowsTheStepsForAnIndexNameGivenTwice) {
  m_entries.add(counting("A", {{"t", 2}}));
  // The table gets a row for each coordinate of t, the index columns walk t by t: the frame
  // refuses.
  EXPECT_THROW(exportToDataFrame(m_entries, &m_frame, {"t", "t"}), std::out_of_range);
  EXPECT_EQ(test::tableText(m_frame.frame()), "Index [t] () uint: 0 1\n2 rows\n");
}

/// An array that turns into one of strings once it was asked for its unit, as its column is filled.
class TurningArray : public quillon::memory::ArrayBase {
 public:
  TurningArray()
      : ArrayBase("turning", ElementType::Int, {{"t", 1}}),
        m_turned("turning", ElementType::String, {{"t", 1}}) {}

  const quillon::memory::ArrayDescriptor* getInformation() const override {
    return m_isTurned ? &m_turned : ArrayBase::getInformation();
  }
  std::string getPhysicalUnit() const override {
    m_isTurned = true;
    return "";
  }

 private:
  quillon::memory::ArrayDescriptor m_turned;
  mutable bool m_isTurned = false;
};

TEST_F(FailingExport, RefusesAnElementTypeThatChangesWhileTheTableIsFilled) {
  m_entries.add(std::make_unique<TurningArray>());
  try {
    exportToDataFrame(m_entries, &m_frame, {"t"});
    FAIL() << "filled";
  } catch (const InvalidCall& error) {
    EXPECT_EQ(error.what(), "Unsuported export");
  }
}

/// A 2 x 2 array of Int with the axes t and c, which change places when its first column is filled.
class TransposedArray : public quillon::memory::ArrayBase {
 public:
  TransposedArray()
      : ArrayBase("A", ElementType::Int, {{"t", 2}, {"c", 2}}),
        m_transposed("A", ElementType::Int, {{"c", 2}, {"t", 2}}) {}

  const quillon::memory::ArrayDescriptor* getInformation() const override {
    return m_isFilled ? &m_transposed : ArrayBase::getInformation();
  }
  long getValueAsInt(const Tuple& index) const override {
    m_isFilled = true;
    return static_cast<long>(10 * index[0] + index[1]);
  }

 private:
  quillon::memory::ArrayDescriptor m_transposed;
  mutable bool m_isFilled = false;
};

TEST_F(FailingExport, LooksAtTheAxesAgainForEachColumnOfAnArray) {
  m_entries.add(std::make_unique<TransposedArray>());
  exportToDataFrame(m_entries, &m_frame, {"t"});
  // The second column was planned at t=0, c=1, of which axis 0 is now c.
  EXPECT_EQ(test::tableText(m_frame.frame()),
            "Index [t] () uint: 0 1\nA[c=0] () int: 0 10\nA[c=1] () int: 0 1\n2 rows\n");
}

/// A dictionary whose only entry turns into a dictionary after some lookups.
class TurningDictionary : public test::PlainDictionary {
 public:
  TurningDictionary() { add(m_array); }
  using test::PlainDictionary::data;
  Data* data(const std::string& /*name*/) override {
    return ++m_lookups == 1 ? static_cast<Data*>(&m_array) : &m_nested;
  }

 private:
  int m_lookups = 0;
  IntArray m_array{"A", {{"t", 1}}, {7}};
  Entries m_nested{"A"};
};

TEST_F(FailingExport, LeavesAColumnUnfilledWhoseEntryIsNoArrayAnyMore) {
  TurningDictionary turning;
  exportToDataFrame(turning, &m_frame, {"t"});
  EXPECT_EQ(test::tableText(m_frame.frame()), "Index [t] () uint: 0\nA () int: 0\n1 rows\n");
}

/// A 1 x 1 array of Int whose descriptor knows nothing of its axes.
class UndescribedArray : public test::PlainArray {
 public:
  UndescribedArray() : PlainArray(test::PlainArrayInfo("A", ElementType::Int)) {}
  long getValueAsInt(const Tuple& /*index*/) const override { return 7; }
};

TEST_F(FailingExport, TakesAxesThatNobodyDescribesAsNameless) {
  m_entries.add(std::make_unique<UndescribedArray>());
  exportToDataFrame(m_entries, &m_frame, {});
  EXPECT_EQ(test::tableText(m_frame.frame()), "A[=0, =0] () int: 7\n1 rows\n");
}

TEST_F(FailingExport, LetsTheFailureOfADescriptorWithTooFewAxesThrough) {
  class ShortArray : public test::ClaimingArray {
   public:
    ShortArray() : ClaimingArray("A", {{"t", 1}}) {}
    const Tuple& size() const override { return m_plane; }

   private:
    TupleX m_plane{1, 1};
  };
  m_entries.add(std::make_unique<ShortArray>());
  EXPECT_THROW(exportToDataFrame(m_entries, &m_frame, {"t"}), std::out_of_range);
  EXPECT_THAT(m_frame.calls(), ::testing::IsEmpty());
}

/// A dictionary that calls its entries otherwise than they call themselves.
class RenamingDictionary : public test::PlainDictionary {
 public:
  explicit RenamingDictionary(Data* entry) : m_entry(entry) {}
  unsigned long getNumOfData() const override { return 1; }
  std::string getDataName(int /*index*/) const override { return "key"; }
  using test::PlainDictionary::data;
  Data* data(const std::string& name) override {
    EXPECT_EQ(name, "key");
    return m_entry;
  }

 private:
  Data* m_entry;
};

TEST_F(FailingExport, GoesByTheNamesOfTheDictionary) {
  IntArray array = counting("A", {{"t", 2}});
  RenamingDictionary entries(&array);
  exportToDataFrame(entries, &m_frame, {"t"});
  EXPECT_EQ(test::tableText(m_frame.frame()), "Index [t] () uint: 0 1\nkey () int: 0 1\n2 rows\n");
}

TEST_F(FailingExport, PassesOverANullEntry) {
  RenamingDictionary entries(nullptr);
  exportToDataFrame(entries, &m_frame, {});
  EXPECT_EQ(test::tableText(m_frame.frame()), "1 rows\n");
}

/// An array that has other axes once it was asked for its unit, as its first column is filled. Its
/// elements say how many indices they were read with.
class ReshapedArray : public test::ClaimingArray {
 public:
  ReshapedArray(const Axes& before, const Axes& after)
      : ClaimingArray("A", before), m_after("A", after) {}
  const DataInfo* getInformation() const override {
    return m_isTurned ? m_after.getInformation() : ClaimingArray::getInformation();
  }
  const Tuple& size() const override { return m_isTurned ? m_after.size() : ClaimingArray::size(); }
  std::string getPhysicalUnit() const override {
    m_isTurned = true;
    return "";
  }
  long getValueAsInt(const Tuple& index) const override { return static_cast<long>(index.size()); }

 private:
  ClaimingArray m_after;
  mutable bool m_isTurned = false;
};

TEST_F(FailingExport, ReadsAnArrayAsItIsWhenItsColumnIsFilled) {
  const auto exportTurning = [this](const test::ClaimingArray::Axes& before,
                                    const test::ClaimingArray::Axes& after) {
    Entries entries("e");
    entries.add(std::make_unique<ReshapedArray>(before, after));
    exportToDataFrame(entries, &m_frame, {"t"});
    return test::tableText(m_frame.frame());
  };
  EXPECT_EQ(exportTurning({{"t", 2}}, {{"t", 2}, {"x", 3}, {"y", 3}}),
            "Index [t] () uint: 0 1\nA () int: 3 3\n2 rows\n");
  EXPECT_EQ(exportTurning({{"t", 2}, {"x", 1}, {"y", 2}}, {{"t", 5}}),
            "Index [t] () uint: 0 1\nA[x=0, y=0] () int: 1 1\nA[x=0, y=1] () int: 1 1\n2 rows\n");
  EXPECT_EQ(exportTurning({{"t", 2}}, {}), "Index [t] () uint: 0 1\nA () int: 0 0\n2 rows\n");
  EXPECT_EQ(exportTurning({{"t", 2}}, {{"t", 2}, {"x", 1}, {"y", 1}, {"z", 1}}),
            "Index [t] () uint: 0 1\nA () int: 0 0\n2 rows\n");
}

/// An array that has another axis, of 2, once an element was read. The elements say where they were
/// read along it.
class GrowingArray : public test::ClaimingArray {
 public:
  GrowingArray() : ClaimingArray("A", {{"x", 1}}), m_after("A", {{"x", 1}, {"y", 2}}) {}
  const Tuple& size() const override { return m_isGrown ? m_after.size() : ClaimingArray::size(); }
  long getValueAsInt(const Tuple& index) const override {
    m_isGrown = true;
    return index.size() == 2 ? static_cast<long>(index[1]) : -1;
  }

 private:
  ClaimingArray m_after;
  mutable bool m_isGrown = false;
};

// An index axis that an array lacks stands for no axis of it, nor for one that it gets later.
TEST_F(FailingExport, ReadsAnAxisThatAnArrayGrowsAtZero) {
  m_entries.add(std::make_unique<GrowingArray>());
  m_entries.add(counting("T", {{"t", 3}}));
  exportToDataFrame(m_entries, &m_frame, {"t"});
  EXPECT_EQ(test::tableText(m_frame.frame()),
            "Index [t] () uint: 0 1 2\nA () int: -1 0 0\nT () int: 0 1 2\n3 rows\n");
}

/// An array that has four axes, two of one name, once it was asked for its unit. Its elements say
/// where they were read along the last.
class FourAxesLater : public ReshapedArray {
 public:
  FourAxesLater()
      : ReshapedArray({{"t", 1}, {"x", 1}, {"y", 1}}, {{"t", 1}, {"t", 1}, {"x", 1}, {"y", 2}}) {}
  long getValueAsInt(const Tuple& index) const override { return static_cast<long>(index[3]); }
};

TEST_F(FailingExport, ReadsAFourthAxisThatAnArrayGrowsAtZero) {
  m_entries.add(std::make_unique<FourAxesLater>());
  exportToDataFrame(m_entries, &m_frame, {"t"});
  EXPECT_EQ(test::tableText(m_frame.frame()),
            "Index [t] () uint: 0\nA[x=0, y=0] () int: 0\n1 rows\n");
}

/// An array that fails at its second element.
class FailingArray : public quillon::memory::ArrayBase {
 public:
  FailingArray() : ArrayBase("F", ElementType::Int, {{"t", 2}}) {}
  long getValueAsInt(const Tuple& index) const override {
    if (index[0] == 1) {
      throw std::domain_error("unreadable");
    }
    return 7;
  }
};

TEST_F(FailingExport, LetsAFailureOfAnAccessorThroughAndKeepsWhatWasWritten) {
  m_entries.add(counting("A", {{"t", 2}}));
  m_entries.add(std::make_unique<FailingArray>());
  EXPECT_THROW(exportToDataFrame(m_entries, &m_frame, {"t"}), std::domain_error);
  EXPECT_EQ(test::tableText(m_frame.frame()),
            "Index [t] () uint: 0 1\nA () int: 0 1\nF () int: 7 0\n2 rows\n");
}

}  // namespace
}  // namespace object_model
