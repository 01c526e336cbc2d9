#include <quillon/netcdf/File.h>

#include <iostream>

int main() {
  const quillon::netcdf::File file("data/nuclei_measurements.nc");
  std::cout << std::boolalpha << file.root().contains("area") << '\n';
}
