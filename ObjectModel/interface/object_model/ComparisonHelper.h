/// @file
/// Comparison of arrays and dictionaries, with a sentence that says where they differ and why.
///
/// Common to the three functions:
///
/// A difference is a result, not an error. On false, a `message` that is not null is replaced
/// (assigned, not appended to) with one English sentence, whose forms stand at each function; on
/// true it is left untouched. It is written once, when the call ends. In the forms below, capital
/// letters stand for names, numbers and values; everything else is literal, blanks and unmatched
/// quotes included, and never changes. Counts and integers are written in decimal, floating-point
/// numbers as printf's "%f" writes them, positions as "(3;0;12)" or "(empty)", complex numbers as
/// "(1.000000;-2.500000)".
///
/// Ownership: the caller owns everything that is passed in; nothing is kept after the call.
/// Threads: reentrant; objects that may be read concurrently may be compared concurrently.
/// Nesting: dictionaries may nest as deep as memory allows; the depth costs no stack. One that
/// contains itself is not recognised and uses up all memory.
/// Cost: linear in the number of elements and entries, given constant-time lookups; constant memory
/// for each array.
#pragma once

#include <object_model/Export.h>

#include <string>

namespace object_model {
class Array;
class Dictionary;
}  // namespace object_model

namespace object_model::helper {

/// When two numbers a (of the first object) and b (of the second) count as the same. With t as the
/// tolerance, which is used as given, whatever its sign and even when it is NaN:
enum class ComparisonType : int {
  /// a == b as IEEE has it: 0 equals -0, NaN equals nothing. The tolerance is ignored.
  Exact = 0,
  /// a == b, or t >= |a - b|.
  Absolute = 1,
  /// a == b, or t >= |a - b| / r, where r is b if |b| > 1e-9, else a if |a| > 1e-9, else 1.
  ///
  /// Deliberate, and easily overlooked:
  /// - r has its sign. A negative reference makes the quotient negative, so that it passes any
  ///   tolerance of 0 or more: 1 and -1 are the same. Compare magnitudes yourself where signs may
  ///   differ. For complex numbers r is a modulus and never negative.
  /// - below 1e-9 the delta is an absolute one, so 1e-20 and 2e-20 are the same at t = 0.1.
  Relative = 2,
};

/// Whether two arrays have the same name, element type and shape and the same values.
///
/// The checks run in this order and the first of the first four that fails ends the call:
///
/// 1. Names:
///    "The arrays have different names: 'NAME' and 'NAME'."
/// 2. Element types, as their numbers:
///    "The arrays 'NAME' have different element type: 'TYPE' and 'TYPE'."
/// 3. Number of dimensions:
///    "The arrays 'NAME' have different dimensions: 'N' and 'N'."
/// 4. Extents, dimension 0 first:
///    "The arrays 'NAME' have different sizes for the dimension : 'D': 'N' and 'N'."
/// 5. Values:
///    "The arrays 'NAME' have different values at the position POSITION': 'VALUE' and 'VALUE'."
///    or, for elements that are dictionaries,
///    "The arrays 'NAME' have different dictionaries at the position POSITION':"
///    and, with no blank between, the sentence of areSameDictionaries().
///
/// Numbers (`UInt`, `Int`, `Double`, `Complex`) are compared under `type`. Integers are tested for
/// equality as integers; a delta is taken between them as doubles, so integers above 2^53 that
/// convert to one double have a delta of 0. Complex numbers are equal when both parts are; their
/// delta is the modulus of the difference. The sentence for numbers goes on with " The absolute
/// delta is greater than T" or " The relative delta is greater than T" and then ends without a full
/// stop. Strings and booleans (written "1" or "0") are compared exactly whatever the type; for
/// dictionaries it is passed on to areSameDictionaries().
///
/// Every position is compared, the first index varying fastest, also after a difference: the
/// sentence describes the last one. An array without dimensions has one element, at the empty
/// position; an array with an extent of 0 in one of its first four dimensions has none.
///
/// Deliberate: five or more dimensions are not compared in full. The indices 3 and above stay 0
/// (the positions with index 3 at 0 are compared as many times as dimension 3 is long), so elements
/// elsewhere are never read, and the element at index 0 is read even where such an extent is 0.
/// Compare such arrays in slices of four dimensions or fewer.
///
/// Arrays of numbers or booleans that both offer `BulkValues` in a type of their elements are read
/// through these instead of their accessors, from 64 positions on; result, sentence and exceptions
/// are the same. They are then asked for their type, once more for their shape, and for where the
/// values lie. Values that lie in memory are looked at in any order. Others are read in blocks, in
/// storage order, and `message` then holds the last difference before the block that could not be
/// read. No array that does not offer them can tell.
///
/// @param first, second the arrays, borrowed for the call; they may be the same one.
/// @param type the rule for numbers.
/// @param tolerance of that rule; unused under `ComparisonType::Exact`.
/// @param message where the sentence goes; may be null.
/// @return true when they are the same.
/// @throws InvalidCall "Invalid call at ObjectModel/src/ComparisonHelper.cpp (LINE)" at the first
///   position, after both of its elements were read: LINE is 372, 382, 392 or 402 for a `type`
///   outside the enumeration and elements that are `UInt`, `Int`, `Double` or `Complex`. LINE is
///   412, with nothing read, for an element type outside the enumeration. Arrays that differ in one
///   of the first four checks or have no elements never raise it.
/// @throws std::bad_cast for a `Dictionary` element that is not a dictionary.
///   Whatever the arrays' own operations throw passes through. After any exception `*message` holds
///   the sentence of the last difference before it, or is untouched if there was none.
OBJECT_MODEL_EXPORT bool areSameArrays(const Array& first, const Array& second, ComparisonType type,
                                       double tolerance, std::string* message);

/// Whether two dictionaries have the same outline and the same content, down to every value.
///
/// areSimilarDictionaries() runs first; a false result, with its sentence, is this function's. Then
/// the entries of `first` are compared in ascending order with the entries of `second` of the same
/// name: dictionaries with this function, all others as arrays with areSameArrays(). The first
/// entry that differs ends the call:
///
/// - array: "Array 'NAME': " and the sentence of areSameArrays(); NAME is the entry's.
/// - dictionary: "Dictionary 'NAME': " and the sentence of this function for the entry; NAME is,
///   deliberately, that of the dictionary that contains the entry, `first`.
///
/// So the difference of an array x in a dictionary leaf in sub in root reads "Dictionary 'root':
/// Dictionary 'sub': Array 'x': The arrays 'x' have different values at the position (0)': '1' and
/// '2'.", without the name leaf.
///
/// Counts are read as signed 32-bit numbers: one that is not positive as such compares no entries.
///
/// @param first, second the dictionaries, borrowed for the call; they may be the same one.
/// @param type, tolerance as for areSameArrays(), for every array inside.
/// @param message where the sentence goes; may be null.
/// @return true when they are the same.
/// @throws std::bad_cast for an entry that is neither an array nor a dictionary.
///   Whatever areSameArrays() or the dictionaries' own operations throw passes through; `*message`
///   is then untouched.
OBJECT_MODEL_EXPORT bool areSameDictionaries(const Dictionary& first, const Dictionary& second,
                                             ComparisonType type, double tolerance,
                                             std::string* message);

/// Whether two dictionaries have the same outline: the same name and number of entries, and for
/// every entry of `first` one in `second` of the same name and kind. Values are not looked at, nor
/// the entries of nested dictionaries.
///
/// The checks run in this order and the first that fails ends the call; the last two run for each
/// entry of `first` in ascending order:
///
/// 1. Names:
///    "The dictionaries have different names: 'NAME' and 'NAME'."
/// 2. Numbers of entries:
///    "The dictionaries 'NAME' have different sizes: 'N' and 'N'."
/// 3. An entry of that name; NAME is that of `second`, and there are two blanks behind it:
///    "The dictionary 'NAME'  doesn't have a 'ENTRY' entry."
/// 4. Kinds:
///    "The dictionaries don't have the same type: 'NAME' is KIND and 'NAME' is KIND."
///
/// KIND is "a dictionary" or "an array", the latter for whatever is not a dictionary; the names
/// beside it are, deliberately, those of `first` and `second`, not the entry's. An entry goes by
/// its own getName(). A lookup of it in `second` that throws, whatever it throws, means that it is
/// absent; so does one that yields null. Counts are read as for areSameDictionaries(). A `first`
/// that holds one name twice can hide an entry that only `second` has; no check is made for that.
///
/// @param first, second the dictionaries, borrowed for the call; they may be the same one.
/// @param message where the sentence goes; may be null.
/// @return true when their outlines agree.
/// @throws std::bad_cast for an entry of `first` that is null.
///   Whatever the dictionaries' other operations throw passes through; `*message` is then
///   untouched.
OBJECT_MODEL_EXPORT bool areSimilarDictionaries(const Dictionary& first, const Dictionary& second,
                                                std::string* message);

}  // namespace object_model::helper
