#include <tabra/DataFrameView.h>

namespace tabra {

DataFrameView::~DataFrameView() = default;

void DataFrameView::setUnit(unsigned long column, const std::string& unit) {
  setColumnUnit(column, unit);
}

}  // namespace tabra
