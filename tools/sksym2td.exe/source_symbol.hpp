#pragma once
// The inputs of the symbol tool: source symbols in the SKSYMBOL 1 format,
// the location map that resolves their soft prefixes, and the SymXlt
// configuration of a conversion.

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace sksym2td {

struct TSourcePin {
  std::string name;
  std::string type;
  double x = 0, y = 0;
  std::string side;
  std::vector<std::pair<std::string, std::string>> properties;  // name, value; file order
};

struct TSourceSymbol {
  std::string file;  // the version read
  std::string name, description, unit, pinSpacing, refdes;
  double body[4] = {0, 0, 0, 0};
  std::vector<std::pair<std::string, std::string>> properties;  // name, value; file order
  std::vector<TSourcePin> pins;

  const TSourcePin* findPin(const std::string& name) const;
};

// Splits a statement at blanks and tabs; a field in double quotes may hold
// blanks and loses its quotes.
std::vector<std::string> splitFields(const std::string& line);

// The file of the highest version of the symbol `<directory>/<name>`:
// `<name>.smbl_1`, `_2`, ... are probed up to the first one missing, so the
// cost does not grow with the directory; only when `_1` is missing is the
// directory listed. Empty when there is no version.
std::string findHighestVersion(const std::string& symbolPath);

// Reads a symbol file. False with the reason in `error` when the file
// cannot be opened, does not begin with "SKSYMBOL 1", or lacks NAME or END.
bool readSourceSymbol(const std::string& file, TSourceSymbol& symbol, std::string& error);

// Soft prefix -> first hard pathname of the location map. False when the
// file cannot be opened.
bool readLocationMap(const std::string& file, std::map<std::string, std::string>& prefixes);

// A value beginning with "$" has its prefix (up to the first '/' or '\')
// replaced; '\' becomes '/'. False when the prefix is unknown.
bool resolveSoftPrefix(const std::string& value, const std::map<std::string, std::string>& prefixes,
                       std::string& resolved);

// The SymXlt configuration: [SECTION] heads and key=value entries (split at
// the last '='), in file order.
struct TSymXlt {
  std::vector<std::pair<std::string, std::vector<std::pair<std::string, std::string>>>> sections;

  // The value of `key` in the first section of that name; false when absent.
  bool find(const std::string& section, const std::string& key, std::string& value) const;
};

bool readSymXlt(const std::string& file, TSymXlt& config);

}  // namespace sksym2td
