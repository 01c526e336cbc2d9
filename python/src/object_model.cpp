// The contract itself, with nothing added.

#include <object_model/ComparisonHelper.h>
#include <object_model/DictionaryInfo.h>
#include <object_model/IO.h>
#include <object_model/Namespace.h>
#include <object_model/PhysicalInformation.h>
#include <pybind11/stl.h>
#include <quillon/memory/Descriptors.h>
#include <quillon/tables/Error.h>
#include <tabra/MemoryDataFrame.h>

#include <typeinfo>
#include <variant>

#include "Errors.h"
#include "Module.h"
#include "Outline.h"

namespace quillon::python {
namespace {

using object_model::DictionaryInfo;
using object_model::Namespace;
using object_model::helper::ComparisonType;

using Verdict = std::pair<bool, std::string>;

/// What `compare(&message)` says, without the GIL.
template <class Compare>
Verdict verdictOf(const Compare& compare) {
  const py::gil_scoped_release released;
  std::string message;
  const bool same = compare(&message);
  return {same, message};
}

Verdict areSameArrays(const ArrayHandle& first, const ArrayHandle& second, int type,
                      double tolerance) {
  return verdictOf([&](std::string* message) {
    return object_model::helper::areSameArrays(
        *first.array, *second.array, static_cast<ComparisonType>(type), tolerance, message);
  });
}

Verdict areSameDictionaries(const SharedDictionary& first, const SharedDictionary& second, int type,
                            double tolerance) {
  return verdictOf([&](std::string* message) {
    return object_model::helper::areSameDictionaries(
        first, second, static_cast<ComparisonType>(type), tolerance, message);
  });
}

Verdict areSimilarDictionaries(const SharedDictionary& first, const SharedDictionary& second) {
  return verdictOf([&](std::string* message) {
    return object_model::helper::areSimilarDictionaries(first, second, message);
  });
}

/// The table, rendered by `render`; what the export refuses is an error of its kind.
template <class Render>
py::str exported(SharedDictionary& dictionary, const std::vector<std::string>& index,
                 const Render& render) {
  std::string text;
  {
    const py::gil_scoped_release released;
    try {
      const auto table = std::make_shared<tabra::MemoryDataFrame>();
      object_model::exportToDataFrame(dictionary, table.get(), index);
      text = render(table);
    } catch (const std::runtime_error& error) {
      if (typeid(error) == typeid(std::runtime_error)) {
        throw tables::Error(error.what());
      }
      throw;
    } catch (const std::length_error& error) {
      throw tables::Error(error.what());
    }
  }
  return textOf(text);
}

py::str exportToString(SharedDictionary& dictionary, const std::vector<std::string>& index,
                       unsigned long maxRows) {
  return exported(dictionary, index, [&](const auto& table) {
    return object_model::exportDataFrameToString(table, maxRows);
  });
}

py::str exportToHtml(SharedDictionary& dictionary, const std::vector<std::string>& index,
                     unsigned long maxRows) {
  return exported(dictionary, index, [&](const auto& table) {
    return object_model::exportDataFrameToHtml(table, maxRows);
  });
}

/// Registers a descriptor that stays for good, as the registry keeps none alive; null for none.
void registerObject(Namespace& registry, const std::string& name, const SharedDictionary* object) {
  const DictionaryInfo* info = nullptr;
  if (object != nullptr) {
    info = new memory::DictionaryDescriptor(object->getName(), object->getDescription());
  }
  registry.registerObject(name, info);
}

void requirePosition(const Namespace& registry, unsigned long index) {
  if (index >= registry.getNumOfObject()) {
    throw py::index_error("the registry has " + std::to_string(registry.getNumOfObject()) +
                          " objects and none of number " + std::to_string(index));
  }
}

const DictionaryInfo* getInfo(Namespace& registry,
                              const std::variant<std::string, unsigned long>& key) {
  if (const auto* const name = std::get_if<std::string>(&key)) {
    return registry.getInfo(*name);
  }
  const unsigned long index = std::get<unsigned long>(key);
  requirePosition(registry, index);
  return static_cast<const Namespace&>(registry).getInfo(index);
}

py::str getObjectName(const Namespace& registry, unsigned long index) {
  requirePosition(registry, index);
  return textOf(registry.getObjectName(index));
}

void bindNamespace(py::module_& module) {
  py::class_<DictionaryInfo, std::unique_ptr<DictionaryInfo, py::nodelete>>(module,
                                                                            "DictionaryInfo")
      .def_property_readonly("name", [](const DictionaryInfo& info) { return info.getName(); })
      .def_property_readonly("description",
                             [](const DictionaryInfo& info) { return info.getDescription(); });
  constexpr auto STAYS = py::return_value_policy::reference;
  py::class_<Namespace, std::unique_ptr<Namespace, py::nodelete>>(module, "Namespace")
      .def_static("instance", &Namespace::instance, STAYS)
      .def("register_object", &registerObject)
      .def("get_info", &getInfo, STAYS)
      .def("get_info_by_name", &Namespace::getInfoByName, STAYS)
      .def("get_num_of_object", &Namespace::getNumOfObject)
      .def("get_object_name", &getObjectName);
}

}  // namespace

void bindObjectModel(py::module_& module) {
  module.def("are_same_arrays", &areSameArrays);
  module.def("are_same_dictionaries", &areSameDictionaries);
  module.def("are_similar_dictionaries", &areSimilarDictionaries);
  module.def("export_to_string", &exportToString);
  module.def("export_to_html", &exportToHtml);
  module.def("determine_physical_information", [](const std::string& text) {
    return static_cast<int>(object_model::helper::determinePhysicalInformation(text.c_str()));
  });
  module.def("determine_physical_dimension", [](int information) {
    return static_cast<int>(object_model::helper::determinePhysicalDimension(
        static_cast<object_model::PhysicalInformation>(information)));
  });
  bindNamespace(module);
}

}  // namespace quillon::python
