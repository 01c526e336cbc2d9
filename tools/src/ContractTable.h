#pragma once

#include <quillon/tables/ContractPlan.h>

#include <optional>
#include <string>

#include "Arguments.h"

namespace quillon::tools {

/// A table of the library's own export.
struct ContractTable {
  FileGroup input;
  tables::ContractRequest request;
  unsigned long maxRows = 10;  ///< 0 for all
  bool isHtml = false;
  bool isRaw = false;  ///< values as they are stored
  std::optional<std::string> output;
};

/// Prints what exportToDataFrame with exportDataFrameToString or exportDataFrameToHtml gives, to
/// the byte, but reads only what the rows need. At a terminal, what it would obey is escaped.
/// @return the exit status. @throws Failure, tables::Error and what reading throws.
int show(const ContractTable& table);

}  // namespace quillon::tools
