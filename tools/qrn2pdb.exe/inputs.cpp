#include "inputs.hpp"

#include <algorithm>
#include <boost/algorithm/string/predicate.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/algorithm/string/trim.hpp>
#include <fstream>
#include <sstream>

namespace qrn2pdb {

namespace {

bool readLines(const std::string& file, std::vector<std::string>& lines) {
  std::ifstream in(file, std::ios::binary);
  if (!in) return false;
  std::string line;
  while (std::getline(in, line)) lines.push_back(boost::trim_copy(line));
  return true;
}

std::vector<std::string> words(const std::string& line) {
  std::istringstream in(line);
  std::vector<std::string> result;
  std::string word;
  while (in >> word) result.push_back(word);
  return result;
}

// The quoted fields of a qrn.caf line: `.soft_path  "$A"  "/x"` gives $A and /x.
std::vector<std::string> quotedFields(const std::string& line) {
  std::vector<std::string> fields;
  std::string::size_type open = line.find('"');
  while (open != std::string::npos) {
    const std::string::size_type close = line.find('"', open + 1);
    if (close == std::string::npos) break;
    fields.push_back(line.substr(open + 1, close - open - 1));
    open = line.find('"', close + 1);
  }
  return fields;
}

}  // namespace

bool readTranslationFile(const std::string& file, TTranslationFile& result) {
  std::vector<std::string> lines;
  if (!readLines(file, lines)) return false;
  TPropertyRule* current = nullptr;
  for (const std::string& line : lines) {
    if (line.rfind(".soft_path", 0) == 0) {
      const auto fields = quotedFields(line);
      if (fields.size() >= 2) result.softPaths.emplace(fields[0], fields[1]);
    } else if (line.rfind(".PROP", 0) == 0) {
      const auto fields = quotedFields(line);
      current = nullptr;
      if (fields.size() >= 2) {
        current = &result.properties[fields[0]];
        current->target = fields[1];
      }
    } else if (line.rfind("..PDB", 0) == 0 && current != nullptr) {
      const auto w = words(line);
      current->toPdb = w.size() > 1 && w[1] == "yes";
    }
  }
  return true;
}

bool resolveSoftPath(const TTranslationFile& caf, const std::string& location, std::string& resolved) {
  std::string path = location;
  if (!path.empty() && path[0] == '$') {
    const std::string::size_type end = path.find_first_of("/\\");
    const auto found = caf.softPaths.find(path.substr(0, end));
    if (found == caf.softPaths.end() || found->second.empty()) return false;
    path = found->second + (end == std::string::npos ? std::string() : path.substr(end));
  }
  for (char& c : path)
    if (c == '\\') c = '/';
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  resolved = path;
  return true;
}

bool readSymbolPartitions(const std::string& file, std::map<std::string, std::string>& partitions) {
  std::vector<std::string> lines;
  if (!readLines(file, lines)) return false;
  for (const std::string& line : lines) {
    const auto w = words(line);
    if (w.size() >= 2) partitions[w[0]] = w[1];
  }
  return true;
}

bool readNeutralPins(const std::string& file, std::vector<std::string>& pins) {
  std::vector<std::string> lines;
  if (!readLines(file, lines)) return false;
  for (const std::string& line : lines) {
    if (line.empty() || line[0] == '#') continue;
    const std::string::size_type blank = line.find_first_of(" \t");
    if (blank != std::string::npos && line.substr(0, blank) == "PIN_NAME")
      pins.push_back(boost::trim_copy(line.substr(blank + 1)));
  }
  return true;
}

bool readMappingFile(const std::string& file, std::vector<TPortion>& portions) {
  std::vector<std::string> lines;
  if (!readLines(file, lines)) return false;
  for (const std::string& line : lines) {
    if (line.find('#') != std::string::npos) continue;
    const auto w = words(line);
    if (w.size() >= 2 && w[0] == "SYMBOL") {
      portions.push_back({w[1], w.size() > 2 ? w[2] : std::string(), {}});
    } else if (w.size() >= 3 && w[0] == "PIN" && !portions.empty()) {
      TMappedPin pin;
      pin.name = w[1];
      boost::split(pin.physical, w[2], [](char c) { return c == ','; });
      portions.back().pins.push_back(pin);
    }
  }
  return true;
}

bool readGeomPinList(const std::string& file, std::map<std::string, std::vector<std::string>>& cells) {
  std::vector<std::string> lines;
  if (!readLines(file, lines)) return false;
  for (const std::string& line : lines) {
    if (line.empty() || line[0] == '#' || line.rfind("//", 0) == 0) continue;
    auto w = words(line);
    auto& pins = cells[w[0]];
    pins.insert(pins.end(), w.begin() + 1, w.end());
  }
  return true;
}

std::string pathTail(const std::string& directory, int depth) {
  if (depth <= 0) return std::string();
  std::vector<std::string> tokens;
  boost::split(tokens, directory, [](char c) { return c == '/'; });
  if (!tokens.empty() && tokens.back().empty()) tokens.pop_back();
  const std::size_t take = std::min<std::size_t>(static_cast<std::size_t>(depth), tokens.size());
  const std::size_t first = tokens.size() - take;
  std::string tail;
  for (std::size_t i = first; i < tokens.size(); ++i) tail += (i == first ? "" : "_") + tokens[i];
  return tail;
}

}  // namespace qrn2pdb
