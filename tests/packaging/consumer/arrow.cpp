#include <quillon/arrow/Export.h>
#include <quillon/arrow/Import.h>
#include <quillon/arrow/Owned.h>
#include <quillon/memory/TypedArray.h>
#include <quillon/tables/Writers.h>

#include <iostream>

int main() {
  using namespace quillon;
  memory::Dictionary cells("cells");
  cells.add(memory::DoubleArray("area", {{"label", 3}}, {1.5, 2.5, 3.5})).setUnit("um2");
  arrow::Owned<ArrowArrayStream> stream;
  arrow::exportTable(tables::Table(cells, tables::plan(cells)), stream.get());
  const tables::Table table = arrow::importTable(stream.get());
  tables::writeText(table, [](std::string_view piece) { std::cout << piece; });
}
