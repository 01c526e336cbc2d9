/// @file
/// Writes a dictionary of arrays as a netCDF file.
#pragma once

#include <object_model/Dictionary.h>
#include <quillon/netcdf/File.h>

#include <string>

namespace quillon::netcdf {

/// How a file is written.
struct WriteOptions {
  /// How hard numbers are compressed, from 1 (fast) to 9 (small); 0 leaves them as they are. Texts
  /// and single values are never compressed. How values are cut into chunks is up to libnetcdf.
  int deflate = 0;

  /// Whether the bytes of numbers that are compressed are sorted by their place in the number
  /// first, which makes most measurements smaller.
  bool shuffle = true;
};

/// Makes the netCDF-4 file at `path` of any dictionary: each array becomes a variable, each
/// dictionary in it a group, under the names that they have. `File` reads the same back: first a
/// group's variables, then its groups.
///
/// Shape: dimension 0 of an array is the last (fastest) dimension of its variable, and dimensions
/// have the names of the axes; one without a name is called `dim_0`, `dim_1`, …. In one group all
/// axes of a name have the same size. A group shares a dimension with the group around it where
/// name and size are the same, unless it has other coordinates for it; else it has one of its own.
/// An axis without points becomes an unlimited dimension without records.
///
/// Values: of the type in which `object_model::BulkValues` has them, else 64-bit integers, `double`
/// or strings. Booleans are written as xarray does, as bytes with the attribute `dtype = "bool"`.
/// Variables of `float` and `double` have NaN as `_FillValue`, as xarray's have, so that no number
/// reads as missing, unless the array has an attribute of that name. Texts must not hold null
/// characters, which end a string of netCDF; other bytes are written as they are.
///
/// Times (`memory::HasTimes`) are the array's own numbers with its unit, which must be of the form
/// "... since ...", and `calendar`. A missing one among integers has the number that stands there
/// if it stands for missing ones alone, else the lowest (of unsigned ones the highest), and is
/// `_FillValue`.
///
/// Attributes: `units` is the unit, or the physical one where that is empty, `long_name` (of a
/// group `title`) the description; then come those that the object has (`memory::HasAttributes`).
/// A single text is stored as characters, several as strings.
///
/// Coordinates (`memory::HasCoordinates`) become a variable called as the axis, in the array's
/// group; or, where the array of coordinates has another name, a variable of that name, which the
/// attribute `coordinates` then lists. Where there is such a variable already, in the group or in
/// one around it along the same dimension, it must hold the same. Coordinates without a
/// dictionary's entry are entries in the file.
///
/// Whole or not at all: the file is made under another name beside `path`, brought to disk and
/// moved in place of what is there, whose permissions it takes on. Where anything fails, what was
/// there stays as it was. It may be a file that is being read: who has it open keeps the old one. A
/// link stays and the file it leads to, there or not, is written.
///
/// Values are asked for in blocks of some megabytes, never under libraryLock(), so that they may
/// come from files that are open; all else is asked for before anything is written. The dictionary
/// must not change meanwhile.
///
/// @param dictionary what to write, borrowed for the call; its own name is not kept.
/// @param path where to: a regular file, there or not, in a directory that is there.
/// @param options how.
/// @throws Error with a sentence that names the file, and the entry where it is about one: for
///   arrays of complex numbers or dictionaries, for names that netCDF does not take, for two sizes
///   or two kinds of coordinates of one axis, for attributes that contradict unit, description or
///   type, for a dictionary that contains itself, for a path that leads to a directory or a device,
///   and when the file cannot be written. What the dictionary and its arrays throw passes through.
/// Threads: may be called by several threads at a time; must not be called under libraryLock().
void write(const object_model::Dictionary& dictionary, const std::string& path,
           const WriteOptions& options = {});

}  // namespace quillon::netcdf
