#include "WriteTesting.h"
#include "support/BareArray.h"

namespace quillon::netcdf {
namespace {

using memory::Axis;
using memory::Dictionary;
using memory::DoubleArray;
using memory::IntArray;

template <class Entry>
std::shared_ptr<Entry> shared(Entry&& entry) {
  return std::make_shared<Entry>(std::move(entry));
}

/// An array along "x" with these coordinates.
memory::TypedArray<int> along(const std::string& name, std::vector<int> values,
                              std::shared_ptr<const object_model::Array> coordinates) {
  auto array = row<int>(name, "x", std::move(values));
  array.setCoordinates(0, std::move(coordinates));
  return array;
}

Dictionary named(const std::string& name, Dictionary dictionary) {
  dictionary.setName(name);
  return dictionary;
}

class WriteGroupTest : public WriteTest {
 protected:
  /// The declarations of dimensions and variables in the dump of the file, each with blanks of its
  /// group's depth.
  std::string outlineOf(const Dictionary& dictionary) const {
    write(dictionary);
    return printedBy("'" NCDUMP "' -h '" + m_path + "' | grep -E ' = [0-9U].*;|\\) ;|group:' | " +
                     "grep -v '://' | tr -d '\\t'")
        .text;
  }
};

TEST_F(WriteGroupTest, DimensionsStandSlowestFirst) {
  EXPECT_EQ(outlineOf(dictionaryOf(
                IntArray("a", {Axis("x", 1), Axis("y", 2), Axis("z", 3)}, std::vector<long>(6)))),
            "z = 3 ;\ny = 2 ;\nx = 1 ;\nint64 a(z, y, x) ;\n");
}

TEST_F(WriteGroupTest, KindsOfAxesHaveTheirNames) {
  EXPECT_EQ(outlineOf(dictionaryOf(IntArray("a", {Axis(object_model::AxisType::Time, 2)}, {1, 2}))),
            "time = 2 ;\nint64 a(time) ;\n");
}

TEST_F(WriteGroupTest, AxesWithoutANameAreNumberedSlowestFirst) {
  EXPECT_EQ(outlineOf(dictionaryOf(IntArray("a", {Axis("", 2), Axis("", 3)}, std::vector<long>(6)),
                                   IntArray("b", {Axis("", 3)}, {1, 2, 3}),
                                   IntArray("c", {Axis("", 2), Axis("", 2)}, {1, 2, 3, 4}),
                                   row<int>("dim_3", "dim_2", {1, 2, 3, 4}),
                                   IntArray("d", {Axis("", 5)}, std::vector<long>(5)))),
            "dim_0 = 3 ;\ndim_1 = 2 ;\ndim_4 = 2 ;\ndim_2 = 4 ;\ndim_5 = 5 ;\n"
            "int64 a(dim_0, dim_1) ;\nint64 b(dim_0) ;\nint64 c(dim_1, dim_4) ;\n"
            "int dim_3(dim_2) ;\nint64 d(dim_5) ;\n");
}

TEST_F(WriteGroupTest, OneAxisMayStandTwiceInAnArray) {
  const Dictionary dictionary =
      dictionaryOf(IntArray("covariance", {Axis("x", 2), Axis("x", 2)}, {1, 2, 3, 4}));
  EXPECT_EQ(outlineOf(dictionary), "x = 2 ;\nint64 covariance(x, x) ;\n");
  EXPECT_EQ(
      contentOf(File(m_path).root()),
      (std::map<std::string, std::vector<std::string>>{{"/covariance", {"1", "2", "3", "4"}}}));
}

TEST_F(WriteGroupTest, AxesWithoutPointsAreUnlimitedDimensions) {
  const Dictionary dictionary =
      dictionaryOf(IntArray("a", {Axis("x", 2), Axis("none", 0)}, {}), row<int>("b", "none", {}));
  EXPECT_EQ(outlineOf(dictionary),
            "none = UNLIMITED ; // (0 currently)\nx = 2 ;\nint64 a(none, x) ;\nint b(none) ;\n");
  EXPECT_EQ(shapeOf(arrayAt(File(m_path), "a")), (std::vector<unsigned long>{2, 0}));
}

TEST_F(WriteGroupTest, TwoSizesOfAnAxisInOneGroupAreRefused) {
  EXPECT_EQ(refusalOf(dictionaryOf(row<int>("a", "x", {1, 2}), row<int>("b", "x", {1, 2, 3}))),
            "axis 'x' has 2 points in '/a' and 3 in '/b'");
}

TEST_F(WriteGroupTest, TwoSizesOfAnAxisInOneArrayAreRefused) {
  EXPECT_EQ(refusalOf(dictionaryOf(
                named("g", dictionaryOf(IntArray("a", {Axis("x", 1), Axis("x", 2)}, {1, 2}))))),
            "axis 'x' of '/g/a' has both 2 and 1 points");
}

TEST_F(WriteGroupTest, GroupsShareADimensionOfOneNameAndSizeWithThoseAroundThem) {
  EXPECT_EQ(
      outlineOf(dictionaryOf(
          row<int>("a", "x", {1, 2}),
          named("inner", dictionaryOf(named("most", dictionaryOf(row<int>("b", "x", {1, 2}))))))),
      "x = 2 ;\nint a(x) ;\ngroup: inner {\n  group: most {\n    int b(x) ;\n");
}

TEST_F(WriteGroupTest, GroupsHaveADimensionOfAnotherSizeThemselves) {
  EXPECT_EQ(outlineOf(dictionaryOf(row<int>("a", "x", {1, 2}),
                                   named("first", dictionaryOf(row<int>("b", "x", {1}))),
                                   named("second", dictionaryOf(row<int>("b", "x", {1}))))),
            "x = 2 ;\nint a(x) ;\ngroup: first {\n  x = 1 ;\n  int b(x) ;\n"
            "group: second {\n  x = 1 ;\n  int b(x) ;\n");
}

TEST_F(WriteGroupTest, NearestDimensionOfItsNameCountsForAnAxis) {
  EXPECT_EQ(outlineOf(dictionaryOf(
                row<int>("a", "x", {1, 2, 3}),
                named("g", dictionaryOf(row<int>("b", "x", {1, 2}),
                                        named("h", dictionaryOf(row<int>("c", "x", {1, 2}))),
                                        named("i", dictionaryOf(row<int>("d", "x", {1, 2, 3}))))))),
            "x = 3 ;\nint a(x) ;\ngroup: g {\n  x = 2 ;\n  int b(x) ;\n"
            "  group: h {\n    int c(x) ;\n  group: i {\n    x = 3 ;\n    int d(x) ;\n");
}

TEST_F(WriteGroupTest, DictionaryMayBeCalledAsAnAxisOfAGroupAroundIt) {
  EXPECT_EQ(outlineOf(dictionaryOf(
                row<int>("a", "x", {1, 2}),
                named("g", dictionaryOf(row<int>("b", "x", {3, 4}), Dictionary("x"))))),
            "x = 2 ;\nint a(x) ;\ngroup: g {\n  int b(x) ;\n  group: x {\n");
}

TEST_F(WriteGroupTest, DictionaryCalledAsAnAxisBesideItIsRefused) {
  EXPECT_EQ(refusalOf(dictionaryOf(row<int>("a", "x", {1}), Dictionary("x"))),
            "axis 'x' of '/a' is called as the dictionary '/x', which netCDF files cannot tell "
            "apart");
}

TEST_F(WriteGroupTest, VariablesCalledAsADimensionKeepTheirShape) {
  const Dictionary dictionary = dictionaryOf(
      row<int>("a", "x", {1, 2}), IntArray("y", {Axis("x", 2), Axis("y", 2)}, {1, 2, 3, 4}),
      IntArray("z", {Axis("z", 1), Axis("x", 2)}, {5, 6}), memory::IntArray("x", {}, {7}));
  EXPECT_EQ(outlineOf(dictionary),
            "x = 2 ;\ny = 2 ;\nz = 1 ;\nint a(x) ;\nint64 y(y, x) ;\nint64 z(x, z) ;\n");
  EXPECT_EQ(
      contentOf(File(m_path).root()),
      (std::map<std::string, std::vector<std::string>>{
          {"/a", {"1", "2"}}, {"/x", {"7"}}, {"/y", {"1", "2", "3", "4"}}, {"/z", {"5", "6"}}}));
}

TEST_F(WriteGroupTest, CoordinatesOfSeveralArraysAreOneVariable) {
  const auto values = shared(row<double>("x", "x", {0.5, 1.5}));
  EXPECT_EQ(dump(dictionaryOf(along("a", {1, 2}, values),
                              along("b", {3, 4}, shared(row<double>("", "i", {0.5, 1.5}))))),
            R"(netcdf a {
dimensions:
	x = 2 ;
variables:
	double x(x) ;
		x:_FillValue = NaN ;
	int a(x) ;
	int b(x) ;
data:

 x = 0.5, 1.5 ;

 a = 1, 2 ;

 b = 3, 4 ;
}
)");
}

TEST_F(WriteGroupTest, CoordinatesMayBeThoseOfTheSlowestAxisAlone) {
  memory::TypedArray<int> array("a", {Axis("x", 1), Axis("y", 2)}, {1, 2});
  array.setCoordinates(1, shared(row<double>("y", "y", {0, 1})));
  EXPECT_EQ(outlineOf(dictionaryOf(std::move(array))),
            "y = 2 ;\nx = 1 ;\ndouble y(y) ;\nint a(y, x) ;\n");
}

TEST_F(WriteGroupTest, CoordinatesThatAreAnEntryStandThereOnce) {
  EXPECT_EQ(
      outlineOf(dictionaryOf(along("a", {1, 2}, shared(row<std::string>("x", "x", {"p", "q"}))),
                             row<std::string>("x", "x", {"p", "q"}))),
      "x = 2 ;\nint a(x) ;\nstring x(x) ;\n");
}

TEST_F(WriteGroupTest, CoordinatesThatAreTheFirstEntryStandThereOnce) {
  EXPECT_EQ(outlineOf(dictionaryOf(row<int>("x", "x", {5, 6}),
                                   along("a", {1, 2}, shared(row<int>("x", "x", {5, 6}))))),
            "x = 2 ;\nint x(x) ;\nint a(x) ;\n");
}

TEST_F(WriteGroupTest, MissingCoordinatesAreTheSame) {
  const double nan = std::nan("");
  EXPECT_EQ(refusalOf(dictionaryOf(along("a", {1, 2}, shared(row<double>("x", "x", {nan, 1}))),
                                   row<double>("x", "x", {nan, 1}))),
            "");
}

TEST_F(WriteGroupTest, CoordinatesThatDifferAreRefused) {
  const auto first = [] { return along("a", {1, 2}, shared(row<double>("x", "x", {0, 1}))); };
  EXPECT_EQ(
      refusalOf(dictionaryOf(first(), along("b", {1, 2}, shared(row<double>("x", "x", {0, 2}))))),
      "the coordinates of axis 'x' of '/b' are not those of '/a'");
  auto other = row<int>("b", "y", {1, 2});
  other.setCoordinates(0, shared(row<double>("p", "y", {0, 1})));
  EXPECT_EQ(refusalOf(dictionaryOf(along("a", {1, 2}, shared(row<double>("p", "x", {0, 1}))),
                                   std::move(other))),
            "the coordinates of axis 'y' of '/b' are not those of '/a'");
  EXPECT_EQ(refusalOf(dictionaryOf(first(), row<long>("x", "x", {0, 1}))),
            "the coordinates of axis 'x' of '/a' are not those of '/x'");
  EXPECT_EQ(refusalOf(dictionaryOf(first(), DoubleArray("x", {}, {0}))),
            "the coordinates of axis 'x' of '/a' are not those of '/x'");
  EXPECT_EQ(refusalOf(dictionaryOf(first(), row<double>("x", "i", {0, 1}))),
            "the coordinates of axis 'x' of '/a' are not those of '/x'");
  EXPECT_EQ(refusalOf(dictionaryOf(first(), row<double>("x", "x", {0, std::nan("")}))),
            "the coordinates of axis 'x' of '/a' are not those of '/x'");
  EXPECT_EQ(
      refusalOf(dictionaryOf(along("a", {1, 2}, shared(row<double>("x", "x", {std::nan(""), 1}))),
                             row<double>("x", "x", {0, 1}))),
      "the coordinates of axis 'x' of '/a' are not those of '/x'");
  auto metres = row<double>("x", "x", {0, 1});
  metres.setUnit("m");
  EXPECT_EQ(refusalOf(dictionaryOf(first(), std::move(metres))),
            "the coordinates of axis 'x' of '/a' are not those of '/x'");
}

TEST_F(WriteGroupTest, CoordinatesThatDifferInTheirFirstBlockAloneAreRefused) {
  std::vector<int> values(2000000);
  auto first = row<int>("x", "x", values);
  values[0] = 1;
  EXPECT_EQ(refusalOf(dictionaryOf(along("a", values, shared(row<int>("x", "x", values))),
                                   std::move(first))),
            "the coordinates of axis 'x' of '/a' are not those of '/x'");
}

TEST_F(WriteGroupTest, CoordinatesWhoseNameNoFileTakesAreRefused) {
  EXPECT_EQ(refusalOf(dictionaryOf(along("a", {1}, shared(row<int>("p/q", "x", {1}))))),
            "'/p/q' has a name that netCDF files do not take: it has a slash");
}

TEST_F(WriteGroupTest, CoordinatesWithAnAttributeThatNoFileTakesAreRefusedByTheirPath) {
  auto coordinates = row<int>("x", "x", {1});
  coordinates.setAttribute("p/q", "text");
  EXPECT_EQ(refusalOf(dictionaryOf(
                named("g", dictionaryOf(along("a", {1}, shared(std::move(coordinates))))))),
            "attribute 'p/q' of '/g/x' has a name that netCDF files do not take: it has a slash");
}

TEST_F(WriteGroupTest, CoordinatesOfDictionariesAreRefused) {
  const auto dictionaries = [] {
    std::vector<Dictionary> elements;
    elements.emplace_back("e");
    return shared(memory::DictionaryArray("x", {Axis("x", 1)}, std::move(elements)));
  };
  EXPECT_EQ(
      refusalOf(dictionaryOf(along("a", {1}, dictionaries()), along("b", {1}, dictionaries()))),
      "the coordinates of axis 'x' of '/b' are not those of '/a'");
}

TEST_F(WriteGroupTest, CoordinatesWhereADictionaryStandsAreRefused) {
  EXPECT_EQ(
      refusalOf(dictionaryOf(along("a", {1}, shared(row<double>("p", "x", {0}))), Dictionary("p"))),
      "the coordinates of axis 'x' of '/a' would stand where the dictionary '/p' does");
}

TEST_F(WriteGroupTest, CoordinatesOfAnotherNameAreListed) {
  auto array = along("a", {1, 2}, shared(row<std::string>("station", "i", {"p", "q"})));
  EXPECT_EQ(dump(dictionaryOf(std::move(array))), R"(netcdf a {
dimensions:
	x = 2 ;
variables:
	string station(x) ;
	int a(x) ;
		a:coordinates = "station" ;
data:

 station = "p", "q" ;

 a = 1, 2 ;
}
)");
}

TEST_F(WriteGroupTest, ListedCoordinatesAreAddedToThoseThatTheArrayLists) {
  auto lists = along("a", {1}, shared(row<int>("station", "x", {1})));
  lists.setAttribute("coordinates", "height");
  auto has = along("b", {1}, shared(row<int>("station", "x", {1})));
  has.setAttribute("coordinates", "station height");
  auto hasLonger = along("c", {1}, shared(row<int>("station", "x", {1})));
  hasLonger.setAttribute("coordinates", "old_station station_height");
  auto hasLast = along("d", {1}, shared(row<int>("station", "x", {1})));
  hasLast.setAttribute("coordinates", "height station");
  auto itself = along("station", {1}, shared(row<int>("station", "x", {1})));
  write(dictionaryOf(std::move(lists), std::move(has), std::move(hasLonger), std::move(hasLast),
                     std::move(itself)));
  EXPECT_EQ(printedBy("'" NCDUMP "' -h '" + m_path + "' | grep coordinates").text,
            "\t\ta:coordinates = \"height station\" ;\n\t\tb:coordinates = \"station height\" ;\n"
            "\t\tc:coordinates = \"old_station station_height station\" ;\n"
            "\t\td:coordinates = \"height station\" ;\n");
}

TEST_F(WriteGroupTest, ListOfCoordinatesThatIsNoTextStaysAsItIs) {
  auto array = along("a", {1}, shared(row<int>("station", "x", {1})));
  array.setAttribute("coordinates", std::vector<int>{5});
  write(dictionaryOf(std::move(array)));
  EXPECT_EQ(printedBy("'" NCDUMP "' -h '" + m_path + "' | grep coordinates").text,
            "\t\ta:coordinates = 5 ;\n");
}

TEST_F(WriteGroupTest, CoordinatesWhoseNameCannotBeListedAreTheAxes) {
  EXPECT_EQ(outlineOf(dictionaryOf(along("a", {1}, shared(row<int>("two words", "x", {5}))))),
            "x = 1 ;\nint x(x) ;\nint a(x) ;\n");
}

TEST_F(WriteGroupTest, GroupsFindTheSameCoordinatesAroundThem) {
  const auto values = shared(row<double>("x", "x", {0, 1}));
  EXPECT_EQ(outlineOf(dictionaryOf(along("a", {1, 2}, values),
                                   named("g", dictionaryOf(along("b", {1, 2}, values))))),
            "x = 2 ;\ndouble x(x) ;\nint a(x) ;\ngroup: g {\n  int b(x) ;\n");
}

TEST_F(WriteGroupTest, GroupsFindCoordinatesThatAreAnEntryAroundThem) {
  EXPECT_EQ(outlineOf(dictionaryOf(
                row<int>("a", "x", {1, 2}), row<int>("x", "x", {5, 6}),
                named("g", dictionaryOf(along("b", {1, 2}, shared(row<int>("x", "x", {5, 6}))))))),
            "x = 2 ;\nint a(x) ;\nint x(x) ;\ngroup: g {\n  int b(x) ;\n");
}

TEST_F(WriteGroupTest, GroupsHaveListedCoordinatesUnlessTheNearestOfTheirNameAreTheSame) {
  const auto p = shared(row<int>("p", "x", {5, 6}));
  EXPECT_EQ(outlineOf(dictionaryOf(
                along("a", {1, 2}, p),
                named("g", dictionaryOf(along("b", {1, 2}, shared(row<int>("p", "x", {7, 8}))),
                                        named("h", dictionaryOf(along("c", {1, 2}, p))))),
                named("i", dictionaryOf(along("d", {1, 2}, p))))),
            "x = 2 ;\nint p(x) ;\nint a(x) ;\n"
            "group: g {\n  int p(x) ;\n  int b(x) ;\n"
            "  group: h {\n    int p(x) ;\n    int c(x) ;\n"
            "group: i {\n  int d(x) ;\n");
}

TEST_F(WriteGroupTest, GroupsHaveCoordinatesThatStandAlongAnotherAxisAroundThem) {
  EXPECT_EQ(outlineOf(dictionaryOf(
                row<int>("a", "x", {1, 2}), row<int>("p", "y", {5, 6}),
                named("g", dictionaryOf(along("b", {1, 2}, shared(row<int>("p", "x", {5, 6}))))))),
            "x = 2 ;\ny = 2 ;\nint a(x) ;\nint p(y) ;\n"
            "group: g {\n  int p(x) ;\n  int b(x) ;\n");
}

TEST_F(WriteGroupTest, CoordinatesThatAreCalledAsAnotherAxisAreNotThatAxis) {
  IntArray array("a", {Axis("x", 2), Axis("y", 2)}, {1, 2, 3, 4});
  array.setCoordinates(0, shared(row<int>("y", "x", {5, 6})));
  EXPECT_EQ(outlineOf(dictionaryOf(row<int>("b", "y", {1, 2}),
                                   named("g", dictionaryOf(std::move(array))))),
            "y = 2 ;\nint b(y) ;\ngroup: g {\n  x = 2 ;\n  int y(x) ;\n  int64 a(y, x) ;\n");
}

TEST_F(WriteGroupTest, GroupsHaveOtherCoordinatesThemselves) {
  EXPECT_EQ(
      outlineOf(dictionaryOf(
          along("a", {1, 2}, shared(row<double>("x", "x", {0, 1}))),
          named("g", dictionaryOf(along("b", {1, 2}, shared(row<double>("x", "x", {0, 2}))))),
          named("h", dictionaryOf(row<double>("x", "x", {0, 3}))))),
      "x = 2 ;\ndouble x(x) ;\nint a(x) ;\ngroup: g {\n  x = 2 ;\n  double x(x) ;\n  int b(x) ;\n"
      "group: h {\n  x = 2 ;\n  double x(x) ;\n");
}

TEST_F(WriteGroupTest, GroupsHaveCoordinatesThatThoseAroundThemHaveNot) {
  EXPECT_EQ(
      outlineOf(dictionaryOf(
          row<int>("a", "x", {1, 2}),
          named("g", dictionaryOf(along("b", {1, 2}, shared(row<double>("x", "x", {0, 2}))))))),
      "x = 2 ;\nint a(x) ;\ngroup: g {\n  x = 2 ;\n  double x(x) ;\n  int b(x) ;\n");
}

/// An array whose coordinates lack a point.
class ShortCoordinates final : public memory::ValueArray<long> {
 public:
  ShortCoordinates() : ValueArray("a", {Axis("x", 2)}) {}
  long valueAt(const object_model::Tuple& /*index*/) const override { return 0; }
  std::shared_ptr<const object_model::Array> coordinates(unsigned long) const override {
    return std::make_shared<IntArray>(row<long>("x", "x", {1}));
  }
};

TEST_F(WriteGroupTest, CoordinatesOfAnotherShapeAreRefused) {
  Dictionary dictionary("d");
  dictionary.add(std::make_unique<ShortCoordinates>());
  EXPECT_EQ(refusalOf(dictionary),
            "the coordinates of axis 'x' of '/a' are not one for each of its 2 points");
}

/// An array that makes its coordinates when it is asked for them.
class MadeCoordinates final : public memory::ValueArray<long> {
 public:
  MadeCoordinates() : ValueArray("a", {Axis("x", 2)}) {}
  long valueAt(const object_model::Tuple& index) const override {
    return static_cast<long>(index[0]);
  }
  std::shared_ptr<const object_model::Array> coordinates(unsigned long) const override {
    return std::make_shared<IntArray>(row<long>("x", "x", {5, 6}));
  }
};

TEST_F(WriteGroupTest, CoordinatesStayUntilTheyAreWritten) {
  Dictionary dictionary("d");
  dictionary.add(std::make_unique<MadeCoordinates>());
  write(dictionary);
  EXPECT_EQ(contentOf(File(m_path).root()), (std::map<std::string, std::vector<std::string>>{
                                                {"/a", {"0", "1"}}, {"/x", {"5", "6"}}}));
}

TEST_F(WriteGroupTest, ArraysThatTellOfNothingButTheirValuesAreWritten) {
  Dictionary dictionary("d");
  dictionary.add(std::make_unique<::test::BareArray>("a", std::vector<Axis>{Axis("x", 2)},
                                                     std::vector<double>{1, 2}));
  EXPECT_EQ(outlineOf(dictionary), "x = 2 ;\ndouble a(x) ;\n");
  EXPECT_EQ(contentOf(File(m_path).root()),
            (std::map<std::string, std::vector<std::string>>{{"/a", {"1", "2"}}}));
}

/// A dictionary whose only entry is itself, or null.
class Loop final : public memory::DictionaryBase {
 public:
  explicit Loop(bool isNull) : DictionaryBase("loop"), m_isNull(isNull) {}
  unsigned long getNumOfData() const override { return 1; }
  std::string getDataName(int) const override { return "again"; }
  using object_model::Dictionary::data;
  Data* data(const std::string&) override { return m_isNull ? nullptr : this; }
  const Data* data(const std::string&) const override { return m_isNull ? nullptr : this; }

 private:
  using Data = object_model::Data;
  bool m_isNull;
};

TEST_F(WriteGroupTest, DictionaryInsideItselfIsRefused) {
  EXPECT_EQ(refusalOf(Loop(false)), "dictionary '/again' contains itself");
  Dictionary outer("outer");
  outer.add(std::make_unique<Loop>(false));
  EXPECT_EQ(refusalOf(outer), "dictionary '/loop/again' contains itself");
}

/// A dictionary whose entries stand elsewhere.
class Links final : public memory::DictionaryBase {
 public:
  Links() : DictionaryBase("links") {}
  void add(const std::string& name, Data* data) { m_entries.emplace_back(name, data); }
  unsigned long getNumOfData() const override { return m_entries.size(); }
  std::string getDataName(int index) const override {
    return m_entries[static_cast<std::size_t>(index)].first;
  }
  using object_model::Dictionary::data;
  Data* data(const std::string& name) override { return find(name); }
  const Data* data(const std::string& name) const override { return find(name); }

 private:
  using Data = object_model::Data;
  Data* find(const std::string& name) const {
    for (const auto& [known, data] : m_entries) {
      if (known == name) {
        return data;
      }
    }
    return nullptr;
  }
  std::vector<std::pair<std::string, Data*>> m_entries;
};

TEST_F(WriteGroupTest, DictionaryInsideOneThatIsInsideItIsRefused) {
  Links outer;
  Links inner;
  outer.add("inner", &inner);
  inner.add("outer", &outer);
  EXPECT_EQ(refusalOf(outer), "dictionary '/inner/outer' contains itself");
}

TEST_F(WriteGroupTest, DictionaryThatStandsInTwoPlacesIsWrittenTwice) {
  Dictionary twice = dictionaryOf(row<int>("a", "x", {1}));
  Links inner;
  inner.add("second", &twice);
  Links outer;
  outer.add("first", &twice);
  outer.add("inner", &inner);
  write(outer);
  EXPECT_EQ(contentOf(File(m_path).root()), (std::map<std::string, std::vector<std::string>>{
                                                {"/first/a", {"1"}}, {"/inner/second/a", {"1"}}}));
}

TEST_F(WriteGroupTest, EntryThatIsNoneIsRefused) {
  EXPECT_EQ(refusalOf(Loop(true)), "'/again' is neither an array nor a dictionary");
}

/// A dictionary that has one name twice.
class Twins final : public memory::DictionaryBase {
 public:
  Twins() : DictionaryBase("twins"), m_array(row<int>("a", "x", {1})) {}
  unsigned long getNumOfData() const override { return 2; }
  std::string getDataName(int) const override { return "a"; }
  using object_model::Dictionary::data;
  object_model::Data* data(const std::string&) override { return &m_array; }
  const object_model::Data* data(const std::string&) const override { return &m_array; }

 private:
  memory::TypedArray<int> m_array;
};

TEST_F(WriteGroupTest, TwoEntriesOfOneNameAreRefused) {
  EXPECT_EQ(refusalOf(Twins()), "there are two entries '/a'");
}

TEST_F(WriteGroupTest, DictionariesMayNestDeeply) {
  Dictionary dictionary("g");
  dictionary.add(row<int>("a", "x", {1}));
  std::string path = "/a";
  for (int depth = 0; depth < 300; ++depth) {
    dictionary = named("root", dictionaryOf(named("g", std::move(dictionary))));
    path = "/g" + path;
  }
  write(dictionary);
  EXPECT_EQ(contentOf(File(m_path).root()),
            (std::map<std::string, std::vector<std::string>>{{path, {"1"}}}));
}

}  // namespace
}  // namespace quillon::netcdf
