/// @file
/// What the library's own export can hold of a dictionary.
#pragma once

#include <object_model/Dictionary.h>
#include <quillon/tables/Request.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace quillon::tables {

/// What is asked of a table of exportToDataFrame().
struct ContractRequest {
  std::string source;                                 ///< the group, as sentences start with it
  std::optional<std::vector<std::string>> variables;  ///< patterns, as those of Request; or all
  std::vector<std::string> exclude;                   ///< patterns of what is left out of these
  /// Unless given as for Request: the axes of the array with the most values, less those that have
  /// no coordinates and at most 16 points.
  std::optional<std::vector<std::string>> index;
  bool allColumns = false;  ///< whether there may be more than MOST_COLUMNS columns
};

/// Which arrays of a group go into a table, along which axes, and what its readers must be told.
struct ContractPlan {
  std::vector<std::string> variables;  ///< names of arrays that the table can hold whole
  std::vector<std::string> index;      ///< names of at most three axes, each with one size
  std::vector<unsigned long> sizes;    ///< of the index axes
  std::vector<std::string> unseen;     ///< names of axes along which only the first value shows
  std::vector<std::string> notes;      ///< a sentence for each entry that is not there whole
  unsigned long rows = 1;              ///< the product of these sizes
  unsigned long columns = 0;           ///< index columns included
  unsigned long values = 0;            ///< how many values the chosen arrays have
};

/// Plans the table.
///
/// The library's export leaves columns unfilled, or drops values, where an array and an index do
/// not suit each other; nothing of the kind gets into a plan.
/// @param group borrowed for the call.
/// @param skipped variables of the group that the reader could not make arrays of.
/// @param request what is asked for.
/// @throws TooManyColumns where there are, and Error for names that are not there or given twice,
/// for an axis with several sizes and
///   when nothing is left for the table.
[[nodiscard]] ContractPlan contractPlan(const object_model::Dictionary& group,
                                        const std::vector<Unreadable>& skipped,
                                        const ContractRequest& request);

/// How many of the first coordinates along each axis the first `maxRows` rows of the table need,
/// and one row more where there is one, so that the table can show that it goes on. Axes that it
/// needs whole are not named.
/// @param plan of the table.
/// @param maxRows 0 for all rows.
[[nodiscard]] std::map<std::string, unsigned long> extentsOf(const ContractPlan& plan,
                                                             unsigned long maxRows);

/// How many cells the table has of which so many of the first coordinates along the named axes are
/// taken, and all along others.
[[nodiscard]] unsigned long cellsOf(const ContractPlan& plan,
                                    const std::map<std::string, unsigned long>& extents);

/// Roughly how many bytes of memory it takes to export the whole table and to print its first
/// `maxRows` rows, 0 for all.
[[nodiscard]] double bytesNeeded(const ContractPlan& plan, unsigned long maxRows);

}  // namespace quillon::tables
