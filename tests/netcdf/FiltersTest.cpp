#include <algorithm>

#include "Filters.h"
#include "Hdf5Files.h"
#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

using testing::ElementsAre;

constexpr H5Z_filter_t STRANGE = 32'099;

std::size_t leaveAsItIs(unsigned int /*flags*/, std::size_t /*parameters*/,
                        const unsigned int* /*values*/, std::size_t bytes, std::size_t* /*room*/,
                        void** /*buffer*/) {
  return bytes;
}

/// A filter that is there as long as the object is.
class StrangeFilter {
 public:
  explicit StrangeFilter(const char* name, H5Z_filter_t id = STRANGE) : m_id(id) {
    const H5Z_class2_t filter{H5Z_CLASS_T_VERS, id, 1, 1, name, nullptr, nullptr, leaveAsItIs};
    mustHdf5(H5Zregister(&filter));
  }
  StrangeFilter(const StrangeFilter&) = delete;
  StrangeFilter& operator=(const StrangeFilter&) = delete;
  ~StrangeFilter() { H5Zunregister(m_id); }

 private:
  H5Z_filter_t m_id;
};

class FiltersTest : public testing::Test {
 protected:
  /// @param name what the file calls the filter.
  void write(const char* name) const {
    const StrangeFilter filter(name);
    const Hdf5Writer writer(m_path);
    const Hdf5Object v = writer.dataset("v", H5T_NATIVE_INT, {2}, [](hid_t creation) {
      const hsize_t chunk = 2;
      mustHdf5(H5Pset_chunk(creation, 1, &chunk));
      mustHdf5(H5Pset_shuffle(creation));
      const unsigned int parameters[] = {7, 8};
      mustHdf5(H5Pset_filter(creation, STRANGE, 0, 2, parameters));
    });
    const std::vector<int> values{1, 2};
    writeAll(v, H5T_NATIVE_INT, values.data());
    writeAll(writer.dataset("kept", H5T_NATIVE_INT, {2}), H5T_NATIVE_INT, values.data());
  }

  std::string skipped() const {
    std::string text;
    const File file(m_path);
    for (const Skipped& variable : file.skipped()) {
      text += variable.path + ": " + variable.reason + "\n";
    }
    return text;
  }

  /// Expects one filter of that name for a data set whose creation was told so.
  void expectFilter(const std::string& name, const std::function<void(hid_t)>& setFilter) const {
    {
      const Hdf5Writer writer(m_path);
      writer.dataset("v", H5T_NATIVE_INT, {2}, [&](hid_t creation) {
        const hsize_t chunk = 2;
        mustHdf5(H5Pset_chunk(creation, 1, &chunk));
        setFilter(creation);
      });
    }
    const GroupFacts facts = File(m_path).facts("/");
    std::vector<std::string> names;
    for (const FilterFacts& filter : facts.variables.at(0).compression.filters) {
      names.push_back(filter.name);
    }
    EXPECT_THAT(names, ElementsAre(name));
  }

  Scratch m_scratch;
  std::string m_path = m_scratch.path("a.h5");
};

TEST_F(FiltersTest, VariableWhoseFilterIsNotThereIsSkippedAndEndsNothingElse) {
  write("strange codec");
  EXPECT_EQ(skipped(), "/v: filter 32099 'strange codec', which is not there\n");
  EXPECT_THAT(valuesOf(arrayAt(File(m_path), "kept")), ElementsAre("1", "2"));
}

TEST_F(FiltersTest, FilterIsAFactOfItsVariableWithItsParameters) {
  write("strange codec");
  const StrangeFilter filter("strange codec");
  const GroupFacts facts = File(m_path).facts("/");
  const auto v = std::find_if(facts.variables.begin(), facts.variables.end(),
                              [](const VariableFacts& each) { return each.path == "/v"; });
  ASSERT_NE(v, facts.variables.end());
  ASSERT_EQ(v->compression.filters.size(), 1U);
  EXPECT_EQ(v->compression.filters[0].id, static_cast<unsigned>(STRANGE));
  EXPECT_EQ(v->compression.filters[0].name, "filter 32099");
  EXPECT_THAT(v->compression.filters[0].parameters, ElementsAre(7, 8));
}

TEST_F(FiltersTest, FiltersThatManyProgramsHaveAreNamed) {
  for (const auto& [id, name] : {std::pair(307, "bzip2"),
                                 {32000, "lzf"},
                                 {32001, "blosc"},
                                 {32004, "lz4"},
                                 {32008, "bitshuffle"},
                                 {32013, "zfp"},
                                 {32015, "zstd"}}) {
    const StrangeFilter filter("anything", id);
    expectFilter(name, [id = id](hid_t creation) { H5Pset_filter(creation, id, 0, 0, nullptr); });
  }
  expectFilter("nbit", H5Pset_nbit);
  expectFilter("scaleoffset", [](hid_t creation) { H5Pset_scaleoffset(creation, H5Z_SO_INT, 0); });
  if (H5Zfilter_avail(H5Z_FILTER_SZIP) > 0) {
    expectFilter("szip", [](hid_t creation) { H5Pset_szip(creation, H5_SZIP_NN_OPTION_MASK, 2); });
  }
}

TEST_F(FiltersTest, FilterWithoutANameIsNamedByItsNumber) {
  write("");
  EXPECT_EQ(skipped(), "/v: filter 32099, which is not there\n");
}

TEST_F(FiltersTest, LongNameOfAFilterIsCut) {
  write(std::string(300, 'n').c_str());
  EXPECT_EQ(skipped(), "/v: filter 32099 '" + std::string(254, 'n') + "', which is not there\n");
}

TEST_F(FiltersTest, FilterThatIsThereIsUsed) {
  write("strange codec");
  const StrangeFilter filter("strange codec");
  EXPECT_EQ(skipped(), "");
  EXPECT_THAT(valuesOf(arrayAt(File(m_path), "v")), ElementsAre("1", "2"));
}

}  // namespace
}  // namespace quillon::netcdf
