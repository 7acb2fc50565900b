// Reading source symbols, the location map and the SymXlt configuration.

#include "source_symbol.hpp"

#include <boost/filesystem.hpp>
#include <boost/regex.hpp>
#include <cstdlib>
#include <fstream>

namespace fs = boost::filesystem;

namespace sksym2td {

namespace {

std::string trimmed(const std::string& text) {
  const auto first = text.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) return std::string();
  return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

bool number(const std::string& text, double& value) {
  char* end = nullptr;
  value = std::strtod(text.c_str(), &end);
  return !text.empty() && end != nullptr && *end == '\0';
}

}  // namespace

const TSourcePin* TSourceSymbol::findPin(const std::string& pinName) const {
  for (const auto& pin : pins)
    if (pin.name == pinName) return &pin;
  return nullptr;
}

std::vector<std::string> splitFields(const std::string& line) {
  std::vector<std::string> fields;
  std::size_t i = 0;
  const std::size_t n = line.size();
  while (i < n) {
    while (i < n && (line[i] == ' ' || line[i] == '\t')) ++i;
    if (i >= n) break;
    if (line[i] == '"') {
      std::size_t close = line.find('"', i + 1);
      if (close == std::string::npos) close = n;
      fields.push_back(line.substr(i + 1, close - i - 1));
      i = close + 1;
    } else {
      std::size_t end = i;
      while (end < n && line[end] != ' ' && line[end] != '\t') ++end;
      fields.push_back(line.substr(i, end - i));
      i = end;
    }
  }
  return fields;
}

std::string findHighestVersion(const std::string& symbolPath) {
  const std::string stem = symbolPath + ".smbl_";
  boost::system::error_code error;
  std::string found;
  for (int version = 1; fs::is_regular_file(stem + std::to_string(version), error); ++version)
    found = stem + std::to_string(version);
  if (!found.empty()) return found;
  const fs::path path(symbolPath);
  const std::string prefix = path.filename().string() + ".smbl_";
  long best = 0;
  for (fs::directory_iterator it(path.parent_path().empty() ? fs::path(".") : path.parent_path(), error), end;
       !error && it != end; it.increment(error)) {
    const std::string leaf = it->path().filename().string();
    if (leaf.compare(0, prefix.size(), prefix) != 0) continue;
    char* stop = nullptr;
    const long version = std::strtol(leaf.c_str() + prefix.size(), &stop, 10);
    if (*stop == '\0' && version > best && fs::is_regular_file(it->path(), error)) {
      best = version;
      found = it->path().string();
    }
  }
  return found;
}

bool readSourceSymbol(const std::string& file, TSourceSymbol& symbol, std::string& error) {
  std::ifstream in(file);
  if (!in) {
    error = "cannot open " + file;
    return false;
  }
  symbol = TSourceSymbol();
  symbol.file = file;
  bool header = false, ended = false;
  std::string line;
  while (!ended && std::getline(in, line)) {
    const std::string text = trimmed(line);
    if (text.empty() || text[0] == '#') continue;
    const std::vector<std::string> f = splitFields(text);
    if (!header) {
      if (f.size() < 2 || f[0] != "SKSYMBOL" || f[1] != "1") {
        error = "not a SKSYMBOL 1 file: " + file;
        return false;
      }
      header = true;
      continue;
    }
    const std::string& keyword = f[0];
    double v[4];
    if (keyword == "END") {
      ended = true;
    } else if (keyword == "NAME" && f.size() > 1) {
      symbol.name = f[1];
    } else if (keyword == "DESCRIPTION" && f.size() > 1) {
      symbol.description = f[1];
    } else if (keyword == "UNIT" && f.size() > 1) {
      symbol.unit = f[1];
    } else if (keyword == "PIN_SPACING" && f.size() > 1) {
      symbol.pinSpacing = f[1];
    } else if (keyword == "REFDES" && f.size() > 1) {
      symbol.refdes = f[1];
    } else if (keyword == "BODY" && f.size() > 4) {
      for (int i = 0; i < 4; ++i)
        if (number(f[i + 1], v[i])) symbol.body[i] = v[i];
    } else if (keyword == "PROPERTY" && f.size() > 1) {
      symbol.properties.emplace_back(f[1], f.size() > 2 ? f[2] : std::string());
    } else if (keyword == "PIN" && f.size() > 5) {
      TSourcePin pin;
      pin.name = f[1];
      pin.type = f[2];
      number(f[3], pin.x);
      number(f[4], pin.y);
      pin.side = f[5];
      symbol.pins.push_back(pin);
    } else if (keyword == "PIN_PROPERTY" && f.size() > 2) {
      for (auto& pin : symbol.pins)
        if (pin.name == f[1]) pin.properties.emplace_back(f[2], f.size() > 3 ? f[3] : std::string());
    }
  }
  if (!header) {
    error = "not a SKSYMBOL 1 file: " + file;
    return false;
  }
  if (symbol.name.empty() || !ended) {
    error = std::string(symbol.name.empty() ? "no NAME" : "no END") + " in " + file;
    return false;
  }
  return true;
}

bool readLocationMap(const std::string& file, std::map<std::string, std::string>& prefixes) {
  std::ifstream in(file);
  if (!in) return false;
  const boost::regex header("QRN_LOCATION_MAP_\\d+(?:\\s+force)?.*");
  const boost::regex prefixLine("(\\$\\S+).*");
  std::string prefix, line;
  while (std::getline(in, line)) {
    const std::string text = trimmed(line);
    boost::smatch match;
    if (text.empty() || text[0] == '#' || boost::regex_match(text, header)) continue;
    if (boost::regex_match(text, match, prefixLine)) {
      prefix = match.str(1);
    } else if (!prefix.empty()) {
      prefixes.emplace(prefix, text);
    }
  }
  return true;
}

bool resolveSoftPrefix(const std::string& value, const std::map<std::string, std::string>& prefixes,
                       std::string& resolved) {
  resolved = value;
  if (!value.empty() && value[0] == '$') {
    const std::size_t end = value.find_first_of("/\\");
    const auto found = prefixes.find(value.substr(0, end));
    if (found == prefixes.end()) return false;
    resolved = found->second + (end == std::string::npos ? std::string() : value.substr(end));
  }
  for (char& c : resolved)
    if (c == '\\') c = '/';
  return true;
}

bool TSymXlt::find(const std::string& section, const std::string& key, std::string& value) const {
  for (const auto& s : sections) {
    if (s.first != section) continue;
    for (const auto& entry : s.second)
      if (entry.first == key) {
        value = entry.second;
        return true;
      }
    return false;
  }
  return false;
}

bool readSymXlt(const std::string& file, TSymXlt& config) {
  boost::system::error_code error;
  if (fs::is_directory(file, error)) return false;
  std::ifstream in(file);
  if (!in) return false;
  const boost::regex head("^(\\[.+\\])\\s*");
  const boost::regex entry("^(.+)=(.*)");
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const std::size_t first = line.find_first_not_of(" \t");
    if (first == std::string::npos) continue;
    line.erase(0, first);
    boost::smatch match;
    if (boost::regex_match(line, match, head)) {
      config.sections.emplace_back(trimmed(match.str(1)), std::vector<std::pair<std::string, std::string>>());
    } else if (!config.sections.empty() && boost::regex_match(line, match, entry)) {
      config.sections.back().second.emplace_back(match.str(1), match.str(2));
    }
  }
  return true;
}

}  // namespace sksym2td
