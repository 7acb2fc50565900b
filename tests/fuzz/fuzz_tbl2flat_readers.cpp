// The catalog tool's readers of the source library: a catalog entry and the
// value catalog file.
#include <sstream>

#include "support.hpp"
#include "tools/tbl2flat.exe/catalog_entry.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string file = vltfuzz::asFile(data, size);
  std::ostringstream out;
  tbl2flat::TCatalogEntry entry;
  tbl2flat::readCatalogEntry(file, "cat", entry, out);
  std::string value;
  for (const auto& part : entry.parts) part.property("VALUE", value);
  tbl2flat::TValueData values;
  tbl2flat::readValueData(file, values);
  return 0;
}
