#pragma once

#include <object_model/Dictionary.h>
#include <tabra/DataFrameView.h>

#include <string>
#include <vector>

namespace test {

/// What exportToDataFrame does, step by step and without any care for speed: the yardstick for the
/// library's own version, calls on the frame included.
void plainExport(object_model::Dictionary& dictionary, tabra::DataFrameView& frame,
                 const std::vector<std::string>& indexNames);

}  // namespace test
