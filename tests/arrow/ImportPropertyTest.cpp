#include <gtest/gtest.h>
#include <quillon/arrow/Import.h>
#include <rapidcheck/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "Streams.h"
#include "support/Properties.h"
#include "tables/SomeCells.h"

namespace quillon::arrow {
namespace {

using tables::ColumnType;
using tables::Table;

/// A column of any type, of `rows` cells some of which are missing.
template <class T>
std::unique_ptr<tables::ColumnSource> anyColumn(ColumnType type, unsigned long rows) {
  const bool isNullable =
      type != ColumnType::Float32 && type != ColumnType::Float64 && type != ColumnType::Time;
  std::vector<bool> missing;
  for (unsigned long k = 0; isNullable && k < rows; ++k) {
    missing.push_back(::test::pick(3) == 0);
  }
  return std::make_unique<tables::SomeCells<T>>(
      "v" + std::to_string(static_cast<int>(type)), type,
      *rc::gen::container<std::vector<T>>(rows, rc::gen::arbitrary<T>()), missing);
}

RC_GTEST_PROP(ImportPropertyTest, WhatWasExportedComesBack, ()) {
  const auto rows = *rc::gen::inRange(0UL, 40UL);
  std::vector<std::unique_ptr<tables::ColumnSource>> columns;
  for (const ColumnType type :
       {ColumnType::Int8, ColumnType::Int16, ColumnType::Int32, ColumnType::Int64,
        ColumnType::UInt8, ColumnType::UInt16, ColumnType::UInt32, ColumnType::UInt64,
        ColumnType::Float32, ColumnType::Float64, ColumnType::Boolean, ColumnType::Time}) {
    tables::visitColumnType(type, [&](auto tag) {
      if constexpr (!std::is_same_v<typename decltype(tag)::Type, std::string>) {
        columns.push_back(anyColumn<typename decltype(tag)::Type>(type, rows));
      }
    });
  }
  const Table table(std::move(columns), rows);
  StreamOptions options;
  options.maxRows = *rc::gen::inRange(1UL, 50UL);
  const Table back = importTable(streamOf(table, options).get());
  RC_ASSERT(csvOf(back) == csvOf(table));
  for (std::size_t k = 0; k < table.columns().size(); ++k) {
    RC_ASSERT(back.columns()[k].type == table.columns()[k].type);
    RC_ASSERT(back.columns()[k].unit == table.columns()[k].unit);
  }
  // And once more, from the batches.
  options.maxRows = *rc::gen::inRange(1UL, 50UL);
  RC_ASSERT(csvOf(importTable(streamOf(back, options).get())) == csvOf(table));
}

}  // namespace
}  // namespace quillon::arrow
