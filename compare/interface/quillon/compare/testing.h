/// @file
/// Comparison in tests that use googletest, which is to be linked beside quillon::compare.
#pragma once

#include <gtest/gtest.h>
#include <quillon/compare/Compare.h>
#include <quillon/compare/Text.h>

namespace quillon {

/// For `EXPECT_TRUE(quillon::same(actual, expected))`: whether both objects are the same and all
/// was compared; the failure's text is the lines of the report. As for `compare::compare`.
inline ::testing::AssertionResult same(const object_model::Data& actual,
                                       const object_model::Data& expected,
                                       const compare::Options& options = {}) {
  const compare::Report report = compare::compare(actual, expected, options);
  if (report.same) {
    return ::testing::AssertionSuccess() << compare::text(report);
  }
  return ::testing::AssertionFailure() << compare::text(report);
}

}  // namespace quillon
