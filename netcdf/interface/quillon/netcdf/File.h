/// @file
/// Reads a netCDF file as a dictionary of arrays.
#pragma once

#include <quillon/memory/Dictionary.h>
#include <quillon/netcdf/VariableFacts.h>

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace quillon::netcdf {

/// A file that cannot be opened or read. The message is one sentence that names the file and says
/// what is wrong.
class Error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Source;

/// How a file is read.
struct OpenOptions {
  /// Whether values are decoded after the CF conventions, as `File` describes; otherwise they are
  /// read as they are stored, enumerations as integers.
  bool decode = true;

  /// How many bytes of one variable's values are held in memory at a time.
  std::size_t windowBytes = std::size_t{64} << 20U;

  /// Told after each read how many bytes of values it brought, as they are stored (a `float` counts
  /// 4), so that a caller can show progress. It is called by the thread that read, by several at a
  /// time where several read, and never under a lock, so that it may use files and arrays itself.
  /// What it throws passes through the operation that read.
  std::function<void(unsigned long bytes)> onRead;
};

/// Some of the indices of a dimension: `first`, `first + step`, and so on, `count` of them.
struct Range {
  long first = 0;  ///< the first index, from 0
  long count = 0;  ///< how many indices; none are allowed
  long step = 1;   ///< from one index to the next, at least 1
};

/// A variable or an attribute that cannot be read.
struct Skipped {
  std::string path;    ///< where it stands in the file, such as "/cells/otsu/outline"
  std::string reason;  ///< why it was left out, such as "compound type 'point'"
};

/// An open netCDF file, classic (CDF-1, CDF-2, CDF-5) or netCDF-4, as a dictionary.
///
/// Every variable is an array and every group a dictionary, under their names in the file: first
/// the group's variables, then its groups, both in the file's order.
///
/// Shape: the file's last (fastest) dimension becomes dimension 0, so that dimension 0 varies
/// fastest in memory as well. A variable that `ncdump` shows as `float SST(TIME, COADSY, COADSX)`
/// with TIME = 12, COADSY = 35 and COADSX = 40 has the shape (40;35;12); the value
/// `SST[t][y][x]` stands at the position (x;y;t), and `getAxisInfo(0)` is COADSX. A scalar variable
/// has no dimensions and one value.
///
/// Elements: signed integers are `Int`, unsigned ones `UInt`, both exact to the last digit; `float`
/// and `double` are `Double`; strings are `String`, and so are texts of a fixed length and text of
/// characters, whose last dimension is the text's length and no axis. What fills a text up to its
/// length (NULs, and blanks where HDF5 says so) is cut. Other types are left out, see skipped().
///
/// Decoding (unless OpenOptions::decode is off):
///   - `_Unsigned` makes stored integers of up to 32 bits count without a sign, or with one.
///   - `scale_factor` and `add_offset` are applied, in double. Values equal to `_FillValue`, to one
///     of `missing_value` or, of a `float` or `double` variable without `_FillValue`, to netCDF's
///     default fill value are missing: NaN. Either makes the array `Double`, of stored type `float`
///     where the variable is `float` or of at most 16 bits and no packing is wider than `float`,
///     else of `double`. Integers with neither, and those of 64 bits without packing, stay exact
///     and as they are stored. `valid_min`, `valid_max` and `valid_range` are not applied.
///   - Numbers with units "... since ..." (weeks to nanoseconds) and the calendar `standard`,
///     `gregorian`, `proleptic_gregorian`, `noleap`, `365_day`, `360_day`, `julian`, `none` or no
///     calendar at all are `memory::HasTimes` as well; as an `Array` they stay the numbers. Bounds
///     (`bounds`, `climatology`) without units have those of their coordinate variable. Months,
///     years and other calendars stay numbers.
///   - A `byte` variable with the attribute `dtype` "bool" is `Boolean`, and so is HDF5's
///     enumeration of FALSE and TRUE that has a name. Another enumeration is a `String` of its
///     values' names, or the number where a value has none.
///   - Characters that are `_FillValue` are cut off the end of a text. A text that is `_FillValue`
///     as a whole is missing and reads as the empty text.
///
/// Descriptors: `long_name` is the description, `units` both the unit and the physical unit. All
/// other attributes, but those that decoding has used up, are the array's
/// (`memory::HasAttributes`); those of a group but its title are the dictionary's. Attributes of
/// types that are neither numbers nor text are left out.
///
/// Coordinates (`memory::HasCoordinates`): those of a dimension are its coordinate variable, read
/// like any other, or else the first variable along it alone that the array's attribute
/// `coordinates` names. They are found when they are asked for, and shared by the arrays of a file.
///
/// Dimension names are axis names. An axis is of the kind
///   - `Time` when its coordinate variable has units "... since ...", the standard name "time" or
///     the axis "T";
///   - `Slice` when its coordinate variable has the axis "Z" or the attribute `positive`: of the
///     kinds, planes of a stack come nearest to levels;
///   - `Slice`, `Time`, `Channel` or `Label` when the dimension is called slice, time, channel (or
///     band) or label, in any case, in the singular or the plural;
///   - `quillon::memory::OTHER_AXIS` otherwise.
/// The coordinate variable of a dimension is called as the dimension and is looked for from the
/// variable's own group up to the root.
///
/// Reading: opening a file reads no values. An array holds one window of its variable, a run of
/// values that follow each other in the file: the whole variable when it fits
/// OpenOptions::windowBytes. Walking an array in order (dimension 0 fastest) reads each value once,
/// whatever the file's size; hopping between windows reads them again and again. A text that is
/// longer than a window is read by itself, and a string counts as 128 bytes, whatever its length.
/// Arrays of numbers are `object_model::BulkValues` as well, in the type that the values have in
/// the file: blocks of them are read past the window, which stays as it is. Values that stand in
/// the file as they are, and blocks of whole chunks under the filters shuffle, deflate and
/// fletcher32, are read by this library itself; chunks are unpacked by several threads, none of
/// which outlives the read. Everything else, and what does not look right, is left to libnetcdf.
/// Such arrays are `memory::HasStoredBytes` as well.
///
/// Names: the file that is opened is the one at `path`, whatever the path looks like to the
/// libraries below; one with a backslash, which they take for a slash, is refused.
///
/// Damage: classic files are checked as a whole before libnetcdf sees them. What stands in a
/// netCDF-4 file is up to libhdf5, which crashes or loops on some damaged ones. Who reads such
/// files from strangers does so in a process that may end, as the tool `quillon` does; this library
/// makes no processes and maps no file.
///
/// Ownership: the file owns its dictionaries, they own their arrays, and these keep the file open.
/// Errors: `Error`, from the constructor for a file that is missing, no netCDF file, damaged or
/// shorter than its header claims, and from the accessors of an array whose values cannot be read,
/// for instance since the file was cut meanwhile or since there is no memory for them; such an
/// array holds no half window and tries anew when it is asked again. Threads: files, and arrays of
/// one file or of several, may be used by any threads at the same time; only moving, assigning to
/// or destroying an object, and changing its dictionaries, is for one thread alone. Reads come one
/// after the other, under libraryLock(), as the libraries below are not thread-safe; two threads
/// that read one array in different windows take turns with it and are better off with blocks of
/// its bulk values. A thread that uses libnetcdf beside this library must hold libraryLock(), and
/// so must one that uses HDF5's high-level library, or a libhdf5 that is not thread-safe
/// (`H5is_library_threadsafe`). With one that is, such as Debian's, its C functions need no lock,
/// as long as it leaves the objects that libnetcdf has open alone.
class File {
 public:
  /// Opens the file at `path` for reading.
  explicit File(const std::string& path, const OpenOptions& options = {});

  File(const File&) = delete;
  File& operator=(const File&) = delete;
  /// Takes the file over. References to what is in the root dictionary stay valid; those to the
  /// root itself do not follow: ask root() of the new object.
  File(File&&) noexcept = default;
  /// As the constructor that moves; what this object read before is closed.
  File& operator=(File&&) noexcept = default;
  ~File() = default;

  /// The whole file, called "/"; its description is the file's attribute `title`.
  memory::Dictionary& root();
  /// @copydoc root
  const memory::Dictionary& root() const;

  /// The group at `path`: "" and "/" are the root, "/cells/otsu", "cells/otsu" and "cells/otsu/"
  /// the same group. Its description is its attribute `title`.
  /// @throws Error when there is none, with the part of the path that leads nowhere.
  memory::Dictionary& group(const std::string& path);
  /// @copydoc group
  const memory::Dictionary& group(const std::string& path) const;

  /// The group at `path` with all that is in it, but along the axes named in `ranges` only the
  /// indices that these say: what else the file holds is neither read nor held in memory. The
  /// arrays' coordinates are cut alike. Texts of characters keep their length.
  ///
  /// Ownership: the dictionary is the caller's; its arrays keep the file open.
  /// @throws Error as group() does.
  /// @throws std::invalid_argument for a range that is not in an axis of its name, and for a name
  ///   that no axis below the group has; the sentence names the axis.
  [[nodiscard]] memory::Dictionary select(const std::string& path,
                                          const std::map<std::string, Range>& ranges) const;

  /// As select(), with only so many of the first indices along the axes named in `extents`, as far
  /// as there are more. Names that no axis has do not matter.
  /// @throws Error as group() does.
  [[nodiscard]] memory::Dictionary corner(
      const std::string& path, const std::map<std::string, unsigned long>& extents) const;

  /// What the file says about the group at `path` and each of its own variables.
  /// @throws Error as group() does, and where the file cannot be read.
  [[nodiscard]] GroupFacts facts(const std::string& path) const;

  /// The file's attribute `title`; empty when it has none.
  std::string title() const;

  /// The variables that cannot be read, in the file's order: those of types that the object model
  /// cannot hold (compound, variable-length and opaque ones), those that claim more values than can
  /// be counted and those that went through a filter that is not there. Then come those that
  /// libnetcdf hides, such as references, bit fields and types without a name.
  const std::vector<Skipped>& skipped() const;

  /// The attributes that libnetcdf hides, for they are of types that it does not know. Their paths
  /// are "/cells/area@outline" for one of a variable, "/cells/@outline" for one of a group.
  const std::vector<Skipped>& hiddenAttributes() const;

 private:
  int groupId(const std::string& path) const;
  memory::Dictionary read(
      const std::string& path,
      const std::function<Range(const std::string& name, unsigned long size)>& rangeOf) const;

  std::string m_path;
  std::shared_ptr<const Source> m_source;
  memory::Dictionary m_root;
  std::vector<Skipped> m_skipped;
  std::vector<Skipped> m_hiddenAttributes;
};

}  // namespace quillon::netcdf
