// What a failing call or allocation leaves behind while a file is written: what was there.

#include "WriteTesting.h"
#include "support/FaultInjection.h"

namespace quillon::netcdf {
namespace {

class WriteFaultTest : public WriteTest {
 protected:
  void SetUp() override { writeBytes(m_path, BEFORE); }

  /// What stands in the directory, and what was there or how long it is now.
  std::string left() const {
    std::string names;
    for (const std::string& name : m_scratch.entries()) {
      names += name + " ";
    }
    const std::string content = readBytes(m_path);
    return names + (content == BEFORE ? content : std::to_string(content.size()) + " bytes");
  }

  const std::string BEFORE = "what was there";
};

struct CallFailure {};

TEST_F(WriteFaultTest, FailingCallsPassThroughAndLeaveWhatWasThere) {
  long callsLeft = 0;
  const AskedDictionary dictionary([&] {
    if (callsLeft-- == 0) {
      throw CallFailure();
    }
  });
  long failures = 0;
  for (bool failed = true; failed; ++failures) {
    callsLeft = failures;
    failed = false;
    try {
      write(dictionary);
    } catch (const CallFailure&) {
      failed = true;
      ASSERT_EQ(left(), "a.nc " + BEFORE) << failures;
    }
  }
  EXPECT_GT(failures, 20);
  EXPECT_THAT(dumpOf(m_path), testing::HasSubstr("a = 7, 7, 7 ;"));
}

// The arrays have no attributes of their own: a copy of a std::variant of texts and vectors ends
// the process when memory is short in it, as GCC 12's library then destroys what it never made.
TEST_F(WriteFaultTest, FailingAllocationsLeaveWhatWasThere) {
  memory::Dictionary dictionary("d");
  dictionary.add(memory::TypedArray<float>("a", {memory::Axis("x", 2)}, {1, 2})).setUnit("K");
  dictionary.at<memory::ArrayBase>("a").setCoordinates(
      0, std::make_shared<memory::IntArray>(row<long>("x", "x", {1, 2})));
  ::test::AllOrNothing operation([this] { writeBytes(m_path, BEFORE); }, [&] { write(dictionary); },
                                 [this] { return left(); });
  const ::test::Faults faults = ::test::injectEveryFault(operation);
  EXPECT_GT(faults.allocations, 50U);
  ::test::report(faults);
}

}  // namespace
}  // namespace quillon::netcdf
