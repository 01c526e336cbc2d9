#pragma once

#include <exception>
#include <string>

#include "support/RecordingDataFrame.h"
#include "support/TableText.h"

namespace test {

/// All that a caller can see of one export, which `exportTo(frame)` makes to a table that holds
/// something already: the error, the calls on the table and the table.
template <class Export>
std::string exportOutcome(const Export& exportTo) {
  RecordingDataFrame frame;
  frame.frame().addRows(0, 3);
  frame.frame().addColumn("old", tabra::DataType(tabra::DataTypeId::Int64));
  frame.frame().addColumn("older", tabra::DataType(tabra::DataTypeId::Int64));
  std::string outcome;
  try {
    exportTo(frame);
  } catch (const std::exception& error) {
    outcome = std::string(error.what()) + "\n";
  }
  for (const std::string& call : frame.calls()) {
    outcome += call + "\n";
  }
  return outcome + tableText(frame.frame());
}

}  // namespace test
