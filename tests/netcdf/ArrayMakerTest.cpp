#include <object_model/BulkValues.h>

#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

using testing::ElementsAre;

class ArrayMakerTest : public testing::Test {
 protected:
  const File& open(const std::string& cdl, bool decode = true) {
    m_file.reset();
    writeCdl(m_path, cdl);
    OpenOptions options;
    options.decode = decode;
    m_file = std::make_unique<File>(m_path, options);
    return *m_file;
  }

  /// Name and values of the coordinates along a dimension; empty where there are none.
  static std::vector<std::string> coordinatesOf(const memory::ArrayBase& array,
                                                unsigned long dimension) {
    const auto found =
        std::dynamic_pointer_cast<const memory::ArrayBase>(array.coordinates(dimension));
    if (found == nullptr) {
      return {};
    }
    std::vector<std::string> texts = valuesOf(*found);
    texts.insert(texts.begin(), found->getName());
    return texts;
  }

  static std::vector<std::string> namesOf(const std::vector<memory::Attribute>& attributes) {
    std::vector<std::string> names;
    for (const memory::Attribute& attribute : attributes) {
      names.push_back(attribute.name);
    }
    return names;
  }

  Scratch m_scratch;
  std::string m_path = m_scratch.path("a.nc");
  std::unique_ptr<File> m_file;
};

TEST_F(ArrayMakerTest, AttributesOfAllTypesAreTheFiles) {
  const File& file = open(
      "variables: int v; v:text = \"a b\"; string v:one = \"x\"; string v:texts = \"x\", \"y\"; "
      "v:b = 1b, -2b; v:ub = 255UB; v:s = -3s; v:us = 4US; v:i = 5; v:ui = 6U; v:l = -7LL; "
      "v:ul = 8ULL; v:f = 0.5f; v:d = 0.25; v:empty = \"\"; data: v = 1;");
  using Value = memory::AttributeValue;
  const std::vector<memory::Attribute> expected = {
      {"text", Value(std::string("a b"))},
      {"one", Value(std::string("x"))},
      {"texts", Value(std::vector<std::string>{"x", "y"})},
      {"b", Value(std::vector<signed char>{1, -2})},
      {"ub", Value(std::vector<unsigned char>{255})},
      {"s", Value(std::vector<short>{-3})},
      {"us", Value(std::vector<unsigned short>{4})},
      {"i", Value(std::vector<int>{5})},
      {"ui", Value(std::vector<unsigned int>{6})},
      {"l", Value(std::vector<long>{-7})},
      {"ul", Value(std::vector<unsigned long>{8})},
      {"f", Value(std::vector<float>{0.5F})},
      {"d", Value(std::vector<double>{0.25})},
      {"empty", Value(std::string())}};
  EXPECT_EQ(arrayAt(file, "v").attributes(), expected);
}

TEST_F(ArrayMakerTest, AttributesThatTheArrayTellsByItselfAreLeftOut) {
  const char* cdl =
      "variables: short v; v:units = \"K\"; v:long_name = \"name\"; v:scale_factor = 2.; "
      "v:add_offset = 1.; v:_FillValue = 1s; v:missing_value = 2s; v:standard_name = \"x\"; "
      "v:valid_min = 0s; v:coordinates = \"lon lat\"; "
      "byte u; u:_Unsigned = \"true\"; u:kept = 1; int64 l; l:_FillValue = 1LL; "
      "int t; t:units = \"days since 2000-01-01\"; t:calendar = \"noleap\"; t:bounds = \"b\"; "
      "int64 s; s:units = \"seconds since 2000-01-01\"; s:_FillValue = 1LL; s:missing_value = 2LL; "
      "int m; m:units = \"months since 2000-01-01\"; m:calendar = \"noleap\"; "
      "data: v = 3; u = 1; l = 1; t = 1; s = 1; m = 1;";
  const File& file = open(cdl);
  EXPECT_THAT(namesOf(arrayAt(file, "v").attributes()),
              ElementsAre("standard_name", "valid_min", "coordinates"));
  EXPECT_EQ(arrayAt(file, "v").getUnit(), "K");
  EXPECT_EQ(arrayAt(file, "v").getDescription(), "name");
  EXPECT_THAT(namesOf(arrayAt(file, "u").attributes()), ElementsAre("kept"));
  EXPECT_THAT(namesOf(arrayAt(file, "l").attributes()), ElementsAre("_FillValue"));
  EXPECT_THAT(namesOf(arrayAt(file, "t").attributes()), ElementsAre("bounds"));
  EXPECT_THAT(namesOf(arrayAt(file, "s").attributes()), ElementsAre());
  EXPECT_THAT(namesOf(arrayAt(file, "m").attributes()), ElementsAre("calendar"));
  EXPECT_THAT(namesOf(arrayAt(open(cdl, false), "v").attributes()),
              ElementsAre("scale_factor", "add_offset", "_FillValue", "missing_value",
                          "standard_name", "valid_min", "coordinates"));
}

TEST_F(ArrayMakerTest, AttributesOfTypesWithoutAPlaceInTheModelAreLeftOut) {
  const File& file =
      open("types: int(*) list; variables: int v; list v:a = {1, 2}; v:b = 3; data: v = 1;");
  EXPECT_THAT(namesOf(arrayAt(file, "v").attributes()), ElementsAre("b"));
}

TEST_F(ArrayMakerTest, AttributesThatSayNothingOfTheValuesStay) {
  const File& file = open(
      "types: byte enum flag {NO = 0, YES = 1}; variables: "
      "string s; s:units = \"days since 2000-01-01\"; s:calendar = \"noleap\"; "
      "s:scale_factor = 2.; s:missing_value = 1; s:_Unsigned = \"true\"; "
      "flag f; f:units = \"days since 2000-01-01\"; f:calendar = \"noleap\"; "
      "f:add_offset = 2.; f:missing_value = 1; f:_Unsigned = \"true\"; "
      "int64 l; l:_Unsigned = \"true\"; l:calendar = \"noleap\"; l:dtype = \"bool\"; "
      "short p; p:scale_factor = \"0.1\"; p:add_offset = 1., 2.; "
      "data: s = \"a\"; f = YES; l = 1; p = 1;");
  EXPECT_THAT(namesOf(arrayAt(file, "s").attributes()),
              ElementsAre("calendar", "scale_factor", "missing_value", "_Unsigned"));
  EXPECT_THAT(namesOf(arrayAt(file, "f").attributes()),
              ElementsAre("calendar", "add_offset", "missing_value", "_Unsigned"));
  EXPECT_THAT(namesOf(arrayAt(file, "l").attributes()),
              ElementsAre("_Unsigned", "calendar", "dtype"));
  EXPECT_THAT(namesOf(arrayAt(file, "p").attributes()), ElementsAre("scale_factor", "add_offset"));
}

TEST_F(ArrayMakerTest, AttributesOfAnEnumerationAreItsIntegers) {
  const File& file = open(
      "types: short enum level {low = -2, high = 300}; variables: int v; level v:a = high, low; "
      "data: v = 1;");
  EXPECT_EQ(arrayAt(file, "v").attributes(),
            (std::vector<memory::Attribute>{{"a", std::vector<short>{300, -2}}}));
}

TEST_F(ArrayMakerTest, BoundsWhoseUnitsAreNoTimesHaveNothingOfTheirCoordinates) {
  const File& file = open(
      "dimensions: t = 1; n = 2; variables: int t(t); t:units = \"days since 2000-01-01\"; "
      "t:calendar = \"noleap\"; t:bounds = \"b\"; int b(t, n); b:units = \"1\"; "
      "data: t = 0; b = 0, 1;");
  EXPECT_EQ(arrayAt(file, "b").getUnit(), "1");
  EXPECT_THAT(namesOf(arrayAt(file, "b").attributes()), ElementsAre());
}

TEST_F(ArrayMakerTest, BoundsOfTwoCoordinatesHaveWhatTheyTakeOfThemOnce) {
  const File& file = open(
      "dimensions: t = 1; s = 1; variables: int t(t); t:units = \"days since 2000-01-01\"; "
      "t:calendar = \"noleap\"; t:bounds = \"b\"; int s(s); s:units = \"hours since 2000-01-01\"; "
      "s:calendar = \"julian\"; s:bounds = \"b\"; string b(t, s); data: t = 0; s = 0; b = \"a\";");
  const std::vector<memory::Attribute> expected = {{"calendar", std::string("julian")}};
  EXPECT_EQ(arrayAt(file, "b").attributes(), expected);
  EXPECT_EQ(arrayAt(file, "b").getUnit(), "hours since 2000-01-01");
}

TEST_F(ArrayMakerTest, UnitThatIsNoTextStaysAnAttribute) {
  const File& file = open("variables: int v; v:units = 1; v:long_name = 2.5; data: v = 1;");
  EXPECT_THAT(namesOf(arrayAt(file, "v").attributes()), ElementsAre("units", "long_name"));
}

TEST_F(ArrayMakerTest, GroupsHaveTheirAttributesButTheTitle) {
  const File& file = open(
      "variables: int v; :title = \"all\"; :history = \"made\"; data: v = 1; "
      "group: inner { :title = \"part\"; :comment = \"c\"; }");
  EXPECT_THAT(namesOf(file.root().attributes()), ElementsAre("history"));
  EXPECT_THAT(namesOf(file.group("inner").attributes()), ElementsAre("comment"));
}

TEST_F(ArrayMakerTest, TitleThatIsNoTextStaysAnAttribute) {
  const File& file = open("variables: int v; :title = 5; data: v = 1;");
  EXPECT_THAT(namesOf(file.root().attributes()), ElementsAre("title"));
  EXPECT_EQ(file.title(), "");
}

TEST_F(ArrayMakerTest, FirstOfSeveralTextsIsTheUnitAndAllStayAnAttribute) {
  const File& file = open(
      "variables: int v; string v:units = \"K\", \"m\"; string v:long_name = \"a\", \"b\"; "
      "data: v = 1;");
  EXPECT_EQ(arrayAt(file, "v").getUnit(), "K");
  EXPECT_EQ(arrayAt(file, "v").getDescription(), "a");
  EXPECT_THAT(namesOf(arrayAt(file, "v").attributes()), ElementsAre("units", "long_name"));
}

TEST_F(ArrayMakerTest, CoordinatesAreThoseCalledAsTheDimension) {
  const File& file = open(
      "dimensions: y = 2; x = 3; z = 1; n = 4; variables: float v(z, y, x); short x(x); "
      "x:scale_factor = 0.5; char y(y, n); "
      "data: x = 1, 2, 3; y = \"one\", \"two\";");
  EXPECT_THAT(coordinatesOf(arrayAt(file, "v"), 0), ElementsAre("x", "0.5", "1", "1.5"));
  EXPECT_THAT(coordinatesOf(arrayAt(file, "v"), 1), ElementsAre("y", "one", "two"));
  EXPECT_THAT(coordinatesOf(arrayAt(file, "v"), 2), ElementsAre());
  EXPECT_THAT(coordinatesOf(arrayAt(file, "v"), 3), ElementsAre());
  EXPECT_THAT(coordinatesOf(arrayAt(file, "y"), 0), ElementsAre("y", "one", "two"));
}

TEST_F(ArrayMakerTest, OneTextCalledAsItsLengthIsNoCoordinate) {
  const File& file =
      open("dimensions: x = 2; variables: char x(x); float v(x); data: x = \"ab\"; v = 1, 2;");
  EXPECT_THAT(coordinatesOf(arrayAt(file, "v"), 0), ElementsAre());
}

TEST_F(ArrayMakerTest, CoordinatesAreTimesWhereTheFilesAre) {
  const File& file = open(
      "dimensions: t = 1; variables: float v(t); int t(t); t:units = \"days since 2000-01-01\"; "
      "data: t = 4;");
  const auto times =
      std::dynamic_pointer_cast<const memory::HasTimes>(arrayAt(file, "v").coordinates(0));
  ASSERT_NE(times, nullptr);
  EXPECT_EQ(times->calendar(), memory::Calendar::Standard);
}

TEST_F(ArrayMakerTest, NearestGroupsCoordinatesCount) {
  const File& file = open(
      "dimensions: x = 2; variables: float x(x); data: x = 1, 2; "
      "group: near { variables: float v(x); float x(x); data: x = 3, 4; } "
      "group: far { variables: float v(x); group: below { variables: float v(x); } }");
  EXPECT_THAT(coordinatesOf(arrayAt(file, "near/v"), 0), ElementsAre("x", "3", "4"));
  EXPECT_THAT(coordinatesOf(arrayAt(file, "far/v"), 0), ElementsAre("x", "1", "2"));
  EXPECT_THAT(coordinatesOf(arrayAt(file, "far/below/v"), 0), ElementsAre("x", "1", "2"));
}

TEST_F(ArrayMakerTest, CoordinatesOfAnInnerGroupMayBeStrings) {
  const File& file = open(
      "group: outer { group: inner { dimensions: s = 2; variables: float v(s); string s(s); "
      "data: s = \"one\", \"two\"; } }");
  EXPECT_THAT(coordinatesOf(arrayAt(file, "outer/inner/v"), 0), ElementsAre("s", "one", "two"));
}

TEST_F(ArrayMakerTest, CoordinatesOfTheRootMayBeStrings) {
  const File& file = open(
      "dimensions: s = 2; variables: string s(s); data: s = \"one\", \"two\"; "
      "group: inner { variables: float v(s); }");
  EXPECT_THAT(coordinatesOf(arrayAt(file, "inner/v"), 0), ElementsAre("s", "one", "two"));
}

TEST_F(ArrayMakerTest, AttributeNamesCoordinatesWhereNoVariableIsCalledSo) {
  const File& file = open(
      "dimensions: s = 2; t = 2; n = 2; variables: float v(t, s); "
      "v:coordinates = \"lon missing name other t\"; float lon(t, s); char name(s, n); "
      "float other(s); float t(t); string w(s); w:coordinates = \"other\"; "
      "data: name = \"ab\", \"cd\"; other = 5, 6; t = 7, 8;");
  EXPECT_THAT(coordinatesOf(arrayAt(file, "v"), 0), ElementsAre("name", "ab", "cd"));
  EXPECT_THAT(coordinatesOf(arrayAt(file, "v"), 1), ElementsAre("t", "7", "8"));
  EXPECT_THAT(coordinatesOf(arrayAt(file, "w"), 0), ElementsAre("other", "5", "6"));
}

TEST_F(ArrayMakerTest, CoordinatesAreNamedByTheirPathWhereTheyCannotBeRead) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    for (const int group : {writer.root(), writer.group("inner")}) {
      const int x = writer.dimension("x", 1, group);
      writer.variable("x", NC_CHAR, {x, writer.dimension("n", 1UL << 28U, group)}, group);
      writer.variable("v", NC_INT, {x}, group);
    }
  }
  const File file(m_path);
  const auto errorAt = [&file](const std::string& path) {
    const std::shared_ptr<const object_model::Array> x = arrayAt(file, path).coordinates(0);
    return errorOf([&x] { x->getValueAsString(object_model::TupleX(1)); });
  };
  const auto error = [this](const std::string& path) {
    return "Cannot read '" + m_path + "': variable '" + path +
           "' claims texts of 268435456 characters, which a file of " +
           std::to_string(readBytes(m_path).size()) + " bytes cannot hold";
  };
  EXPECT_EQ(errorAt("v"), error("/x"));
  EXPECT_EQ(errorAt("inner/v"), error("/inner/x"));
}

TEST_F(ArrayMakerTest, ChunksMayGoOnBehindTheValues) {
  const File& file =
      open("dimensions: t = UNLIMITED; variables: int v(t); v:_ChunkSizes = 4; data: v = 1, 2, 3;");
  const auto& v = dynamic_cast<const object_model::BulkValues&>(arrayAt(file, "v"));
  ASSERT_NE(v.chunkExtents(), nullptr);
  EXPECT_EQ(v.chunkExtents()[0], 4U);
}

TEST_F(ArrayMakerTest, CoordinatesAreSharedAndOutliveTheFile) {
  const File& file =
      open("dimensions: x = 2; variables: float x(x); float v(x); float w(x); data: x = 1, 2;");
  std::shared_ptr<const object_model::Array> x = arrayAt(file, "v").coordinates(0);
  EXPECT_EQ(x, arrayAt(file, "w").coordinates(0));
  m_file.reset();
  EXPECT_THAT(valuesOf(dynamic_cast<const memory::ArrayBase&>(*x)), ElementsAre("1", "2"));
}

TEST_F(ArrayMakerTest, CoordinatesThatWereSetGoBefore) {
  open("dimensions: x = 2; variables: float x(x); float v(x); data: x = 1, 2;");
  auto& v = m_file->root().at<memory::ArrayBase>("v");
  const std::shared_ptr<const object_model::Array> other = arrayAt(*m_file, "v").coordinates(0);
  v.setCoordinates(0, other);
  EXPECT_EQ(v.coordinates(0), other);
}

TEST_F(ArrayMakerTest, UnreadableCoordinatesAreNone) {
  const File& file = open(
      "types: compound point { int a; }; dimensions: x = 1; variables: point x(x); float v(x);");
  EXPECT_EQ(arrayAt(file, "v").coordinates(0), nullptr);
}

}  // namespace
}  // namespace quillon::netcdf
