// The neutral symbol file and the target symbol.

#include "outputs.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <boost/filesystem.hpp>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <set>

namespace sksym2td {

namespace {

std::string field(const std::string& value) {
  if (value.empty() || value.find_first_of(" \t") != std::string::npos) return '"' + value + '"';
  return value;
}

std::string number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.10g", value);
  return text;
}

// The target of a property under `section`: renamed, kept, or dropped (false)
// for an empty target.
bool renamed(const TSymXlt& config, const char* section, const std::string& name, std::string& target) {
  target = name;
  if (!config.find(section, name, target)) target = name;
  return !target.empty();
}

}  // namespace

TPinMap checkPinMap(const TSourceSymbol& symbol, const TPinMap& pinMap, std::ostream& out) {
  std::map<std::string, std::size_t> seen;
  TPinMap known;
  for (const auto& entry : pinMap) {
    if (symbol.findPin(entry.first) == nullptr) {
      out << "Warning: symbol " << symbol.name << ": pin_map names an unknown pin: " << entry.first << "\n";
      continue;
    }
    auto found = seen.find(entry.first);
    if (found != seen.end()) {
      known[found->second].second = entry.second;
    } else {
      seen.emplace(entry.first, known.size());
      known.push_back(entry);
    }
  }
  return known;
}

bool writeNeutral(const std::string& file, const TSourceSymbol& symbol, const TPinMap& pinMap) {
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  if (!out) return false;
  out << "# neutral symbol of " << symbol.file << "\n";
  out << "SYMBOL " << symbol.name << "\n";
  out << "REFDES_VALUE " << symbol.refdes << "\n";
  out << "UNIT_NAME " << symbol.unit << "\n";
  out << "PIN_SPACING " << symbol.pinSpacing << "\n";
  for (const auto& property : symbol.properties) out << "BODY_PROPERTY " << property.first << "\n";
  std::set<std::string> pinProperties;
  for (const auto& pin : symbol.pins)
    for (const auto& property : pin.properties)
      if (pinProperties.insert(property.first).second) out << "PIN_PROPERTY " << property.first << "\n";
  for (const auto& pin : symbol.pins) {
    std::string name = pin.name;
    for (const auto& entry : pinMap)
      if (entry.first == pin.name) name = entry.second;
    out << "PIN_NAME " << name << "\n";
  }
  return static_cast<bool>(out.flush());
}

std::vector<std::string> expandVectorPin(const std::string& name) {
  const std::size_t open = name.rfind('[');
  const std::size_t colon = name.find(':', open == std::string::npos ? 0 : open);
  if (open == std::string::npos || colon == std::string::npos || name.back() != ']') return {name};
  char* end1 = nullptr;
  char* end2 = nullptr;
  const std::string first = name.substr(open + 1, colon - open - 1);
  const std::string last = name.substr(colon + 1, name.size() - colon - 2);
  const long from = std::strtol(first.c_str(), &end1, 10);
  const long to = std::strtol(last.c_str(), &end2, 10);
  if (first.empty() || last.empty() || *end1 != '\0' || *end2 != '\0') return {name};
  std::vector<std::string> bits;
  const std::string stem = name.substr(0, open);
  const long step = from <= to ? 1 : -1;
  for (long bit = from;; bit += step) {
    bits.push_back(stem + "[" + std::to_string(bit) + "]");
    if (bit == to) break;
  }
  return bits;
}

bool writeTarget(const std::string& file, const std::string& name, const TSourceSymbol& symbol, const TPinMap& pinMap,
                 const TSymXlt& config, std::string& error) {
  std::string scaleText = "1.0";
  config.find("[DESIGN SCALING]", "Scale", scaleText);
  if (scaleText.empty()) scaleText = "1.0";  // a factor the user has not filled in yet
  char* end = nullptr;
  const double scale = std::strtod(scaleText.c_str(), &end);
  if (*end != '\0' || scale <= 0) {
    error = "Scale is not a positive number: " + scaleText;
    return false;
  }
  const double spacing = std::strtod(symbol.pinSpacing.c_str(), &end);
  const double grid = (symbol.pinSpacing.empty() || *end != '\0' ? 1.0 : spacing) * scale;

  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  if (!out) {
    error = "cannot write target symbol: " + file;
    return false;
  }
  out << "TDSYMBOL 1\n";
  out << "NAME " << field(name) << "\n";
  out << "SOURCE " << field(symbol.file) << "\n";
  out << "DESCRIPTION " << field(symbol.description) << "\n";
  out << "UNIT " << symbol.unit << "\n";
  out << "PIN_SPACING " << number(grid) << "\n";
  out << "SCALE " << number(scale) << "\n";
  out << "REFDES " << field(symbol.refdes) << "\n";
  out << "BODY";
  for (double v : symbol.body) out << ' ' << number(v * grid);
  out << "\n";
  std::string target;
  for (const auto& property : symbol.properties)
    if (renamed(config, "[PACKAGE ATTRIBUTES]", property.first, target))
      out << "ATTRIBUTE " << field(target) << ' ' << field(property.second) << "\n";
  for (const auto& pin : symbol.pins) {
    std::string pinName = pin.name;
    for (const auto& entry : pinMap)
      if (entry.first == pin.name) pinName = entry.second;
    std::string type = pin.type;
    if (!config.find("[PIN TYPES]", pin.type, type) || type.empty()) type = pin.type;
    const std::vector<std::string> bits = expandVectorPin(pinName);
    for (std::size_t i = 0; i < bits.size(); ++i) {
      // The bits of a vector pin follow each other one grid step apart, down
      // a left or right edge, along a top or bottom edge.
      const bool vertical = pin.side == "L" || pin.side == "R";
      const double x = pin.x + (vertical ? 0.0 : static_cast<double>(i));
      const double y = pin.y - (vertical ? static_cast<double>(i) : 0.0);
      out << "PIN " << field(bits[i]) << ' ' << type << ' ' << number(x * grid) << ' ' << number(y * grid) << ' '
          << pin.side << "\n";
      for (const auto& property : pin.properties)
        if (renamed(config, "[PIN ATTRIBUTES]", property.first, target))
          out << "PIN_ATTRIBUTE " << field(bits[i]) << ' ' << field(target) << ' ' << field(property.second) << "\n";
    }
  }
  out << "END\n";
  if (!out.flush()) {
    error = "cannot write target symbol: " + file;
    return false;
  }
  return true;
}

bool appendToJournal(const std::string& dir, const std::string& name) {
  const boost::filesystem::path stateDir = boost::filesystem::path(dir) / ".tdlib2zpc";
  boost::system::error_code ec;
  boost::filesystem::create_directories(stateDir, ec);
  // One write on a file opened for appending: the line lands whole behind
  // whatever is there, and the file is never rewritten here.
  const int fd = open((stateDir / "journal").c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
  if (fd < 0) return false;
  const std::string line = name + "\n";
  const bool written = write(fd, line.data(), line.size()) == static_cast<ssize_t>(line.size());
  return close(fd) == 0 && written;
}

}  // namespace sksym2td
