// What the headers promise may run concurrently. The thread sanitizer watches.
#include <gtest/gtest.h>
#include <object_model/ComparisonHelper.h>
#include <object_model/IO.h>
#include <object_model/InvalidCall.h>
#include <object_model/Namespace.h>
#include <object_model/PhysicalInformation.h>
#include <quillon/memory/TypedArray.h>
#include <tabra/MemoryDataFrame.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "support/TableText.h"
#include "support/Threads.h"

namespace object_model {
namespace {

using quillon::memory::Axis;
using quillon::memory::DictionaryDescriptor;
using quillon::memory::DoubleArray;
using quillon::memory::IntArray;
using quillon::memory::StringArray;
using Entries = quillon::memory::Dictionary;
using test::concurrently;

constexpr int THREADS = 8;
constexpr int ROUNDS = 50;

// ctest runs each test in a process of its own, so that these calls are the process's first.
TEST(ConcurrencyTest, FirstCallsOfTheRegistryMeetTheSameOne) {
  std::array<const Namespace*, THREADS> met = {};
  concurrently(THREADS,
               [&met](int k) { met[static_cast<std::size_t>(k)] = &Namespace::instance(); });
  for (const Namespace* registry : met) {
    EXPECT_EQ(registry, &Namespace::instance());
  }
  EXPECT_EQ(Namespace::instance().getNumOfObject(), 0U);
}

void expectRegistered(Namespace& registry, const DictionaryDescriptor& first,
                      const DictionaryDescriptor& second) {
  const Namespace& reader = registry;
  EXPECT_EQ(reader.getNumOfObject(), 2U);
  EXPECT_EQ(reader.getObjectName(1), "b");
  EXPECT_EQ(reader.getInfo(0UL), &first);
  EXPECT_EQ(registry.getInfo("b"), &second);
  EXPECT_EQ(reader.getInfoByName("a"), &first);
  EXPECT_THROW(registry.getInfo("c"), InvalidCall);
}

TEST(ConcurrencyTest, RegistryMayBeReadByManyThreads) {
  const DictionaryDescriptor first("first");
  const DictionaryDescriptor second("second");
  Namespace::instance().registerObject("a", &first);
  Namespace::instance().registerObject("b", &second);
  concurrently(THREADS, [&](int /*k*/) {
    for (int round = 0; round < ROUNDS; ++round) {
      expectRegistered(Namespace::instance(), first, second);
    }
  });
}

TEST(ConcurrencyTest, PhysicalInformationMayBeDeterminedByManyThreads) {
  concurrently(THREADS, [](int /*k*/) {
    for (int round = 0; round < ROUNDS; ++round) {
      const PhysicalInformation area = helper::determinePhysicalInformation("AREA");
      EXPECT_EQ(area, PhysicalInformation::AREA);
      EXPECT_EQ(helper::determinePhysicalDimension(area), PhysicalDimension::LENGTH_POWER_2);
      EXPECT_THROW(helper::determinePhysicalInformation("area"), InvalidCall);
    }
  });
}

/// Nested, with arrays of numbers that a table can hold.
Entries measurements(double last) {
  Entries inner("inner");
  inner.add(StringArray("s", {Axis("x", 2)}, {"one", "two"}));
  inner.add(DoubleArray("d", {Axis("x", 2)}, {0.5, last}));
  Entries entries("entries");
  entries.add(IntArray("i", {Axis("x", 2), Axis("y", 2)}, {1, 2, 3, 4}));
  entries.add(DoubleArray("d", {Axis("x", 2)}, {0.5, 1.5}));
  entries.add(std::move(inner));
  return entries;
}

TEST(ConcurrencyTest, SharedObjectsMayBeComparedByManyThreads) {
  const Entries first = measurements(1.5);
  const Entries second = measurements(2.5);
  const Array& array = *first.data("i")->asArray();
  concurrently(THREADS, [&](int /*k*/) {
    for (int round = 0; round < ROUNDS; ++round) {
      std::string message;
      EXPECT_TRUE(helper::areSameArrays(array, *second.data("i")->asArray(),
                                        helper::ComparisonType::Exact, 0, &message));
      EXPECT_TRUE(helper::areSameDictionaries(first, second, helper::ComparisonType::Absolute, 1,
                                              &message));
      EXPECT_TRUE(helper::areSimilarDictionaries(first, second, &message));
      EXPECT_EQ(message, "");
      EXPECT_FALSE(
          helper::areSameDictionaries(first, second, helper::ComparisonType::Exact, 0, &message));
      EXPECT_EQ(message,
                "Dictionary 'entries': Array 'd': The arrays 'd' have different values at the "
                "position (1)': '1.500000' and '2.500000'.");
    }
  });
}

TEST(ConcurrencyTest, SharedObjectsMayBeExportedIntoOwnFramesByManyThreads) {
  Entries shared = measurements(1.5);
  concurrently(THREADS, [&shared](int /*k*/) {
    for (int round = 0; round < ROUNDS; ++round) {
      tabra::MemoryDataFrame frame;
      exportToDataFrame(shared, &frame, {"x"});
      EXPECT_EQ(test::tableText(frame),
                "Index [x] () uint: 0 1\n"
                "i[y=0] () int: 1 2\n"
                "i[y=1] () int: 3 4\n"
                "d () double: 0.5 1.5\n"
                "2 rows\n");
    }
  });
}

TEST(ConcurrencyTest, SharedFrameMayBeRenderedByManyThreads) {
  Entries entries = measurements(1.5);
  const auto frame = std::make_shared<tabra::MemoryDataFrame>();
  exportToDataFrame(entries, frame.get(), {"x"});
  concurrently(THREADS, [&frame](int /*k*/) {
    for (int round = 0; round < ROUNDS; ++round) {
      EXPECT_EQ(exportDataFrameToString(frame, 1),
                "Index [x]      i[y=0]         i[y=1]         d\n"
                "0              1              3              0.5\n"
                "...\n");
      EXPECT_EQ(exportDataFrameToHtml(frame, 0),
                "<table>\n"
                "    <thead>\n"
                "        <tr>\n"
                "<th>Index [x]</th><th>i[y=0]</th><th>i[y=1]</th><th>d</th>        </tr>\n"
                "    </thead>\n"
                "    <tbody>\n"
                "        <tr>\n"
                "            <tr><th>0</th><th>1</th><th>3</th><th>0.5</th>            </tr>\n"
                "            <tr><th>1</th><th>2</th><th>4</th><th>1.5</th>            </tr>\n"
                "        </tr>\n"
                "    </tbody>\n"
                "</table>\n");
    }
  });
}

}  // namespace
}  // namespace object_model
