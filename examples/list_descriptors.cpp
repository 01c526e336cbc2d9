/// @file
/// The registry of the process: descriptors of dictionaries, registered and listed by object name.
#include <object_model/InvalidCall.h>
#include <object_model/Namespace.h>
#include <quillon/memory/Descriptors.h>

#include <iostream>
#include <string>

using object_model::Namespace;
using quillon::memory::DictionaryDescriptor;

namespace {

// Positions follow the order of the names, byte by byte.
void list(const Namespace& objects) {
  for (unsigned long i = 0; i < objects.getNumOfObject(); ++i) {
    const object_model::DictionaryInfo* info = objects.getInfo(i);
    std::cout << "  " << objects.getObjectName(i) << ": "
              << (info != nullptr ? info->getDescription() : "(no descriptor)") << '\n';
  }
}

}  // namespace

int main() {
  // The registry keeps addresses only, so a descriptor lives for as long as it is registered.
  static const DictionaryDescriptor nuclei("nuclei", "one entry for each measurement of a nucleus");
  static const DictionaryDescriptor cells("cells", "one entry for each measurement of a cell");
  Namespace& objects = Namespace::instance();
  objects.registerObject(nuclei.getName(), &nuclei);
  objects.registerObject(cells.getName(), &cells);
  std::cout << objects.getNumOfObject() << " objects:\n";
  list(objects);

  // The last registration of a name counts.
  static const DictionaryDescriptor betterCells("cells", "areas and intensities of cells");
  objects.registerObject("cells", &betterCells);
  std::cout << "cells now are: " << objects.getInfo("cells")->getDescription() << '\n';

  // getInfo() reports a name that is not registered, and leaves it so.
  try {
    objects.getInfo("tissues");
  } catch (const object_model::InvalidCall& error) {
    std::cout << error.what() << '\n';
  }
  // getInfoByName() yields null for it and registers it, without a descriptor.
  if (objects.getInfoByName("tissues") == nullptr) {
    std::cout << "after asking by name, " << objects.getNumOfObject() << " objects:\n";
    list(objects);
  }
}
