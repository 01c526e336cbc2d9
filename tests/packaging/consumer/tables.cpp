#include <quillon/memory/TypedArray.h>
#include <quillon/tables/Writers.h>

#include <iostream>

int main() {
  using namespace quillon;
  memory::Dictionary cells("cells");
  cells.add(memory::DoubleArray("area", {{"label", 3}}, {1.5, 2.5, 3.5})).setUnit("um2");
  const tables::Table table(cells, tables::plan(cells, {}));
  tables::writeText(table, [](std::string_view piece) { std::cout << piece; });
}
