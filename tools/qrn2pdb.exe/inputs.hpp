#pragma once
// What qrn2pdb.exe reads besides the neutral catalog: the property
// translation file, the symbol partition table, neutral symbol files,
// mapping files and the geometry pin list.

#include <map>
#include <string>
#include <vector>

namespace qrn2pdb {

// qrn.caf: soft paths (first one of a prefix counts) and property blocks.
struct TPropertyRule {
  std::string target;
  bool toPdb = false;
};
struct TTranslationFile {
  std::map<std::string, std::string> softPaths;
  std::map<std::string, TPropertyRule> properties;
};
bool readTranslationFile(const std::string& file, TTranslationFile& result);

// A location with a soft prefix resolved ('/' for '\', no '/' at the end);
// false when its prefix is not known.
bool resolveSoftPath(const TTranslationFile& caf, const std::string& location, std::string& resolved);

// symbol_partitions.caf: "<key> <partition>" a line.
bool readSymbolPartitions(const std::string& file, std::map<std::string, std::string>& partitions);

// The pin names (PIN_NAME lines) of a neutral symbol file.
bool readNeutralPins(const std::string& file, std::vector<std::string>& pins);

// A mapping file: per SYMBOL line a portion with its PIN lines.
struct TMappedPin {
  std::string name;
  std::vector<std::string> physical;
};
struct TPortion {
  std::string symbol, portion;
  std::vector<TMappedPin> pins;
};
bool readMappingFile(const std::string& file, std::vector<TPortion>& portions);

// geomPinList.caf: "<cell> <pin> <pin> ..." a line; '#' and "//" lines are comments.
bool readGeomPinList(const std::string& file, std::map<std::string, std::vector<std::string>>& cells);

// The last `depth` '/'-separated tokens of a directory, joined with '_'.
std::string pathTail(const std::string& directory, int depth);

}  // namespace qrn2pdb
