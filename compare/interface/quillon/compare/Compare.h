/// @file
/// Comparison of arrays and dictionaries as data: every difference, in figures.
#pragma once

#include <object_model/Data.h>
#include <quillon/compare/Options.h>
#include <quillon/compare/Report.h>

namespace quillon::compare {

/// Compares two objects down to the last value and lists all differences: names and kinds of
/// entries, shapes, dimension names, element types, units and values; with Options::attributes
/// attributes, descriptions and stored types, too. The names of the two objects themselves are not
/// compared.
///
/// Numbers are the same under `Tolerance`, or where both are missing (NaN) and Options::nanEqual
/// says so. Integers are told apart without rounding; the delta of floating-point numbers, and the
/// right side of the rule for all numbers, are taken in double. The delta of complex numbers is the
/// modulus of the difference; texts and truth values have none. Values are compared wherever kind
/// and shape allow, numbers of different types as numbers; times (`memory::HasTimes`) of different
/// units are not. Elements that are dictionaries are compared as entries, with paths such as
/// "/items[3]" or "/items[1,3]", the slowest dimension first.
///
/// Each value is read once, in bulk where arrays offer that, with some megabytes of memory.
/// Dictionaries may nest as deep as memory allows; the depth costs no stack. One that contains
/// itself is not recognised and uses up all memory.
///
/// What an array or a dictionary throws when it is asked, as `object_model::Exception` or
/// `std::exception`, lists its entry under Report::notCompared; the rest is compared. Other
/// exceptions pass through. So are entries that are no entry (null), elements that are none, and
/// entries whose name stands there twice, as only one of them can be had by name.
///
/// @param first, second borrowed for the call; they may be the same one.
/// @param options what to compare, and by which rule.
/// @throws std::invalid_argument for a tolerance that is negative or NaN.
/// Threads: reentrant; objects that may be read concurrently may be compared concurrently.
[[nodiscard]] Report compare(const object_model::Data& first, const object_model::Data& second,
                             const Options& options = {});

}  // namespace quillon::compare
