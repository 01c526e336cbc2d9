#include <fcntl.h>
#include <unistd.h>

#include <ostream>

#include "FileCheck.h"
#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

using testing::HasSubstr;

struct Format {
  const char* name;
  int mode;
  unsigned long sizeBytes;  // of a count in the header
};

void PrintTo(const Format& format, std::ostream* os) { *os << format.name; }

/// A file that is open for reading as long as the object lives.
class ReadDescriptor {
 public:
  explicit ReadDescriptor(const std::string& path)
      : m_id(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}
  ReadDescriptor(const ReadDescriptor&) = delete;
  ReadDescriptor& operator=(const ReadDescriptor&) = delete;
  ~ReadDescriptor() { close(m_id); }

  int id() const { return m_id; }

 private:
  int m_id;
};

class ClassicHeaderTest : public testing::TestWithParam<Format> {
 protected:
  std::string path() const { return m_scratch.path("a.nc"); }

  // Values of many sizes, with and without records; the last ends at the file's end.
  void writeFixedAndRecords() const {
    const Writer writer(path(), GetParam().mode);
    const int time = writer.dimension("time", NC_UNLIMITED);
    const int x = writer.dimension("x", 3);
    writer.text(NC_GLOBAL, "title", "a file to cut");
    const int fixed = writer.variable("fixed", NC_DOUBLE, {x});
    const int bytes = writer.variable("bytes", NC_BYTE, {x});
    const int text = writer.variable("text", NC_CHAR, {time, x});
    const int records = writer.variable("records", NC_SHORT, {time, x});
    writer.text(records, "units", "mm");
    writer.put<double>(fixed, {3}, {1.5, -2.5, 1e300});
    writer.put<signed char>(bytes, {3}, {1, 2, -3});
    writer.put<char>(text, {2, 3}, {'a', 'b', 'c', 'd', 'e', 'f'});
    writer.put<short>(records, {2, 3}, {1, 2, 3, 4, 5, 6});
  }

  void writeOneRecordVariable() const {
    const Writer writer(path(), GetParam().mode);
    const int time = writer.dimension("time", NC_UNLIMITED);
    const int records = writer.variable("records", NC_SHORT, {time});
    writer.put<short>(records, {5}, {11, 12, 13, 14, 15});
  }

  // Opening plus reading all of a file that was cut is an error or brings exactly the right values.
  void expectErrorOrAllWhereverCut() const {
    const std::string whole = readBytes(path());
    const auto content = contentOf(File(path()).root());
    unsigned long errors = 0;
    for (unsigned long length = 0; length < whole.size(); ++length) {
      writeBytes(path(), whole.substr(0, length));
      try {
        EXPECT_EQ(contentOf(File(path()).root()), content) << "cut at " << length;
      } catch (const Error& error) {
        EXPECT_THAT(error.what(), HasSubstr(path())) << "cut at " << length;
        ++errors;
      }
    }
    EXPECT_GE(errors + 3, whole.size());  // but for the padding at the end
  }

  std::string errorAfterPatch(unsigned long position, const std::string& bytes) const {
    std::string file = readBytes(path());
    writeBytes(path(), file.replace(position, bytes.size(), bytes));
    return errorOf([this] { contentOf(File(path()).root()); });
  }

 private:
  Scratch m_scratch;
};

TEST_P(ClassicHeaderTest, SoundFileIsSound) {
  writeFixedAndRecords();
  const unsigned long bytes = readBytes(path()).size();
  EXPECT_EQ(findClassicDamage(ReadDescriptor(path()).id(), bytes), "");
  EXPECT_EQ(CheckedFile(path()).bytes(), bytes);
  EXPECT_THAT(valuesOf(arrayAt(File(path()), "records")),
              testing::ElementsAre("1", "2", "3", "4", "5", "6"));
}

TEST_P(ClassicHeaderTest, FileCutAnywhereIsAnErrorOrWhole) {
  writeFixedAndRecords();
  expectErrorOrAllWhereverCut();
}

TEST_P(ClassicHeaderTest, PackedRecordsCutAnywhereAreAnErrorOrWhole) {
  writeOneRecordVariable();
  expectErrorOrAllWhereverCut();
}

TEST_P(ClassicHeaderTest, FileThatEndsInItsValuesNamesTheVariable) {
  writeOneRecordVariable();
  const std::string whole = readBytes(path());
  const unsigned long end = whole.rfind('\x0f') + 1;  // behind the last value, 15
  writeBytes(path(), whole.substr(0, end - 1));
  EXPECT_EQ(errorOf([this] { const File file(path()); }),
            "Cannot read '" + path() +
                "': it is cut short or damaged: the values of variable 'records' should end at "
                "byte " +
                std::to_string(end) + " and the file has " + std::to_string(end - 1));
}

TEST_P(ClassicHeaderTest, MoreRecordsThanTheFileHoldsAreRefused) {
  writeFixedAndRecords();
  EXPECT_THAT(errorAfterPatch(4 + GetParam().sizeBytes - 1, "\3"), HasSubstr("should end at"));
}

TEST_P(ClassicHeaderTest, AbsurdNumberOfRecordsIsRefused) {
  writeFixedAndRecords();
  EXPECT_THAT(errorAfterPatch(4, "\x10"), HasSubstr("should end at"));
}

TEST_P(ClassicHeaderTest, UnknownNumberOfRecordsIsRefused) {
  writeFixedAndRecords();
  EXPECT_THAT(errorAfterPatch(4, std::string(GetParam().sizeBytes, '\xff')),
              HasSubstr("it does not say how many records it has: its writer did not finish"));
}

TEST_P(ClassicHeaderTest, AbsurdNumberOfDimensionsIsRefused) {
  writeFixedAndRecords();
  EXPECT_THAT(errorAfterPatch(4 + GetParam().sizeBytes + 4, "\x10"),
              HasSubstr("claims more entries than the file has room for"));
}

/// The format's types and the bytes of a value.
std::vector<std::pair<nc_type, unsigned long>> typesOf(const Format& format) {
  std::vector<std::pair<nc_type, unsigned long>> types = {
      {NC_BYTE, 1}, {NC_CHAR, 1}, {NC_SHORT, 2}, {NC_INT, 4}, {NC_FLOAT, 4}, {NC_DOUBLE, 8}};
  if (format.mode == NC_64BIT_DATA) {
    types.insert(types.end(),
                 {{NC_UBYTE, 1}, {NC_USHORT, 2}, {NC_UINT, 4}, {NC_INT64, 8}, {NC_UINT64, 8}});
  }
  return types;
}

TEST_P(ClassicHeaderTest, ValuesOfEachTypeThatAreCutAreRefused) {
  for (const auto& [type, valueBytes] : typesOf(GetParam())) {
    {
      const Writer writer(path(), GetParam().mode);
      const int v = writer.variable("v", type, {writer.dimension("x", 5)});
      writer.put<double>(v, {5}, {1, 2, 3, 4, 5});  // of any type: bytes are all that counts
    }
    const std::string whole = readBytes(path());
    const unsigned long end = whole.size() - (5 * valueBytes + 3) / 4 * 4 + 5 * valueBytes;
    writeBytes(path(), whole.substr(0, end));
    EXPECT_EQ(arrayAt(File(path()), "v").numberOfElements(), type == NC_CHAR ? 1U : 5U) << type;
    writeBytes(path(), whole.substr(0, end - 1));
    EXPECT_EQ(errorOf([this] { const File file(path()); }),
              "Cannot read '" + path() +
                  "': it is cut short or damaged: the values of variable 'v' should end at byte " +
                  std::to_string(end) + " and the file has " + std::to_string(end - 1))
        << type;
  }
}

TEST_P(ClassicHeaderTest, AttributesOfEachTypeAreRead) {
  const std::vector<unsigned long> zeros(5, 0);
  {
    const Writer writer(path(), GetParam().mode);
    const int v = writer.variable("v", NC_BYTE, {});
    for (const int variable : {NC_GLOBAL, v}) {
      for (const auto& [type, valueBytes] : typesOf(GetParam())) {
        const std::string name = "a" + std::to_string(type);
        must(nc_put_att(writer.root(), variable, name.c_str(), type, 5, zeros.data()));
      }
    }
    writer.put<signed char>(v, {}, {7});
  }
  const File file(path());
  EXPECT_EQ(file.root().attributes().size(), typesOf(GetParam()).size());
  EXPECT_EQ(arrayAt(file, "v").attributes(), file.root().attributes());
  EXPECT_THAT(valuesOf(arrayAt(file, "v")), testing::ElementsAre("7"));
}

TEST_P(ClassicHeaderTest, FewMoreDimensionsThanTheFileHasRoomForAreRefused) {
  writeFixedAndRecords();
  const std::size_t bytes = readBytes(path()).size();
  EXPECT_THAT(errorAfterPatch(4 + 2 * GetParam().sizeBytes + 3,
                              std::string(1, static_cast<char>(bytes / 8))),
              HasSubstr("claims more entries than the file has room for"));
}

TEST_P(ClassicHeaderTest, AsManyEntriesAsTheFileHasRoomForAreLookedAt) {
  writeOneRecordVariable();
  const std::string whole = readBytes(path()) + std::string(4000, '\0');
  const unsigned long sizeBytes = GetParam().sizeBytes;
  const unsigned long dimensions = 4 + sizeBytes;
  const unsigned long attributes = dimensions + 8 + 3 * sizeBytes;
  const unsigned long variables = attributes + 4 + sizeBytes;
  const unsigned long rank = whole.find("records") + 8;
  const unsigned long ownAttributes = rank + 2 * sizeBytes;
  struct List {
    unsigned long position;  // of its tag, or of its number of entries where it has none
    unsigned long tagBytes;
    unsigned long entryBytes;
    const char* error;  // of what the entries are then
  };
  for (const List& list : {List{dimensions, 4, 8, "its header is damaged"},
                           List{attributes, 4, 12, "its header is damaged"},
                           List{variables, 4, 28, "its header is damaged"},
                           List{rank, 0, 4, "the records of variable 'records' are not its first"},
                           List{ownAttributes, 4, 12, "its header is damaged"}}) {
    const unsigned long begin = list.position + list.tagBytes;
    const unsigned long most = (whole.size() - begin - sizeBytes) / list.entryBytes;
    const auto errorOfEntries = [&](unsigned long count) {
      std::string bytes = whole;
      bytes.replace(list.position, list.tagBytes, list.tagBytes, '\x63');  // no list's tag
      bytes[begin + sizeBytes - 2] = static_cast<char>(count / 256);
      bytes[begin + sizeBytes - 1] = static_cast<char>(count % 256);
      writeBytes(path(), bytes);
      return errorOf([this] { const File file(path()); });
    };
    EXPECT_THAT(errorOfEntries(most), HasSubstr(list.error)) << list.position;
    EXPECT_THAT(errorOfEntries(most + 1),
                HasSubstr("its header claims more entries than the file has room for"))
        << list.position;
  }
}

TEST_P(ClassicHeaderTest, VariableOfManyDimensionsIsRead) {
  {
    const Writer writer(path(), GetParam().mode);
    const std::vector<int> dimensions(40, writer.dimension("x", 1));
    writer.put<signed char>(writer.variable("v", NC_BYTE, dimensions),
                            std::vector<std::size_t>(40, 1), {7});
  }
  EXPECT_THAT(valuesOf(arrayAt(File(path()), "v")), testing::ElementsAre("7"));
}

TEST_P(ClassicHeaderTest, LongestNameIsRead) {
  const std::string name(NC_MAX_NAME, 'n');
  {
    const Writer writer(path(), GetParam().mode);
    writer.put<short>(writer.variable(name, NC_SHORT, {writer.dimension(name, 1)}), {1}, {7});
  }
  const File file(path());
  EXPECT_THAT(valuesOf(arrayAt(file, name)), testing::ElementsAre("7"));
  EXPECT_EQ(arrayAt(file, name).getInformation()->getAxisInfo(0)->getAxisName(), name);
}

TEST_P(ClassicHeaderTest, NameThatIsLongerIsRefused) {
  for (const std::string name : {"time", "units", "text"}) {  // a dimension's and others'
    writeFixedAndRecords();
    std::string bytes = readBytes(path());
    const std::size_t position = bytes.find(name);
    const std::size_t padded = (name.size() + 3) / 4 * 4;
    bytes.replace(position, padded, std::string(257, 'n') + std::string(3, '\0'));
    bytes.replace(position - 2, 2, "\1\1");  // 257
    writeBytes(path(), bytes);
    EXPECT_EQ(errorOf([this] { const File file(path()); }),
              "Cannot read '" + path() +
                  "': its header has a name of 257 bytes, and names have at most 256")
        << name;
  }
}

TEST_P(ClassicHeaderTest, AbsurdDimensionIsRefused) {
  writeFixedAndRecords();
  const unsigned long name = readBytes(path()).find(std::string("x\0\0\0", 4));
  EXPECT_THAT(errorAfterPatch(name + 4, "\x10"), HasSubstr("should end at"));
}

TEST_P(ClassicHeaderTest, DimensionThatDoesNotExistIsRefused) {
  writeFixedAndRecords();
  const unsigned long sizeBytes = GetParam().sizeBytes;
  const unsigned long name = readBytes(path()).find("fixed");
  const unsigned long dimension = name + 8 + 2 * sizeBytes - 1;  // the last byte of its number, 1
  EXPECT_THAT(errorAfterPatch(dimension, "\2"),
              HasSubstr("variable 'fixed' has a dimension that does not exist"));
}

TEST_P(ClassicHeaderTest, RecordsBehindAnotherDimensionAreRefused) {
  writeFixedAndRecords();
  const unsigned long sizeBytes = GetParam().sizeBytes;
  const unsigned long name = readBytes(path()).find(std::string("text\0", 5));
  const unsigned long second = name + 4 + 3 * sizeBytes - 1;  // the last byte of its number, 1
  EXPECT_THAT(errorAfterPatch(second, std::string(1, '\0')),
              HasSubstr("the records of variable 'text' are not its first dimension"));
}

TEST_P(ClassicHeaderTest, HeaderThatWasCutMeanwhileIsDamage) {
  writeFixedAndRecords();
  const std::string whole = readBytes(path());
  for (const unsigned long length : {4UL, 10UL, 40UL}) {
    writeBytes(path(), whole.substr(0, length));
    const ReadDescriptor file(path());
    EXPECT_EQ(findClassicDamage(file.id(), whole.size()), "its header cannot be read") << length;
    EXPECT_EQ(findClassicDamage(file.id(), length), "it ends within its header") << length;
  }
}

TEST_P(ClassicHeaderTest, ValuesWithinTheHeaderAreRefused) {
  writeOneRecordVariable();
  const unsigned long begin = readBytes(path()).size() - 10;  // five values
  EXPECT_THAT(errorAfterPatch(begin - 1, "\4"),
              HasSubstr("': the values of variable 'records' begin within the header"));
}

TEST_P(ClassicHeaderTest, UnknownTypeIsRefused) {
  writeFixedAndRecords();
  const unsigned long title = readBytes(path()).find("title");
  const int last = GetParam().mode == NC_64BIT_DATA ? NC_UINT64 : NC_DOUBLE;
  for (const int type : {0, last + 1, 99}) {
    EXPECT_THAT(errorAfterPatch(title + 8, std::string("\0\0\0", 3) + static_cast<char>(type)),
                HasSubstr("names a type that does not exist"))
        << type;
  }
}

TEST_P(ClassicHeaderTest, ListBehindAnotherTagThanItsOwnIsRefused) {
  const unsigned long dimensions = 4 + GetParam().sizeBytes;
  const unsigned long attributes = dimensions + 8 + 3 * GetParam().sizeBytes;  // behind "time"
  for (const auto& [position, tag] : {std::pair(dimensions, '\0'), {attributes, '\x0b'}}) {
    writeOneRecordVariable();
    EXPECT_THAT(errorAfterPatch(position + 3, std::string(1, tag)),
                HasSubstr("its header is damaged"))
        << position;
  }
}

TEST_P(ClassicHeaderTest, FlippedBytesNeverCrash) {
  writeFixedAndRecords();
  const std::string whole = readBytes(path());
  for (const int flip : {0xff, 0x80, 0x01}) {
    EXPECT_EQ(fateOf([&] {
                for (unsigned long position = 0; position < whole.size(); ++position) {
                  std::string damaged = whole;
                  damaged[position] = static_cast<char>(damaged[position] ^ flip);
                  writeBytes(path(), damaged);
                  errorOf([this] { contentOf(File(path()).root()); });
                }
              }),
              "")
        << "flip " << flip;
  }
}

TEST_P(ClassicHeaderTest, FileWithoutRecordsIsWhole) {
  {
    const Writer writer(path(), GetParam().mode);
    writer.variable("none", NC_INT, {writer.dimension("time", NC_UNLIMITED)});
  }
  const File file(path());
  EXPECT_EQ(arrayAt(file, "none").numberOfElements(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Formats, ClassicHeaderTest,
                         testing::Values(Format{"Cdf1", 0, 4}, Format{"Cdf2", NC_64BIT_OFFSET, 4},
                                         Format{"Cdf5", NC_64BIT_DATA, 8}),
                         [](const auto& format) { return format.param.name; });

}  // namespace
}  // namespace quillon::netcdf
