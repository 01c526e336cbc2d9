#pragma once

#include <hdf5.h>

#include <string>
#include <utility>
#include <vector>

namespace quillon::netcdf {

/// An object of libhdf5, closed when its scope ends; none where opening it failed.
///
/// Threads: everything here is done under libraryLock().
class Hdf5Object {
 public:
  using Close = herr_t (*)(hid_t);

  Hdf5Object() = default;
  Hdf5Object(hid_t id, Close close) : m_id(id), m_close(close) {}
  Hdf5Object(const Hdf5Object&) = delete;
  Hdf5Object& operator=(const Hdf5Object&) = delete;
  Hdf5Object(Hdf5Object&& other) noexcept
      : m_id(std::exchange(other.m_id, H5I_INVALID_HID)), m_close(other.m_close) {}
  Hdf5Object& operator=(Hdf5Object&& other) noexcept {
    std::swap(m_id, other.m_id);
    std::swap(m_close, other.m_close);
    return *this;
  }
  ~Hdf5Object() {
    if (exists()) {
      m_close(m_id);
    }
  }

  bool exists() const { return m_id >= 0; }
  hid_t id() const { return m_id; }

 private:
  hid_t m_id = H5I_INVALID_HID;
  Close m_close = nullptr;
};

/// Keeps libhdf5 from printing what fails in this thread, as long as the object lives: a failure is
/// an answer here.
class QuietHdf5 {
 public:
  QuietHdf5() {
    H5Eget_auto2(H5E_DEFAULT, &m_print, &m_data);
    H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
  }
  QuietHdf5(const QuietHdf5&) = delete;
  QuietHdf5& operator=(const QuietHdf5&) = delete;
  ~QuietHdf5() { H5Eset_auto2(H5E_DEFAULT, m_print, m_data); }

 private:
  H5E_auto2_t m_print = nullptr;
  void* m_data = nullptr;
};

/// A link of a group.
struct Hdf5Link {
  std::string name;
  H5L_type_t type = H5L_TYPE_ERROR;
};

/// The links of an open group in the order of their names. @return whether libhdf5 could list them.
bool listLinks(hid_t group, std::vector<Hdf5Link>& links);

/// The names of the attributes of an open object; none where libhdf5 cannot list them.
std::vector<std::string> attributeNames(hid_t object);

/// Where the data set stands that libnetcdf shows as the variable `name` of an open group: one that
/// is called as a dimension without being its coordinate has a prefix in the file.
std::string datasetPath(hid_t group, const std::string& name);

/// The data set itself.
Hdf5Object openDataset(hid_t group, const std::string& name);

/// How libnetcdf shows the name of a link: without that prefix, and cut where it is too long.
std::string shownName(const std::string& link);

/// What values of a type are, such as "compound type 'point'"; the name is that of a type that was
/// committed to the file.
std::string describeType(hid_t type);

}  // namespace quillon::netcdf
