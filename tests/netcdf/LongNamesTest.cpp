#include <ostream>

#include "LongNames.h"
#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

const std::string LONGEST(LONGEST_NAME, 'n');

struct NamedCase {
  const char* rule;
  std::function<void(const Writer&, const std::string& name)> write;
  std::string group;
};

void PrintTo(const NamedCase& c, std::ostream* os) { *os << c.rule; }

class LongNamesTest : public testing::TestWithParam<NamedCase> {
 protected:
  /// The error of opening a file with such a name.
  std::string errorWith(const std::string& name) const {
    {
      const Writer writer(m_path, NC_NETCDF4);
      GetParam().write(writer, name);
    }
    return errorOf([this] { const File file(m_path); });
  }

  Scratch m_scratch;
  std::string m_path = m_scratch.path("a.nc");
};

// libnetcdf writes them, and reads them with what stands behind them in its memory.
TEST_P(LongNamesTest, AreRefused) {
  EXPECT_EQ(errorWith(LONGEST), "");
  EXPECT_EQ(errorWith(LONGEST + "n"),
            "Cannot read '" + m_path +
                "': it is a sound HDF5 file, but cannot be read as netCDF: the name of '" +
                GetParam().group + "/" + LONGEST + "n' is longer than 255 bytes");
  EXPECT_EQ(errorWith(LONGEST), "");  // nothing is left open
}

INSTANTIATE_TEST_SUITE_P(
    Rules, LongNamesTest,
    testing::ValuesIn(std::vector<NamedCase>{
        {"Variable",
         [](const Writer& writer, const std::string& name) { writer.variable(name, NC_INT, {}); },
         ""},
        {"Dimension",
         [](const Writer& writer, const std::string& name) { writer.dimension(name, 2); }, ""},
        {"Type",
         [](const Writer& writer, const std::string& name) {
           nc_type type = NC_NAT;
           must(nc_def_opaque(writer.root(), 3, name.c_str(), &type));
         },
         ""},
        {"VariableInAGroup",
         [](const Writer& writer, const std::string& name) {
           writer.group("first");
           writer.variable(name, NC_INT, {}, writer.group("h", writer.group("g")));
         },
         "/g/h"},
    }),
    [](const auto& c) { return c.param.rule; });

TEST(TwoLongNamesTest, AreRefusedForTheOuterOne) {
  const Scratch scratch;
  const std::string path = scratch.path("a.nc");
  {
    const Writer writer(path, NC_NETCDF4);
    writer.variable(LONGEST + "i", NC_INT, {}, writer.group("g"));
    writer.dimension(LONGEST + "o", 2);
  }
  EXPECT_THAT(errorOf([&] { const File file(path); }),
              testing::HasSubstr("the name of '/" + LONGEST + "o' is longer than 255 bytes"));
}

TEST(LongNamesOfAttributesTest, AreRead) {
  const Scratch scratch;
  const std::string path = scratch.path("a.nc");
  const std::string name = LONGEST + "n";
  {
    const Writer writer(path, NC_NETCDF4);
    writer.text(writer.variable("v", NC_INT, {}), name, "text");
  }
  const File file(path);
  const auto& attributes = dynamic_cast<const memory::HasAttributes&>(arrayAt(file, "v"));
  ASSERT_EQ(attributes.attributes().size(), 1U);
  EXPECT_EQ(attributes.attributes()[0].name, name);
}

}  // namespace
}  // namespace quillon::netcdf
