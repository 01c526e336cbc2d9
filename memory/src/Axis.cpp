#include <quillon/memory/Axis.h>

#include <utility>

namespace quillon::memory {

Axis::Axis(object_model::AxisType type, unsigned long size) : m_type(type), m_size(size) {
  m_name = AxisInfo::getAxisName();
}

Axis::Axis(std::string name, unsigned long size, object_model::AxisType type)
    : m_type(type), m_name(std::move(name)), m_size(size) {}

object_model::AxisType Axis::getAxisType() const { return m_type; }

std::string Axis::getAxisName() const { return m_name; }

unsigned long Axis::size() const { return m_size; }

}  // namespace quillon::memory
