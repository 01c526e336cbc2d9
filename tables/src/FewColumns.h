#pragma once

#include <string>

namespace quillon::tables {

/// @param columns of the table, `ofWidest` of them of the variable `widest`; 0 where it has none
/// but axes.
/// @throws TooManyColumns where they are more than MOST_COLUMNS; it says what can be done.
void requireFew(unsigned long columns, const std::string& widest, unsigned long ofWidest);

}  // namespace quillon::tables
