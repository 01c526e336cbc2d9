#include "FewColumns.h"

#include <quillon/memory/Wording.h>
#include <quillon/tables/Error.h>
#include <quillon/tables/Request.h>

namespace quillon::tables {

void requireFew(unsigned long columns, const std::string& widest, unsigned long ofWidest) {
  if (columns <= MOST_COLUMNS) {
    return;
  }
  const std::string share =
      ofWidest == 0 ? ""
                    : ", " + std::to_string(ofWidest) + " of them of " + memory::inQuotes(widest);
  throw TooManyColumns("The table would have " + std::to_string(columns) + " columns, more than " +
                       std::to_string(MOST_COLUMNS) + share +
                       "; take fewer variables, more axes into the index or a part of an axis, or "
                       "ask for all columns");
}

}  // namespace quillon::tables
