#pragma once

#include <tabra/DataType.h>

#include <array>
#include <string>

namespace tabra {

class DataFrameView {
 public:
  virtual ~DataFrameView();
  virtual const std::array<unsigned long, 2>& shape() const = 0;
  virtual const std::string& columnName(unsigned long column) const = 0;
  virtual const std::string& columnUnit(unsigned long column) const = 0;
  virtual void setColumnUnit(unsigned long column, const std::string& unit) = 0;
  virtual DataType columnDataType(unsigned long column) const = 0;
  virtual void read(unsigned long column, unsigned long firstRow, unsigned long count,
                    void* destination) const = 0;
  virtual void write(unsigned long column, unsigned long firstRow, unsigned long count,
                     const void* source) = 0;
  virtual void addColumn(const std::string& name, DataType type) = 0;
  virtual void addRows(unsigned long firstRow, unsigned long count) = 0;
  virtual void removeColumn(unsigned long column) = 0;
  virtual void removeRows(unsigned long firstRow, unsigned long count) = 0;
  void setUnit(unsigned long column, const std::string& unit);
};

}  // namespace tabra
