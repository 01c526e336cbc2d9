/// @file
/// One dictionary of measurements as a table, with one, two and three axes as its row index,
/// printed as text and as HTML.
#include <object_model/IO.h>
#include <quillon/memory/TypedArray.h>
#include <tabra/MemoryDataFrame.h>

#include <iostream>
#include <memory>
#include <string>
#include <vector>

using object_model::AxisType;
using namespace quillon::memory;

int main() {
  // Values stand with dimension 0 varying fastest: here time, then label, then channel.
  const Axis time(AxisType::Time, 2);
  const Axis label(AxisType::Label, 3);
  const Axis channel(AxisType::Channel, 2);
  Dictionary cells("cells");
  cells.add(DoubleArray("exposure", {time}, {0.1, 0.25})).setUnit("s");
  cells.add(UIntArray("area", {time, label}, {212, 215, 96, 97, 154, 150})).setUnit("um2");
  cells.add(DoubleArray("intensity", {time, label, channel},
                        {0.51, 0.48, 0.77, 0.75, 0.95, 0.92, 1.02, 1.01, 1.31, 1.28, 0.66, 0.64}));

  // Every export replaces what the table held before.
  const auto table = std::make_shared<tabra::MemoryDataFrame>();

  // A row for each time; labels and channels are spread over columns.
  object_model::exportToDataFrame(cells, table.get(), {"time"});
  std::cout << "index time:\n" << object_model::exportDataFrameToString(table, 0);

  // A row for each time and label, time running fastest; the exposure, which has no label, repeats.
  object_model::exportToDataFrame(cells, table.get(), {"time", "label"});
  std::cout << "\nindex time, label:\n" << object_model::exportDataFrameToString(table, 0);

  // A row for each value of the intensity. Three index axes are the most that can be filled.
  object_model::exportToDataFrame(cells, table.get(), {"label", "channel", "time"});
  std::cout << "\nindex label, channel, time; the first 4 rows:\n"
            << object_model::exportDataFrameToString(table, 4);

  // Column names go into the page as they are: escape names of other origin before the export.
  object_model::exportToDataFrame(cells, table.get(), {"label"});
  std::cout << "\nindex label, the first 2 rows as HTML:\n"
            << object_model::exportDataFrameToHtml(table, 2);
}
