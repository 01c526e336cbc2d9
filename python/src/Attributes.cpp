#include "Attributes.h"

#include <pybind11/numpy.h>
#include <quillon/memory/ElementTypes.h>

#include <type_traits>
#include <utility>
#include <variant>

#include "Outline.h"

namespace quillon::python {
namespace {

py::object asPython(const std::string& text) { return textOf(text); }

py::object asPython(const std::vector<std::string>& texts) {
  py::list list;
  for (const std::string& text : texts) {
    list.append(textOf(text));
  }
  return std::move(list);
}

template <class T>
py::object asPython(const std::vector<T>& numbers) {
  py::array_t<T> array(static_cast<py::ssize_t>(numbers.size()), numbers.data());
  if (numbers.size() != 1) {
    return array;
  }
  const py::object one = array[py::int_(0)];
  return std::is_same_v<T, long> || std::is_same_v<T, double> ? one.attr("item")() : one;
}

memory::AttributeValue fromArray(const py::array& array) {
  memory::AttributeValue value;
  const auto take = [&](auto tag) {
    using T = typename decltype(tag)::Type;
    if (array.dtype().equal(py::dtype::of<T>())) {
      const auto* const first = static_cast<const T*>(array.data());
      value = std::vector<T>(first, first + array.size());
    }
  };
  const auto takeAny = [&](auto... tags) { (take(tags), ...); };
  takeAny(memory::TypeTag<signed char>(), memory::TypeTag<short>(), memory::TypeTag<int>(),
          memory::TypeTag<long>(), memory::TypeTag<unsigned char>(),
          memory::TypeTag<unsigned short>(), memory::TypeTag<unsigned int>(),
          memory::TypeTag<unsigned long>(), memory::TypeTag<float>(), memory::TypeTag<double>());
  return value;
}

/// Of what quillon._numpy.attribute gives.
memory::AttributeValue fromPython(const py::object& value) {
  if (py::isinstance<py::str>(value)) {
    return utf8Of(value);
  }
  if (py::isinstance<py::list>(value)) {
    std::vector<std::string> texts;
    for (const py::handle& text : value) {
      texts.push_back(utf8Of(text));
    }
    return texts;
  }
  return fromArray(value.cast<py::array>());
}

}  // namespace

py::dict attributesOf(const memory::HasAttributes& owner) {
  py::dict result;
  for (const memory::Attribute& attribute : owner.attributes()) {
    result[textOf(attribute.name)] =
        std::visit([](const auto& value) { return asPython(value); }, attribute.value);
  }
  return result;
}

void setAttributes(const py::dict& attributes, memory::AttributeList& owner) {
  const py::object normal = py::module_::import("quillon._numpy").attr("attribute");
  for (const auto& [name, value] : attributes) {
    memory::AttributeValue known = fromPython(normal(name, value));
    owner.setAttribute(utf8Of(name), std::move(known));
  }
}

}  // namespace quillon::python
