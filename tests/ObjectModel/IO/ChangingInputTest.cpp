#include <gtest/gtest.h>
#include <object_model/IO.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "support/LyingInput.h"
#include "support/Properties.h"
#include "support/RenderingTest.h"

namespace object_model {
namespace {

[[maybe_unused]] const bool HAS_PARAMETERS = ::test::tryCases(1000);

RC_GTEST_PROP(ChangingInput, LeadsNoExportAstray, ()) {
  test::LyingInput input;
  test::LyingFrame frame(input.whims);
  const auto indexNames = *rc::gen::elementOf(std::vector<std::vector<std::string>>{
      {}, {"t"}, {"t", "u"}, {"u", "t", "v"}, {"t", "t"}, {"t", "u", "v", "w"}});
  input.endures([&] { exportToDataFrame(input.first, &frame, indexNames); });
}

RC_GTEST_PROP(ChangingInput, LeadsNoRenderingAstray, ()) {
  test::LyingInput input;
  const auto frame = std::make_shared<test::LyingFrame>(input.whims);
  const auto maxRows = *rc::gen::element<unsigned long>(0, 1, 3, 4, (1UL << 61U) + 1, ~0UL);
  input.endures([&] { exportDataFrameToString(frame, maxRows); });
  input.endures([&] { exportDataFrameToHtml(frame, maxRows); });
}

RC_GTEST_PROP(ChangingInput, LeadsNoRenderingUnderAnotherLocaleAstray, ()) {
  const test::GermanLocale german;
  test::LyingInput input;
  const auto frame = std::make_shared<test::LyingFrame>(input.whims);
  const auto maxRows = *rc::gen::element<unsigned long>(0, 1, 3, 4, (1UL << 61U) + 1, ~0UL);
  input.endures([&] { exportDataFrameToString(frame, maxRows); });
  input.endures([&] { exportDataFrameToHtml(frame, maxRows); });
}

}  // namespace
}  // namespace object_model
