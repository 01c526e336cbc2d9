#pragma once

#include <quillon/arrow/Owned.h>
#include <quillon/tables/ColumnSource.h>

#include <memory>
#include <string>
#include <vector>

#include "ImportedType.h"

namespace quillon::arrow {

/// Rows that stand in the batches of a stream, one after the other.
struct Batches {
  std::vector<Owned<ArrowArray>> arrays;
  std::vector<unsigned long> ends;  ///< the row behind the last of each

  unsigned long rows() const { return ends.empty() ? 0 : ends.back(); }
};

/// A column of such rows.
class ImportedColumn final : public tables::ColumnSource {
 public:
  /// @param batches have a child of this type at `number`, checked before.
  /// @throws tables::Error for times that microseconds do not hold.
  ImportedColumn(const ArrowSchema& field, const ImportedType& type,
                 std::shared_ptr<const Batches> batches, std::size_t number);

  void describe(tables::Column& column) const override;
  void read(unsigned long firstRow, unsigned long count, void* destination) const override;
  void readMissing(unsigned long firstRow, unsigned long count, bool* destination) const override;
  const void* cellsInPlace(unsigned long firstRow, unsigned long count) const override;
  memory::TimeForm timeForm() const override;

 private:
  bool isToBeLookedAt(const ArrowArray& array) const;
  template <class Visit>
  void forEachPart(unsigned long firstRow, unsigned long count, const Visit& visit) const;

  std::string m_name;
  std::string m_unit;
  ImportedType m_type;
  std::shared_ptr<const Batches> m_batches;
  std::size_t m_number;
  bool m_isNullable = false;
};

}  // namespace quillon::arrow
