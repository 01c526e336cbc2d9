/// @file
/// Reads a netCDF file as a dictionary of arrays.
#pragma once

#include <quillon/memory/Dictionary.h>

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
  /// Whether missing values of `Double` arrays read as NaN: those equal to `_FillValue`, to one of
  /// `missing_value` or, for a variable without `_FillValue`, to netCDF's default fill value.
  /// Otherwise they read as they are stored.
  bool missingAsNaN = false;

  /// How many bytes of one variable's values are held in memory at a time.
  std::size_t windowBytes = std::size_t{64} << 20U;

  /// Told after each read how many bytes of values it brought, as they are stored (a `float` counts
  /// 4), so that a caller can show progress. It is called by the thread that read, by several at a
  /// time where several read, and never under a lock, so that it may use files and arrays itself.
  /// What it throws passes through the operation that read.
  std::function<void(unsigned long bytes)> onRead;
};

/// A variable that the object model cannot hold.
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
/// and `double` are `Double`; strings are `String`, and so is text of characters, whose last
/// dimension is the text's length and no axis (NULs at its end are cut). An enumeration is read as
/// its integers. Other types are left out, see skipped(). Packed values (`scale_factor`,
/// `add_offset`) are left as they are stored.
///
/// Descriptors: `long_name` is the description, `units` both the unit and the physical unit.
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

  /// The group at `path` with all that is in it, but along the dimensions that are named in
  /// `extents` only so many of the first coordinates, as far as there are more: what else the file
  /// holds is neither read nor held in memory. Texts of characters keep their length.
  ///
  /// Ownership: the dictionary is the caller's; its arrays keep the file open.
  /// @throws Error as group() does.
  memory::Dictionary corner(const std::string& path,
                            const std::map<std::string, unsigned long>& extents) const;

  /// The file's attribute `title`; empty when it has none.
  std::string title() const;

  /// The variables of types that the object model cannot hold (compound, variable-length and opaque
  /// ones), in the file's order.
  const std::vector<Skipped>& skipped() const;

 private:
  std::string m_path;
  std::shared_ptr<const Source> m_source;
  memory::Dictionary m_root;
  std::vector<Skipped> m_skipped;
};

}  // namespace quillon::netcdf
