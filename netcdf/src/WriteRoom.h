#pragma once

namespace quillon::netcdf {

/// Room on the disk for a file that libhdf5 writes. It is reserved before the library needs it, as
/// the library ends the process, at once or at its end, where a write fails for want of room. On
/// file systems that reserve nothing there is no such help.
///
/// The library holds values back; the caller has it write them whenever isSyncDue() says so, so
/// that it is known how much more is to come.
class WriteRoom {
 public:
  /// For the open file `descriptor`, which is empty still and of whose outline, that is everything
  /// but the values, so many bytes may be expected. @throws Refusal when there is no room for it.
  WriteRoom(int descriptor, unsigned long outlineBytes);

  /// Reserves what was needed so far anew, as is to be done when the library has emptied the file.
  /// @throws Refusal
  void reserve() const;

  /// Reserves room for so many bytes of values. @throws Refusal when there is none.
  void reserveFor(unsigned long bytes);

  /// Whether the library may hold back so much that it should write it.
  bool isSyncDue() const;

  /// The library has written everything.
  void noteSync();

  /// Gives back what was not needed. @throws Refusal
  void release() const;

 private:
  unsigned long fileBytes() const;

  int m_descriptor;
  unsigned long m_outline;
  unsigned long m_written = 0;  // the file's length after the last sync
  unsigned long m_pending = 0;  // bytes of values since
};

}  // namespace quillon::netcdf
