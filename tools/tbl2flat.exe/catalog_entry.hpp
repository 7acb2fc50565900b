#pragma once
// The inputs of the catalog tool: the catalog entry of the source library,
// the location map and the value catalog file.

#include <map>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace tbl2flat {

struct TEntryComponent {
  std::string name;
  std::vector<std::string> symbols;  // as written; "-" is the blank symbol
};

struct TEntryPart {
  std::string number;                                           // the PART statement's number
  int line = 0;                                                 // line of the PART statement
  std::vector<std::pair<std::string, std::string>> properties;  // name, value; file order
  std::string container;                                        // soft path; empty when the part has none
  std::string mapFile;                                          // soft path; empty when the part has none
  std::vector<std::string> geoms;
  std::vector<TEntryComponent> components;

  // Value of the first property of that name; false when there is none.
  bool property(const std::string& name, std::string& value) const;
};

struct TCatalogEntry {
  std::string name;  // the CATALOG statement's name
  std::vector<TEntryPart> parts;
};

// Splits a statement line at blanks and tabs; a field in double quotes may
// hold blanks and loses its quotes ("" is an empty field).
std::vector<std::string> splitStatement(const std::string& line);

// Reads a catalog entry. False when the file cannot be opened or its first
// statement is not "CATALOG <name>". Problems inside the entry are reported
// on `out` as "Warning: ..." lines and skipped.
// `catalog` names the catalog in those lines.
bool readCatalogEntry(const std::string& file, const std::string& catalog, TCatalogEntry& entry, std::ostream& out);

// Soft prefix -> the first hard pathname the location map gives it. A
// prefix without hard pathnames is not in the table.
using TPrefixTable = std::map<std::string, std::string>;

// False when the file cannot be opened.
bool readLocationMap(const std::string& file, TPrefixTable& table);

// Resolves a location: a value that begins with "$" has its soft prefix (up
// to the first '/' or '\') replaced by the prefix's hard pathname; any other
// value stands as it is. Every '\' becomes '/', and a '/' at the end is
// dropped. False, with the prefix in `unresolved`, when the prefix is not in
// the table.
bool resolveLocation(const std::string& value, const TPrefixTable& table, std::string& resolved,
                     std::string& unresolved);

// The value catalogs and value properties of catalog_val_prop.xml.
struct TValueData {
  std::set<std::string> catalogs;
  std::vector<std::string> properties;  // file order, without repeats
};

// False when the file cannot be parsed as XML.
bool readValueData(const std::string& file, TValueData& data);

}  // namespace tbl2flat
