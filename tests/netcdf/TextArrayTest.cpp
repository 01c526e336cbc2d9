#include <object_model/InvalidCall.h>

#include <filesystem>
#include <numeric>

#include "Hdf5Files.h"
#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

using object_model::ElementType;
using testing::ElementsAre;

class TextArrayTest : public testing::Test {
 protected:
  Scratch m_scratch;
  std::string m_path = m_scratch.path("a.nc");
};

std::vector<char> characters(const std::string& text) { return {text.begin(), text.end()}; }

TEST_F(TextArrayTest, LastDimensionOfCharactersIsTheLengthOfTheTexts) {
  for (const int mode : {0, NC_64BIT_DATA, NC_NETCDF4}) {
    {
      const Writer writer(m_path, mode);
      const int y = writer.dimension("y", 2);
      const int x = writer.dimension("x", 3);
      const int v = writer.variable("v", NC_CHAR, {y, x, writer.dimension("length", 4)});
      writer.text(v, "units", "1");
      writer.put(v, {2, 3, 4},
                 characters(std::string("four"
                                        "ab\0\0"
                                        "\0\0\0\0"
                                        "a\0b\0"
                                        "a  \0"
                                        " \xc3\xa9 ",
                                        24)));
    }
    for (const std::size_t window : std::vector<std::size_t>{1, 60, 120, 1000}) {
      OpenOptions options;
      options.windowBytes = window;
      const File file(m_path, options);
      const memory::ArrayBase& v = arrayAt(file, "v");
      EXPECT_EQ(v.getElementType(), ElementType::String);
      EXPECT_THAT(shapeOf(v), ElementsAre(3, 2));
      EXPECT_EQ(v.getInformation()->getAxisInfo(0)->getAxisName(), "x");
      EXPECT_EQ(v.getUnit(), "1");
      EXPECT_THAT(valuesOf(v),
                  ElementsAre("four", "ab", "", std::string("a\0b", 3), "a  ", " \xc3\xa9 "));
    }
  }
}

TEST_F(TextArrayTest, FillCharactersAreCutOffTheEndOfATextAndLeaveNothingOfAMissingOne) {
  for (const int mode : {0, NC_NETCDF4}) {
    {
      const Writer writer(m_path, mode);
      const int x = writer.dimension("x", 5);
      const int v = writer.variable("v", NC_CHAR, {x, writer.dimension("length", 3)});
      writer.text(v, "_FillValue", "-");
      writer.put(v, {5, 3}, characters(std::string("ab---a----ba-\0", 15)));
    }
    EXPECT_THAT(valuesOf(arrayAt(File(m_path), "v")), ElementsAre("ab", "--a", "", "-ba", ""));
  }
}

TEST_F(TextArrayTest, FillValuesStandForThemselvesWhereNothingIsDecoded) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    const int x = writer.dimension("x", 2);
    const int v = writer.variable("v", NC_CHAR, {x, writer.dimension("length", 3)});
    writer.text(v, "_FillValue", "-");
    const int s = writer.variable("s", NC_STRING, {x});
    const char* fill = "n/a";
    must(nc_put_att_string(writer.root(), s, "_FillValue", 1, &fill));
    writer.put(v, {2, 3}, characters(std::string("a--b\0\0", 6)));
    writer.put<const char*>(s, {2}, {"n/a", "b"});
  }
  OpenOptions options;
  options.decode = false;
  const File file(m_path, options);
  EXPECT_THAT(valuesOf(arrayAt(file, "v")), ElementsAre("a--", "b"));
  EXPECT_THAT(valuesOf(arrayAt(file, "s")), ElementsAre("n/a", "b"));
}

TEST_F(TextArrayTest, FillCharacterThatIsNulCutsNothingElse) {
  {
    const Writer writer(m_path, 0);
    const int v = writer.variable("v", NC_CHAR, {writer.dimension("length", 3)});
    writer.text(v, "_FillValue", std::string(1, '\0'));
    writer.put(v, {3}, characters(std::string("a \0", 3)));
  }
  EXPECT_THAT(valuesOf(arrayAt(File(m_path), "v")), ElementsAre("a "));
}

TEST_F(TextArrayTest, SingleCharacterThatIsTheFillCharacterIsMissing) {
  {
    const Writer writer(m_path, 0);
    const int v = writer.variable("v", NC_CHAR, {});
    writer.text(v, "_FillValue", "q");
    writer.put<char>(v, {}, {'q'});
  }
  EXPECT_THAT(valuesOf(arrayAt(File(m_path), "v")), ElementsAre(""));
}

TEST_F(TextArrayTest, StringThatIsTheFillValueIsMissing) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    const int time = writer.dimension("time", NC_UNLIMITED);
    const int v = writer.variable("v", NC_STRING, {time});
    const char* fill = "n/a";
    must(nc_put_att_string(writer.root(), v, "_FillValue", 1, &fill));
    writer.put<const char*>(v, {3}, {"n/a", "n/a or not", ""});
    writer.put<int>(writer.variable("n", NC_INT, {time}), {5}, {1, 2, 3, 4, 5});
  }
  EXPECT_THAT(valuesOf(arrayAt(File(m_path), "v")), ElementsAre("", "n/a or not", "", "", ""));
}

TEST_F(TextArrayTest, OneDimensionOfCharactersIsOneText) {
  {
    const Writer writer(m_path, 0);
    const int v = writer.variable("v", NC_CHAR, {writer.dimension("length", 5)});
    writer.put(v, {5}, characters("nucle"));
  }
  const File file(m_path);
  EXPECT_THAT(shapeOf(arrayAt(file, "v")), ElementsAre());
  EXPECT_THAT(valuesOf(arrayAt(file, "v")), ElementsAre("nucle"));
}

TEST_F(TextArrayTest, SingleCharacterIsAText) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    writer.put<char>(writer.variable("v", NC_CHAR, {}), {}, {'q'});
  }
  EXPECT_THAT(valuesOf(arrayAt(File(m_path), "v")), ElementsAre("q"));
}

// A text of four characters takes a string and twice its length.
TEST_F(TextArrayTest, CharactersAreReadInWholeChunksAsFarAsTheWindowHoldsThem) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    const int v =
        writer.variable("v", NC_CHAR, {writer.dimension("x", 6), writer.dimension("length", 4)});
    const std::vector<std::size_t> chunks{2, 4};
    must(nc_def_var_chunking(writer.root(), v, NC_CHUNKED, chunks.data()));
    writer.put(v, {6, 4}, characters("one two tri foursix ten "));
    writer.put<char>(writer.variable("scalar", NC_CHAR, {}), {}, {'q'});
  }
  const std::size_t threeTexts = 3 * (sizeof(std::string) + 2 * 4);
  std::vector<unsigned long> reads;
  const File file(m_path, countingReads(threeTexts, reads));
  EXPECT_THAT(valuesOf(arrayAt(file, "v")),
              ElementsAre("one ", "two ", "tri ", "four", "six ", "ten "));
  EXPECT_THAT(reads, ElementsAre(8, 8, 8));
  reads.clear();
  EXPECT_THAT(valuesOf(arrayAt(file, "scalar")), ElementsAre("q"));
  EXPECT_THAT(reads, ElementsAre(1));
}

TEST_F(TextArrayTest, StringsOfAnyLength) {
  const std::string longText(1000, 'l');
  {
    const Writer writer(m_path, NC_NETCDF4);
    const int v = writer.variable("v", NC_STRING, {writer.dimension("x", 4)});
    writer.put<const char*>(v, {4}, {"", "größe", longText.c_str(), "a b"});
    writer.variable("unwritten", NC_STRING, {writer.dimension("y", 2)});
    writer.put<const char*>(writer.variable("scalar", NC_STRING, {}), {}, {"one"});
  }
  for (const std::size_t window : std::vector<std::size_t>{1, 300, 1000}) {
    std::vector<unsigned long> reads;
    const File file(m_path, countingReads(window, reads));
    EXPECT_EQ(arrayAt(file, "v").getElementType(), ElementType::String);
    EXPECT_THAT(valuesOf(arrayAt(file, "v")), ElementsAre("", "größe", longText, "a b"));
    EXPECT_EQ(std::accumulate(reads.begin(), reads.end(), 0UL), 7U + 1000U + 3U);
    EXPECT_THAT(valuesOf(arrayAt(file, "unwritten")), ElementsAre("", ""));
    EXPECT_THAT(valuesOf(arrayAt(file, "scalar")), ElementsAre("one"));
  }
}

/// Writes characters that nobody wrote, and returns how long the file is.
unsigned long writeUnwritten(const std::string& path, std::size_t length) {
  {
    const Writer writer(path, NC_NETCDF4);
    const int v = writer.variable("v", NC_CHAR, {writer.dimension("length", length)});
    const std::size_t chunk = 1UL << 20U;
    must(nc_def_var_chunking(writer.root(), v, NC_CHUNKED, &chunk));
  }
  return std::filesystem::file_size(path);
}

TEST_F(TextArrayTest, TextsHaveAtMost1024CharactersForEachByteOfTheFile) {
  const unsigned long bytes = writeUnwritten(m_path, 1UL << 22U);
  const unsigned long most = bytes * 1024;
  ASSERT_EQ(writeUnwritten(m_path, most), bytes);
  EXPECT_THAT(valuesOf(arrayAt(File(m_path), "v")), ElementsAre(""));
  ASSERT_EQ(writeUnwritten(m_path, most + 1), bytes);
  EXPECT_EQ(errorOf([&] { valuesOf(arrayAt(File(m_path), "v")); }),
            "Cannot read '" + m_path + "': variable '/v' claims texts of " +
                std::to_string(most + 1) + " characters, which a file of " + std::to_string(bytes) +
                " bytes cannot hold");
}

TEST_F(TextArrayTest, TextsOfAFixedLengthAreNoLongerThanTheirFileAllows) {
  {
    const Hdf5Writer writer(m_path);
    writer.dataset("v", textType(1UL << 30U).id(), {2}, [](hid_t creation) {
      const hsize_t chunk = 1;
      H5Pset_chunk(creation, 1, &chunk);
    });
  }
  EXPECT_EQ(errorOf([&] { valuesOf(arrayAt(File(m_path), "v")); }),
            "Cannot read '" + m_path + "': variable '/v' claims texts of 1073741824 characters, " +
                "which a file of " + std::to_string(std::filesystem::file_size(m_path)) +
                " bytes cannot hold");
}

TEST_F(TextArrayTest, NumbersAreNotRead) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    writer.variable("v", NC_STRING, {});
  }
  EXPECT_THROW(arrayAt(File(m_path), "v").getValueAsDouble(object_model::TupleX(0UL)),
               object_model::InvalidCall);
}

}  // namespace
}  // namespace quillon::netcdf
