#include <limits>

#include "StoredFiles.h"
#include "Variable.h"

namespace quillon::netcdf {
namespace {

TEST(VariableTest, ValuesThatNoMemoryHoldsAreAnError) {
  const Scratch scratch;
  const std::string path = scratch.path("a.nc");
  {
    const Writer writer(path, 0);
    writer.put<int>(writer.variable("v", NC_INT, {writer.dimension("x", 1)}), {1}, {1});
  }
  const Variable v = variableOf(path, "v");
  const auto errorFor = [&](unsigned long count) {
    return errorOf([&] {
      std::vector<double> values;
      v.makeRoom(values, count);
    });
  };
  EXPECT_EQ(errorFor(1), "");
  EXPECT_EQ(errorFor(std::numeric_limits<unsigned long>::max()),
            "Cannot read '" + path +
                "': variable '/v' cannot be read: there is no memory for 18446744073709551615 "
                "values at a time");
}

TEST(VariableTest, RoomIsMadeOnlyWhereThereIsTooLittle) {
  const Variable variable;
  std::vector<int> values{1, 2, 3};
  variable.makeRoom(values, 2);
  EXPECT_EQ(values, (std::vector<int>{1, 2, 3}));
  variable.makeRoom(values, 4);
  EXPECT_EQ(values, (std::vector<int>{1, 2, 3, 0}));
}

}  // namespace
}  // namespace quillon::netcdf
