#include <quillon/memory/StridedArray.h>
#include <quillon/netcdf/LibraryLock.h>

#include <array>
#include <limits>
#include <numeric>
#include <ostream>
#include <set>

#include "WriteTesting.h"

namespace quillon::netcdf {
namespace {

using memory::Axis;
using memory::Dictionary;
using object_model::Tuple;

using Content = std::map<std::string, std::vector<std::string>>;

struct TypeCase {
  const char* rule;
  std::function<memory::Dictionary()> make;
  std::string dump;
};
void PrintTo(const TypeCase& c, std::ostream* os) { *os << c.rule; }

/// Where there is no `_FillValue`, ncdump shows the library's own as `_`.
class WriteTypesTest : public WriteTest, public testing::WithParamInterface<TypeCase> {};

TEST_P(WriteTypesTest, IsKept) {
  write(GetParam().make());
  EXPECT_EQ(printedBy("'" NCDUMP "' '" + m_path + "' | grep -E '\\) ;| a =' | tr -d '\\t'").text,
            GetParam().dump);
}

template <class T>
TypeCase extremes(const char* rule, const std::string& dump) {
  return {rule,
          [] {
            return dictionaryOf(row<T>(
                "a", "x", {std::numeric_limits<T>::lowest(), std::numeric_limits<T>::max()}));
          },
          dump};
}

INSTANTIATE_TEST_SUITE_P(
    Rules, WriteTypesTest,
    testing::ValuesIn(std::vector<TypeCase>{
        extremes<signed char>("Int8", "byte a(x) ;\n a = -128, 127 ;\n"),
        extremes<short>("Int16", "short a(x) ;\n a = -32768, 32767 ;\n"),
        extremes<int>("Int32", "int a(x) ;\n a = -2147483648, 2147483647 ;\n"),
        extremes<long>("Int64", "int64 a(x) ;\n a = -9223372036854775808, 9223372036854775807 ;\n"),
        extremes<unsigned char>("UInt8", "ubyte a(x) ;\n a = 0, 255 ;\n"),
        extremes<unsigned short>("UInt16", "ushort a(x) ;\n a = 0, _ ;\n"),
        extremes<unsigned int>("UInt32", "uint a(x) ;\n a = 0, _ ;\n"),
        extremes<unsigned long>("UInt64", "uint64 a(x) ;\n a = 0, 18446744073709551615 ;\n"),
        extremes<float>("Float32", "float a(x) ;\n a = -3.402823e+38, 3.402823e+38 ;\n"),
        extremes<double>("Float64",
                         "double a(x) ;\n a = -1.79769313486232e+308, 1.79769313486232e+308 ;\n"),
        {"Boolean",
         [] {
           return dictionaryOf(row<std::string>("s", "x", {"b"}),
                               memory::BooleanArray("a", {Axis("x", 1)}, {true}));
         },
         "string s(x) ;\nbyte a(x) ;\n a = 1 ;\n"},
        {"String",
         [] {
           return dictionaryOf(row<std::string>("a", "x", {"Ä", "b\n\"", ""}));
         },
         "string a(x) ;\n a = \"Ä\", \"b\\n\\\"\", _ ;\n"},
    }),
    [](const auto& c) { return c.param.rule; });

/// An array without bulk values whose elements are their own offset.
template <class T>
class Counting final : public memory::ValueArray<T> {
 public:
  explicit Counting(std::vector<Axis> axes) : memory::ValueArray<T>("a", std::move(axes)) {}
  memory::ResultOf<T> valueAt(const Tuple& index) const override {
    ++m_asked;
    return static_cast<memory::ResultOf<T>>(this->offsetOf(index));
  }
  unsigned long asked() const { return m_asked; }

 private:
  mutable unsigned long m_asked = 0;
};

template <class T>
Dictionary counting(std::vector<Axis> axes) {
  Dictionary dictionary("d");
  dictionary.add(std::make_unique<Counting<T>>(std::move(axes)));
  return dictionary;
}

TEST_F(WriteTest, ArraysWithoutBulkValuesAreOfTheWidestType) {
  const std::vector<Axis> axes = {Axis("x", 2), Axis("y", 2)};
  const auto typeOf = [&](const Dictionary& dictionary) {
    write(dictionary);
    return printedBy("'" NCDUMP "' '" + m_path + "' | grep -A2 ' a(\\| a =' | tr -d '\\t\\n'").text;
  };
  EXPECT_THAT(typeOf(counting<long>(axes)), testing::HasSubstr("int64 a(y, x) ;"));
  EXPECT_THAT(typeOf(counting<unsigned long>(axes)), testing::HasSubstr("uint64 a(y, x) ;"));
  EXPECT_THAT(typeOf(counting<double>(axes)), testing::HasSubstr("double a(y, x) ;"));
  EXPECT_THAT(typeOf(counting<double>(axes)), testing::HasSubstr(" a =  0, 1,  2, 3 ;"));
  EXPECT_THAT(typeOf(counting<bool>(axes)), testing::HasSubstr(" a =  0, 1,  1, 1 ;"));
}

TEST_F(WriteTest, StepsOfAnyKindAreFollowed) {
  const std::vector<int> values = {0, 1, 2, 3, 4, 5};
  Dictionary dictionary("d");
  dictionary.add(std::make_unique<memory::StridedArray<int>>(
      "a", std::vector<Axis>{Axis("x", 3), Axis("y", 2)}, values.data() + 4,
      std::vector<long>{-8, 4}));
  write(dictionary);
  EXPECT_EQ(contentOf(File(m_path).root()), (Content{{"/a", {"4", "2", "0", "5", "3", "1"}}}));
}

/// What a million values are in the file, whichever way it is stored.
TEST_F(WriteTest, LargeArraysAreWrittenInBlocksAndEachValueIsAskedForOnce) {
  for (const int deflate : {0, 1}) {
    const Dictionary dictionary = counting<long>({Axis("x", 70), Axis("y", 101), Axis("z", 211)});
    write(dictionary, {deflate, true});
    const auto& array = dictionary.at<Counting<long>>("a");
    EXPECT_EQ(array.asked(), 70U * 101U * 211U);
    const File file(m_path);
    const auto* const bulk = memory::bulkValuesOf(arrayAt(file, "a"));
    std::vector<long> values(array.numberOfElements());
    const std::vector<unsigned long> start(3), extent = {70, 101, 211};
    bulk->readValues(start.data(), extent.data(), values.data());
    std::vector<long> expected(values.size());
    std::iota(expected.begin(), expected.end(), 0L);
    EXPECT_EQ(values == expected, true) << deflate;
  }
}

/// Notes the largest block that is asked for.
class Blocks final : public memory::ValueArray<double>, public object_model::BulkValues {
 public:
  Blocks() : ValueArray("a", {Axis("x", 1000), Axis("y", 3000)}) {}
  double valueAt(const Tuple& /*index*/) const override { return 0; }
  object_model::StoredType storedType() const override { return object_model::StoredType::Float64; }
  void readValues(const unsigned long* /*start*/, const unsigned long* extent,
                  void* destination) const override {
    const unsigned long count = extent[0] * extent[1];
    largest = std::max(largest, count * sizeof(double));
    std::fill_n(static_cast<double*>(destination), count, 1.0);
  }

  mutable unsigned long largest = 0;  // in bytes
};

TEST_F(WriteTest, MemoryDoesNotGrowWithTheArray) {
  Dictionary dictionary("d");
  const Blocks& blocks = dictionary.add(std::make_unique<Blocks>());
  write(dictionary);
  EXPECT_LE(blocks.largest, 4UL << 20U);
  EXPECT_GT(blocks.largest, 3UL << 20U);
}

/// Notes where the blocks stand that are asked for, and how many values.
class Places final : public memory::ValueArray<long>, public object_model::BulkValues {
 public:
  Places() : ValueArray("a", {Axis("x", 1000), Axis("y", 50000)}) {}
  long valueAt(const Tuple& /*index*/) const override { return 0; }
  object_model::StoredType storedType() const override { return object_model::StoredType::Int8; }
  void readValues(const unsigned long* start, const unsigned long* extent,
                  void* destination) const override {
    for (std::size_t k = 0; k < 2; ++k) {
      bounds[k].insert({start[k], start[k] + extent[k]});
    }
    std::fill_n(static_cast<signed char*>(destination), extent[0] * extent[1], '\0');
    asked += extent[0] * extent[1];
  }

  mutable std::array<std::set<unsigned long>, 2> bounds;
  mutable unsigned long asked = 0;
};

TEST_F(WriteTest, CompressedChunksAreWrittenAsAWholeAndOnce) {
  Dictionary dictionary("d");
  const Places& places = dictionary.add(std::make_unique<Places>());
  write(dictionary, {1, false});
  EXPECT_EQ(places.asked, 50'000'000U);
  int file = -1;
  std::array<std::size_t, 2> chunk{};
  must(nc_open(m_path.c_str(), NC_NOWRITE, &file));
  must(nc_inq_var_chunking(file, 0, nullptr, chunk.data()));
  must(nc_close(file));
  for (std::size_t k = 0; k < 2; ++k) {
    for (const unsigned long bound : places.bounds[k]) {
      EXPECT_TRUE(bound % chunk[1 - k] == 0 || bound == places.size()[k]) << k << " " << bound;
    }
  }
}

TEST_F(WriteTest, NoValueIsAskedForWhereAnArrayWithoutChunksHasNoRoom) {
  Dictionary dictionary("d");
  const Places& places = dictionary.add(std::make_unique<Places>());
  const FileLimit limit(50'500'000);
  EXPECT_EQ(errorOf([&] { write(dictionary); }), "Cannot write '" + m_path + "': File too large");
  EXPECT_EQ(places.asked, 0U);
}

/// As many zeros as fill 4 MiB.
class Zeros final : public memory::ValueArray<double>, public object_model::BulkValues {
 public:
  explicit Zeros(const std::string& name) : ValueArray(name, {Axis("x", 1UL << 19U)}) {}
  double valueAt(const Tuple& /*index*/) const override { return 0; }
  object_model::StoredType storedType() const override { return object_model::StoredType::Float64; }
  void readValues(const unsigned long* /*start*/, const unsigned long* extent,
                  void* destination) const override {
    std::fill_n(static_cast<double*>(destination), extent[0], 0.0);
  }
};

// How much room they take is known once they are written, which they are every 64 MiB.
TEST_F(WriteTest, ValuesThatAreWrittenNeedNoMoreRoomThanTheyTake) {
  Dictionary dictionary("d");
  for (int k = 0; k < 18; ++k) {
    dictionary.add(std::make_unique<Zeros>("a" + std::to_string(k)));
  }
  const FileLimit limit(70UL << 20U);
  EXPECT_EQ(errorOf([&] { write(dictionary, {1, true}); }), "");
}

TEST_F(WriteTest, LockIsFreeWhileTheArraysAreAsked) {
  const AskedDictionary dictionary([] { const std::lock_guard<std::mutex> guard(libraryLock()); });
  EXPECT_EQ(fateOf([&] { write(dictionary); }, 20), "");
  EXPECT_EQ(contentOf(File(m_path).root()), (Content{{"/a", {"7", "7", "7"}}}));
}

TEST_F(WriteTest, FilesAreCopiedValueForValue) {
  const std::string original = m_scratch.path("original.nc");
  {
    const Writer writer(original, NC_NETCDF4);
    const int x = writer.dimension("x", 3);
    const int group = writer.group("g");
    writer.put<short>(writer.variable("a", NC_SHORT, {x}), {3}, {1, 2, 3});
    writer.put<float>(writer.variable("b", NC_FLOAT, {x}, group), {3}, {4, 5, 6}, group);
  }
  OpenOptions options;
  options.windowBytes = 4;
  const File file(original, options);
  write(file.root());
  EXPECT_EQ(contentOf(File(m_path).root()), contentOf(file.root()));
  netcdf::write(file.root(), original);
  EXPECT_EQ(contentOf(File(original).root()), contentOf(file.root()));
}

TEST_F(WriteTest, NullCharactersInTextsAreRefused) {
  EXPECT_EQ(refusalOf(dictionaryOf(row<std::string>("a", "x", {"b", std::string("c\0d", 3)}))),
            "a text of '/a' has a null character, which ends a text in netCDF files");
}

TEST_F(WriteTest, ComplexNumbersAndDictionariesAreRefusedByName) {
  Dictionary group("g");
  group.add(memory::ComplexArray("c", {Axis("x", 1)}, {{1, 2}}));
  EXPECT_EQ(refusalOf(dictionaryOf(std::move(group))),
            "'/g/c' holds values of the type Complex, which netCDF files do not hold");
  EXPECT_EQ(refusalOf(dictionaryOf(
                memory::TypedArray<std::complex<float>>("c", {Axis("x", 1)}, {{1, 2}}))),
            "'/c' holds values of the type Complex, which netCDF files do not hold");
  std::vector<Dictionary> elements;
  elements.emplace_back("e");
  EXPECT_EQ(
      refusalOf(dictionaryOf(memory::DictionaryArray("d", {Axis("x", 1)}, std::move(elements)))),
      "'/d' holds values of the type Dictionary, which netCDF files do not hold");
}

TEST_F(WriteTest, RefusalsComeBeforeAnyValueIsAskedFor) {
  Dictionary dictionary = counting<long>({Axis("x", 3)});
  dictionary.add(memory::ComplexArray("c", {}, {{1, 2}}));
  EXPECT_NE(refusalOf(dictionary), "");
  EXPECT_EQ(dictionary.at<Counting<long>>("a").asked(), 0U);
}

}  // namespace
}  // namespace quillon::netcdf
