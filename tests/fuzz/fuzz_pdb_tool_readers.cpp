// The parts database tool simulator's readers: the property translation file
// (and the soft paths it defines, applied to its own values), the symbol
// partition table, neutral symbol pins, mapping files and the geometry pin
// list, all on the same input.
#include <map>
#include <string>
#include <vector>

#include "support.hpp"
#include "tools/qrn2pdb.exe/inputs.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string file = vltfuzz::asFile(data, size, "input.caf");
  qrn2pdb::TTranslationFile caf;
  qrn2pdb::readTranslationFile(file, caf);
  std::string resolved;
  for (const auto& soft : caf.softPaths) {
    qrn2pdb::resolveSoftPath(caf, soft.first + "/" + soft.second, resolved);
    qrn2pdb::pathTail(resolved, 2);
  }
  std::map<std::string, std::string> partitions;
  qrn2pdb::readSymbolPartitions(file, partitions);
  std::vector<std::string> pins;
  qrn2pdb::readNeutralPins(file, pins);
  std::vector<qrn2pdb::TPortion> portions;
  qrn2pdb::readMappingFile(file, portions);
  std::map<std::string, std::vector<std::string>> cells;
  qrn2pdb::readGeomPinList(file, cells);
  return 0;
}
