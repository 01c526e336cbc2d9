#include <quillon/memory/Time.h>
#include <quillon/testing.h>

#include <limits>
#include <string>
#include <vector>

#include "TestFiles.h"

namespace quillon::testing {
namespace {

constexpr double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();

/// The array `v` of a file that is gone when the array is looked at, read in windows of few bytes.
template <class Content>
struct InFile {
  static std::unique_ptr<object_model::Array> make() {
    const netcdf::Scratch scratch;
    netcdf::writeCdl(scratch.path("a.nc"), Content::CDL);
    netcdf::OpenOptions options;
    options.windowBytes = 8;
    netcdf::File file(scratch.path("a.nc"), options);
    auto entry = file.root().extract("v");
    return std::unique_ptr<object_model::Array>(entry.release()->asArray());
  }
  static auto values() { return Content::values(); }
};

struct Floats {
  static constexpr const char* CDL =
      "dimensions: y = 2; x = 3; variables: float v(y, x); v:units = \"K\"; double x(x);"
      "data: v = 0.5, 1, 2, 3, 4, -5; x = 10, 20, 30;";
  static std::vector<float> values() { return {0.5F, 1, 2, 3, 4, -5}; }
};

struct Chunked {
  static constexpr const char* CDL =
      "dimensions: y = 2; x = 3; variables: short v(y, x); v:_ChunkSizes = 1, 2;"
      "v:_DeflateLevel = 4; v:_Shuffle = \"true\"; v:_Endianness = \"big\";"
      "data: v = 1, 2, 3, -4, 5, 600;";
  static std::vector<short> values() { return {1, 2, 3, -4, 5, 600}; }
};

struct Packed {
  static constexpr const char* CDL =
      "dimensions: x = 4; variables: short v(x); v:scale_factor = 0.5; v:add_offset = 10.;"
      "v:_FillValue = -1s; data: v = 0, 1, -1, 3;";
  static std::vector<double> values() { return {10, 10.5, NO_NUMBER, 11.5}; }
};

struct WithFill {
  static constexpr const char* CDL =
      "dimensions: x = 3; variables: int64 v(x); v:_FillValue = 7LL; data: v = 7, 8, 9;";
  static std::vector<long> values() { return {7, 8, 9}; }
};

struct Times {
  static constexpr const char* CDL =
      "dimensions: x = 3; variables: double v(x); v:units = \"days since 1970-01-02\";"
      "data: v = 0, 0.5, -1;";
  static std::vector<double> values() { return {0, 0.5, -1}; }
};

struct Records {
  static constexpr const char* CDL =
      "dimensions: t = UNLIMITED; x = 2; variables: ubyte v(t, x);"
      "data: v = 1, 2, 3, 4, 5, 255;";
  static std::vector<unsigned char> values() { return {1, 2, 3, 4, 5, 255}; }
};

struct NoRecords {
  static constexpr const char* CDL = "dimensions: t = UNLIMITED; x = 2; variables: double v(t, x);";
  static std::vector<double> values() { return {}; }
};

struct Scalar {
  static constexpr const char* CDL = "variables: uint64 v; data: v = 18446744073709551615;";
  static std::vector<unsigned long> values() { return {std::numeric_limits<unsigned long>::max()}; }
};

struct Strings {
  static constexpr const char* CDL =
      "dimensions: y = 2; x = 2; variables: string v(y, x); data: v = \"\", \"a\", \"bb\", \"a\";";
  static std::vector<std::string> values() { return {"", "a", "bb", "a"}; }
};

struct Characters {
  static constexpr const char* CDL =
      "dimensions: x = 3; length = 4; variables: char v(x, length);"
      "data: v = \"ab\", \"\", \"abcd\";";
  static std::vector<std::string> values() { return {"ab", "", "abcd"}; }
};

struct Flags {
  static constexpr const char* CDL =
      "dimensions: x = 3; variables: byte v(x); v:dtype = \"bool\"; data: v = 0, 1, -1;";
  static std::vector<bool> values() { return {false, true, true}; }
};

struct Names {
  static constexpr const char* CDL =
      "types: short enum cloud {clear = 0, stratus = 300}; dimensions: x = 3; variables:"
      "cloud v(x); data: v = stratus, clear, stratus;";
  static std::vector<std::string> values() { return {"stratus", "clear", "stratus"}; }
};

using Arrays = ::testing::Types<InFile<Floats>, InFile<Chunked>, InFile<Packed>, InFile<WithFill>,
                                InFile<Times>, InFile<Records>, InFile<NoRecords>, InFile<Scalar>,
                                InFile<Strings>, InFile<Characters>, InFile<Flags>, InFile<Names>>;
INSTANTIATE_TYPED_TEST_SUITE_P(InFile, ArraySuite, Arrays, );

struct Group {
  static std::unique_ptr<object_model::Dictionary> make() {
    const netcdf::Scratch scratch;
    netcdf::writeCdl(scratch.path("a.nc"),
                     "dimensions: x = 1; variables: int z(x); string a; :title = \"t\"; :k = 1;"
                     "data: z = 1; a = \"b\"; group: g { variables: int b; data: b = 1; }");
    const netcdf::File file(scratch.path("a.nc"));
    return std::make_unique<memory::Dictionary>(file.select("/", {}));
  }
  static std::vector<std::string> names() { return {"z", "a", "g"}; }
};

INSTANTIATE_TYPED_TEST_SUITE_P(InFile, DictionarySuite, Group, );

}  // namespace
}  // namespace quillon::testing
