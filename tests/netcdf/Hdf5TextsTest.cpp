#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <numeric>
#include <ostream>

#include "Hdf5Files.h"
#include "Hdf5Texts.h"
#include "StoredFiles.h"
#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

using object_model::ElementType;
using testing::ElementsAre;

class Hdf5TextsTest : public testing::Test {
 protected:
  std::vector<std::string> textsOf(const std::string& name) const {
    return valuesOf(arrayAt(File(m_path), name));
  }

  Scratch m_scratch;
  std::string m_path = m_scratch.path("a.h5");
};

struct Filled {
  const char* name;
  H5T_str_t padding;
  H5T_cset_t characters;
  std::string stored;  // six texts of five bytes
  std::vector<std::string> texts;
};

void PrintTo(const Filled& filled, std::ostream* out) { *out << filled.name; }

class FixedTexts : public Hdf5TextsTest, public testing::WithParamInterface<Filled> {
 protected:
  void write(const std::function<void(hid_t)>& create) const {
    const Filled& given = GetParam();
    const Hdf5Writer writer(m_path);
    const Hdf5Object type = textType(5, given.padding, given.characters);
    writeAll(writer.dataset("v", type.id(), {2, 3}, create), type.id(), given.stored.data());
    writer.attribute("v", "units", type.id(), given.stored.data() + 5);
  }

  void expectTexts() const {
    for (const std::size_t window : std::vector<std::size_t>{1, 100, 1000}) {
      std::vector<unsigned long> reads;
      const File file(m_path, countingReads(window, reads));
      const memory::ArrayBase& v = arrayAt(file, "v");
      EXPECT_EQ(v.getElementType(), ElementType::String);
      EXPECT_THAT(shapeOf(v), ElementsAre(3, 2));
      EXPECT_EQ(valuesOf(v), GetParam().texts) << "window of " << window;
      EXPECT_EQ(std::accumulate(reads.begin(), reads.end(), 0UL), 30U);
      EXPECT_THAT(file.skipped(), testing::IsEmpty());
    }
  }
};

TEST_P(FixedTexts, AreReadWithoutWhatFillsThem) {
  write({});
  expectTexts();
}

TEST_P(FixedTexts, AreReadFromDeflatedChunks) {
  write([](hid_t creation) {
    const std::array<hsize_t, 2> chunk{1, 2};
    mustHdf5(H5Pset_chunk(creation, 2, chunk.data()));
    mustHdf5(H5Pset_deflate(creation, 1));
  });
  expectTexts();
}

INSTANTIATE_TEST_SUITE_P(
    Paddings, FixedTexts,
    testing::Values(
        Filled{"NullTerminated",
               H5T_STR_NULLTERM,
               H5T_CSET_ASCII,
               {"four\0m\0rub\0\0\0\0\0a b\0\0  x\0\0abcd\0", 30},
               {"four", "m", "", "a b", "  x", "abcd"}},
        Filled{"NullPadded",
               H5T_STR_NULLPAD,
               H5T_CSET_ASCII,
               {"fiveem\0\0\0\0\0\0\0\0\0a\0b\0\0a   \0wxyz ", 30},
               {"fivee", "m", "", std::string("a\0b", 3), "a   ", "wxyz "}},
        Filled{"SpacePadded",
               H5T_STR_SPACEPAD,
               H5T_CSET_ASCII,
               {"fiveem         a b    b c\0\0\0\0 ", 30},
               {"fivee", "m", "", "a b", "  b c", ""}},
        Filled{"Utf8",
               H5T_STR_NULLPAD,
               H5T_CSET_UTF8,
               {"gr\xc3\xb6nm\xc2\xb2\0\0\xe2\x82\xac\0\0\0\0\0\0\0abcd\0\xc3\x9f\0\0\0", 30},
               {"gr\xc3\xb6n", "m\xc2\xb2", "\xe2\x82\xac", "", "abcd", "\xc3\x9f"}}),
    [](const auto& given) { return given.param.name; });

TEST_F(Hdf5TextsTest, OneTextOfFixedLengthHasNoDimensions) {
  {
    const Hdf5Writer writer(m_path);
    writer.group("inner");
    const Hdf5Object type = textType(6);
    writeAll(writer.dataset("inner/v", type.id()), type.id(), "single");
  }
  const File file(m_path);
  EXPECT_THAT(shapeOf(arrayAt(file, "inner/v")), ElementsAre());
  EXPECT_THAT(valuesOf(arrayAt(file, "inner/v")), ElementsAre("single"));
}

TEST_F(Hdf5TextsTest, DataSetWithoutAnyValueIsAnEmptyText) {
  {
    const Hdf5Writer writer(m_path);
    const Hdf5Object space(H5Screate(H5S_NULL), H5Sclose);
    const Hdf5Object v(mustHdf5(H5Dcreate2(writer.file(), "v", textType(6).id(), space.id(),
                                           H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT)),
                       H5Dclose);
  }
  EXPECT_THAT(textsOf("v"), ElementsAre(""));
}

TEST_F(Hdf5TextsTest, AttributesOfFixedLengthAreUnitDescriptionAndTitle) {
  {
    const Hdf5Writer writer(m_path);
    writer.group("inner");
    const Hdf5Object type = textType(5);
    writer.dataset("inner/v", H5T_NATIVE_INT);
    writer.attribute("inner/v", "units", type.id(), "m s-1");
    writer.attribute("inner/v", "long_name", type.id(), "ab\0\0");
    writer.attribute("inner", "title", type.id(), "one\0");
    writer.attribute("/", "title", type.id(), "whole");
  }
  const File file(m_path);
  EXPECT_EQ(arrayAt(file, "inner/v").getUnit(), "m s-1");
  EXPECT_EQ(arrayAt(file, "inner/v").getDescription(), "ab");
  EXPECT_EQ(file.group("inner").getDescription(), "one");
  EXPECT_EQ(file.title(), "whole");
}

TEST_F(Hdf5TextsTest, TextThatIsTheFillValueIsMissing) {
  {
    const Hdf5Writer writer(m_path);
    const Hdf5Object type = textType(3);
    writeAll(writer.dataset("v", type.id(), {3}), type.id(), "n/aabcn\0");
    writer.attribute("v", "_FillValue", type.id(), "n/a");
  }
  EXPECT_THAT(textsOf("v"), ElementsAre("", "abc", "n"));
}

TEST_F(Hdf5TextsTest, PartOfThemIsReadInSteps) {
  {
    const Hdf5Writer writer(m_path);
    const Hdf5Object type = textType(2);
    writeAll(writer.dataset("v", type.id(), {3, 4}), type.id(), "a0a1a2a3b0b1b2b3c0c1c2c3");
  }
  const File file(m_path);
  const memory::ArrayBase& v = arrayAt(file, "v");
  const std::string x = v.getInformation()->getAxisInfo(0)->getAxisName();
  const std::string y = v.getInformation()->getAxisInfo(1)->getAxisName();
  EXPECT_EQ(contentOf(file.select("/", {{x, {1, 2, 2}}, {y, {0, 2, 2}}})),
            (std::map<std::string, std::vector<std::string>>{{"/v", {"a1", "a3", "c1", "c3"}}}));
  EXPECT_EQ(contentOf(file.select("/", {{x, {0, 2, 3}}, {y, {0, 3, 1}}})),
            (std::map<std::string, std::vector<std::string>>{
                {"/v", {"a0", "a3", "b0", "b3", "c0", "c3"}}}));
}

TEST_F(Hdf5TextsTest, FileThatIsCutWhileItIsOpenIsAnError) {
  const std::vector<const char*> strings(1000, "text");
  {
    const Hdf5Writer writer(m_path);
    const Hdf5Object type = textType(H5T_VARIABLE);
    writeAll(writer.dataset("v", type.id(), {1000}), type.id(), strings.data());
  }
  const File file(m_path);
  std::filesystem::resize_file(m_path, std::filesystem::file_size(m_path) - 1);
  EXPECT_THAT(errorOf([&] { valuesOf(arrayAt(file, "v")); }),
              testing::HasSubstr("bytes while it was open"));
}

TEST_F(Hdf5TextsTest, TypesThatHaveANameAreReadAsWell) {
  const std::array<const char*, 2> strings{"one", "a longer one"};
  {
    const Hdf5Writer writer(m_path);
    const Hdf5Object fixed = textType(3);
    const Hdf5Object variable = textType(H5T_VARIABLE);
    writer.commit("Fixed", fixed.id());
    writer.commit("Variable", variable.id());
    writeAll(writer.dataset("f", fixed.id(), {2}), fixed.id(), "abcde\0");
    writeAll(writer.dataset("s", variable.id(), {2}), variable.id(), strings.data());
  }
  EXPECT_THAT(textsOf("f"), ElementsAre("abc", "de"));
  EXPECT_THAT(textsOf("s"), ElementsAre("one", "a longer one"));
  EXPECT_THAT(File(m_path).skipped(), testing::IsEmpty());
}

TEST_F(Hdf5TextsTest, VariableThatIsCalledAsADimensionOfOthersIsFound) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    const int x = writer.dimension("x", 2);
    const int inner = writer.group("inner");
    for (const auto& [group, text] : {std::pair(writer.root(), "one"), {inner, "two"}}) {
      writer.dimension("v", 3, group);
      writer.put<const char*>(writer.variable("v", NC_STRING, {x}, group), {2}, {text, "last"},
                              group);
    }
  }
  EXPECT_THAT(textsOf("v"), ElementsAre("one", "last"));
  EXPECT_THAT(textsOf("inner/v"), ElementsAre("two", "last"));
}

TEST_F(Hdf5TextsTest, TextsBehindTheEndOfTheirDataSetAreEmpty) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    const int time = writer.dimension("time", NC_UNLIMITED);
    const int x = writer.dimension("x", 2);
    writer.put<int>(writer.variable("n", NC_INT, {time}), {4}, {1, 2, 3, 4});
    writer.put<const char*>(writer.variable("s", NC_STRING, {time, x}), {2, 2},
                            {"a", "b", "c", "d"});
  }
  for (const std::size_t window : std::vector<std::size_t>{1, 300, 600, 10000}) {
    OpenOptions options;
    options.windowBytes = window;
    EXPECT_THAT(valuesOf(arrayAt(File(m_path, options), "s")),
                ElementsAre("a", "b", "c", "d", "", "", "", ""));
  }
}

TEST_F(Hdf5TextsTest, NumbersThatLibnetcdfTakesForStringsAreSkipped) {
  {
    const Hdf5Writer writer(m_path);
    writer.dataset("v", H5T_NATIVE_LDOUBLE);
  }
  const File file(m_path);
  ASSERT_EQ(file.skipped().size(), 1U);
  EXPECT_EQ(file.skipped()[0].path, "/v");
  EXPECT_EQ(file.skipped()[0].reason, "floating-point type of 16 bytes");
  EXPECT_EQ(file.root().getNumOfData(), 0U);
}

TEST_F(Hdf5TextsTest, TextsThatNoFileHoldsAreRefusedWhenTheyAreRead) {
  {
    const Hdf5Writer writer(m_path);
    writer.dataset("v", textType(1UL << 30U).id());
  }
  EXPECT_EQ(errorOf([&] { textsOf("v"); }),
            "Cannot read '" + m_path + "': variable '/v' claims texts of 1073741824 characters, " +
                "which a file of " + std::to_string(readBytes(m_path).size()) +
                " bytes cannot hold");
}

TEST_F(Hdf5TextsTest, TenBillionTextsThatAreNotWrittenYetAreEmpty) {
  {
    const Hdf5Writer writer(m_path);
    writer.dataset("v", textType(8).id(), {100'000, 100'000}, [](hid_t creation) {
      const std::array<hsize_t, 2> chunk{100, 100};
      mustHdf5(H5Pset_chunk(creation, 2, chunk.data()));
    });
  }
  OpenOptions options;
  options.windowBytes = 1UL << 20U;
  const File file(m_path, options);
  EXPECT_EQ(arrayAt(file, "v").numberOfElements(), 10'000'000'000U);
  object_model::TupleX last(2);
  last[0] = 99'999;
  last[1] = 99'999;
  EXPECT_EQ(arrayAt(file, "v").getValueAsString(last), "");
}

TEST_F(Hdf5TextsTest, DamagedChunkIsAnError) {
  std::string texts(1000, 'x');
  std::iota(texts.begin(), texts.end(), '\1');
  {
    const Hdf5Writer writer(m_path);
    const Hdf5Object type = textType(10);
    const Hdf5Object v = writer.dataset("v", type.id(), {100}, [](hid_t creation) {
      const hsize_t chunk = 100;
      mustHdf5(H5Pset_chunk(creation, 1, &chunk));
      mustHdf5(H5Pset_fletcher32(creation));
    });
    writeAll(v, type.id(), texts.data());
  }
  std::string bytes = readBytes(m_path);
  bytes[bytes.find(texts.substr(0, 200)) + 100] ^= 1;
  writeBytes(m_path, bytes);
  EXPECT_EQ(errorOf([&] { textsOf("v"); }),
            "Cannot read '" + m_path + "': variable '/v' cannot be read (NetCDF: HDF error)");
}

TEST_F(Hdf5TextsTest, WindowsOfStringsAreMadeForOnesOfSomeLength) {
  const std::array<const char*, 5> strings{"one", "two", "three", "a longer one", "end"};
  {
    const Hdf5Writer writer(m_path);
    const Hdf5Object type = textType(H5T_VARIABLE);
    writeAll(writer.dataset("v", type.id(), {5}), type.id(), strings.data());
  }
  std::vector<unsigned long> reads;
  const File file(m_path, countingReads(300, reads));
  EXPECT_THAT(valuesOf(arrayAt(file, "v")),
              ElementsAre("one", "two", "three", "a longer one", "end"));
  EXPECT_THAT(reads, ElementsAre(6, 17, 3));
}

TEST_F(Hdf5TextsTest, StringsAreReadInEitherSetOfCharacters) {
  const std::array<const char*, 2> strings{"gr\xc3\xb6\xc3\x9f\x65", "\xe2\x82\xac"};
  {
    const Hdf5Writer writer(m_path);
    for (const auto& [name, characters] :
         {std::pair("a", H5T_CSET_ASCII), std::pair("u", H5T_CSET_UTF8)}) {
      const Hdf5Object type = textType(H5T_VARIABLE, H5T_STR_NULLTERM, characters);
      writeAll(writer.dataset(name, type.id(), {2}), type.id(), strings.data());
    }
  }
  EXPECT_THAT(textsOf("a"), ElementsAre(strings[0], strings[1]));
  EXPECT_THAT(textsOf("u"), ElementsAre(strings[0], strings[1]));
}

TEST_F(Hdf5TextsTest, ChunksAreKeptAsLongAsTheyAreReadInPart) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    const int v = writer.variable("v", NC_STRING, {writer.dimension("x", 4)});
    const std::size_t chunk = 2;
    must(nc_def_var_chunking(writer.root(), v, NC_CHUNKED, &chunk));
    writer.put<const char*>(v, {4}, {"a", "b", "c", "d"});
  }
  Variable v = variableOf(m_path, "v");
  v.chunks = {2};
  const auto isKeptAfterReading = [&v](unsigned long start, unsigned long count) {
    std::vector<std::string> texts(count);
    readHdf5Texts(v, {start, count, {start}, {count}}, texts.data());
    std::size_t bytes = 0;
    must(nc_get_var_chunk_cache(v.group, v.id, &bytes, nullptr, nullptr));
    return bytes > 0;
  };
  EXPECT_FALSE(isKeptAfterReading(0, 2));
  EXPECT_TRUE(isKeptAfterReading(1, 1));
  EXPECT_TRUE(isKeptAfterReading(2, 1));
  EXPECT_FALSE(isKeptAfterReading(3, 1));
}

TEST_F(Hdf5TextsTest, AttributeWithoutAnyTextIsEmpty) {
  const std::array<const char*, 2> strings{nullptr, "m"};
  {
    const Hdf5Writer writer(m_path);
    const Hdf5Object type = textType(H5T_VARIABLE);
    writer.dataset("v", H5T_NATIVE_INT);
    writer.attribute("v", "none", type.id(), nullptr, {0});
    writer.attribute("v", "null", type.id(), strings.data());
    writer.attribute("v", "two", type.id(), strings.data(), {2});
    writer.attribute("v", "units", type.id(), nullptr, {0});
    writer.attribute("v", "zero", H5T_NATIVE_INT, nullptr, {0});
  }
  const File file(m_path);
  const std::vector<memory::Attribute> expected = {{"none", std::vector<std::string>{}},
                                                   {"null", std::string()},
                                                   {"two", std::vector<std::string>{"", "m"}},
                                                   {"units", std::vector<std::string>{}},
                                                   {"zero", std::vector<int>{}}};
  EXPECT_EQ(arrayAt(file, "v").attributes(), expected);
  EXPECT_EQ(arrayAt(file, "v").getUnit(), "");
}

enum class FillValue { Usual, Given, Undefined };

struct DamagedStrings {
  const char* name;
  hsize_t chunk;  // 0 for values in one piece
  FillValue kind;
  const char* fill;  // which may be none
  bool isUnindexed;  // whether no chunk is found, and not texts alone
};

void PrintTo(const DamagedStrings& given, std::ostream* out) { *out << given.name; }

class DamagedStringsTest : public Hdf5TextsTest,
                           public testing::WithParamInterface<DamagedStrings> {
 protected:
  /// Damages the index of chunks, or all that leads to the heap where the texts are.
  void damage(bool isIndex) const {
    std::string bytes = readBytes(m_path);
    const std::uint64_t heap = bytes.find("GCOL");
    std::string wanted(sizeof heap, '\0');
    std::memcpy(wanted.data(), &heap, sizeof heap);
    if (isIndex) {
      wanted = "TREE\1";
    }
    std::size_t at = bytes.find(wanted);
    ASSERT_NE(at, std::string::npos);
    for (; at != std::string::npos; at = bytes.find(wanted, at)) {
      bytes[at] = static_cast<char>(bytes[at] ^ 1);
    }
    writeBytes(m_path, bytes);
  }
};

TEST_P(DamagedStringsTest, AreAnError) {
  const DamagedStrings& given = GetParam();
  const std::array<const char*, 6> strings{"a", "b", "c", "d", "e", "f"};
  {
    const Hdf5Writer writer(m_path);
    const Hdf5Object type = textType(H5T_VARIABLE);
    const Hdf5Object v = writer.dataset("v", type.id(), {2, 3}, [&](hid_t creation) {
      if (given.chunk > 0) {
        const std::array<hsize_t, 2> chunk{given.chunk, given.chunk};
        mustHdf5(H5Pset_chunk(creation, 2, chunk.data()));
      }
      if (given.kind != FillValue::Usual) {
        const auto* const fill = static_cast<const void*>(&given.fill);
        mustHdf5(H5Pset_fill_value(creation, type.id(),
                                   given.kind == FillValue::Given ? fill : nullptr));
      }
    });
    writeAll(v, type.id(), strings.data());
  }
  const File file(m_path);
  damage(given.isUnindexed);
  EXPECT_EQ(errorOf([&] { valuesOf(arrayAt(file, "v")); }),
            "Cannot read '" + m_path + "': variable '/v' cannot be read (NetCDF: HDF error)");
}

INSTANTIATE_TEST_SUITE_P(
    Storages, DamagedStringsTest,
    testing::Values(
        DamagedStrings{"InOnePiece", 0, FillValue::Usual, nullptr, false},
        DamagedStrings{"InOnePieceWithFillValue", 0, FillValue::Given, "fill", false},
        DamagedStrings{"InChunks", 2, FillValue::Usual, nullptr, false},
        DamagedStrings{"InChunksWithFillValue", 2, FillValue::Given, "fill", false},
        DamagedStrings{"InChunksWithFillValueThatIsNone", 2, FillValue::Given, nullptr, false},
        DamagedStrings{"InChunksWithoutFillValue", 2, FillValue::Undefined, nullptr, false},
        DamagedStrings{"InChunksThatAreNotFound", 1, FillValue::Given, "fill", true}),
    [](const auto& given) { return given.param.name; });

/// Six strings in chunks of `chunk` of which "a" and none were written to the second and the third.
class PartlyWrittenStrings : public Hdf5TextsTest, public testing::WithParamInterface<hsize_t> {
 protected:
  void write(const char* fill) const {
    const Hdf5Writer writer(m_path);
    const Hdf5Object type = textType(H5T_VARIABLE);
    const Hdf5Object v = writer.dataset("v", type.id(), {6}, [&](hid_t creation) {
      const hsize_t chunk = GetParam();
      if (chunk > 0) {
        mustHdf5(H5Pset_chunk(creation, 1, &chunk));
      }
      if (fill != nullptr) {
        mustHdf5(H5Pset_fill_value(creation, type.id(), static_cast<const void*>(&fill)));
      }
    });
    const std::array<const char*, 2> texts{"a", nullptr};
    const hsize_t start = 1;
    const hsize_t count = 2;
    const Hdf5Object space(H5Dget_space(v.id()), H5Sclose);
    const Hdf5Object memory(H5Screate_simple(1, &count, nullptr), H5Sclose);
    mustHdf5(H5Sselect_hyperslab(space.id(), H5S_SELECT_SET, &start, nullptr, &count, nullptr));
    mustHdf5(H5Dwrite(v.id(), type.id(), memory.id(), space.id(), H5P_DEFAULT, texts.data()));
  }
};

TEST_P(PartlyWrittenStrings, AreEmptyWhereNothingWasWritten) {
  write(nullptr);
  EXPECT_THAT(textsOf("v"), ElementsAre("", "a", "", "", "", ""));
}

// libhdf5 fails where it meets such a chunk: it would have to write the fill value into the file.
TEST_P(PartlyWrittenStrings, AreTheFillValueWhereNothingWasWritten) {
  write("fill");
  for (const std::size_t window : std::vector<std::size_t>{1, 300, 10000}) {
    OpenOptions options;
    options.windowBytes = window;
    EXPECT_THAT(valuesOf(arrayAt(File(m_path, options), "v")),
                ElementsAre("fill", "a", "", "fill", "fill", "fill"))
        << "window of " << window;
  }
}

TEST_P(PartlyWrittenStrings, AreReadInSteps) {
  write("fill");
  const File file(m_path);
  const std::string x = arrayAt(file, "v").getInformation()->getAxisInfo(0)->getAxisName();
  EXPECT_EQ(contentOf(file.select("/", {{x, {1, 3, 2}}})),
            (std::map<std::string, std::vector<std::string>>{{"/v", {"a", "fill", "fill"}}}));
}

TEST_P(PartlyWrittenStrings, AreReadFromTheMiddleOfAChunkOn) {
  write("fill");
  const File file(m_path);
  const std::string x = arrayAt(file, "v").getInformation()->getAxisInfo(0)->getAxisName();
  EXPECT_EQ(
      contentOf(file.select("/", {{x, {1, 5, 1}}})),
      (std::map<std::string, std::vector<std::string>>{{"/v", {"a", "", "fill", "fill", "fill"}}}));
}

TEST_F(Hdf5TextsTest, PartlyWrittenGridOfStringsHasTheFillValueElsewhere) {
  const char* const fill = "-";
  {
    const Hdf5Writer writer(m_path);
    const Hdf5Object type = textType(H5T_VARIABLE);
    const Hdf5Object v = writer.dataset("v", type.id(), {3, 5}, [&](hid_t creation) {
      const std::array<hsize_t, 2> chunk{2, 2};
      mustHdf5(H5Pset_chunk(creation, 2, chunk.data()));
      mustHdf5(H5Pset_fill_value(creation, type.id(), static_cast<const void*>(&fill)));
    });
    const std::array<const char*, 2> texts{"a", "b"};
    const std::array<hsize_t, 2> start{1, 2};
    const std::array<hsize_t, 2> count{2, 1};
    const Hdf5Object space(H5Dget_space(v.id()), H5Sclose);
    const Hdf5Object memory(H5Screate_simple(2, count.data(), nullptr), H5Sclose);
    mustHdf5(H5Sselect_hyperslab(space.id(), H5S_SELECT_SET, start.data(), nullptr, count.data(),
                                 nullptr));
    mustHdf5(H5Dwrite(v.id(), type.id(), memory.id(), space.id(), H5P_DEFAULT, texts.data()));
  }
  for (const std::size_t window : std::vector<std::size_t>{1, 300, 1000, 10000}) {
    OpenOptions options;
    options.windowBytes = window;
    EXPECT_THAT(
        valuesOf(arrayAt(File(m_path, options), "v")),
        ElementsAre("-", "-", "-", "-", "-", "-", "-", "a", "-", "-", "-", "-", "b", "-", "-"))
        << "window of " << window;
  }
}

INSTANTIATE_TEST_SUITE_P(Chunks, PartlyWrittenStrings, testing::Values(0U, 1U, 2U, 4U, 6U));

}  // namespace
}  // namespace quillon::netcdf
