#pragma once

namespace tabra {

enum class DataTypeId : unsigned int { UInt64 = 0x10140, Int64 = 0x20140, Float64 = 0x30140 };

class DataType {
 public:
  explicit DataType(DataTypeId id);
  DataTypeId id() const;

 private:
  const char* m_name;
  DataTypeId m_id;
};

}  // namespace tabra
