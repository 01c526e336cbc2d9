#include <gmock/gmock.h>

#include <algorithm>

#include "Support.h"
#include "support/Allocations.h"

namespace quillon::compare {
namespace {

using memory::Dictionary;

/// Entries of most kinds; `more` is what differs.
Dictionary entries(long more) {
  Dictionary result = dictionary(
      "entries", row<double>("x", {1, 2, static_cast<double>(3 + more)}), row<long>("n", {3}),
      dictionary("a group with a long name", row<long>("m", {3 + more})));
  result.add(memory::StringArray("s", {{"x", 1}}, {"a text that needs memory of its own"}));
  result.setAttribute("history", std::string("of a long and winding measurement"));
  return result;
}

bool tellsOfMissingMemory(const Report& report) {
  return std::any_of(
      report.notCompared.begin(), report.notCompared.end(),
      [](const NotCompared& entry) { return entry.reason == "there is not enough memory"; });
}

// A comparison that could not be made must never read as one that found nothing.
TEST(OutOfMemoryTest, NothingIsTheSameAndNothingIsLeft) {
  for (const long more : {0L, 1L}) {
    const Dictionary first = entries(0);
    const Dictionary second = entries(more);
    const Report expected = compare(first, second);
    EXPECT_EQ(expected.same, more == 0);
    bool isTold = true;
    const long failures = ::test::failEachAllocation(
        [&] {
          isTold = true;
          const Report report = compare(first, second);
          const ::test::SparedAllocations spared;
          isTold = tellsOfMissingMemory(report) ? !report.same : lines(report) == lines(expected);
        },
        [&](const ::test::OutOfMemory& outcome) {
          EXPECT_TRUE(isTold);
          EXPECT_EQ(outcome.leakedBlocks, 0);
        });
    EXPECT_TRUE(isTold);
    EXPECT_GE(failures, 10);
  }
}

TEST(OutOfMemoryTest, ThereAreNoLines) {
  const Report report = compare(entries(0), entries(1));
  const long failures = ::test::failEachAllocation([&] { return lines(report); },
                                                   [](const ::test::OutOfMemory& outcome) {
                                                     EXPECT_TRUE(outcome.badAlloc);
                                                     EXPECT_EQ(outcome.leakedBlocks, 0);
                                                   });
  EXPECT_GE(failures, 5);
}

}  // namespace
}  // namespace quillon::compare
