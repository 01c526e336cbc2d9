#include <quillon/memory/Values.h>

#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

using object_model::ElementType;
using testing::ElementsAre;

class FlagArrayTest : public testing::Test {
 protected:
  const memory::ArrayBase& read(const std::string& cdl, bool decode = true) {
    m_file.reset();
    writeCdl(m_path, cdl);
    OpenOptions options;
    options.decode = decode;
    options.windowBytes = 2;
    m_file = std::make_unique<File>(m_path, options);
    return arrayAt(*m_file, "v");
  }

  Scratch m_scratch;
  std::string m_path = m_scratch.path("a.nc");
  std::unique_ptr<File> m_file;
};

constexpr const char* MARKED =
    "dimensions: x = 3; variables: byte v(x); v:dtype = \"bool\"; data: v = 0, 1, -1;";
constexpr const char* BOOLEANS =
    "types: byte enum flag {FALSE = 0, TRUE = 1}; dimensions: x = 3; variables: flag v(x); "
    "data: v = FALSE, TRUE, TRUE;";
constexpr const char* CLOUDS =
    "types: short enum cloud {clear = 0, stratus = 300, below = -2}; dimensions: x = 4; "
    "variables: cloud v(x); data: v = stratus, clear, below, clear;";

TEST_F(FlagArrayTest, BytesThatAreMarkedAreBoolean) {
  const memory::ArrayBase& flags = read(MARKED);
  EXPECT_EQ(flags.getElementType(), ElementType::Boolean);
  EXPECT_THAT(valuesOf(flags), ElementsAre("false", "true", "true"));
  EXPECT_TRUE(flags.attributes().empty());
}

TEST_F(FlagArrayTest, EnumerationOfFalseAndTrueIsBoolean) {
  const memory::ArrayBase& flags = read(BOOLEANS);
  EXPECT_EQ(flags.getElementType(), ElementType::Boolean);
  EXPECT_THAT(valuesOf(flags), ElementsAre("false", "true", "true"));
}

TEST_F(FlagArrayTest, BulkValuesAreBooleans) {
  const memory::ArrayBase& flags = read(MARKED);
  ASSERT_EQ(memory::bulkValuesOf(flags)->storedType(), object_model::StoredType::Boolean);
  bool values[3] = {};
  memory::copyValues(flags, memory::BlockLayout(flags, 3).blockAt(0), values);
  EXPECT_THAT(values, ElementsAre(false, true, true));
}

TEST_F(FlagArrayTest, ChunksAreThoseOfTheFile) {
  const auto chunksOf = [](const memory::ArrayBase& flags) {
    return memory::bulkValuesOf(flags)->chunkExtents();
  };
  EXPECT_EQ(chunksOf(read(MARKED)), nullptr);
  const unsigned long* chunks =
      chunksOf(read("dimensions: y = 2; x = 3; variables: byte v(y, x); v:dtype = \"bool\"; "
                    "v:_ChunkSizes = 1, 2; data: v = 0, 1, 1, 0, 0, 1;"));
  ASSERT_NE(chunks, nullptr);
  EXPECT_THAT(std::vector<unsigned long>(chunks, chunks + 2), ElementsAre(2, 1));
}

TEST_F(FlagArrayTest, IntegersAreReadWhereNothingIsDecoded) {
  EXPECT_THAT(valuesOf(read(MARKED, false)), ElementsAre("0", "1", "-1"));
  EXPECT_THAT(valuesOf(read(BOOLEANS, false)), ElementsAre("0", "1", "1"));
  EXPECT_THAT(valuesOf(read(CLOUDS, false)), ElementsAre("300", "0", "-2", "0"));
}

TEST_F(FlagArrayTest, EnumerationIsReadAsItsNames) {
  const memory::ArrayBase& clouds = read(CLOUDS);
  EXPECT_EQ(clouds.getElementType(), ElementType::String);
  EXPECT_THAT(valuesOf(clouds), ElementsAre("stratus", "clear", "below", "clear"));
}

TEST_F(FlagArrayTest, NamesOfGreatNumbersWithoutSignAreRead) {
  for (const auto& [type, number] :
       {std::pair("ubyte", "200"), {"ushort", "60000"}, {"uint", "4000000000"}}) {
    EXPECT_THAT(
        valuesOf(read(std::string("types: ") + type + " enum level {low = 1, high = " + number +
                      "}; dimensions: x = 2; variables: level v(x); " + "data: v = high, low;")),
        ElementsAre("high", "low"))
        << type;
  }
}

TEST_F(FlagArrayTest, EachReadIsReported) {
  writeCdl(m_path, MARKED);
  std::vector<unsigned long> reads;
  const File file(m_path, countingReads(2, reads));
  const memory::ArrayBase& flags = arrayAt(file, "v");
  bool values[3] = {};
  memory::copyValues(flags, memory::BlockLayout(flags, 3).blockAt(0), values);
  EXPECT_THAT(reads, ElementsAre(3));
  valuesOf(flags);
  EXPECT_THAT(reads, ElementsAre(3, 2, 1));
}

TEST_F(FlagArrayTest, ValueWithoutANameIsItsNumber) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    for (const auto& [name, base] : {std::pair("small", NC_BYTE), std::pair("large", NC_UINT64)}) {
      nc_type type = 0;
      must(nc_def_enum(writer.root(), base, (std::string("type_") + name).c_str(), &type));
      const unsigned long one = 1;
      must(nc_insert_enum(writer.root(), type, "one", &one));
      const int x = writer.dimension(std::string("x_") + name, 2);
      const int v = writer.variable(name, type, {x});
      if (base == NC_BYTE) {
        writer.put<signed char>(v, {2}, {1, -7});
      } else {
        writer.put<unsigned long>(v, {2}, {1, ~0UL});
      }
    }
  }
  const File file(m_path);
  EXPECT_THAT(valuesOf(arrayAt(file, "small")), ElementsAre("one", "-7"));
  EXPECT_THAT(valuesOf(arrayAt(file, "large")), ElementsAre("one", "18446744073709551615"));
}

TEST_F(FlagArrayTest, OtherTypesOrMarksAreNoFlags) {
  EXPECT_EQ(read("dimensions: x = 1; variables: int v(x); v:dtype = \"bool\"; data: v = 1;")
                .getElementType(),
            ElementType::Int);
  EXPECT_EQ(read("dimensions: x = 1; variables: byte v(x); v:dtype = \"int\"; data: v = 1;")
                .getElementType(),
            ElementType::Int);
  for (const char* cdl :
       {"types: byte enum flag {FALSE = 1, TRUE = 0}; variables: flag v; data: v = TRUE;",
        "types: int enum flag {FALSE = 0, TRUE = 1}; variables: flag v; data: v = TRUE;",
        "types: byte enum flag {NO = 0, TRUE = 1}; variables: flag v; v:dtype = \"bool\"; "
        "data: v = TRUE;"}) {
    EXPECT_THAT(valuesOf(read(cdl)), ElementsAre("TRUE")) << cdl;
  }
}

}  // namespace
}  // namespace quillon::netcdf
