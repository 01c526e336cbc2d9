#include <netcdf.h>

#include <functional>
#include <limits>
#include <ostream>

#include "Encoding.h"
#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

constexpr double NAN_SCALE = std::numeric_limits<double>::quiet_NaN();

Encoding packedShorts() {
  Encoding encoding;
  encoding.stored = NC_SHORT;
  encoding.result = NC_DOUBLE;
  encoding.isPacked = true;
  encoding.scale = 0.5;
  encoding.offset = 1;
  encoding.missing = {std::vector<short>{-9}, std::vector<double>{1e9, 7.5}};
  return encoding;
}

struct AlikeCase {
  const char* rule;
  std::function<void(Encoding& first, Encoding& second)> change;
  bool areAlike;
};

void PrintTo(const AlikeCase& c, std::ostream* os) { *os << c.rule; }

class AlikeEncodingsTest : public testing::TestWithParam<AlikeCase> {};

TEST_P(AlikeEncodingsTest, MakeTheSameOfTheSameBytes) {
  Encoding first = packedShorts();
  Encoding second = packedShorts();
  GetParam().change(first, second);
  EXPECT_EQ(decodeAlike(first, second), GetParam().areAlike);
  EXPECT_EQ(decodeAlike(second, first), GetParam().areAlike);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, AlikeEncodingsTest,
    testing::Values(
        AlikeCase{"Equal", [](Encoding&, Encoding&) {}, true},
        AlikeCase{"OtherAttributesTold",
                  [](Encoding&, Encoding& second) { second.consumed = {"scale_factor"}; }, true},
        AlikeCase{"StoredWithoutSign",
                  [](Encoding&, Encoding& second) { second.stored = NC_USHORT; }, false},
        AlikeCase{"NotPacked", [](Encoding&, Encoding& second) { second.isPacked = false; }, false},
        AlikeCase{"OtherScale", [](Encoding&, Encoding& second) { second.scale = 0.25; }, false},
        AlikeCase{"ScaleOfTheOtherSign", [](Encoding&, Encoding& second) { second.scale = -0.5; },
                  false},
        AlikeCase{"ScalesThatAreNaN",
                  [](Encoding& first, Encoding& second) {
                    first.scale = NAN_SCALE;
                    second.scale = NAN_SCALE;
                  },
                  true},
        AlikeCase{"OneScaleThatIsNaN",
                  [](Encoding&, Encoding& second) { second.scale = NAN_SCALE; }, false},
        AlikeCase{"OtherOffset", [](Encoding&, Encoding& second) { second.offset = 2; }, false},
        AlikeCase{"OffsetsOfBothZeros",
                  [](Encoding& first, Encoding& second) {
                    first.offset = 0.0;
                    second.offset = -0.0;
                  },
                  false},
        AlikeCase{"OtherMissingInteger",
                  [](Encoding&, Encoding& second) { second.missing[0] = std::vector<short>{-8}; },
                  false},
        AlikeCase{"OtherMissingFraction",
                  [](Encoding&, Encoding& second) {
                    second.missing[1] = std::vector<double>{1e9, 8.5};
                  },
                  false},
        AlikeCase{"FewerMissingNumbers",
                  [](Encoding&, Encoding& second) { second.missing[1] = std::vector<double>{1e9}; },
                  false},
        AlikeCase{"MissingNumbersOfAnotherType",
                  [](Encoding&, Encoding& second) { second.missing[0] = std::vector<int>{-9}; },
                  false},
        AlikeCase{"MissingNaN",
                  [](Encoding& first, Encoding& second) {
                    first.missing[0] = std::vector<float>{std::numeric_limits<float>::quiet_NaN()};
                    second.missing[0] = std::vector<float>{std::numeric_limits<float>::quiet_NaN()};
                  },
                  true},
        AlikeCase{"OneMissingNaN",
                  [](Encoding& first, Encoding& second) {
                    first.missing[0] = std::vector<float>{std::numeric_limits<float>::quiet_NaN()};
                    second.missing[0] = std::vector<float>{1};
                  },
                  false},
        AlikeCase{
            "OneMissingAttributeMore",
            [](Encoding&, Encoding& second) { second.missing.emplace_back(std::vector<short>{1}); },
            false}),
    [](const auto& c) { return c.param.rule; });

TEST(EncodingTest, NothingIsMadeOfValuesThatAreNotDecoded) {
  StoredForm form;
  form.base = NC_SHORT;
  OpenOptions options;
  options.decode = false;
  const Encoding encoding = encodingOf(form, {{"scale_factor", std::vector<double>{2}}}, options);
  EXPECT_EQ(encoding.stored, NC_SHORT);
  EXPECT_EQ(encoding.result, NC_SHORT);
  EXPECT_FALSE(encoding.changesNumbers());
}

}  // namespace
}  // namespace quillon::netcdf
