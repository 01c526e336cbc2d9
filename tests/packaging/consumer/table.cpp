#include <tabra/MemoryDataFrame.h>

#include <iostream>

int main() {
  tabra::MemoryDataFrame frame;
  frame.addRows(0, 2);
  frame.addColumn("area", tabra::DataType(tabra::DataTypeId::Float64));
  const double area[] = {1.5, 2.5};
  frame.write(0, 0, 2, area);
  double last = 0;
  frame.read(0, 1, 1, &last);
  std::cout << frame.shape()[0] << " column " << frame.columnName(0) << ", " << frame.shape()[1]
            << " rows, last " << last << '\n';
}
