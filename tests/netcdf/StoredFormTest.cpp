#include <limits>

#include "StoredForm.h"
#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

using Members = std::vector<std::pair<std::string, long>>;

class StoredFormTest : public testing::Test {
 protected:
  /// What the type is that `define` makes in a file.
  template <class Define>
  StoredForm formOfNew(const Define& define) const {
    nc_type type = NC_NAT;
    {
      const Writer writer(m_path, NC_NETCDF4);
      define(writer.root(), type);
    }
    const Source source(m_path, OpenOptions());
    return formOf(source, source.id(), type, "variable 'v'");
  }

  template <class Integer>
  StoredForm formOfEnumeration(nc_type base, const std::string& name = "colour") const {
    return formOfNew([&](int file, nc_type& type) {
      const Integer least = std::numeric_limits<Integer>::min();
      const auto one = static_cast<Integer>(1);
      must(nc_def_enum(file, base, name.c_str(), &type));
      must(nc_insert_enum(file, type, "least", &least));
      must(nc_insert_enum(file, type, "one", &one));
    });
  }

  template <class Integer>
  void expectMembersOf(nc_type base) const {
    const StoredForm form = formOfEnumeration<Integer>(base);
    EXPECT_EQ(form.base, base);
    EXPECT_EQ(form.name, "colour");
    EXPECT_EQ(form.bytes, sizeof(Integer));
    EXPECT_EQ(form.unreadable, "");
    EXPECT_EQ(
        form.members,
        (Members{{"least", static_cast<long>(std::numeric_limits<Integer>::min())}, {"one", 1}}));
  }

  Scratch m_scratch;
  std::string m_path = m_scratch.path("a.nc");
};

TEST_F(StoredFormTest, EnumerationsHaveTheirIntegersTypeAndMembers) {
  expectMembersOf<signed char>(NC_BYTE);
  expectMembersOf<unsigned char>(NC_UBYTE);
  expectMembersOf<short>(NC_SHORT);
  expectMembersOf<unsigned short>(NC_USHORT);
  expectMembersOf<int>(NC_INT);
  expectMembersOf<unsigned int>(NC_UINT);
  expectMembersOf<long>(NC_INT64);
  expectMembersOf<unsigned long>(NC_UINT64);
}

TEST_F(StoredFormTest, NamesAreAsLongAsTheyMayBe) {
  const std::string name(NC_MAX_NAME - 1, 'n');  // libnetcdf reads longer ones wrongly
  EXPECT_EQ(formOfEnumeration<int>(NC_INT, name).name, name);
}

TEST_F(StoredFormTest, TypesThatHaveNoPlaceInTheModelAreTold) {
  const StoredForm compound = formOfNew([](int file, nc_type& type) {
    must(nc_def_compound(file, 8, "point", &type));
    must(nc_insert_compound(file, type, "x", 0, NC_DOUBLE));
  });
  EXPECT_EQ(compound.unreadable, "compound type 'point'");
  EXPECT_EQ(compound.base, NC_NAT);
  EXPECT_EQ(compound.bytes, 8U);
  EXPECT_EQ(compound.members, Members());
  EXPECT_EQ(formOfNew([](int file, nc_type& type) {
              must(nc_def_vlen(file, "row", NC_INT, &type));
            }).unreadable,
            "variable-length type 'row'");
  EXPECT_EQ(formOfNew([](int file, nc_type& type) {
              must(nc_def_opaque(file, 3, "key", &type));
            }).unreadable,
            "opaque type 'key'");
}

TEST_F(StoredFormTest, TypesOfTheLibraryHaveItsNames) {
  const auto nameOf = [this](nc_type type) {
    const StoredForm form = formOfNew([type](int /*file*/, nc_type& wanted) { wanted = type; });
    EXPECT_EQ(form.base, type);
    return form.name + " " + std::to_string(form.bytes);
  };
  EXPECT_EQ(nameOf(NC_BYTE), "byte 1");
  EXPECT_EQ(nameOf(NC_CHAR), "char 1");
  EXPECT_EQ(nameOf(NC_DOUBLE), "double 8");
  EXPECT_EQ(nameOf(NC_STRING), "string " + std::to_string(sizeof(char*)));
}

TEST_F(StoredFormTest, NumbersAreAllButCharactersAndStrings) {
  std::vector<int> numbers;
  for (int type = NC_NAT; type <= NC_FIRSTUSERTYPEID; ++type) {
    if (isNumber(type)) {
      numbers.push_back(type);
    }
  }
  EXPECT_EQ(numbers, (std::vector<int>{NC_BYTE, NC_SHORT, NC_INT, NC_FLOAT, NC_DOUBLE, NC_UBYTE,
                                       NC_USHORT, NC_UINT, NC_INT64, NC_UINT64}));
}

}  // namespace
}  // namespace quillon::netcdf
