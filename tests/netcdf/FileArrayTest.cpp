#include <quillon/memory/TypedArray.h>
#include <quillon/netcdf/Decoded.h>

#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

class FileArrayTest : public testing::Test {
 protected:
  FileArrayTest() {
    writeCdl(m_path,
             "dimensions: x = 2; variables: float v(x); float x(x); short packed(x); "
             "packed:scale_factor = 0.5; short missing(x); missing:_FillValue = 1s; "
             "int plain(x); string text(x); byte flag(x); flag:dtype = \"bool\"; "
             "data: v = 1, 2; x = 1, 2; packed = 1, 2; missing = 1, 2; plain = 1, 2; "
             "text = \"a\", \"b\"; flag = 0, 1;");
    m_file = std::make_unique<File>(m_path);
  }

  Scratch m_scratch;
  std::string m_path = m_scratch.path("a.nc");
  std::unique_ptr<File> m_file;
};

TEST_F(FileArrayTest, IsDecodedWhereItsNumbersAreMadeOfThoseOfAnotherType) {
  EXPECT_TRUE(isDecoded(arrayAt(*m_file, "packed")));
  EXPECT_TRUE(isDecoded(arrayAt(*m_file, "missing")));
  for (const char* name : {"v", "plain", "text", "flag"}) {
    EXPECT_FALSE(isDecoded(arrayAt(*m_file, name))) << name;
  }
  EXPECT_FALSE(isDecoded(memory::TypedArray<float>("v", {}, std::vector<float>{1})));
}

TEST_F(FileArrayTest, NothingIsDecodedThatIsReadAsStored) {
  OpenOptions options;
  options.decode = false;
  const File file(m_path, options);
  EXPECT_FALSE(isDecoded(arrayAt(file, "packed")));
}

TEST_F(FileArrayTest, BytesOfAnotherTypeAreNotTheSame) {
  const auto& v = dynamic_cast<const memory::HasStoredBytes&>(arrayAt(*m_file, "v"));
  const unsigned long start = 0;
  const unsigned long extent = 2;
  EXPECT_FALSE(v.holdsSameBytes(arrayAt(*m_file, "plain"), &start, &extent));
  EXPECT_FALSE(v.holdsSameBytes(arrayAt(*m_file, "text"), &start, &extent));
}

// They would own each other otherwise.
TEST_F(FileArrayTest, CoordinatesHaveNoCoordinatesOfTheirOwn) {
  const std::shared_ptr<const object_model::Array> x = arrayAt(*m_file, "v").coordinates(0);
  const auto& coordinates = dynamic_cast<const memory::ArrayBase&>(*x);
  EXPECT_EQ(valuesOf(coordinates), (std::vector<std::string>{"1", "2"}));
  EXPECT_EQ(coordinates.coordinates(0), nullptr);
  EXPECT_NE(arrayAt(*m_file, "x").coordinates(0), nullptr);
}

}  // namespace
}  // namespace quillon::netcdf
