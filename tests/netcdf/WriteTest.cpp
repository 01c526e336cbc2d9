#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <random>
#include <stdexcept>
#include <thread>
#include <utility>

#include "WriteTesting.h"
#include "support/PseudoTerminal.h"

namespace quillon::netcdf {
namespace {

namespace fs = std::filesystem;
using memory::Axis;
using memory::Dictionary;
using testing::ElementsAre;
using testing::IsEmpty;

Dictionary smallDictionary() { return dictionaryOf(row<int>("a", "x", {1, 2, 3})); }

const std::string SMALL_DUMP = R"(netcdf a {
dimensions:
	x = 3 ;
variables:
	int a(x) ;
data:

 a = 1, 2, 3 ;
}
)";

TEST_F(WriteTest, EmptyDictionaryIsAFileWithoutAnything) {
  EXPECT_EQ(dump(Dictionary("d")), "netcdf a {\n}\n");
}

TEST_F(WriteTest, ArraysOfAllKindsStandInTheFileAsPeopleExpectThem) {
  Dictionary dictionary("measured", "Two days at sea");
  dictionary.setAttribute("Conventions", "CF-1.8");
  memory::TypedArray<float> temperature("temperature", {Axis("lon", 3), Axis("time", 2)},
                                        {280.5F, 281, std::nanf(""), 283, 284, 285});
  temperature.setUnit("K");
  temperature.setDescription("Temperature of the water");
  temperature.setAttribute("valid_range", std::vector<float>{270, 310});
  temperature.setCoordinates(
      0, std::make_shared<memory::DoubleArray>(row<double>("lon", "lon", {10, 20, 30})));
  dictionary.add(std::move(temperature));
  dictionary.add(memory::BooleanArray("is_day", {Axis("time", 2)}, {true, false}));
  dictionary.add(memory::StringArray("ship", {}, {"Ærø"}));
  Dictionary cells("cells", "Found by threshold");
  cells.add(row<unsigned short>("area", "label", {7, 8}));
  dictionary.add(std::move(cells));
  EXPECT_EQ(dump(dictionary), R"(netcdf a {
dimensions:
	time = 2 ;
	lon = 3 ;
variables:
	double lon(lon) ;
		lon:_FillValue = NaN ;
	float temperature(time, lon) ;
		temperature:_FillValue = NaNf ;
		temperature:long_name = "Temperature of the water" ;
		temperature:units = "K" ;
		temperature:valid_range = 270.f, 310.f ;
	byte is_day(time) ;
		is_day:dtype = "bool" ;
	string ship ;

// global attributes:
		:title = "Two days at sea" ;
		:Conventions = "CF-1.8" ;
data:

 lon = 10, 20, 30 ;

 temperature =
  280.5, 281, _,
  283, 284, 285 ;

 is_day = 1, 0 ;

 ship = "Ærø" ;

group: cells {
  dimensions:
  	label = 2 ;
  variables:
  	ushort area(label) ;

  // group attributes:
  		:title = "Found by threshold" ;
  data:

   area = 7, 8 ;
  } // group cells
}
)");
}

TEST_F(WriteTest, NumbersAreCompressedWhereThatIsAskedFor) {
  const Dictionary dictionary =
      dictionaryOf(memory::IntArray("a", {Axis("x", 100)}, std::vector<long>(100, 7)),
                   memory::IntArray("single", {}, {1}), row<std::string>("text", "x2", {"b"}));
  const auto storageOf = [&](const WriteOptions& options) {
    write(dictionary, options);
    return printedBy("'" NCDUMP "' -hs '" + m_path +
                     "' | grep -oE '[a-z]+:_(Storage|DeflateLevel|Shuffle) = [^ ]*'")
        .text;
  };
  EXPECT_EQ(storageOf({}),
            "a:_Storage = \"contiguous\"\nsingle:_Storage = \"contiguous\"\n"
            "text:_Storage = \"contiguous\"\n");
  EXPECT_EQ(storageOf({9, true}),
            "a:_Storage = \"chunked\"\na:_Shuffle = \"true\"\na:_DeflateLevel = 9\n"
            "single:_Storage = \"contiguous\"\ntext:_Storage = \"contiguous\"\n");
  EXPECT_EQ(storageOf({1, false}),
            "a:_Storage = \"chunked\"\na:_DeflateLevel = 1\n"
            "single:_Storage = \"contiguous\"\ntext:_Storage = \"contiguous\"\n");
}

TEST_F(WriteTest, NothingIsCompressedUnlessAskedForAndThenItIsShuffled) {
  EXPECT_EQ(WriteOptions().deflate, 0);
  EXPECT_TRUE(WriteOptions().shuffle);
}

TEST_F(WriteTest, LevelsOutsideTheirRangeAreRefused) {
  for (const int level : {-1, 10}) {
    EXPECT_EQ(errorOf([&] {
                write(smallDictionary(), {level, true});
              }),
              "Cannot write '" + m_path + "': the level of compression must be 0 to 9, not " +
                  std::to_string(level));
  }
  EXPECT_THAT(m_scratch.entries(), IsEmpty());
}

TEST_F(WriteTest, NewFileIsThereAloneWithThePermissionsOfNewFiles) {
  const mode_t mask = umask(027);
  write(smallDictionary());
  umask(mask);
  EXPECT_THAT(m_scratch.entries(), ElementsAre("a.nc"));
  EXPECT_EQ(fs::status(m_path).permissions(), static_cast<fs::perms>(0640));
}

TEST_F(WriteTest, FileThatWasThereIsReplacedAndKeepsItsPermissions) {
  writeBytes(m_path, "something else");
  for (const auto permissions : {static_cast<fs::perms>(0604), static_cast<fs::perms>(0751)}) {
    fs::permissions(m_path, permissions);
    EXPECT_EQ(dump(smallDictionary()), SMALL_DUMP);
    EXPECT_EQ(fs::status(m_path).permissions(), permissions);
  }
}

TEST_F(WriteTest, LinksStayAndLeadToTheFile) {
  fs::create_symlink("a.nc", m_scratch.path("link"));
  netcdf::write(smallDictionary(), m_scratch.path("link"));
  EXPECT_EQ(dumpOf(m_path), SMALL_DUMP);
  netcdf::write(dictionaryOf(), m_scratch.path("link"));
  EXPECT_EQ(dumpOf(m_path), "netcdf a {\n}\n");
  EXPECT_TRUE(fs::is_symlink(m_scratch.path("link")));
  EXPECT_THAT(m_scratch.entries(), ElementsAre("a.nc", "link"));
}

TEST_F(WriteTest, OddPathsLeadToTheFileTheyName) {
  for (const char* name : {" blank", "a b.nc", "[log]x#y", "ä:%20&c", "file:x"}) {
    netcdf::write(smallDictionary(), m_scratch.path(name));
    EXPECT_THAT(m_scratch.entries(), ElementsAre(name));
    fs::remove(m_scratch.path(name));
  }
}

struct PathCase {
  const char* rule;
  std::string path;  // below the scratch directory where it does not begin with a slash
  std::string reason;
};
void PrintTo(const PathCase& c, std::ostream* os) { *os << c.rule; }

class WritePathTest : public WriteTest, public testing::WithParamInterface<PathCase> {};

TEST_P(WritePathTest, IsRefused) {
  mkfifo(m_scratch.path("pipe").c_str(), 0600);
  const std::string& name = GetParam().path;
  const std::string path =
      name.empty() || name.front() == '/' ? name : m_scratch.path() + name.substr(1);
  const AskedDictionary dictionary([] { ADD_FAILURE() << "the dictionary is asked in vain"; });
  EXPECT_EQ(errorOf([&] { netcdf::write(dictionary, path); }),
            std::string("Cannot write '") + path.c_str() + "': " + GetParam().reason);
  EXPECT_THAT(m_scratch.entries(), ElementsAre("pipe"));
}

INSTANTIATE_TEST_SUITE_P(
    Rules, WritePathTest,
    testing::ValuesIn(std::vector<PathCase>{
        {"Empty", "", "there is no file of no name"},
        {"Directory", ".", "it is a directory"},
        {"Pipe", "./pipe", "it is not a regular file"},
        {"Descriptor", "/dev/fd/1", "it is not a regular file"},
        {"MissingDirectory", "./none/a.nc", "No such file or directory"},
        {"FileAsDirectory", "./pipe/a.nc", "Not a directory"},
        {"Backslash", "./a\\b",
         "its path has a backslash, which the netCDF library takes for a slash"},
        {"NullCharacter", std::string("./a\0b", 5),
         "its name goes on behind a null character, which no file's does"},
    }),
    [](const auto& c) { return c.param.rule; });

TEST_F(WriteTest, DevicesAreRefused) {
  const test::PseudoTerminal terminal;
  EXPECT_EQ(errorOf([&] { netcdf::write(smallDictionary(), terminal.path()); }),
            "Cannot write '" + terminal.path() + "': it is not a regular file");
}

TEST_F(WriteTest, FilesThatAreNamedByADescriptorAreRefused) {
  const int file = open(m_path.c_str(), O_RDWR | O_CREAT, 0600);
  const int input = dup(0);
  dup2(file, 0);
  for (const int descriptor : {0, file}) {
    const std::string path = "/dev/fd/" + std::to_string(descriptor);
    EXPECT_EQ(errorOf([&] { netcdf::write(smallDictionary(), path); }),
              "Cannot write '" + path + "': it is not a regular file");
  }
  dup2(input, 0);
  close(input);
  close(file);
  EXPECT_EQ(readBytes(m_path), "");
}

/// An array that fails when it is asked for its second value.
class FailingArray final : public memory::ValueArray<double> {
 public:
  struct Failure {};
  FailingArray() : ValueArray("bad", {Axis("y", 2)}) {}
  double valueAt(const object_model::Tuple& index) const override {
    return index[0] == 0 ? 1 : throw Failure();
  }
};

TEST_F(WriteTest, WhatAnArrayThrowsPassesThroughAndLeavesWhatWasThere) {
  write(smallDictionary());
  Dictionary bad = smallDictionary();
  bad.add(std::make_unique<FailingArray>());
  EXPECT_THROW(write(bad), FailingArray::Failure);
  EXPECT_THAT(m_scratch.entries(), ElementsAre("a.nc"));
  EXPECT_EQ(dumpOf(m_path), SMALL_DUMP);
}

long descriptorsOpen() {
  const fs::directory_iterator files("/proc/self/fd");
  return std::distance(begin(files), end(files));
}

TEST_F(WriteTest, FilesThatCannotBeWrittenAreClosed) {
  Dictionary bad = smallDictionary();
  bad.add(std::make_unique<FailingArray>());
  const long before = descriptorsOpen();
  for (int k = 0; k < 3; ++k) {
    EXPECT_THROW(write(bad), FailingArray::Failure);
  }
  EXPECT_EQ(descriptorsOpen(), before);
}

TEST_F(WriteTest, FileThatIsReadIsWrittenAnewAndKeepsItsValuesForItsReader) {
  write(smallDictionary());
  const File file(m_path);
  Dictionary more("more");
  more.add(row<int>("b", "y", {9}));
  Dictionary both("both");
  both.add(std::move(more));
  write(file.root());
  EXPECT_EQ(dumpOf(m_path), SMALL_DUMP);
  write(both);
  EXPECT_EQ(contentOf(file.root()),
            (std::map<std::string, std::vector<std::string>>{{"/a", {"1", "2", "3"}}}));
  EXPECT_EQ(contentOf(File(m_path).root()),
            (std::map<std::string, std::vector<std::string>>{{"/more/b", {"9"}}}));
}

TEST_F(WriteTest, SeveralThreadsWriteAtATime) {
  std::vector<std::thread> threads;
  for (int k = 0; k < 4; ++k) {
    threads.emplace_back([this, k] {
      for (int times = 0; times < 5; ++times) {
        netcdf::write(smallDictionary(), m_scratch.path(k < 2 ? "a.nc" : "b.nc"));
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_THAT(m_scratch.entries(), ElementsAre("a.nc", "b.nc"));
  EXPECT_EQ(dumpOf(m_path), SMALL_DUMP);
}

/// Ends the process by exit(), so that libhdf5 tidies up, with 0 where writing fails as it should.
[[noreturn]] void writeWithLittleRoom(const Dictionary& dictionary, const std::string& path,
                                      int deflate, rlim_t most) {
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit limit = {};
  getrlimit(RLIMIT_FSIZE, &limit);
  const rlim_t before = std::exchange(limit.rlim_cur, most);
  setrlimit(RLIMIT_FSIZE, &limit);
  const std::string error = errorOf([&] { netcdf::write(dictionary, path, {deflate, true}); });
  // What counts the lines that were run writes that down when the process ends.
  limit.rlim_cur = before;
  setrlimit(RLIMIT_FSIZE, &limit);
  std::exit(error == "Cannot write '" + path + "': File too large" ? 0 : 1);
}

TEST_F(WriteTest, WantOfRoomOnTheDiskIsNamedAndLeavesWhatWasThere) {
  write(smallDictionary());
  std::vector<double> noise(3000000);
  std::mt19937_64 random;
  std::generate(noise.begin(), noise.end(), [&] { return static_cast<double>(random()); });
  const Dictionary dictionary = dictionaryOf(
      memory::DoubleArray::view("a", {Axis("x", noise.size())}, noise.data(), noise.size()),
      row<std::string>("b", "y", std::vector<std::string>(1000, std::string(1000, 'b'))));
  for (const int deflate : {0, 1}) {
    for (const rlim_t most : {1000UL, 100000UL, 2000000UL, 10000000UL, 25000000UL}) {
      EXPECT_EQ(fateOf([&] { writeWithLittleRoom(dictionary, m_path, deflate, most); }), "")
          << deflate << " " << most;
    }
  }
  EXPECT_THAT(m_scratch.entries(), ElementsAre("a.nc"));
  EXPECT_EQ(dumpOf(m_path), SMALL_DUMP);
}

struct RoomCase {
  const char* rule;
  std::function<void(Dictionary& dictionary)> fill;
  rlim_t little;
  rlim_t enough;
};
void PrintTo(const RoomCase& c, std::ostream* os) { *os << c.rule; }

class WriteRoomNeededTest : public WriteTest, public testing::WithParamInterface<RoomCase> {};

TEST_P(WriteRoomNeededTest, IsKnownBeforeItIsWritten) {
  Dictionary dictionary("d");
  GetParam().fill(dictionary);
  for (const int deflate : {0, 1}) {
    const FileLimit limit(GetParam().little);
    EXPECT_EQ(errorOf([&] {
                write(dictionary, {deflate, true});
              }),
              "Cannot write '" + m_path + "': File too large");
  }
  const FileLimit limit(GetParam().enough);
  EXPECT_EQ(refusalOf(dictionary), "");
}

template <class Add>
RoomCase manyOf(const char* rule, unsigned long count, rlim_t little, const Add& add) {
  return {rule,
          [=](Dictionary& dictionary) {
            for (unsigned long k = 0; k < count; ++k) {
              add(dictionary, "n" + std::to_string(k));
            }
          },
          little, 5000000};
}

INSTANTIATE_TEST_SUITE_P(
    Rules, WriteRoomNeededTest,
    testing::ValuesIn(std::vector<RoomCase>{
        manyOf("Groups", 300, 150000,
               [](Dictionary& dictionary, const std::string& name) {
                 dictionary.add(Dictionary(name));
               }),
        manyOf("Arrays", 300, 150000,
               [](Dictionary& dictionary, const std::string& name) {
                 dictionary.add(memory::TypedArray<int>(name, {}, {1}));
               }),
        manyOf("Axes", 8, 220000,
               [](Dictionary& dictionary, const std::string& name) {
                 std::vector<Axis> axes;
                 for (int k = 0; k < 30; ++k) {
                   axes.emplace_back(name + "_" + std::to_string(k), 1);
                 }
                 dictionary.add(memory::TypedArray<int>(name, std::move(axes), {1}));
               }),
        manyOf("Attributes", 300, 150000,
               [](Dictionary& dictionary, const std::string& name) {
                 dictionary.setAttribute(name, std::vector<int>{1});
               }),
        manyOf("AttributeOfManyNumbers", 1, 150000,
               [](Dictionary& dictionary, const std::string& name) {
                 dictionary.setAttribute(name, std::vector<long>(40000));
               }),
        manyOf("AttributeOfManyTexts", 1, 150000,
               [](Dictionary& dictionary, const std::string& name) {
                 dictionary.setAttribute(name, std::vector<std::string>(5000));
               }),
        manyOf("AttributeOfALongText", 1, 150000,
               [](Dictionary& dictionary, const std::string& name) {
                 dictionary.setAttribute(name, std::vector<std::string>{std::string(200000, 'a')});
               }),
        manyOf("AttributeOfAnArray", 1, 160000,
               [](Dictionary& dictionary, const std::string& name) {
                 memory::TypedArray<int> array(name, {}, {1});
                 array.setAttribute(name, std::vector<long>(40000));
                 dictionary.add(std::move(array));
               }),
        {"Numbers",
         [](Dictionary& dictionary) {
           dictionary.add(row<double>("a", "x", std::vector<double>(100000)));
         },
         800000, 970000},
        {"Booleans",
         [](Dictionary& dictionary) {
           dictionary.add(
               memory::BooleanArray("a", {Axis("x", 1000000)}, std::vector<bool>(1000000)));
         },
         1000000, 1170000},
        {"Texts",
         [](Dictionary& dictionary) {
           dictionary.add(
               row<std::string>("a", "x", std::vector<std::string>(2000, std::string(100, 'a'))));
         },
         400000, 490000},
    }),
    [](const auto& c) { return c.param.rule; });

/// An array of so many values that they are not made.
class EndlessArray final : public memory::ValueArray<double> {
 public:
  explicit EndlessArray(unsigned long size) : ValueArray("a", {Axis("x", size)}) {}
  double valueAt(const object_model::Tuple& /*index*/) const override { return 0; }
};

TEST_F(WriteTest, WhatTheLibraryDoesNotHoldIsNamed) {
  EXPECT_EQ(refusalOf(dictionaryOf(
                memory::TypedArray<int>("a", std::vector<Axis>(33, Axis("x", 1)), {1}))),
            "'/a' cannot be written (NetCDF: NC_MAX_DIMS exceeded)");
  Dictionary dictionary("d");
  dictionary.add(std::make_unique<EndlessArray>(1UL << 61U));
  // In a process of its own, as libnetcdf gives no memory back when it fails there.
  EXPECT_EQ(fateOf([&] {
              requireError(refusalOf(dictionary),
                           "its groups and variables cannot be written (NetCDF: HDF error)");
            }),
            "");
}

TEST_F(WriteTest, WantOfDescriptorsIsNamed) {
  if (!MEMORY_IS_LIMITED) {
    GTEST_SKIP() << "the undefined-behaviour sanitizer needs descriptors to look at objects";
  }
  const int next = dup(0);
  close(next);
  rlimit limit = {};
  getrlimit(RLIMIT_NOFILE, &limit);
  const rlim_t before = limit.rlim_cur;
  std::vector<std::string> refusals;
  for (limit.rlim_cur = static_cast<rlim_t>(next); refusals.empty() || !refusals.back().empty();
       ++limit.rlim_cur) {
    setrlimit(RLIMIT_NOFILE, &limit);
    const std::string error = errorOf([this] { write(smallDictionary()); });
    if (refusals.empty() || refusals.back() != error) {
      refusals.push_back(error);
    }
  }
  limit.rlim_cur = before;
  setrlimit(RLIMIT_NOFILE, &limit);
  const std::string prefix = "Cannot write '" + m_path + "': ";
  EXPECT_THAT(refusals, ElementsAre(prefix + "Too many open files",
                                    testing::StartsWith(prefix + "it cannot be made ("), ""));
}

/// An array behind whose values no file may grow any more.
class LastOfAll final : public memory::ValueArray<double> {
 public:
  LastOfAll() : ValueArray("a", {}) {}
  double valueAt(const object_model::Tuple& /*index*/) const override {
    std::signal(SIGXFSZ, SIG_IGN);
    static const FileLimit limit(100);
    return 1;
  }
};

TEST_F(WriteTest, FileThatCannotBeCompletedIsNamedAndLeavesWhatWasThere) {
  write(smallDictionary());
  Dictionary dictionary("d");
  dictionary.add(std::make_unique<LastOfAll>());
  const auto fail = [&] {
    requireError(errorOf([&] { write(dictionary); }),
                 "Cannot write '" + m_path + "': it cannot be completed (File too large)");
  };
  EXPECT_EQ(fateOf(fail), "");
  EXPECT_THAT(m_scratch.entries(), ElementsAre("a.nc"));
  EXPECT_EQ(dumpOf(m_path), SMALL_DUMP);
}

TEST_F(WriteTest, FileThatMayNotBeWrittenIsNotReplaced) {
  write(smallDictionary());
  fs::permissions(m_scratch.path(), fs::perms::all);
  fs::permissions(m_path, static_cast<fs::perms>(0444));
  const auto fail = [&] {
    if (getuid() == 0 && setuid(65534) != 0) {  // root may write all files
      throw std::runtime_error("the test is still root's");
    }
    requireError(errorOf([&] { write(smallDictionary()); }),
                 "Cannot write '" + m_path + "': Permission denied");
  };
  EXPECT_EQ(fateOf(fail), "");
}

TEST_F(WriteTest, RoomThatWasNotNeededIsGivenBack) {
  write(dictionaryOf(memory::IntArray("a", {Axis("x", 100000)}, std::vector<long>(100000))),
        {9, true});
  struct stat status = {};
  ASSERT_EQ(stat(m_path.c_str(), &status), 0);
  EXPECT_LE(status.st_blocks * 512, 100000);
}

}  // namespace
}  // namespace quillon::netcdf
